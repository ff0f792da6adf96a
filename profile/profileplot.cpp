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
constexpr double kLeastWater = 40;  // for which rows of names are given up
constexpr int kMostRows = 6;
constexpr double kSwatch = 26; // of a dive among others

} // namespace

ProfilePlot::ProfilePlot(std::span<const Dive> dives, std::span<const Readings> readings,
                         const PictureOptions &options, const QRectF &place)
    : m_dives(dives),
      m_all(readings),
      m_dive(dives.front()),
      m_readings(readings.front()),
      m_options(options),
      m_units(options.units),
      m_style(Style::of(options)),
      m_place(place)
{
    divide();
}

void ProfilePlot::divide()
{
    m_water = m_place.adjusted(kLeft, 0, 0, -kBelow);
    double duration = 0;
    double deepest = 3; // never less than what a swimming pool has
    for (const Readings &each : m_all) {
        duration = std::max(duration, each.profile.duration);
        deepest = std::max(deepest, each.profile.maximumDepth);
    }
    // A part of the dive begins anywhere, and needs more lines for one of them to be in it.
    const bool isPart = m_options.from > 0 || m_options.to > 0;
    m_time = Scale::ofTime(duration, std::max(int(m_water.width() / (isPart ? 60 : 80)), 2),
                           m_options.from, m_options.to);
    int rows = 0;
    if (isComparison()) {
        m_entries = entries();
        rows = m_entries.isEmpty() ? 0 : m_entries.back().row + 1;
    } else {
        m_stretches = stretches();
        m_labels = labels();
        for (const Label &label : m_labels)
            rows = std::max(rows, label.row + 1);
    }
    if (!m_stretches.isEmpty() || rows > 0)
        m_water.adjust(0, rows * kRow + kBar, 0, 0);
    if (!isComparison() && !m_readings.temperatures.isEmpty()
        && m_water.height() - kGap - kTemperature >= kLowestWater) {
        m_temperature = m_water;
        m_temperature.setTop(m_water.bottom() - kTemperature);
        m_water.setBottom(m_temperature.top() - kGap);
    }
    m_depth = Scale::fromZero(depthIn(m_units, deepest), std::max(int(m_water.height() / 32), 2));
}

int ProfilePlot::mostRows() const
{
    return std::clamp(int((m_water.height() - kBar - kLeastWater) / kRow), 0, kMostRows);
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
        const double x = std::clamp(xOf(change.time), m_water.left(), m_water.right());
        if (!found.isEmpty())
            found.back().to = x;
        // What is shorter than a pixel cannot be seen.
        if (!found.isEmpty() && found.back().to - found.back().from < 1)
            found.removeLast();
        if (change.time > m_time.to)
            break;
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
        if (row >= mostRows())
            continue;
        placed.append({.name = stretch.name,
                       .x = x,
                       .anchor = stretch.from,
                       .row = row,
                       .colour = stretch.colour});
    }
    return placed;
}

QList<ProfilePlot::Entry> ProfilePlot::entries() const
{
    QList<Entry> placed;
    double x = m_water.left();
    int row = 0;
    for (qsizetype i = 0; i < qsizetype(m_dives.size()); ++i) {
        const QString name = nameOf(m_dives[std::size_t(i)], m_options.names.value(i));
        const double width = kSwatch + widthOf(name, kTextSize) + 14;
        if (x > m_water.left() && x + width > m_water.right()) {
            x = m_water.left();
            ++row;
        }
        if (row >= mostRows()) {
            // In the place of the last one that has room.
            if (!placed.isEmpty())
                placed.back() = {.name = u"+%1"_s.arg(qsizetype(m_dives.size()) - i + 1),
                                 .x = placed.back().x,
                                 .row = placed.back().row};
            break;
        }
        placed.append({.name = name, .x = x, .row = row, .dive = i});
        x += width;
    }
    return placed;
}

void ProfilePlot::line(QPointF from, QPointF to, const QColor &colour, double width,
                       const QList<double> &dashes)
{
    m_drawing->items.emplace_back(
        Path{.points = {from, to}, .line = colour, .width = width, .fill = {}, .dashes = dashes});
}

void ProfilePlot::draw(Drawing &drawing)
{
    m_drawing = &drawing;
    drawGrid();
    if (!m_temperature.isEmpty())
        drawTemperature();
    if (isComparison()) {
        drawDepths();
        drawEntries();
    } else if (m_readings.depths.isEmpty()) {
        drawNothing();
    } else {
        drawDepth();
        drawGases();
    }
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
    points = cut(points, m_temperature.left(), m_temperature.right());
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
    const QList<QPointF> points = lineOf(m_readings);
    if (points.isEmpty())
        return;
    QList<QPointF> outline = points;
    outline.append({points.back().x(), m_water.top()});
    outline.append({points.front().x(), m_water.top()});
    m_drawing->items.emplace_back(
        Path{.points = outline, .line = {}, .width = 0, .fill = m_style.water});
    m_drawing->items.emplace_back(
        Path{.points = points, .line = m_style.depth, .width = 2, .fill = {}});
    const auto deepest = std::max_element(
        m_readings.depths.begin(), m_readings.depths.end(),
        [](QPointF one, QPointF other) { return one.y() < other.y(); });
    if (deepest->x() < m_time.from || deepest->x() > m_time.to)
        return;
    m_drawing->items.emplace_back(Dot{.centre = {xOf(deepest->x()), yOf(deepest->y())},
                                      .radius = 4,
                                      .fill = m_style.depth,
                                      .line = m_style.background});
}

QList<QPointF> ProfilePlot::lineOf(const Readings &readings) const
{
    QList<QPointF> points;
    points.reserve(readings.depths.size());
    for (const QPointF &reading : readings.depths)
        points.append({xOf(reading.x()), yOf(reading.y())});
    return thinned(cut(points, m_water.left(), m_water.right()));
}

/** The first dive above the others. */
void ProfilePlot::drawDepths()
{
    for (std::size_t i = m_all.size(); i-- > 0;) {
        const QList<QPointF> points = lineOf(m_all[i]);
        const QColor colour = m_style.dive(qsizetype(i));
        if (points.size() == 1) {
            m_drawing->items.emplace_back(Dot{
                .centre = points.front(), .radius = 3, .fill = colour, .line = m_style.background});
        } else if (!points.isEmpty()) {
            m_drawing->items.emplace_back(Path{.points = points,
                                               .line = colour,
                                               .width = 2,
                                               .fill = {},
                                               .dashes = Style::dashes(qsizetype(i))});
        }
    }
}

void ProfilePlot::drawEntries()
{
    const int rows = m_entries.isEmpty() ? 0 : m_entries.back().row + 1;
    for (const Entry &entry : m_entries) {
        const double base = m_water.top() - kBar - 5 - (rows - 1 - entry.row) * kRow;
        if (entry.dive >= 0)
            line({entry.x, base - 4}, {entry.x + kSwatch - 6, base - 4}, m_style.dive(entry.dive),
                 2, Style::dashes(entry.dive));
        m_drawing->items.emplace_back(Text{.at = {entry.x + (entry.dive >= 0 ? kSwatch : 0), base},
                                           .text = entry.name,
                                           .size = kTextSize,
                                           .colour = m_style.text});
    }
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
                 {3, 3});
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
                                       .text = shown(m_options.nothing),
                                       .size = 16,
                                       .colour = m_style.muted,
                                       .anchor = Text::Anchor::Middle});
}
