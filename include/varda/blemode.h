// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>

#include <varda/vardaexport.h>

/** Contains BleMode, so that the meta-object system knows its names. */
namespace BleModes {
Q_NAMESPACE_EXPORT(VARDA_EXPORT)

/** Kind of serial link that a computer offers over Bluetooth Low Energy. */
enum BleMode : int {
    Gatt = 0, ///< transparent UART service; no flow control
    Sps = 1,  ///< Serial Port Service; the peer gets credits when the link comes up
};
Q_ENUM_NS(BleMode)
} // namespace BleModes

/** `BleMode` is a type and `BleMode::Gatt` and `BleMode::Sps` are its values. */
using BleMode = BleModes::BleMode;
