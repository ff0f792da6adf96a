// SPDX-License-Identifier: MIT
#pragma once

#include <varda/dive.h>
#include <varda/pictureoptions.h>

#include "drawing_p.h"

/** Only the line of the depth. */
[[nodiscard]] Drawing thumbnailOf(const Dive &dive, const PictureOptions &options);
