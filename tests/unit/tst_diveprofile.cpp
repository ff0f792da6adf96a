// SPDX-License-Identifier: MIT
#include <QtTest/qtest.h>

#include <varda/diveprofile.h>

class TestDiveProfile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void figures();
    void oneSample();
    void temperature_data();
    void temperature();
    void switches();
    void switchesWithoutGases();
    void nothing();
    void gasNames_data();
    void gasNames();
    void gasOfADive();
};

struct Point {
    double time;
    double depth;
    int gasIndex = 0;
};

static Dive diveOf(const QList<Point> &points, int gases = 1)
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

void TestDiveProfile::figures()
{
    const auto profile = DiveProfile::fromDive(diveOf({{0, 0}, {60, 12.5}, {120, 8}, {180, 1.5}}));
    QCOMPARE(profile.duration, 180.0);
    QCOMPARE(profile.maximumDepth, 12.5);
    QCOMPARE(profile.meanDepth, 5.5);
}

void TestDiveProfile::oneSample()
{
    const auto profile = DiveProfile::fromDive(diveOf({{0, 3.2}}));
    QCOMPARE(profile.duration, 0.0);
    QCOMPARE(profile.maximumDepth, 3.2);
    QCOMPARE(profile.meanDepth, 3.2);
    QCOMPARE(profile.switches.size(), 1);
}

void TestDiveProfile::temperature_data()
{
    QTest::addColumn<QList<double>>("samples");
    QTest::addColumn<bool>("isKnown");
    QTest::addColumn<double>("lowest");
    QTest::addColumn<double>("highest");
    QTest::newRow("none") << QList<double>{} << false << 0.0 << 0.0;
    QTest::newRow("all 0") << QList<double>{0, 0, 0} << false << 0.0 << 0.0;
    QTest::newRow("ice") << QList<double>{0, -2, 0} << true << -2.0 << 0.0;
    QTest::newRow("lake") << QList<double>{18, 5, 7} << true << 5.0 << 18.0;
    QTest::newRow("one") << QList<double>{27} << true << 27.0 << 27.0;
    QTest::newRow("falls to 0") << QList<double>{4, 2, 0} << true << 0.0 << 4.0;
}

void TestDiveProfile::temperature()
{
    QFETCH(const QList<double>, samples);
    Dive dive;
    for (const double sample : samples) {
        DiveLine line;
        line.aux1Value = sample;
        dive.lines.append(line);
    }
    const auto profile = DiveProfile::fromDive(dive);
    QTEST(profile.temperature.has_value(), "isKnown");
    if (profile.temperature) {
        QTEST(profile.temperature->lowest, "lowest");
        QTEST(profile.temperature->highest, "highest");
    }
}

void TestDiveProfile::switches()
{
    const auto profile = DiveProfile::fromDive(
        diveOf({{0, 0, 2}, {5, 1, 2}, {10, 1, 0}, {15, 1, 2}, {20, 0, 2}}, 3));
    QCOMPARE(profile.switches.size(), 3);
    QCOMPARE(profile.switches[0].time, 0.0);
    QCOMPARE(profile.switches[0].gasIndex, 2);
    QCOMPARE(profile.switches[1].time, 10.0);
    QCOMPARE(profile.switches[1].gasIndex, 0);
    QCOMPARE(profile.switches[2].time, 15.0);
    QCOMPARE(profile.switches[2].gasIndex, 2);
}

void TestDiveProfile::switchesWithoutGases()
{
    QVERIFY(DiveProfile::fromDive(diveOf({{0, 0, 0}, {5, 1, 3}}, 0)).switches.isEmpty());
}

void TestDiveProfile::nothing()
{
    const auto profile = DiveProfile::fromDive(diveOf({}, 2));
    QCOMPARE(profile.duration, 0.0);
    QCOMPARE(profile.maximumDepth, 0.0);
    QCOMPARE(profile.meanDepth, 0.0);
    QVERIFY(!profile.temperature);
    QVERIFY(profile.switches.isEmpty());
}

void TestDiveProfile::gasNames_data()
{
    QTest::addColumn<int>("oxygen");
    QTest::addColumn<int>("helium");
    QTest::addColumn<QString>("name");
    QTest::newRow("air") << 21 << 0 << QStringLiteral("Air");
    QTest::newRow("nitrox") << 32 << 0 << QStringLiteral("EAN32");
    QTest::newRow("lean") << 20 << 0 << QStringLiteral("EAN20");
    QTest::newRow("oxygen") << 100 << 0 << QStringLiteral("Oxygen");
    QTest::newRow("trimix") << 18 << 45 << QStringLiteral("18/45");
    QTest::newRow("helitrox") << 21 << 35 << QStringLiteral("21/35");
    QTest::newRow("no gas") << 0 << 255 << QStringLiteral("0/255");
}

void TestDiveProfile::gasNames()
{
    QFETCH(const int, oxygen);
    QFETCH(const int, helium);
    QTEST(DiveProfile::gasName(oxygen, helium), "name");
}

void TestDiveProfile::gasOfADive()
{
    DiveGas gas;
    QCOMPARE(DiveProfile::gasName(gas), QStringLiteral("Air"));
    gas.setO2(0.29); // 28.999999 % as a float
    QCOMPARE(DiveProfile::gasName(gas), QStringLiteral("EAN29"));
    gas.setO2(0.18);
    gas.setHe(0.45);
    QCOMPARE(DiveProfile::gasName(gas), QStringLiteral("18/45"));
}

QTEST_GUILESS_MAIN(TestDiveProfile)
#include "tst_diveprofile.moc"
