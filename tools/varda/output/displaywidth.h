// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

/**
 * Columns that a text takes on a terminal: two for a wide character (East Asian, most pictures),
 * none for a mark. Where terminals differ it is the most that one of them uses.
 */
[[nodiscard]] int displayWidth(QStringView text);

/** The beginning of @p text that fits in @p width columns, with @p mark at its end if it is cut. */
[[nodiscard]] QString clipped(QStringView text, int width, QStringView mark = {});
