// SPDX-License-Identifier: MIT
#pragma once

#include <varda/vardatracefile.h>

#include "traces/btsnoop.h"

/**
 * What a Bluetooth log has of the connections with one computer: all of them, one after the other.
 * The data is found by the numbers of the attributes, or by its frames if the log does not say
 * which number means what.
 *
 * @param computer  its address or name, if the log has several; else empty
 * @throws Failure if there is none, or if there are several
 */
[[nodiscard]] VardaTraceFile fromBtSnoop(const BtSnoop::Log &log, const QString &computer);
