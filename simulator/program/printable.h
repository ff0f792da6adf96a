// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

namespace simulator {

/**
 * A text of somebody's scenario, fit for a terminal: U+FFFD for all that moves the cursor, starts
 * an escape sequence, breaks the line, turns its direction or is not seen, and for more marks on
 * a character than any language uses.
 */
QString printable(const QString &text);

} // namespace simulator
