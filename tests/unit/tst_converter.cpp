// SPDX-License-Identifier: MIT
#include "headerfields.h"
#include "payload.h"

#include <QtTest/qtest.h>

#include <varda/tidemardiveconverter.h>
#include <varda/vardasession.h>

class TestConverter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headerFields();
    void ownFields();
    void tagBytes_data();
    void tagBytes();
    void lineFields();
    void depth_data();
    void depth();
    void value12_data();
    void value12();
    void aux1_data();
    void aux1();
    void times_data();
    void times();
    void gases_data();
    void gases();
    void roles_data();
    void roles();
    void gasIndex_data();
    void gasIndex();

private:
    Dive toDive(const TidemarDiveHeader &header, const QList<DiveSample> &samples = {}) const
    {
        return TidemarDiveConverter::toDive(header, samples, m_session);
    }

    VardaSession m_session; // knows no computer: its texts are empty
};

void TestConverter::headerFields()
{
    TidemarDiveHeader h;
    h.diveNumber = 1234;
    h.model = ComputerModel::VSKM;
    h.stamp = 0x8102030405060708;
    h.stamp2 = -9;
    h.tenths1 = 1.5;
    h.tenths2 = 2.5;
    h.sampleInterval = 20;
    h.value32a = 0x11121314;
    h.kindByte = 0x15;
    h.tidemarBit = 0;
    h.headerWord1 = 0x2122;
    h.below1020 = true;
    h.headerByte1 = 0x23;
    h.headerByte2 = 0x24;
    h.headerWord2 = 0x2526;
    h.headerWord3 = 0x2728;
    h.headerWord4 = 0x292A;
    h.value32b = 0x31323334;
    h.count1 = 3.5;
    h.count2 = 4.5;
    h.value32c = 0x35363738;
    h.tissueN2 = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    h.tissueHe = {17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32};
    h.gasSlotMask = 0x4142;
    h.headerByte3 = 0x43;
    h.gasO2 = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    h.gasHe = {13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24};
    h.reservedBlock.fill(0x44);
    h.headerByte4 = 0x45;
    h.headerByte5 = 0x46;
    h.headerByte6 = 0x47;
    h.headerWord5 = 0x5152;
    h.headerWord6 = 0x5354;
    h.headerWord7 = 0x5556;
    h.value32d = 0x61626364;
    h.headerWord8 = 0x6566;
    h.signed1 = -5.0;
    h.signed2 = -6.0;
    h.headerWord9 = 0x7172;
    h.headerWord10 = 0x7374;
    h.headerWord11 = 0x7576;
    h.headerWord12 = 0x7778;
    h.value32e = 0x81828384;
    h.value32f = 0x85868788;
    h.text1 = QStringLiteral("one");
    h.text2 = QStringLiteral("two");
    h.text3 = QStringLiteral("three");
    h.text4 = QStringLiteral("four");
    QCOMPARE(headerFieldsOf(toDive(h)), fieldList(R"(
        diveNumber=1234 model=VSKM stamp=8102030405060708 stamp2=-9 tenths1=1.5 tenths2=2.5
        sampleInterval=20 value32a=11121314 kindByte=15 tidemarBit=0 headerWord1=2122 below1020=1
        headerByte1=23 headerByte2=24 headerWord2=2526 headerWord3=2728 headerWord4=292a
        value32b=31323334 count1=3.5 count2=4.5 value32c=35363738
        tissueN2=0001,0002,0003,0004,0005,0006,0007,0008,0009,000a,000b,000c,000d,000e,000f,0010
        tissueHe=0011,0012,0013,0014,0015,0016,0017,0018,0019,001a,001b,001c,001d,001e,001f,0020
        gasSlotMask=4142 headerByte3=43 gasO2=0102030405060708090a0b0c
        gasHe=0d0e0f101112131415161718
        reservedBlock=444444444444444444444444444444444444444444444444444444444444444444444444444444444444444444444444
        headerByte4=45 headerByte5=46 headerByte6=47 headerWord5=5152 headerWord6=5354
        headerWord7=5556 value32d=61626364 headerWord8=6566 signed1=-5 signed2=-6
        headerWord9=7172 headerWord10=7374 headerWord11=7576 headerWord12=7778 value32e=81828384
        value32f=85868788 text1=one text2=two text3=three text4=four)"));
}

void TestConverter::ownFields()
{
    TidemarDiveHeader header;
    header.diveNumber = 65535;
    header.headerByte7 = 0x12;
    const Dive dive = toDive(header);
    QCOMPARE(dive.numberText, QStringLiteral("65535"));
    QCOMPARE(int(dive.modeByte), 0x12);
    QCOMPARE(dive.kind, 4);
    QCOMPARE(dive.ownerName, QString());
    QCOMPARE(dive.serialNumber, QString());
    QCOMPARE(dive.firmwareVersion, QString());
    QCOMPARE(dive.text, QString());
    QVERIFY(dive.lines.isEmpty());
    QVERIFY(dive.lines2.isEmpty());
    QVERIFY(dive.lines3.isEmpty());
    QVERIFY(dive.lines4.isEmpty());
    QVERIFY(dive.gases.isEmpty());
    QCOMPARE(int(dive.value16), 0);
    QCOMPARE(quint64(dive.value64), quint64(0));
    QCOMPARE(dive.value32, 0U);
    QCOMPARE(dive.index, -1);
    QVERIFY(dive.marks.isEmpty());
    QVERIFY(!dive.flag);
    QVERIFY(dive.marks2.isEmpty());
    QCOMPARE(int(dive.count), 1);

    QCOMPARE(toDive({}).numberText, QStringLiteral("0"));
    QCOMPARE(int(toDive({}).modeByte), 0);
}

void TestConverter::tagBytes_data()
{
    QTest::addColumn<ComputerModel::ComputerModelIn>("model");
    QTest::addColumn<QString>("bytes");

    QTest::newRow("Tidemar") << ComputerModel::Tidemar << QStringLiteral("0000000000443322");
    for (const auto model : {ComputerModel::Unknown, ComputerModel::Varda, ComputerModel::VSKM,
                             ComputerModel::ThirdParty})
        QTest::addRow("%d", model) << model << QStringLiteral("4433221100000000");
}

void TestConverter::tagBytes()
{
    QFETCH(const ComputerModel::ComputerModelIn, model);
    TidemarDiveHeader header;
    header.model = model;
    header.value32d = 0x11223344;
    QTEST(hexOf(toDive(header).tagBytes), "bytes");
}

void TestConverter::lineFields()
{
    DiveSample sample;
    sample.version = 9;
    sample.depth = 123;
    sample.flag = 1;
    sample.code = 2;
    sample.value12 = 45;
    sample.mode = 3;
    sample.modeFlag = 1;
    sample.aux1 = 11;
    sample.aux2 = 1002;
    sample.aux3 = 13;
    sample.aux4 = 14;
    sample.aux5 = 15;
    sample.aux6 = 16;
    sample.aux7 = 17;
    sample.aux8 = 1008;
    sample.aux9 = 19;
    sample.aux10 = 20;
    sample.aux11 = 21;
    sample.aux12 = true;
    const Dive dive = toDive({}, {sample});
    QCOMPARE(dive.lines.size(), 1);
    const DiveLine &line = dive.lines[0];
    QCOMPARE(line.time, 0.0);
    QVERIFY(line.depth == 12.3);
    QCOMPARE(line.value3, 0.0);
    QCOMPARE(line.value4, 0.0);
    QCOMPARE(line.aux1Value, 11.0);
    QCOMPARE(line.valueTenths, 4.5);
    QCOMPARE(int(line.valueNegated), 0);
    QCOMPARE(qint64(line.value8), qint64(0));
    QCOMPARE(qint64(line.value9), qint64(0));
    QCOMPARE(qint64(line.value10), qint64(0));
    QCOMPARE(qint64(line.value11), qint64(0));
    QCOMPARE(line.gasIndex, 0);
    QCOMPARE(int(line.mode), 3);
    QCOMPARE(int(line.flag), 1);
    QCOMPARE(int(line.aux2), 1002);
    QCOMPARE(int(line.aux3), 13);
    QCOMPARE(int(line.aux4), 14);
    QCOMPARE(int(line.aux5), 15);
    QCOMPARE(int(line.aux6), 16);
    QCOMPARE(int(line.aux7), 17);
    QCOMPARE(int(line.aux8), 1008);
    QCOMPARE(int(line.aux9), 19);
    QCOMPARE(int(line.aux10), 20);
    QCOMPARE(int(line.aux11), 21);
    QCOMPARE(int(line.value24), 0);
    QCOMPARE(int(line.flag25), 0);
}

void TestConverter::depth_data()
{
    QTest::addColumn<int>("tenths");
    QTest::addColumn<double>("metres");

    QTest::newRow("0") << 0 << 0.0;
    QTest::newRow("1") << 1 << 0.1;
    QTest::newRow("1000") << 1000 << 100.0;
    QTest::newRow("4095") << 4095 << 409.5;
}

void TestConverter::depth()
{
    QFETCH(const int, tenths);
    QFETCH(const double, metres);
    DiveSample sample;
    sample.depth = std::uint16_t(tenths) & 0xFFF;
    QVERIFY(toDive({}, {sample}).lines[0].depth == metres);
}

// As a stream brings it: two's complement of 12 bits.
void TestConverter::value12_data()
{
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<double>("tenths");
    QTest::addColumn<int>("negated");

    QTest::newRow("0x0FA") << QByteArray("fa00") << 25.0 << 0;
    QTest::newRow("0x000") << QByteArray("0000") << 0.0 << 0;
    QTest::newRow("0x001") << QByteArray("0100") << 0.1 << 0;
    QTest::newRow("0x7FF") << QByteArray("ff07") << 204.7 << 0;
    QTest::newRow("0xFFF") << QByteArray("ff0f") << 0.0 << 1;
    QTest::newRow("0xFF6") << QByteArray("f60f") << 0.0 << 10;
    QTest::newRow("0x801") << QByteArray("0108") << 0.0 << 2047;
    QTest::newRow("0x800") << QByteArray("0008") << 0.0 << 2048;
}

void TestConverter::value12()
{
    QFETCH(const QByteArray, word);
    QFETCH(const double, tenths);
    VardaData data;
    data.processSamples(payloadOf("00 0000" + word + "00"), 7);
    data.processSamples(payloadOf(""), 1);
    const DiveLine line = toDive({}, data.diveSamples).lines.value(0);
    QVERIFY(line.valueTenths == tenths);
    QTEST(int(line.valueNegated), "negated");
}

void TestConverter::aux1_data()
{
    QTest::addColumn<int>("aux1");
    QTest::addColumn<double>("value");

    QTest::newRow("0") << 0 << 0.0;
    QTest::newRow("0x7F") << 0x7F << 127.0;
    QTest::newRow("0x80") << 0x80 << -128.0;
    QTest::newRow("0xFE") << 0xFE << -2.0;
}

void TestConverter::aux1()
{
    QFETCH(const int, aux1);
    DiveSample sample;
    sample.aux1 = std::uint8_t(aux1);
    QTEST(toDive({}, {sample}).lines[0].aux1Value, "value");
}

void TestConverter::times_data()
{
    QTest::addColumn<int>("interval");
    QTest::addColumn<QList<double>>("times");

    QTest::newRow("0") << 0 << QList<double>{0, 0, 0};
    QTest::newRow("5") << 5 << QList<double>{0, 5, 10};
    QTest::newRow("255") << 255 << QList<double>{0, 255, 510};
}

void TestConverter::times()
{
    QFETCH(const int, interval);
    TidemarDiveHeader header;
    header.sampleInterval = std::uint8_t(interval);
    QList<double> times;
    const Dive dive = toDive(header, QList<DiveSample>(3));
    for (const DiveLine &line : dive.lines)
        times << line.time;
    QTEST(times, "times");
}

static QString textOf(const DiveGas &gas)
{
    return QStringLiteral("%1/%2/%3")
        .arg(double(gas.oxygen))
        .arg(double(gas.helium))
        .arg(double(gas.nitrogen));
}

void TestConverter::gases_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QStringList>("gases");

    // The slots, oxygen and helium: 21/0, 32/0, 50/50, 18/45, 4/0, 100/10, 100/0, 4/30, 255/100,
    // 32/0, 10/91, 5/95.
    QTest::newRow("none") << 0 << QStringList();
    QTest::newRow("air") << 0x001 << QStringList{QStringLiteral("0.21/0/0.79")};
    QTest::newRow("slots 1 and 3")
        << 0x00A << QStringList{QStringLiteral("0.32/0/0.68"), QStringLiteral("0.18/0.45/0.37")};
    QTest::newRow("no nitrogen") << 0x004 << QStringList{QStringLiteral("0.5/0.5/0")};
    QTest::newRow("too little oxygen")
        << 0x090 << QStringList{QStringLiteral("0.21/0/0.79"), QStringLiteral("0.21/0.3/0.49")};
    QTest::newRow("too much helium")
        << 0x420 << QStringList{QStringLiteral("1/0/0"), QStringLiteral("0.1/0/0.9")};
    QTest::newRow("oxygen") << 0x040 << QStringList{QStringLiteral("1/0/0")};
    QTest::newRow("nonsense") << 0x100 << QStringList{QStringLiteral("0.21/0/0.79")};
    QTest::newRow("the same twice")
        << 0x202 << QStringList{QStringLiteral("0.32/0/0.68"), QStringLiteral("0.32/0/0.68")};
    QTest::newRow("least oxygen, last slot") << 0x800 << QStringList{QStringLiteral("0.05/0.95/0")};
    QTest::newRow("there are 12 slots") << 0xF000 << QStringList();
}

void TestConverter::gases()
{
    QFETCH(const int, mask);
    TidemarDiveHeader header;
    header.gasSlotMask = std::uint16_t(mask);
    header.gasO2 = {21, 32, 50, 18, 4, 100, 100, 4, 255, 32, 10, 5};
    header.gasHe = {0, 0, 50, 45, 0, 10, 0, 30, 100, 0, 91, 95};
    const Dive dive = toDive(header);
    QStringList gases;
    for (const DiveGas &gas : dive.gases) {
        gases << textOf(gas);
        QCOMPARE(gas.usage, GasUsage::None);
        QVERIFY(!gas.closedCircuit);
        QVERIFY(gas.enabled);
        QCOMPARE(gas.color, 0xFFFFFFU);
        QVERIFY(gas.limit == -1.0F);
    }
    QTEST(gases, "gases");

    // Without its samples too.
    QStringList ofHeader;
    for (const DiveGas &gas : TidemarDiveConverter::gases(header))
        ofHeader << textOf(gas);
    QTEST(ofHeader, "gases");
}

void TestConverter::roles_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("mask");
    QTest::addColumn<QString>("roles");

    QTest::newRow("open circuit") << 0 << 0xFFF << QStringLiteral("0000 0000 0000");
    QTest::newRow("closed circuit") << 1 << 0xFFF << QStringLiteral("DDDS SSSS SSSS");
    QTest::newRow("255") << 255 << 0xFFF << QStringLiteral("DDDS SSSS SSSS");
    QTest::newRow("slots 0 and 5") << 1 << 0x021 << QStringLiteral("DS");
    QTest::newRow("slots 2 and 3") << 5 << 0x00C << QStringLiteral("DS");
    QTest::newRow("slots from 3 on") << 5 << 0xFF8 << QStringLiteral("SSSS SSSSS");
}

void TestConverter::roles()
{
    QFETCH(const int, kind);
    QFETCH(const int, mask);
    QFETCH(const QString, roles);
    TidemarDiveHeader header;
    header.kindByte = std::uint8_t(kind);
    header.gasSlotMask = std::uint16_t(mask);
    const Dive dive = toDive(header);
    QString found;
    for (const DiveGas &gas : dive.gases) {
        found += QLatin1Char(gas.usage == GasUsage::None        ? '0'
                             : gas.usage == GasUsage::Diluent   ? 'D'
                             : gas.usage == GasUsage::Sidemount ? 'S'
                                                                : '?');
        QCOMPARE(gas.closedCircuit, gas.usage == GasUsage::Diluent);
    }
    QCOMPARE(found, QString(roles).remove(QLatin1Char(' ')));
}

void TestConverter::gasIndex_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QList<int>>("byCode");

    QTest::newRow("none") << 0x000 << QList<int>{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    QTest::newRow("slots 1 and 3")
        << 0x00A << QList<int>{0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    QTest::newRow("slots 0, 2, 10 and 11")
        << 0xC05 << QList<int>{0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 2, 3, 0, 0, 0, 0};
    QTest::newRow("all") << 0xFFFF << QList<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 0, 0, 0, 0};
}

void TestConverter::gasIndex()
{
    QFETCH(const int, mask);
    TidemarDiveHeader header;
    header.gasSlotMask = std::uint16_t(mask);
    QList<DiveSample> samples(16);
    for (int code = 0; code < 16; ++code)
        samples[code].code = std::uint8_t(code) & 0xF;
    QList<int> byCode;
    const Dive dive = toDive(header, samples);
    for (const DiveLine &line : dive.lines)
        byCode << line.gasIndex;
    QTEST(byCode, "byCode");
}

QTEST_GUILESS_MAIN(TestConverter)
#include "tst_converter.moc"
