// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

/**
 * Text of a stranger, fit for a terminal: what would move the cursor, start an escape sequence,
 * break the line or turn its direction, what nobody sees, and more than four marks on a character
 * are replaced by U+FFFD.
 */
[[nodiscard]] QString safeText(const QString &text);

/** JSON text in which such characters, where they are left as they are, are escaped. */
[[nodiscard]] QString safeJson(const QString &json);

/**
 * Text of a stranger, fit for a part of a file name: letters, digits, spaces and dashes, anything
 * else as "_", so that it cannot lead to another folder, and not longer than a name may be.
 */
[[nodiscard]] QString safeFileName(const QString &text);
