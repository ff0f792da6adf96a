// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>

#include <varda/vardatracefile.h>

/** How a trace is written: header and events as lines of JSON. */
namespace TraceFormat {

constexpr int kVersion = 1;

[[nodiscard]] QByteArray lineOf(const VardaTraceHeader &header);
[[nodiscard]] QByteArray lineOf(const VardaTraceEvent &event);

} // namespace TraceFormat
