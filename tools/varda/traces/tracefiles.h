// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <varda/vardatracefile.h>

enum class TraceFormat { Trace, BtSnoop };

/**
 * A trace, or the Bluetooth log of a phone or of btmon, by how it begins. Warns of what is missing.
 *
 * @param computer  which one, if a log has several
 * @throws Failure
 */
[[nodiscard]] VardaTraceFile readTrace(const QString &name, const QString &computer);
/** Whole or not at all. @throws Failure */
void writeTrace(const QString &name, const VardaTraceFile &trace, TraceFormat format);
