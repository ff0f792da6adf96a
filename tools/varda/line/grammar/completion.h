// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

struct Grammar;

// What makes a shell complete the command line

[[nodiscard]] QString bashCompletion(const Grammar &grammar);
[[nodiscard]] QString zshCompletion(const Grammar &grammar);
[[nodiscard]] QString fishCompletion(const Grammar &grammar);
