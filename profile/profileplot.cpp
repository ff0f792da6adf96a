// SPDX-License-Identifier: MIT
#include "profileplot_p.h"

#include <algorithm>
#include <cmath>

#include "texts_p.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kTextSize = 12;
constexpr double kLeft = 52;        // labels of depths
constexpr double kBelow = 24;       // labels of times
constexpr double kRow = 17;         // names of gases
constexpr double kBar = 5;          // gases
constexpr double kGap = 20;         // above the temperature
constexpr double kTemperature = 64; // its height
constexpr double kLowestWater = 90; // less is no profile any more
constexpr int kMostRows = 6;

} // namespace

ProfilePlot::ProfilePlot(const Dive &dive, const Readings &readings, const PictureOptions &options,
                         const QRectF &place)
    : m_dive(dive),
      m_readings(readings),
      m_units(options.units),
      m_style(Style::of(options.theme)),
      m_place(place)
{
    divide();
}

void ProfilePlot::divide()
{
    m_water = m_place.adjusted(kLeft, 0, 0, -kBelow);
    m_time = Scale::ofTime(m_readings.profile.duration, std::max(int(m_water.width() / 80), 2));
    m_stretches = stretches();
    m_labels = labels();
    int rows = 0;
    for (const Label &label : m_labels)
        rows = std::max(rows, label.row + 1);
    if (rows > 0)
        m_water.adjust(0, rows * kRow + kBar, 0, 0);
    if (!m_readings.temperatures.isEmpty()
        && m_water.height() - kGap - kTemperature >= kLowestWater) {
        m_temperature = m_water;
        m_temperature.setTop(m_water.bottom() - kTemperature);
        m_water.setBottom(m_temperature.top() - kGap);
    }
    // Never less than what a swimming pool has.
    m_depth = Scale::fromZero(
        std::max(depthIn(m_units, m_readings.profile.maximumDepth), depthIn(m_units, 3)),
        std::max(int(m_water.height() / 32), 2));
}

double ProfilePlot::xOf(double seconds) const
{
    return m_water.left() + m_time.place(seconds) * m_water.width();
}

double ProfilePlot::yOf(double metres) const
{
    return m_water.top() + m_depth.place(depthIn(m_units, metres)) * m_water.height();
}

QList<ProfilePlot::Stretch> ProfilePlot::stretches() const
{
    QList<Stretch> found;
    for (const DiveProfile::GasSwitch &change : m_readings.profile.switches) {
        const double x = xOf(change.time);
        if (!found.isEmpty())
            found.back().to = x;
        // What is shorter than a pixel cannot be seen.
        if (!found.isEmpty() && found.back().to - found.back().from < 1)
            found.removeLast();
        const bool isKnown = change.gasIndex >= 0 && change.gasIndex < m_dive.gases.size();
        const Stretch stretch{
            .from = x,
            .to = m_water.right(),
            .name = isKnown ? shown(DiveProfile::gasName(m_dive.gases[change.gasIndex])) : u"?"_s,
            .colour = isKnown ? m_style.gas(change.gasIndex) : m_style.muted};
        if (found.isEmpty() || found.back().name != stretch.name
            || found.back().colour != stretch.colour)
            found.append(stretch);
        else
            found.back().to = stretch.to;
    }
    if (!found.isEmpty())
        found.front().from = m_water.left();
    return found;
}

QList<ProfilePlot::Label> ProfilePlot::labels() const
{
    QList<Label> placed;
    // From the right: each name stands above those that it would cover, left of their lines.
    for (qsizetype i = m_stretches.size() - 1; i >= 0; --i) {
        const Stretch &stretch = m_stretches[i];
        const double width = widthOf(stretch.name, kTextSize) + 8;
        const double x = std::max(std::min(stretch.from, m_water.right() - width), m_water.left());
        int row = 0;
        for (const Label &other : placed) {
            if (std::min(other.x, other.anchor) < x + width)
                row = std::max(row, other.row + 1);
        }
        if (row >= kMostRows)
            continue;
        placed.append({.name = stretch.name,
                       .x = x,
                       .anchor = stretch.from,
                       .row = row,
                       .colour = stretch.colour});
    }
    return placed;
}

void ProfilePlot::line(QPointF from, QPointF to, const QColor &colour, double width, bool dashed)
{
    m_drawing->items.emplace_back(
        Path{.points = {from, to}, .line = colour, .width = width, .fill = {}, .dashed = dashed});
}

void ProfilePlot::draw(Drawing &drawing)
{
    m_drawing = &drawing;
    drawGrid();
    if (!m_temperature.isEmpty())
        drawTemperature();
    if (m_readings.depths.isEmpty()) {
        drawNothing();
        return;
    }
    drawDepth();
    drawGases();
}

void ProfilePlot::drawGrid()
{
    const QList<double> depths = m_depth.lines();
    for (const double depth : depths) {
        const double y = m_water.top() + m_depth.place(depth) * m_water.height();
        line({m_water.left(), y}, {m_water.right(), y}, depth > 0 ? m_style.grid : m_style.axis, 1);
        m_drawing->items.emplace_back(
            Text{.at = {m_water.left() - 8, y + 4},
                 .text = QString::number(depth) + u' ' + depthUnit(m_units),
                 .size = kTextSize,
                 .colour = m_style.muted,
                 .anchor = Text::Anchor::End});
    }
    const double bottom = m_temperature.isEmpty() ? m_water.bottom() : m_temperature.bottom();
    for (const double time : m_time.lines()) {
        const double x = xOf(time);
        line({x, m_water.top()}, {x, m_water.bottom()}, m_style.grid, 1);
        if (!m_temperature.isEmpty())
            line({x, m_temperature.top()}, {x, bottom}, m_style.grid, 1);
        const QString label = timeLabel(m_time, time);
        const bool atEnd = x + widthOf(label, kTextSize) / 2 > m_place.right() + 12;
        m_drawing->items.emplace_back(
            Text{.at = {atEnd ? m_place.right() + 12 : x, bottom + 18},
                 .text = label,
                 .size = kTextSize,
                 .colour = m_style.muted,
                 .anchor = atEnd ? Text::Anchor::End : Text::Anchor::Middle});
    }
}

void ProfilePlot::drawTemperature()
{
    const auto [lowest,
                highest] = m_readings.profile.temperature.value_or(DiveProfile::TemperatureRange());
    const Scale scale = Scale::around(temperatureIn(m_units, lowest),
                                      temperatureIn(m_units, highest), 4);
    const auto yAt = [&](double degrees) {
        return m_temperature.bottom() - scale.place(degrees) * m_temperature.height();
    };
    for (const double degrees : scale.lines()) {
        line({m_temperature.left(), yAt(degrees)}, {m_temperature.right(), yAt(degrees)},
             m_style.grid, 1);
        m_drawing->items.emplace_back(
            Text{.at = {m_temperature.left() - 8, yAt(degrees) + 4},
                 .text = QString::number(degrees) + u' ' + temperatureUnit(m_units),
                 .size = kTextSize,
                 .colour = m_style.muted,
                 .anchor = Text::Anchor::End});
    }
    QList<QPointF> points;
    points.reserve(m_readings.temperatures.size());
    for (const QPointF &reading : m_readings.temperatures)
        points.append({xOf(reading.x()), yAt(temperatureIn(m_units, reading.y()))});
    if (points.size() == 1) {
        m_drawing->items.emplace_back(Dot{.centre = points.front(),
                                          .radius = 3,
                                          .fill = m_style.temperature,
                                          .line = m_style.background});
        return;
    }
    m_drawing->items.emplace_back(
        Path{.points = thinned(points), .line = m_style.temperature, .width = 1.75, .fill = {}});
}

void ProfilePlot::drawDepth()
{
    QList<QPointF> all;
    all.reserve(m_readings.depths.size());
    for (const QPointF &reading : m_readings.depths)
        all.append({xOf(reading.x()), yOf(reading.y())});
    const QList<QPointF> points = thinned(all);
    QList<QPointF> outline = points;
    outline.append({points.back().x(), m_water.top()});
    outline.append({points.front().x(), m_water.top()});
    m_drawing->items.emplace_back(
        Path{.points = outline, .line = {}, .width = 0, .fill = m_style.water});
    m_drawing->items.emplace_back(
        Path{.points = points, .line = m_style.depth, .width = 2, .fill = {}});
    const auto deepest = std::max_element(
        points.begin(), points.end(),
        [](QPointF one, QPointF other) { return one.y() < other.y(); });
    m_drawing->items.emplace_back(
        Dot{.centre = *deepest, .radius = 4, .fill = m_style.depth, .line = m_style.background});
}

void ProfilePlot::drawGases()
{
    const double bar = m_water.top() - kBar;
    for (const Stretch &stretch : m_stretches) {
        m_drawing->items.emplace_back(
            Box{.place = QRectF(stretch.from, bar, stretch.to - stretch.from, kBar),
                .fill = stretch.colour});
    }
    for (const Label &label : m_labels) {
        const double base = bar - 5 - label.row * kRow;
        const bool isChange = label.anchor > m_water.left();
        if (label.row > 0)
            line({label.anchor, base + 3}, {label.anchor, bar}, label.colour, 1);
        if (isChange)
            line({label.anchor, m_water.top()}, {label.anchor, m_water.bottom()}, label.colour, 1,
                 true);
        m_drawing->items.emplace_back(Text{.at = {label.x + (isChange ? 1 : 0), base},
                                           .text = label.name,
                                           .size = kTextSize,
                                           .colour = m_style.text,
                                           .anchor = Text::Anchor::Start,
                                           .bold = true});
    }
}

void ProfilePlot::drawNothing()
{
    m_drawing->items.emplace_back(Text{.at = m_water.center(),
                                       .text = u"no samples"_s,
                                       .size = 16,
                                       .colour = m_style.muted,
                                       .anchor = Text::Anchor::Middle});
}
