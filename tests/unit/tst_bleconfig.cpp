// SPDX-License-Identifier: MIT
#include <QtTest/qtest.h>

#include <varda/blecomputer.h>
#include <varda/bleconfig.h>

#include <cmath>
#include <limits>

class TestBleConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void density_data();
    void density();
    void pressureAtDepth_data();
    void pressureAtDepth();
    void depthAtPressure_data();
    void depthAtPressure();
    void batteryStr_data();
    void batteryStr();
};

void TestBleConfig::density_data()
{
    QTest::addColumn<int>("waterType");
    QTest::addColumn<float>("density");

    QTest::newRow("sea") << 0 << 1.03F;
    QTest::newRow("fresh") << 1 << 1.0F;
    QTest::newRow("in between") << 2 << 1.02F;
    QTest::newRow("3") << 3 << 1.0F;
    QTest::newRow("255") << 255 << 1.0F;
}

void TestBleConfig::density()
{
    QFETCH(const int, waterType);
    QFETCH(const float, density);
    BleConfig config;
    config.waterType = std::uint8_t(waterType);
    QVERIFY(config.getDensity() == density);
}

static bool isNear(float value, double expected)
{
    return std::abs(double(value) - expected) <= 1e-6 * std::abs(expected);
}

void TestBleConfig::pressureAtDepth_data()
{
    QTest::addColumn<int>("waterType");
    QTest::addColumn<int>("surfacePressure");
    QTest::addColumn<float>("depth");
    QTest::addColumn<double>("pressure");

    QTest::newRow("sea, 10 m") << 0 << 1013 << 10.0F << 2.02308495;
    QTest::newRow("fresh, 10 m") << 1 << 1013 << 10.0F << 1.993665;
    QTest::newRow("in between, 40 m") << 2 << 900 << 40.0F << 4.9011132;
    QTest::newRow("sea, surface") << 0 << 1013 << 0.0F << 1.013;
    QTest::newRow("nothing known") << 0 << 0 << 100.0F << 10.1008495;
    QTest::newRow("largest surface pressure") << 1 << 65535 << 1.0F << 65.6330665;
}

void TestBleConfig::pressureAtDepth()
{
    QFETCH(const int, waterType);
    QFETCH(const int, surfacePressure);
    QFETCH(const float, depth);
    QFETCH(const double, pressure);
    BleConfig config;
    config.waterType = std::uint8_t(waterType);
    config.surfacePressure = std::uint16_t(surfacePressure);
    const float result = config.pressureAtDepth(depth);
    QVERIFY2(isNear(result, pressure), qPrintable(QString::number(double(result), 'g', 9)));
}

// The guard compares the argument in bar with the surface pressure in millibar.
void TestBleConfig::depthAtPressure_data()
{
    QTest::addColumn<int>("waterType");
    QTest::addColumn<int>("surfacePressure");
    QTest::addColumn<float>("pressure");
    QTest::addColumn<double>("depth");

    QTest::newRow("2 bar") << 0 << 1013 << 2.0F << 0.0;
    QTest::newRow("just not above") << 0 << 1013 << 1013.0F << 0.0;
    QTest::newRow("just above") << 0 << 1013 << 1013.5F << 10023.7807;
    QTest::newRow("sea, 1014 bar") << 0 << 1013 << 1014.0F << 10028.7308;
    QTest::newRow("fresh, 1014 bar") << 1 << 1013 << 1014.0F << 10329.5927;
    QTest::newRow("in between, 1014 bar") << 2 << 1013 << 1014.0F << 10127.0516;
    QTest::newRow("no surface pressure") << 1 << 0 << 0.980665F << 10.0;
    QTest::newRow("negative") << 1 << 0 << -1.0F << 0.0;
}

void TestBleConfig::depthAtPressure()
{
    QFETCH(const int, waterType);
    QFETCH(const int, surfacePressure);
    QFETCH(const float, pressure);
    QFETCH(const double, depth);
    BleConfig config;
    config.waterType = std::uint8_t(waterType);
    config.surfacePressure = std::uint16_t(surfacePressure);
    const float result = config.depthAtPressure(pressure);
    QVERIFY2(isNear(result, depth), qPrintable(QString::number(double(result), 'g', 9)));
}

void TestBleConfig::batteryStr_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");

    QTest::newRow("0") << 0 << QStringLiteral("Alcaline");
    QTest::newRow("1") << 1 << QStringLiteral("NiMH");
    QTest::newRow("2") << 2 << QStringLiteral("Lion36");
    QTest::newRow("3") << 3 << QStringLiteral("Unknown");
    QTest::newRow("255") << 255 << QStringLiteral("Unknown");
}

void TestBleConfig::batteryStr()
{
    QFETCH(const int, type);
    BleComputer computer;
    computer.batteryType = std::uint8_t(type);
    QTEST(computer.getBatteryStr(), "text");
}

QTEST_APPLESS_MAIN(TestBleConfig)
#include "tst_bleconfig.moc"
