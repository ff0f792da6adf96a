// SPDX-License-Identifier: MIT
#include "readings_p.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kDeepest = 1000;
constexpr double kLongest = 1e6; // eleven days, in seconds
constexpr double kColdest = -128;
constexpr double kHottest = 127;

bool isUsable(const DiveLine &line, double timeBefore)
{
    return std::abs(line.depth) <= kDeepest && line.time >= timeBefore && line.time <= kLongest;
}

bool isTemperature(const DiveLine &line)
{
    return line.aux1Value >= kColdest && line.aux1Value <= kHottest;
}

} // namespace

Readings Readings::of(const Dive &dive)
{
    Dive usable;
    usable.gases = dive.gases;
    Readings readings;
    double time = 0;
    bool hasTemperature = false;
    for (DiveLine line : dive.lines) {
        if (!isUsable(line, time))
            continue;
        time = line.time;
        // Gauges drift a little at the surface.
        line.depth = std::max(line.depth, 0.0);
        readings.depths.append({line.time, line.depth});
        const bool isGas = line.gasIndex >= 0 && line.gasIndex < dive.gases.size();
        readings.samples.append({.time = line.time,
                                 .depth = line.depth,
                                 .temperature = {},
                                 .gasIndex = isGas ? line.gasIndex : -1});
        if (isTemperature(line)) {
            readings.samples.back().temperature = line.aux1Value;
            readings.temperatures.append({line.time, line.aux1Value});
            hasTemperature = hasTemperature || line.aux1Value != 0;
        }
        usable.lines.append(line);
    }
    if (!hasTemperature) {
        readings.temperatures.clear();
        for (DiveReading &reading : readings.samples)
            reading.temperature.reset();
    }
    readings.profile = DiveProfile::fromDive(usable);
    readings.profile.temperature.reset();
    if (hasTemperature) {
        const auto [lowest, highest] = std::minmax_element(
            readings.temperatures.begin(), readings.temperatures.end(),
            [](QPointF one, QPointF other) { return one.y() < other.y(); });
        readings.profile.temperature = DiveProfile::TemperatureRange{lowest->y(), highest->y()};
    }
    return readings;
}

QList<QPointF> thinned(const QList<QPointF> &points, double column)
{
    QList<QPointF> result;
    qsizetype at = 0;
    while (at < points.size()) {
        const double here = std::floor(points[at].x() / column);
        qsizetype least = at;
        qsizetype greatest = at;
        for (; at < points.size() && std::floor(points[at].x() / column) <= here; ++at) {
            if (points[at].y() < points[least].y())
                least = at;
            if (points[at].y() > points[greatest].y())
                greatest = at;
        }
        result.append(points[std::min(least, greatest)]);
        if (least != greatest)
            result.append(points[std::max(least, greatest)]);
    }
    return result;
}

QList<QPointF> cut(const QList<QPointF> &points, double from, double to)
{
    QList<QPointF> result;
    for (qsizetype i = 0; i < points.size(); ++i) {
        const auto crossing = [&](double x) {
            const QPointF &before = points[i - 1];
            const QPointF way = points[i] - before;
            return QPointF(x, before.y() + way.y() * (x - before.x()) / way.x());
        };
        const bool isSecond = i > 0;
        if (isSecond && points[i - 1].x() < from && points[i].x() > from)
            result.append(crossing(from));
        if (isSecond && points[i - 1].x() < to && points[i].x() > to)
            result.append(crossing(to));
        if (points[i].x() > to)
            break;
        if (points[i].x() >= from)
            result.append(points[i]);
    }
    return result;
}
