// SPDX-License-Identifier: MIT
#include "plot.h"
#include "profile.h"

#include <QtTest/qtest.h>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

struct Point {
    double time;
    double depth;
    int gasIndex = 0;
};

Dive diveOf(const QList<Point> &points, int gases = 1)
{
    Dive dive;
    for (const Point &point : points) {
        DiveLine line;
        line.time = point.time;
        line.depth = point.depth;
        line.gasIndex = point.gasIndex;
        dive.lines.append(line);
    }
    dive.gases.resize(gases);
    return dive;
}

} // namespace

class PlotTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ascii()
    {
        const Dive dive = diveOf({{0, 0}, {120, 20}, {360, 20}, {480, 6, 1}, {600, 0, 1}}, 2);
        QCOMPARE(profilePlot(dive, {.width = 40, .height = 5, .utf8 = false}),
                 u"   0 m+**                           ****\n"
                 "      | ***                     *****\n"
                 "      |   **                  ***\n"
                 "      |    ***              ***\n"
                 "  20 m+      ****************\n"
                 "      ++---------------+---------------+\n"
                 "   min 0               5              10\n"
                 "   gas 1                         2\n"_s);
    }

    void braille()
    {
        const Dive dive = diveOf({{0, 0}, {300, 12}, {600, 0}}, 0);
        QCOMPARE(profilePlot(dive, {.width = 20, .height = 3, .utf8 = true}),
                 u"   0 m┤⠙⢦⣀        ⣠⠞\n"
                 "      │  ⠈⠳⣄   ⢀⡴⠚⠁\n"
                 "      │    ⠈⠙⢦⡴⠋\n"
                 "      └┬───────────┬\n"
                 "   min 0          10\n"_s);
    }

    void nothing()
    {
        QCOMPARE(profilePlot(Dive(), {}), QString());
        QCOMPARE(profilePlot(diveOf({{0, 5}}), {}), QString());
    }

    /** Whatever a computer sends, and however small the terminal is. */
    void odd()
    {
        for (const int width : {-5, 0, 1, 20, 500}) {
            for (const auto &points : QList<QList<Point>>{
                     {{0, 0}, {0, 0}},
                     {{0, 409.5}, {0, 0}, {0, 409.5}},
                     {{0, 0}, {5, 409.5}, {10, 0}},
                     {{0, 3, -1}, {255 * 1e5, 3, 40}},
                     {{0, 0.1}, {1, 0.1}},
                 }) {
                const QString plot = profilePlot(diveOf(points), {.width = width});
                QCOMPARE(plot.count(u'\n'), 19);
            }
        }
    }

    void switches()
    {
        const auto list = gasSwitches(
            diveOf({{0, 0, 2}, {5, 1, 2}, {10, 1, 0}, {15, 1, 2}, {20, 0, 2}}, 3));
        QCOMPARE(list.size(), 3);
        QCOMPARE(list[0].time, 0.0);
        QCOMPARE(list[0].gasIndex, 2);
        QCOMPARE(list[1].time, 10.0);
        QCOMPARE(list[1].gasIndex, 0);
        QCOMPARE(list[2].time, 15.0);
        QCOMPARE(list[2].gasIndex, 2);
        QVERIFY(gasSwitches(diveOf({{0, 0}}, 0)).isEmpty());
    }

    void figures()
    {
        Dive dive = diveOf({{0, 0}, {60, 12}, {120, 6}});
        QCOMPARE(diveDuration(dive), 120.0);
        QCOMPARE(maximumDepth(dive), 12.0);
        QCOMPARE(averageDepth(dive), 6.0);
        QVERIFY(!temperatures(dive));
        dive.lines[1].aux1Value = -2;
        const auto range = temperatures(dive).value_or(TemperatureRange{99, 99});
        QCOMPARE(range.lowest, -2.0);
        QCOMPARE(range.highest, 0.0);
        QCOMPARE(diveDuration(Dive()), 0.0);
        QCOMPARE(averageDepth(Dive()), 0.0);
        QVERIFY(!temperatures(Dive()));
    }

    void names()
    {
        Dive dive = diveOf({}, 2);
        dive.gases[1].setO2(0.18);
        dive.gases[1].setHe(0.45);
        QCOMPARE(gasNames(dive.gases), u"Air, 18/45"_s);
        QCOMPARE(gasNames({}), u"-"_s);
        QCOMPARE(gasNameOf(dive, 1), u"18/45"_s);
        QCOMPARE(gasNameOf(dive, 2), u"-"_s);
        QCOMPARE(gasNameOf(dive, -1), u"-"_s);
        QCOMPARE(gasMark(0), QChar(u'1'));
        QCOMPARE(gasMark(11), QChar(u'c'));
        QCOMPARE(gasMark(12), QChar(u'?'));
    }

    void begin()
    {
        DiveHeaderBlock header;
        QCOMPARE(beginText(header), QString());
        header.stamp = 1715934600;
        QCOMPARE(beginText(header), u"2024-05-17 08:30:00"_s);
        header.stamp = 946684799;
        QCOMPARE(beginText(header), QString());
        header.stamp = std::numeric_limits<std::uint64_t>::max();
        QCOMPARE(beginText(header), QString());
    }
};

QTEST_GUILESS_MAIN(PlotTest)
#include "tst_plot.moc"
