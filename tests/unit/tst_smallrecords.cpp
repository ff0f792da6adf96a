// SPDX-License-Identifier: MIT
#include "payload.h"

#include <QtTest/qtest.h>

#include <limits>

class TestSmallRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void owner_data();
    void owner();
    void ownerWithoutEnd();
    void time_data();
    void time();
    void sensors();
    void simulationParams();
    void diver();
    void deleteDives();
    void eraseDivesFlash_data();
    void eraseDivesFlash();
    void gasTables();
    void gasPercent_data();
    void gasPercent();
    void gasIndex_data();
    void gasIndex();
    void leavesNoCursor();
};

void TestSmallRecords::owner_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<QString>("owner");

    QTest::newRow("plain") << QByteArray("4a65616e 00 58") << QStringLiteral("Jean");
    QTest::newRow("UTF-8") << QByteArray("416e6472c3a9 00") << QStringLiteral("Andr\u00E9");
    QTest::newRow("nobody") << QByteArray("00 41") << QString();
    QTest::newRow("100 characters")
        << QByteArray("6f").repeated(100) << QString(100, QLatin1Char('o'));
}

void TestSmallRecords::owner()
{
    QFETCH(const QByteArray, payload);
    VardaData data;
    data.owner = QStringLiteral("replaced");
    data.processOwner(payloadOf(payload));
    QTEST(data.owner, "owner");
}

void TestSmallRecords::ownerWithoutEnd()
{
    VardaData data;
    data.processOwner(payloadOf(QByteArray("6f").repeated(511)));
    QCOMPARE(data.owner, QString(511, QLatin1Char('o')));
}

void TestSmallRecords::time_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<qint64>("computerTime");

    QTest::newRow("2023-11-14 22:13:20") << QByteArray("00f1536500000000") << qint64(1700000000);
    QTest::newRow("all bytes") << QByteArray("0807060504030201 ff") << qint64(0x0102030405060708);
    QTest::newRow("negative") << QByteArray("feffffffffffffff") << qint64(-2);
    QTest::newRow("smallest") << QByteArray("0000000000000080")
                              << std::numeric_limits<qint64>::min();
}

void TestSmallRecords::time()
{
    QFETCH(const QByteArray, payload);
    VardaData data;
    data.computerTime = 7;
    data.processTime(payloadOf(payload));
    QTEST(qint64(data.computerTime), "computerTime");
}

void TestSmallRecords::sensors()
{
    VardaData data;
    data.psurf = 7;
    data.density = 8;
    data.processSensors(payloadOf("99 04030201 0605 77"));
    QCOMPARE(data.pamb, 0x01020304U);
    QCOMPARE(data.dstop, std::uint16_t(0x0506));
    QCOMPARE(data.psurf, 7U);
    QCOMPARE(data.density, std::uint16_t(8));
}

void TestSmallRecords::simulationParams()
{
    VardaData data;
    data.dstop = 7;
    data.processSimulationParams(payloadOf("f5030000 04030201 0efc 77"));
    QCOMPARE(data.psurf, 1013U);
    QCOMPARE(data.pamb, 0x01020304U);
    QCOMPARE(data.density, std::uint16_t(0xFC0E));
    QCOMPARE(data.dstop, std::uint16_t(7));
}

// Nitrogen 1, 2, ... 16; helium 0.5, 1, ... 8; CNC -0.75.
void TestSmallRecords::diver()
{
    VardaData data;
    data.processDiver(
        payloadOf("0000803f 00000040 00004040 00008040 0000a040 0000c040 0000e040 00000041"
                  "00001041 00002041 00003041 00004041 00005041 00006041 00007041 00008041"
                  "0000003f 0000803f 0000c03f 00000040 00002040 00004040 00006040 00008040"
                  "00009040 0000a040 0000b040 0000c040 0000d040 0000e040 0000f040 00000041"
                  "000040bf 12345678"));
    QCOMPARE(data.diverN2,
             (std::array<float, 16>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}));
    QCOMPARE(data.diverHe, (std::array<float, 16>{0.5F, 1, 1.5F, 2, 2.5F, 3, 3.5F, 4, 4.5F, 5, 5.5F,
                                                  6, 6.5F, 7, 7.5F, 8}));
    QCOMPARE(data.diverCns, -0.75F);
}

void TestSmallRecords::deleteDives()
{
    VardaData data;
    data.eraseFlashResult = 9;
    DeleteDivesResult result;
    data.processDeleteDives(payloadOf("04030201 fdffffff 77"), result);
    QCOMPARE(result.resultA, 0x01020304U);
    QCOMPARE(result.resultB, 0xFFFFFFFDU);
    QCOMPARE(data.eraseFlashResult, std::uint8_t(9));
}

void TestSmallRecords::eraseDivesFlash_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("succeeded");

    QTest::newRow("0") << 0 << false;
    QTest::newRow("1") << 1 << true;
    QTest::newRow("2") << 2 << false;
    QTest::newRow("255") << 255 << false;
}

void TestSmallRecords::eraseDivesFlash()
{
    QFETCH(const int, status);
    QFETCH(const bool, succeeded);
    VardaData data;
    data.eraseFlashResult = succeeded ? 0 : 1;
    bool ok = !succeeded;
    VardaData::Payload payload = payloadOf("00 01");
    payload[1] = std::uint8_t(status);
    data.processEraseDivesFlash(payload, ok);
    QCOMPARE(ok, succeeded);
    QCOMPARE(int(data.eraseFlashResult), status);
    QCOMPARE(data.lastEraseFlashSuccess(), succeeded);
}

// Both fractions are exact: 0.5 and 0.25.
void TestSmallRecords::gasTables()
{
    VardaData data;
    data.processGetGases(payloadOf("00 03 1122334455667788 0000003f 0000803e"), 19);
    data.processGetGases(payloadOf("01 00 1122334455667788 0000803e 0000003f"), 0);
    data.processGetGases(payloadOf("ff 0b 1122334455667788 0000803f 00000000"), 65535);
    for (std::size_t i = 0; i < 12; ++i) {
        QCOMPARE(int(data.config.gasTable1[i].oxygen), i == 3 ? 50 : 0);
        QCOMPARE(int(data.config.gasTable1[i].helium), i == 3 ? 25 : 0);
        QCOMPARE(int(data.config.gasTable2[i].oxygen), i == 0 ? 25 : i == 11 ? 100 : 0);
        QCOMPARE(int(data.config.gasTable2[i].helium), i == 0 ? 50 : 0);
    }
}

void TestSmallRecords::gasPercent_data()
{
    QTest::addColumn<QByteArray>("fraction");
    QTest::addColumn<int>("percent");

    const auto row = [](const char *name, const char *fraction, int percent) {
        QTest::newRow(name) << QByteArray(fraction) << percent;
    };
    row("0.209 is cut, not rounded", "1904563e", 20);
    row("0.29 in single precision is 29, in double 28", "e17a943e", 29);
    row("0.999", "77be7f3f", 99);
    row("1.0", "0000803f", 100);
    row("0.0", "00000000", 0);
    row("-0.0", "00000080", 0);
    row("2.55", "33332340", 255);
    row("2.56", "0ad72340", 255);
    row("1e30", "caf24971", 255);
    row("infinity", "0000807f", 255);
    row("-0.5", "000000bf", 0);
    row("-1e30", "caf249f1", 0);
    row("-infinity", "000080ff", 0);
    row("not a number", "0000c07f", 0);
}

void TestSmallRecords::gasPercent()
{
    QFETCH(const QByteArray, fraction);
    VardaData data;
    data.config.gasTable1[5] = {7, 7};
    data.processGetGases(payloadOf("00 05 0000000000000000" + fraction + "00004040"), 19);
    QTEST(int(data.config.gasTable1[5].oxygen), "percent");
    QCOMPARE(int(data.config.gasTable1[5].helium), 255); // 3.0
    data.processGetGases(payloadOf("00 05 0000000000000000 0000003e" + fraction), 19);
    QCOMPARE(int(data.config.gasTable1[5].oxygen), 12); // 0.125
    QTEST(int(data.config.gasTable1[5].helium), "percent");
}

void TestSmallRecords::gasIndex_data()
{
    QTest::addColumn<int>("selector");
    QTest::addColumn<int>("index");

    for (const int selector : {0, 1}) {
        for (const int index : {0, 11, 12, 13, 128, 255})
            QTest::addRow("table %d, gas %d", selector + 1, index) << selector << index;
    }
}

void TestSmallRecords::gasIndex()
{
    QFETCH(const int, selector);
    QFETCH(const int, index);
    VardaData data;
    data.config.cfgH = 0x1234;
    VardaData::Payload payload = payloadOf("00 00 0000000000000000 0000003f 0000003f");
    payload[1] = std::uint8_t(selector);
    payload[2] = std::uint8_t(index);
    data.processGetGases(payload, 19);
    for (int i = 0; i < 12; ++i) {
        const auto &first = data.config.gasTable1[std::size_t(i)];
        const auto &second = data.config.gasTable2[std::size_t(i)];
        QCOMPARE(int(first.oxygen), selector == 0 && i == index ? 50 : 0);
        QCOMPARE(int(second.helium), selector == 1 && i == index ? 50 : 0);
    }
    QCOMPARE(data.config.cfgH, std::uint16_t(0x1234));
}

void TestSmallRecords::leavesNoCursor()
{
    VardaData data;
    data.processOwner(payloadOf("41"));
    QVERIFY(!data.readPayload);
    data.processSensors(payloadOf("41"));
    QVERIFY(!data.readPayload);
    data.processDiver(payloadOf("41"));
    QVERIFY(!data.readPayload);
}

QTEST_APPLESS_MAIN(TestSmallRecords)
#include "tst_smallrecords.moc"
