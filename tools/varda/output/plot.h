// SPDX-License-Identifier: MIT
#pragma once

#include "output/units.h"

#include <varda/dive.h>

#include <QtCore/qstring.h>

/** How a profile is drawn. */
struct PlotStyle {
    int width = 80;   ///< columns, the labels included
    int height = 16;  ///< rows of the curve
    bool utf8 = true; ///< braille dots and lines, otherwise ASCII
    Units units = Units::Metric;
};

/** The character that stands for a gas in a plot, 1 for the first one. */
[[nodiscard]] QChar gasMark(int gasIndex);

/**
 * A dive's profile: depth downwards, time to the right, and below them the number of each gas where
 * its use begins. Empty where there are not two points to draw a line
 * between.
 */
[[nodiscard]] QString profilePlot(const Dive &dive, const PlotStyle &style);
