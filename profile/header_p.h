// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include <varda/dive.h>
#include <varda/pictureoptions.h>

#include "drawing_p.h"
#include "readings_p.h"

/** A drawing with a background, a title and a description, and no more. */
[[nodiscard]] Drawing emptyDrawing(const QString &title, const QString &description,
                                   const PictureOptions &options, QSizeF size);
/** Of one dive. */
[[nodiscard]] Drawing emptyDrawing(const Dive &dive, const Readings &readings,
                                   const PictureOptions &options, QSizeF size);
/** The dive's number and begin at the left, its figures at the right. */
void drawHeader(Drawing &drawing, const Dive &dive, const Readings &readings,
                const PictureOptions &options, const QRectF &place);
/** "3 dives". */
[[nodiscard]] QString titleOf(std::span<const Dive> dives);
/** For those who cannot see the picture. */
[[nodiscard]] QString descriptionOf(std::span<const Dive> dives, std::span<const Readings> readings,
                                    const PictureOptions &options);
void drawTitle(Drawing &drawing, const QString &title, const QString &below,
               const PictureOptions &options, const QRectF &place);
