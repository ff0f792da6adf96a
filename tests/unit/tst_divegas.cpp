// SPDX-License-Identifier: MIT
#include <QtTest/qtest.h>

#include <varda/divegas.h>

#include <cmath>
#include <limits>

class TestDiveGas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaults();
    void oxygen_data();
    void oxygen();
    void helium_data();
    void helium();
};

static constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
static constexpr double kInfinity = std::numeric_limits<double>::infinity();

static double justBelow(double value)
{
    return std::nextafter(value, -kInfinity);
}

static double justAbove(double value)
{
    return std::nextafter(value, kInfinity);
}

void TestDiveGas::defaults()
{
    const DiveGas gas;
    QVERIFY(gas.oxygen == 0.21F);
    QVERIFY(gas.helium == 0.0F);
    QVERIFY(gas.nitrogen == 0.79F);
    QVERIFY(gas.limit == -1.0F);
    QCOMPARE(qint64(gas.reserved), qint64(0));
    QCOMPARE(gas.usage, GasUsage::None);
    QCOMPARE(gas.enabled, true);
    QVERIFY(gas.label.isEmpty());
    QVERIFY(gas.label2.isEmpty());
    QCOMPARE(gas.color, 0xFFFFFFU);
    QCOMPARE(gas.closedCircuit, false);
}

// What is refused leaves all as it was: nitrogen 0.4, which no rule gives.
static void addColumns()
{
    QTest::addColumn<float>("other");
    QTest::addColumn<double>("fraction");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<float>("nitrogen");
}

static void accept(const char *name, float other, double fraction, float nitrogen)
{
    QTest::newRow(name) << other << fraction << true << nitrogen;
}

static void refuse(const char *name, float other, double fraction)
{
    QTest::newRow(name) << other << fraction << false << 0.4F;
}

void TestDiveGas::oxygen_data()
{
    addColumns();
    accept("air", 0.0F, 0.21, 0.79F);
    accept("0.05, the least", 0.0F, 0.05, 0.95F);
    refuse("just below 0.05", 0.0F, justBelow(0.05));
    refuse("0.05 in single precision and back", 0.0F, 0.04999999701976776);
    accept("1.0, the most", 0.0F, 1.0, 0.0F);
    refuse("just above 1.0", 0.0F, justAbove(1.0));
    refuse("0", 0.0F, 0.0);
    refuse("negative", 0.0F, -0.21);
    refuse("not a number", 0.0F, kNan);
    refuse("infinity", 0.0F, kInfinity);
    refuse("-infinity", 0.0F, -kInfinity);
    accept("with helium", 0.35F, 0.1, 0.55F);
    accept("sum 1.0", 0.5F, 0.5, 0.0F);
    accept("sum 1.001", 0.5F, 0.501, 0.0F);
    refuse("sum above 1.001", 0.5F, justAbove(justAbove(0.501)));
    accept("sum 1.0005", 0.25F, 0.7505, 0.0F);
    refuse("sum 1.1", 0.1F, 1.0);
    // 0.1 in single precision is 0.10000000149: 1.00100000149 is too much.
    refuse("helium widened from single precision", 0.1F, 0.901);
    refuse("helium is not a number", std::numeric_limits<float>::quiet_NaN(), 0.5);
}

void TestDiveGas::oxygen()
{
    QFETCH(const float, other);
    QFETCH(const double, fraction);
    QFETCH(const bool, accepted);
    QFETCH(const float, nitrogen);
    DiveGas gas;
    gas.oxygen = 0.3F;
    gas.helium = other;
    gas.nitrogen = 0.4F;
    gas.setO2(fraction);
    QVERIFY(gas.oxygen == (accepted ? float(fraction) : 0.3F));
    QVERIFY(gas.helium == other || std::isnan(other));
    QVERIFY2(gas.nitrogen == nitrogen, qPrintable(QString::number(double(gas.nitrogen), 'g', 9)));
}

void TestDiveGas::helium_data()
{
    addColumns();
    accept("0.0, the least", 0.21F, 0.0, 0.79F);
    refuse("just below 0.0", 0.21F, justBelow(0.0));
    accept("-0.0", 0.21F, -0.0, 0.79F);
    accept("trimix", 0.18F, 0.45, 0.37F);
    accept("0.99, the most", 0.0F, 0.99, 0.01F);
    refuse("just above 0.99", 0.0F, justAbove(0.99));
    refuse("1.0", 0.0F, 1.0);
    refuse("not a number", 0.21F, kNan);
    refuse("infinity", 0.21F, kInfinity);
    refuse("negative", 0.21F, -0.1);
    accept("sum 1.0", 0.5F, 0.5, 0.0F);
    accept("sum 1.001", 0.5F, 0.501, 0.0F);
    refuse("sum above 1.001", 0.5F, justAbove(justAbove(0.501)));
    refuse("pure oxygen and some helium", 1.0F, 0.1);
    // 0.21 in single precision is 0.20999999344: a little is left.
    accept("oxygen widened from single precision", 0.21F, 0.79, 6.556511e-09F);
    refuse("oxygen is not a number", std::numeric_limits<float>::quiet_NaN(), 0.5);
}

void TestDiveGas::helium()
{
    QFETCH(const float, other);
    QFETCH(const double, fraction);
    QFETCH(const bool, accepted);
    QFETCH(const float, nitrogen);
    DiveGas gas;
    gas.oxygen = other;
    gas.helium = 0.3F;
    gas.nitrogen = 0.4F;
    gas.setHe(fraction);
    QVERIFY(gas.helium == (accepted ? float(fraction) : 0.3F));
    QVERIFY(gas.oxygen == other || std::isnan(other));
    QVERIFY2(gas.nitrogen == nitrogen, qPrintable(QString::number(double(gas.nitrogen), 'g', 9)));
}

QTEST_APPLESS_MAIN(TestDiveGas)
#include "tst_divegas.moc"
