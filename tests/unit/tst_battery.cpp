// SPDX-License-Identifier: MIT
#include "payload.h"

#include <QtTest/qtest.h>

class TestBattery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fields_data();
    void fields();
    void length_data();
    void length();
    void emptySlots();
    void appends();
};

static QString textOf(const BatteryInfoRecord &r)
{
    return QStringLiteral("kind %1: %2 %3 %4 %5; %6 %7 %8 %9 ")
               .arg(r.kind)
               .arg(r.value20)
               .arg(r.code2)
               .arg(r.flag28)
               .arg(r.flag29)
               .arg(r.value12)
               .arg(r.code4)
               .arg(r.flag16)
               .arg(r.flag17)
           + QStringLiteral("%1 %2 %3; %4: %5 %6 %7 %8 %9")
                 .arg(r.flag18)
                 .arg(r.offsetValue)
                 .arg(r.scaledValue)
                 .arg(r.hasExtra)
                 .arg(r.extra15)
                 .arg(r.extra12)
                 .arg(r.extraCode2)
                 .arg(r.extraFlag29)
                 .arg(r.extraFlag30);
}

/*
 * The text holds the fields in their order:
 *     kind k: value20 code2 flag28 flag29; value12 code4 flag16 flag17 flag18 offsetValue
 *     scaledValue; hasExtra: extra15 extra12 extraCode2 extraFlag29 extraFlag30
 */
void TestBattery::fields_data()
{
    QTest::addColumn<QByteArray>("words");
    QTest::addColumn<QString>("record");

    const auto row = [](const char *name, const char *words, const char *record) {
        QTest::newRow(name) << QByteArray(words) << QString::fromLatin1(record);
    };
    // Word A without bit 31.
    row("zeros", "00000000 00000000", "kind 1: 0 0 0 0; 0 0 0 0 0 0 0; 0: 0 0 0 0 0");
    row("value20", "ffff0f00 00000000", "kind 1: 1048575 0 0 0; 0 0 0 0 0 0 0; 0: 0 0 0 0 0");
    row("value20, bytes", "34120500 00000000", "kind 1: 332340 0 0 0; 0 0 0 0 0 0 0; 0: 0 0 0 0 0");
    row("code2", "00003000 00000000", "kind 1: 0 3 0 0; 0 0 0 0 0 0 0; 0: 0 0 0 0 0");
    row("code2, high bit", "00002000 00000000", "kind 1: 0 2 0 0; 0 0 0 0 0 0 0; 0: 0 0 0 0 0");
    row("bits 22 to 27", "0000c00f 00000000", "kind 1: 0 0 0 0; 0 0 0 0 0 0 0; 0: 0 0 0 0 0");
    row("flag28", "00000010 00000000", "kind 1: 0 0 1 0; 0 0 0 0 0 0 0; 0: 0 0 0 0 0");
    row("flag29", "00000020 00000000", "kind 1: 0 0 0 1; 0 0 0 0 0 0 0; 0: 0 0 0 0 0");
    row("bit 30", "00000040 00000000", "kind 1: 0 0 0 0; 0 0 0 0 0 0 0; 0: 0 0 0 0 0");
    row("all of kind 1", "ffffff7f 00000000", "kind 1: 1048575 3 1 1; 0 0 0 0 0 0 0; 0: 0 0 0 0 0");
    // Word A with bit 31.
    row("bit 31", "00000080 00000000", "kind 0: 0 0 0 0; 0 0 0 0 0 -10 0; 0: 0 0 0 0 0");
    row("value12", "ff0f0080 00000000", "kind 0: 0 0 0 0; 4095 0 0 0 0 -10 0; 0: 0 0 0 0 0");
    row("code4", "00f00080 00000000", "kind 0: 0 0 0 0; 0 15 0 0 0 -10 0; 0: 0 0 0 0 0");
    row("flag16", "00000180 00000000", "kind 0: 0 0 0 0; 0 0 1 0 0 -10 0; 0: 0 0 0 0 0");
    row("flag17", "00000280 00000000", "kind 0: 0 0 0 0; 0 0 0 1 0 -10 0; 0: 0 0 0 0 0");
    row("flag18", "00000480 00000000", "kind 0: 0 0 0 0; 0 0 0 0 1 -10 0; 0: 0 0 0 0 0");
    row("offsetValue 0", "00005080 00000000", "kind 0: 0 0 0 0; 0 0 0 0 0 0 0; 0: 0 0 0 0 0");
    row("offsetValue 53", "0000f881 00000000", "kind 0: 0 0 0 0; 0 0 0 0 0 53 0; 0: 0 0 0 0 0");
    row("scaledValue 200", "00000082 00000000", "kind 0: 0 0 0 0; 0 0 0 0 0 -10 200; 0: 0 0 0 0 0");
    row("scaledValue 12600", "000000fe 00000000",
        "kind 0: 0 0 0 0; 0 0 0 0 0 -10 12600; 0: 0 0 0 0 0");
    row("all but one of kind 0", "feffffff 00000000",
        "kind 0: 0 0 0 0; 4094 15 1 1 1 53 12600; 0: 0 0 0 0 0");
    // Word B counts with bit 31 only.
    row("B without bit 31", "00000000 ffffff7f", "kind 1: 0 0 0 0; 0 0 0 0 0 0 0; 0: 0 0 0 0 0");
    row("hasExtra", "00000000 00000080", "kind 1: 0 0 0 0; 0 0 0 0 0 0 0; 1: 0 0 0 0 0");
    row("extra15", "00000000 ff7f0080", "kind 1: 0 0 0 0; 0 0 0 0 0 0 0; 1: 32767 0 0 0 0");
    row("extra12", "00000000 0080ff87", "kind 1: 0 0 0 0; 0 0 0 0 0 0 0; 1: 0 4095 0 0 0");
    row("extraCode2", "00000000 00000098", "kind 1: 0 0 0 0; 0 0 0 0 0 0 0; 1: 0 0 3 0 0");
    row("extraFlag29", "00000000 000000a0", "kind 1: 0 0 0 0; 0 0 0 0 0 0 0; 1: 0 0 0 1 0");
    row("extraFlag30", "00000000 000000c0", "kind 1: 0 0 0 0; 0 0 0 0 0 0 0; 1: 0 0 0 0 1");
    row("all of B, kind 0", "00000080 ffffffff",
        "kind 0: 0 0 0 0; 0 0 0 0 0 -10 0; 1: 32767 4095 3 1 1");
    row("plausible", "4123a58c d2849182",
        "kind 0: 0 0 0 0; 833 2 1 0 1 10 1200; 1: 1234 1315 0 0 0");
}

void TestBattery::fields()
{
    QFETCH(const QByteArray, words);
    VardaData data;
    data.processBatteryInformation(payloadOf(words), 9);
    QCOMPARE(data.batteryInfo.size(), 1);
    QTEST(textOf(data.batteryInfo.constFirst()), "record");
}

void TestBattery::length_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("records");

    const auto row = [](int length, int records) {
        QTest::addRow("%d", length) << length << records;
    };
    row(0, 0);
    row(1, 0);
    row(8, 0);
    row(9, 1);
    row(16, 1);
    row(17, 2);
    row(24, 2);
    row(25, 3);
    row(504, 62);
    row(505, 63);
    row(512, 63);
    row(513, 63);
    row(600, 63);
    row(65535, 63);
}

void TestBattery::length()
{
    QFETCH(const int, length);
    VardaData data;
    data.processBatteryInformation(patternPayload(), std::uint16_t(length));
    QTEST(int(data.batteryInfo.size()), "records");
}

void TestBattery::emptySlots()
{
    VardaData data;
    data.processBatteryInformation(payloadOf("ffffffff 00000080 01000000 00000000"
                                             "ffffffff ffffffff 02000000 00000000"),
                                   33);
    QCOMPARE(data.batteryInfo.size(), 2);
    QCOMPARE(data.batteryInfo[0].value20, 1U);
    QCOMPARE(data.batteryInfo[1].value20, 2U);
}

void TestBattery::appends()
{
    VardaData data;
    data.processBatteryInformation(payloadOf("01000000 00000000 02000000 00000000"), 17);
    data.processBatteryInformation(payloadOf("03000000 00000000"), 9);
    QCOMPARE(data.batteryInfo.size(), 3);
    QCOMPARE(data.batteryInfo[0].value20, 1U);
    QCOMPARE(data.batteryInfo[1].value20, 2U);
    QCOMPARE(data.batteryInfo[2].value20, 3U);
}

QTEST_APPLESS_MAIN(TestBattery)
#include "tst_battery.moc"
