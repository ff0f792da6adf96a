// SPDX-License-Identifier: MIT
#pragma once

#include <varda/dive.h>
#include <varda/pictureoptions.h>

#include "drawing_p.h"

/** A dive on one page of A4, in points. */
[[nodiscard]] Drawing sheetOf(const Dive &dive, const PictureOptions &options);
