// SPDX-License-Identifier: MIT
#pragma once

#include <varda/vardatracefile.h>

#include "traces/btsnoop.h"

/**
 * The Bluetooth packets that a trace stands for. What a trace does not have in them, such as the
 * numbers of attributes, is made up; jobs and errors have no place in them.
 *
 * @throws Failure if bytes of it fit into no packet
 */
[[nodiscard]] QList<BtSnoop::Packet> toBtSnoop(const VardaTraceFile &trace);
