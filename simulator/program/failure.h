// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

namespace simulator {

constexpr int kOwnError = 2;
constexpr int kCannotRun = 127; ///< as a shell says it

/** Prints what went wrong; returns the exit status for it. */
int fail(const QString &text);

} // namespace simulator
