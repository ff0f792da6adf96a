// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

/** "[####------]": how much of a whole is done, in @p width columns. */
[[nodiscard]] QString progressBar(double fraction, int width);
