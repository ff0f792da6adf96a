// SPDX-License-Identifier: MIT
#include "payload.h"

#include <QtCore/qlocale.h>
#include <QtTest/qtest.h>

#include <limits>

static constexpr qint32 kMin = std::numeric_limits<qint32>::min();
static constexpr qint32 kMax = std::numeric_limits<qint32>::max();

class TestSyslog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyText_data();
    void everyText();
    void arguments_data();
    void arguments();
    void timestamp_data();
    void timestamp();
    void unknownType_data();
    void unknownType();
    void independentOfLocale();
    void textLog();
    void textWithoutEnd();
    void binaryLog();
};

static QString message(int type, qint32 arg1, qint32 arg2)
{
    return convertSyslogRecord({1'700'000'000, std::uint8_t(type), arg1, arg2}, true);
}

// The number is the type; the arguments are 135 and 1013, a plain pair for any text.
void TestSyslog::everyText_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");

    static constexpr const char *kTexts[] = {
        "Start battery with 135mV",
        "Check battery: Current=135, Last=1013",
        "RTC: Failed to read register",
        "RTC: Time invalid",
        "RTC: Set to default",
        "Offgasing 135% reduction during 16h 53mn",
        "No offgasing 135% reduction",
        "Offgasing with no reduction during 135h 1013mn",
        "No offgasing with no reduction",
        "Lost time",
        "Computer not restored",
        "No surface interval",
        "Surface date time: 1972-01-08 09:08:23 ",
        "Load inert from: 1972-01-08 09:08:23 ",
        "Load inert to: 1972-01-08 09:08:23 ",
        "Diver reset (135mb)",
        "Wet startup 135mb (M2mb)",
        "Dry startup 135mb (1013mb)",
        "AI transmitter 135 timed out",
        "Automatic change to bottom setpoint at 13.5m",
        "Automatic change to deco setpoint at 13.5m",
        "Automatic change to surface setpoint at 13.5m",
        "Cancel deco setpoint and change to bottom setpoint at 13.5m",
        "Emergency set time",
        "Diver invalidated by tick load",
        "pamb 135 to 1013",
        "gas 135/1013",
        "Setpoint 135",
        "Pressure 135",
        "-------------------- Power down --------------------",
        "Begin dive",
        "Begin logging",
        "End logging",
        "End dive",
        "Oversize packet",
        "Writing bad diver",
        "Bad data in diver",
        "Erase block 0x3f50087",
        "Startup: Tamb fail",
        "Startup: Pamb fail",
        "Stop mode timeout, power off",
        "Manual end dive",
        "Computer restored",
        "Diver restored",
        "Diver not restored",
        "RTC restored",
        "RTC not restored",
        "Startup at 135mb",
        "Dive with yoyo since: 02:15",
        "Number of previous dives since 24H: 135",
        "Invalid depth calculated with pamb 135",
        "End of interval yoyo 20H",
        "End of interval CNC 12H",
        "End of interval Gauge 12H",
        "Computer end during dive",
        "---------- to bootloader ----------",
        "Begin consecutive dive at: 1972-01-08 09:08:23 ",
        "End dive at: 1972-01-08 09:08:23 ",
        "Dive with yoyo, start 20H period",
        "Gauge dive, start 12H period",
        "Dive with CNC, start 12H period",
        "End logging at: 1972-01-08 09:08:23 ",
        "PACKET OVERRUN",
        "CORRUPT PACKET",
        "READ TIMEOUT",
        "MONITOR TIMEOUT",
        "Read computer: bad data",
        "Read computer: versions 135 current 1013",
        "read computer: header 0 7 footer 3 5",
        "First dive: 135 Count: 1013",
        "RTC power on reset flag: 135",
        "RTC backup config written to eeprom: 135 -> 1013",
        "RTC backup config eeprom write failed: 135 -> 1013",
    };
    static_assert(std::size(kTexts) == 73);
    int type = 0;
    for (const char *text : kTexts) {
        QTest::addRow("%d", type) << type << QString::fromLatin1(text);
        ++type;
    }
}

void TestSyslog::everyText()
{
    QFETCH(const int, type);
    QTEST(message(type, 135, 1013), "text");
}

void TestSyslog::arguments_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<qint32>("arg1");
    QTest::addColumn<qint32>("arg2");
    QTest::addColumn<QString>("text");

    const auto row = [](int type, qint32 arg1, qint32 arg2, const char *text) {
        QTest::addRow("%d: %d, %d", type, arg1, arg2)
            << type << arg1 << arg2 << QString::fromLatin1(text);
    };
    // Decimal numbers have a sign and no padding.
    row(0, 0, 0, "Start battery with 0mV");
    row(0, -1, 0, "Start battery with -1mV");
    row(0, kMin, 0, "Start battery with -2147483648mV");
    row(1, kMin, kMax, "Check battery: Current=-2147483648, Last=2147483647");
    row(16, 950, 1013, "Wet startup 950mb (M2mb)");
    row(26, -5, -6, "gas -5/-6");
    // Hours and minutes, cut toward zero.
    row(5, 40, 135, "Offgasing 40% reduction during 2h 15mn");
    row(5, 40, 59, "Offgasing 40% reduction during 0h 59mn");
    row(5, 40, 60, "Offgasing 40% reduction during 1h 0mn");
    row(5, 40, -59, "Offgasing 40% reduction during 0h -59mn");
    row(5, 40, -135, "Offgasing 40% reduction during -2h -15mn");
    row(5, -40, kMin, "Offgasing -40% reduction during -35791394h -8mn");
    row(5, kMax, kMax, "Offgasing 2147483647% reduction during 35791394h 7mn");
    row(7, 135, -8, "Offgasing with no reduction during 135h -8mn");
    // Tenths, as short as they get.
    row(19, 13, 0, "Automatic change to bottom setpoint at 1.3m");
    row(19, 30, 0, "Automatic change to bottom setpoint at 3m");
    row(20, 12, 0, "Automatic change to deco setpoint at 1.2m");
    row(20, 0, 0, "Automatic change to deco setpoint at 0m");
    row(21, -1, 0, "Automatic change to surface setpoint at -0.1m");
    row(21, -15, 0, "Automatic change to surface setpoint at -1.5m");
    row(22, 123456, 0, "Cancel deco setpoint and change to bottom setpoint at 12345.6m");
    row(22, 1234567, 0, "Cancel deco setpoint and change to bottom setpoint at 123457m");
    row(22, 9999990, 0, "Cancel deco setpoint and change to bottom setpoint at 999999m");
    row(22, 10000000, 0, "Cancel deco setpoint and change to bottom setpoint at 1e+06m");
    row(22, kMax, 0, "Cancel deco setpoint and change to bottom setpoint at 2.14748e+08m");
    row(22, kMin, 0, "Cancel deco setpoint and change to bottom setpoint at -2.14748e+08m");
    // Seconds of two halves, unsigned; what is above 16 bits does not count.
    row(12, 0, 1, "Surface date time: 1970-00-01 18:12:16 ");
    row(12, 0, 0, "Surface date time: 1970-00-01 00:00:00 ");
    row(13, 0xFFFF, 1, "Load inert from: 1970-00-02 12:24:31 ");
    row(14, 0x5678, 0x1234, "Load inert to: 1979-08-05 22:51:36 ");
    row(56, -1, -1, "Begin consecutive dive at: 2106-01-07 06:28:15 ");
    row(57, 61696, 25939, "End dive at: 2023-10-14 22:13:20 ");
    row(61, 0x7FFF0000, 0x7FFF0001, "End logging at: 1970-00-01 18:12:16 ");
    // A time of day; hours from 3600 on.
    row(48, 65, 0, "Dive with yoyo since: 01:05");
    row(48, 0, 0, "Dive with yoyo since: 00:00");
    row(48, 3599, 0, "Dive with yoyo since: 59:59");
    row(48, 3600, 0, "Dive with yoyo since: 01:00:00");
    row(48, 86399, 0, "Dive with yoyo since: 23:59:59");
    row(48, 86400, 0, "Dive with yoyo since: 00:00:00");
    row(48, 90061, 0, "Dive with yoyo since: 01:01:01");
    row(48, kMax, 0, "Dive with yoyo since: 03:14:07");
    row(48, -1, 0, "Dive with yoyo since: 59:59");
    row(48, -3600, 0, "Dive with yoyo since: 00:00");
    row(48, -86400, 0, "Dive with yoyo since: 00:00");
    row(48, kMin, 0, "Dive with yoyo since: 45:52");
    // An address of two halves.
    row(37, 0x1000, 2, "Erase block 0x21000");
    row(37, 0, 0, "Erase block 0x0");
    row(37, 0xABCD, 0xEF, "Erase block 0xefabcd");
    row(37, -1, 0, "Erase block 0xffffffff");
    row(37, 0, -1, "Erase block 0xffff0000");
    row(37, 1, 0x8000, "Erase block 0x80000001");
    row(37, 1, 0x10002, "Erase block 0x20001");
    row(37, kMin, kMin, "Erase block 0x80000000");
    // A byte and four bits.
    row(68, 0x1234, 0x56FF, "read computer: header 18 4 footer 86 15");
    row(68, -1, -256, "read computer: header -1 15 footer -1 0");
    row(68, kMin, kMax, "read computer: header -8388608 0 footer 8388607 15");
}

void TestSyslog::arguments()
{
    QFETCH(const int, type);
    QFETCH(const qint32, arg1);
    QFETCH(const qint32, arg2);
    QTEST(message(type, arg1, arg2), "text");
}

void TestSyslog::timestamp_data()
{
    QTest::addColumn<qint64>("time");
    QTest::addColumn<QString>("text");

    const auto row = [](qint64 time, const char *text) {
        QTest::addRow("%lld", time) << time << QString::fromLatin1(text);
    };
    row(0, "1970-00-01 00:00:00 ");
    row(82800, "1970-00-01 23:00:00 ");
    row(-1, "1969-11-31 23:59:59 ");
    row(1709622489, "2024-02-05 07:08:09 ");
    row(1709164800, "2024-01-29 00:00:00 ");
    row(946684799, "1999-11-31 23:59:59 ");
    row(4294967296, "2106-01-07 06:28:16 ");
    row(253402300800, "10000-00-01 00:00:00 ");
    row(-30614972277, " 999-10-07 01:02:03 ");
    row(-62135596800, "   1-00-01 00:00:00 ");
    row(-62167219200, "   0-00-01 00:00:00 ");
    row(-62198755200, "  -1-00-01 00:00:00 ");
    // The years that a calendar field of 32 bits holds, and what lies beyond.
    row(67768036191676799, "2147485547-11-31 23:59:59 ");
    row(-67768040609740800, "-2147481748-00-01 00:00:00 ");
    row(67768036191676800, "1900-00-00 00:00:00 ");
    row(-67768040609740801, "1900-00-00 00:00:00 ");
    row(std::numeric_limits<qint64>::max(), "1900-00-00 00:00:00 ");
    row(std::numeric_limits<qint64>::min(), "1900-00-00 00:00:00 ");
}

void TestSyslog::timestamp()
{
    QFETCH(const qint64, time);
    QFETCH(const QString, text);
    QCOMPARE(convertSyslogRecord({time, 30, 0, 0}, false), text + QStringLiteral("Begin dive"));
    QCOMPARE(convertSyslogRecord({time, 30, 0, 0}, true), QStringLiteral("Begin dive"));
}

void TestSyslog::unknownType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");

    QTest::newRow("73") << 73 << QStringLiteral("Unknow type 73");
    QTest::newRow("100") << 100 << QStringLiteral("Unknow type 100");
    QTest::newRow("255") << 255 << QStringLiteral("Unknow type 255");
}

void TestSyslog::unknownType()
{
    QFETCH(const int, type);
    QFETCH(const QString, text);
    QCOMPARE(message(type, 1, 2), text);
    QCOMPARE(convertSyslogRecord({0, std::uint8_t(type), 1, 2}, false),
             QStringLiteral("1970-00-01 00:00:00 ") + text);
}

void TestSyslog::independentOfLocale()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); // 1,3 and 1.234.567
    const QString setpoint = message(19, 13, 0);
    const QString battery = message(1, 1234567, 7654321);
    const QString dive = convertSyslogRecord({253402300800, 30, 0, 0}, false);
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt)); // digits of its own
    const QString offgasing = message(5, 40, 135);
    const QString yoyo = message(48, 3661, 0);
    QLocale::setDefault(before);

    QCOMPARE(setpoint, QStringLiteral("Automatic change to bottom setpoint at 1.3m"));
    QCOMPARE(battery, QStringLiteral("Check battery: Current=1234567, Last=7654321"));
    QCOMPARE(dive, QStringLiteral("10000-00-01 00:00:00 Begin dive"));
    QCOMPARE(offgasing, QStringLiteral("Offgasing 40% reduction during 2h 15mn"));
    QCOMPARE(yoyo, QStringLiteral("Dive with yoyo since: 01:01:01"));
}

void TestSyslog::textLog()
{
    VardaData data;
    data.processSyslog(payloadOf("61"));
    data.processSyslog(payloadOf("62 00 7a7a"));
    data.processSyslog(payloadOf("63"));
    QCOMPARE(data.syslog, QStringLiteral("a\nb\nc\n"));
    data.processSyslog(payloadOf(""));
    data.processSyslog(payloadOf("32c2b043"));
    QCOMPARE(data.syslog, QStringLiteral("a\nb\nc\n\n2\u00B0C\n"));
    QVERIFY(data.syslogBin.isEmpty());
}

void TestSyslog::textWithoutEnd()
{
    VardaData data;
    data.processSyslog(payloadOf(QByteArray("78").repeated(511)));
    QCOMPARE(data.syslog, QString(511, QLatin1Char('x')) + QLatin1Char('\n'));
}

void TestSyslog::binaryLog()
{
    VardaData data;
    data.processSyslogBin(payloadOf("0807060504030201 49 04030201 feffffff ffffff"));
    data.processSyslogBin(payloadOf("ffffffffffffffff 05 28000000 87000000"));
    QCOMPARE(data.syslogBin.size(), 2);
    QCOMPARE(qint64(data.syslogBin[0].time), qint64(0x0102030405060708));
    QCOMPARE(int(data.syslogBin[0].type), 73);
    QCOMPARE(data.syslogBin[0].arg1, 0x01020304);
    QCOMPARE(data.syslogBin[0].arg2, -2);
    QCOMPARE(convertSyslogRecord(data.syslogBin[1], false),
             QStringLiteral("1969-11-31 23:59:59 Offgasing 40% reduction during 2h 15mn"));
    QVERIFY(data.syslog.isEmpty());
}

QTEST_APPLESS_MAIN(TestSyslog)
#include "tst_syslog.moc"
