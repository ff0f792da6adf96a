// SPDX-License-Identifier: MIT
#include "output/plot.h"

#include <QtTest/qtest.h>

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

    void feet()
    {
        const Dive dive = diveOf({{0, 0}, {120, 30.78}, {480, 30.78}, {600, 0}}, 0);
        const PlotStyle style{.width = 24, .height = 7, .utf8 = false, .units = Units::Imperial};
        QCOMPARE(profilePlot(dive, style), u"    0 ft+**            *\n"
                                           "        | *            *\n"
                                           "        | **          **\n"
                                           "        |  *          *\n"
                                           "        |  **        **\n"
                                           "        |   *        *\n"
                                           "  100 ft+   **********\n"
                                           "        ++-------------+\n"
                                           "     min 0            10\n"_s);
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

    void marks()
    {
        QCOMPARE(gasMark(0), QChar(u'1'));
        QCOMPARE(gasMark(11), QChar(u'c'));
        QCOMPARE(gasMark(12), QChar(u'?'));
        QCOMPARE(gasMark(-1), QChar(u'?'));
    }
};

QTEST_GUILESS_MAIN(PlotTest)
#include "tst_plot.moc"
