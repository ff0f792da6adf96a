// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

struct Grammar;

/** The manual page that @p page is, with what the commands declare in place of the words in @...@. */
[[nodiscard]] QString manPage(const Grammar &grammar, QString page);
