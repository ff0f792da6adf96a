// SPDX-License-Identifier: MIT
#pragma once

#include <varda/dive.h>
#include <varda/pictureoptions.h>

#include "drawing_p.h"
#include "readings_p.h"
#include "scales_p.h"
#include "style_p.h"

/** Depth, gases and temperature over time, in a part of a drawing. */
class ProfilePlot
{
public:
    ProfilePlot(const Dive &dive, const Readings &readings, const PictureOptions &options,
                const QRectF &place);

    void draw(Drawing &drawing);

private:
    /** A stretch of time with one gas. */
    struct Stretch {
        double from = 0;
        double to = 0;
        QString name;
        QColor colour;
    };
    /** The name of a stretch, in one of the rows above the plot. */
    struct Label {
        QString name;
        double x = 0;
        double anchor = 0; ///< x of the change
        int row = 0;
        QColor colour;
    };

    [[nodiscard]] QList<Stretch> stretches() const;
    [[nodiscard]] QList<Label> labels() const;
    [[nodiscard]] double xOf(double seconds) const;
    [[nodiscard]] double yOf(double metres) const;
    void divide();
    void drawGrid();
    void drawTemperature();
    void drawDepth();
    void drawGases();
    void drawNothing();
    void line(QPointF from, QPointF to, const QColor &colour, double width, bool dashed = false);

    const Dive &m_dive;
    const Readings &m_readings;
    PictureOptions::Units m_units;
    Style m_style;
    QRectF m_place;
    QRectF m_water;       ///< from the surface to the deepest line of the grid
    QRectF m_temperature; ///< empty without one
    Scale m_time;
    Scale m_depth;
    QList<Stretch> m_stretches;
    QList<Label> m_labels;
    Drawing *m_drawing = nullptr;
};
