// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qvariant.h>

#include <cstdint>
#include <optional>

/** Numbers and times as QML has them and as a store has them. */
namespace Stamps {

/** 0, which no record has, for a number that is no id. */
qint64 idOf(double number);
/** Of a Date, whose digits are what a computer showed, or of seconds. */
std::optional<std::uint64_t> in(const QVariant &time);
/** What a computer showed then, as a local time; undefined if it is no time in this century. */
QVariant dateOf(std::uint64_t stamp);
/** The same as "2026-11"; empty without one. */
QString monthOf(std::uint64_t stamp);

} // namespace Stamps
