// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include <varda/dive.h>
#include <varda/pictureoptions.h>

#include "drawing_p.h"
#include "readings_p.h"
#include "scales_p.h"
#include "style_p.h"

/** Depth, gases and temperature over time, in a part of a drawing; only the depths of several dives. */
class ProfilePlot
{
public:
    /** @param dives, readings  as many of each, at least one */
    ProfilePlot(std::span<const Dive> dives, std::span<const Readings> readings,
                const PictureOptions &options, const QRectF &place);

    void draw(Drawing &drawing);

    /** From the surface to the deepest line of the grid. */
    [[nodiscard]] QRectF water() const { return m_water; }
    /** Below the water; empty without temperatures, and if there is no room for them. */
    [[nodiscard]] QRectF temperature() const { return m_temperature; }
    [[nodiscard]] const Scale &time() const { return m_time; }
    [[nodiscard]] const Scale &depth() const { return m_depth; }

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

    /** The name of a dive among others, in a row as well. */
    struct Entry {
        QString name;
        double x = 0;
        int row = 0;
        qsizetype dive = -1; ///< -1 for those that have no room
    };

    [[nodiscard]] bool isComparison() const { return m_dives.size() > 1; }
    [[nodiscard]] int mostRows() const;
    [[nodiscard]] QList<Entry> entries() const;
    [[nodiscard]] QList<QPointF> lineOf(const Readings &readings) const;
    [[nodiscard]] QList<Stretch> stretches() const;
    [[nodiscard]] QList<Label> labels() const;
    [[nodiscard]] double xOf(double seconds) const;
    [[nodiscard]] double yOf(double metres) const;
    void divide();
    void drawGrid();
    void drawTemperature();
    void drawDepth();
    void drawDepths();
    void drawEntries();
    void drawGases();
    void drawNothing();
    void line(QPointF from, QPointF to, const QColor &colour, double width,
              const QList<double> &dashes = {});

    std::span<const Dive> m_dives;
    std::span<const Readings> m_all;
    const Dive &m_dive;         ///< the only one, or the first
    const Readings &m_readings; ///< of it
    const PictureOptions &m_options;
    PictureOptions::Units m_units;
    Style m_style;
    QRectF m_place;
    QRectF m_water;       ///< from the surface to the deepest line of the grid
    QRectF m_temperature; ///< empty without one
    Scale m_time;
    Scale m_depth;
    QList<Stretch> m_stretches;
    QList<Label> m_labels;
    QList<Entry> m_entries;
    Drawing *m_drawing = nullptr;
};
