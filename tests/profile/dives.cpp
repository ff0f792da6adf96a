// SPDX-License-Identifier: MIT
#include "dives.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

struct Point {
    int time;
    int decimetres;
};

DiveGas gasOf(double oxygen, double helium)
{
    DiveGas gas;
    gas.setO2(oxygen);
    gas.setHe(helium);
    return gas;
}

Dive namedDive(int number, std::initializer_list<DiveGas> gases)
{
    Dive dive;
    dive.diveNumber = std::uint16_t(number);
    dive.stamp = 1709374510; // 2024-03-02 10:15:10
    dive.model = ComputerModel::Varda;
    dive.serialNumber = QStringLiteral("00420017-3138510D-37373934");
    dive.firmwareVersion = QStringLiteral("1.4.2.b");
    dive.ownerName = QStringLiteral("Ada Lindqvist");
    dive.gases = gases;
    return dive;
}

/** Samples between the points, which waver by a few decimetres below the surface. */
void record(Dive &dive, const QList<Point> &points, int interval)
{
    dive.sampleInterval = std::uint8_t(interval);
    qsizetype next = 1;
    int noise = 1;
    for (int time = 0; time <= points.back().time; time += interval) {
        while (points[next].time < time)
            ++next;
        const Point &from = points[next - 1];
        const Point &to = points[next];
        int depth = from.decimetres
                    + (to.decimetres - from.decimetres) * (time - from.time)
                          / (to.time - from.time);
        // Without a pattern that the eye could see.
        noise = (noise * 1103 + 12345) % 65536;
        if (depth > 20)
            depth += noise / 4096 % 5 - 2;
        DiveLine line;
        line.time = time;
        line.depth = depth / 10.0;
        line.gasIndex = 0;
        dive.lines.append(line);
    }
}

void switchGas(Dive &dive, int time, int gas)
{
    for (DiveLine &line : dive.lines) {
        if (line.time >= time)
            line.gasIndex = gas;
    }
}

/** Colder below, and slow to follow. */
void recordTemperature(Dive &dive, double surface, double bottom)
{
    double felt = surface;
    for (DiveLine &line : dive.lines) {
        const double water = surface + (bottom - surface) * std::min(line.depth / 30, 1.0);
        felt += (water - felt) / 12;
        line.aux1Value = double(std::lround(felt));
    }
}

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

} // namespace

Dive deepDive()
{
    Dive dive = namedDive(3, {gasOf(0.21, 0.35), gasOf(0.5, 0), gasOf(1, 0)});
    record(dive,
           {{0, 0},
            {150, 415},
            {420, 438},
            {840, 402},
            {1260, 436},
            {1320, 380},
            {1500, 214},
            {1620, 212},
            {1740, 150},
            {1860, 152},
            {1980, 120},
            {2160, 118},
            {2220, 92},
            {2400, 90},
            {2460, 61},
            {2940, 59},
            {3000, 31},
            {3060, 28},
            {3120, 0}},
           10);
    switchGas(dive, 1510, 1);
    switchGas(dive, 2470, 2);
    recordTemperature(dive, 16, 6);
    return dive;
}

Dive shallowDive()
{
    Dive dive = namedDive(1, {gasOf(0.21, 0)});
    record(dive, {{0, 0}, {60, 55}, {300, 118}, {900, 84}, {1500, 52}, {1740, 48}, {1800, 0}}, 10);
    return dive;
}

Dive longDive()
{
    Dive dive = namedDive(65535, {gasOf(0.21, 0), gasOf(0.32, 0)});
    record(
        dive,
        {{0, 0}, {300, 140}, {50000, 135}, {51000, 82}, {54000, 140}, {107000, 138}, {108000, 0}},
        20);
    switchGas(dive, 53000, 1);
    recordTemperature(dive, 27, 25);
    return dive;
}

Dive manySamples()
{
    Dive dive = namedDive(20, {gasOf(0.32, 0)});
    dive.sampleInterval = 1;
    for (int i = 0; i < 20000; ++i) {
        DiveLine line;
        line.time = i;
        line.depth = i == 0 || i == 19999 ? 0 : 5 + i * 79 % 301 / 10.0;
        line.gasIndex = 0;
        line.aux1Value = 10.0 + i % 3;
        dive.lines.append(line);
    }
    return dive;
}

Dive twelveGases()
{
    Dive dive = namedDive(12, {gasOf(0.10, 0.70), gasOf(0.12, 0.60), gasOf(0.14, 0.55),
                               gasOf(0.16, 0.50), gasOf(0.18, 0.45), gasOf(0.21, 0.35),
                               gasOf(0.25, 0.25), gasOf(0.32, 0), gasOf(0.36, 0), gasOf(0.40, 0),
                               gasOf(0.50, 0), gasOf(1, 0)});
    record(dive, {{0, 0}, {300, 820}, {1500, 800}, {1800, 400}, {3600, 60}, {5400, 58}, {5700, 0}},
           10);
    recordTemperature(dive, 18, 4);
    for (int i = 0; i < 6; ++i)
        switchGas(dive, 1500 + i * 40, i + 1);
    for (int i = 0; i < 5; ++i)
        switchGas(dive, 2400 + i * 500, i + 7);
    return dive;
}

Dive spikes()
{
    Dive dive = namedDive(21, {});
    for (int i = 0; i < 20000; ++i) {
        DiveLine line;
        line.time = i;
        line.depth = i == 9010 ? 30 : i == 9011 ? 2 : 10;
        dive.lines.append(line);
    }
    return dive;
}

Dive oneSample()
{
    Dive dive = namedDive(5, {gasOf(0.21, 0)});
    DiveLine line;
    line.depth = 4.2;
    line.aux1Value = 12;
    line.gasIndex = 0;
    dive.lines.append(line);
    return dive;
}

QList<Dive> hostileDives()
{
    QList<Dive> dives;
    for (const double value : {kNaN, kInfinity, -kInfinity, -1.0, -1e300, 1e300, 1e7, 5e-324}) {
        for (double DiveLine::*field : {&DiveLine::time, &DiveLine::depth, &DiveLine::aux1Value}) {
            Dive once = deepDive();
            once.lines[100].*field = value;
            once.lines.front().*field = value;
            dives.append(once);
            Dive always = shallowDive();
            for (DiveLine &line : always.lines)
                line.*field = value;
            dives.append(always);
        }
        Dive gas = deepDive();
        gas.gases[0].oxygen = gas.gases[1].helium = float(value);
        dives.append(gas);
    }
    Dive backwards = deepDive();
    std::reverse(backwards.lines.begin(), backwards.lines.end());
    dives.append(backwards);
    Dive texts = deepDive();
    texts.ownerName = QStringLiteral("]]></text><script>&\"'") + QChar(0) + QChar(0xFFFE);
    texts.serialNumber = QString(QChar(0xD800)) + QChar(0x202E) + QChar(u'\n');
    texts.firmwareVersion = QString(100000, QChar(u'W'));
    dives.append(texts);
    Dive gases = manySamples();
    gases.gases.resize(300);
    for (qsizetype i = 0; i < gases.lines.size(); ++i)
        gases.lines[i].gasIndex = int(i % 302) - 1;
    dives.append(gases);
    Dive model;
    model.model = ComputerModel::ComputerModelIn(-7);
    model.stamp = std::numeric_limits<std::uint64_t>::max();
    dives.append(model);
    return dives;
}
