// SPDX-License-Identifier: MIT
#pragma once

#include <varda/dive.h>
#include <varda/pictureoptions.h>

#include "drawing_p.h"
#include "readings_p.h"

/** A drawing with a background, a title and a description, and no more. */
[[nodiscard]] Drawing emptyDrawing(const Dive &dive, const Readings &readings,
                                   const PictureOptions &options, QSizeF size);
/** The dive's number and begin at the left, its figures at the right. */
void drawHeader(Drawing &drawing, const Dive &dive, const Readings &readings,
                const PictureOptions &options, const QRectF &place);
