// SPDX-License-Identifier: MIT
#pragma once

#include <QtGui/qpainter.h>

#include "drawing_p.h"

/** Draws it in the painter's own units, from its origin. */
void paintDrawing(QPainter &painter, const Drawing &drawing);
