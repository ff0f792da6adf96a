// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qpoint.h>

#include <optional>

#include <varda/dive.h>
#include <varda/diveprofile.h>
#include <varda/divereading.h>

/** What of a dive can be drawn. */
struct Readings {
    QList<QPointF> depths;       ///< seconds and metres
    QList<QPointF> temperatures; ///< seconds and degrees Celsius
    QList<DiveReading> samples;  ///< both, with the gases
    DiveProfile profile;         ///< of the samples

    [[nodiscard]] static Readings of(const Dive &dive);
};

/**
 * Of the points that share a column of pixels only the highest and the lowest, in their order; all
 * points, if there are no more than two to a column.
 *
 * @param points  by rising x
 * @param column  its width
 */
[[nodiscard]] QList<QPointF> thinned(const QList<QPointF> &points, double column = 1);
/**
 * The part of a line between two places, which are points of it as well if it passes them.
 *
 * @param points  by rising x
 */
[[nodiscard]] QList<QPointF> cut(const QList<QPointF> &points, double from, double to);
