// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>

#include <utility>

#include <varda/tidemarcommand.h>

/** One command to send: its code and the bytes that follow the code in the frame. */
struct BleCommand {
    TidemarCommand::TidemarCommandIn command;
    QByteArray payload;

    // A code alone is a command, so no cast is needed.
    // NOLINTNEXTLINE(google-explicit-constructor)
    BleCommand(TidemarCommand::TidemarCommandIn code) : command(code) { }
    BleCommand(TidemarCommand::TidemarCommandIn code, const QByteArray &bytes)
        : command(code), payload(bytes)
    {
    }
};
