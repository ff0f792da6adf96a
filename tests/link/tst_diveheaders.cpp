// SPDX-License-Identifier: MIT
#include <varda/tidemardiveconverter.h>

#include "headerbytes.h"
#include "jobtest.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kVarda = R"("Identification":["620204010b"],)";
constexpr auto kTidemar = R"("Identification":["6202040115"],)";
constexpr auto kVskm = R"("Identification":["620204011f"],)";

const QStringList kIdentified{u"endCommand Identification"_s};
const QStringList kLogbookRead{u"endCommand Logbook"_s};
const QStringList kSamplesRead{u"endCommand Fullsamples"_s};

} // namespace

/** Logbooks as the computers send them, and the generic dives that become of them. */
class TestDiveHeaders : public JobTest
{
    Q_OBJECT

private Q_SLOTS:
    void logbook();
    void logbookInOneStream_data();
    void logbookInOneStream();
    void damagedLogbook();
    void header_data();
    void header();
    void genericDive();
    void genericDiveOfTidemar();

private:
    [[nodiscard]] QStringList readLogbook(const QList<uint16_t> &known = {})
    {
        return told([&] { m_session->startGetLogbook(known); }, u"endCommand Logbook"_s);
    }
    [[nodiscard]] QStringList readSamples(uint16_t number = 1)
    {
        return told([&] { m_session->startGetDiveSamples(number); }, u"endCommand Fullsamples"_s);
    }
    [[nodiscard]] QStringList identify()
    {
        return told(TidemarCommand::Identification, u"endCommand Identification"_s);
    }
    [[nodiscard]] QList<int> numbers() const
    {
        QList<int> numbers;
        for (const TidemarDiveHeader &each : m_session->diveHeaders())
            numbers.append(each.diveNumber);
        return numbers;
    }
};

void TestDiveHeaders::logbook()
{
    CONNECT(connectToAnswers(
        kVarda
        + answer("Logbook", {vardaHeader("0300"), vardaHeader("ffff"), vardaHeader("0300"), ""})));
    QCOMPARE(identify(), kIdentified);
    QCOMPARE(readLogbook(), kLogbookRead);
    QCOMPARE(numbers(), QList<int>({3, 65535, 3}));
    QCOMPARE(m_session->diveHeader(65535), &m_session->diveHeaders()[1]);
    QCOMPARE(m_session->diveHeader(3), &m_session->diveHeaders()[0]);
    QCOMPARE(m_session->diveHeader(0), nullptr);

    // However it is read again, the headers of before are gone at once.
    m_session->startGetLogbook({3});
    QVERIFY(m_session->diveHeaders().isEmpty());
    QCOMPARE(m_session->diveHeader(3), nullptr);
    QVERIFY(m_log.await(kLogbookRead.first()));
    QCOMPARE(numbers(), QList<int>({3, 65535, 3}));
    m_session->startCommand(TidemarCommand::Logbook);
    QVERIFY(m_session->diveHeaders().isEmpty());
    QVERIFY(m_log.await(kLogbookRead.first(), 2));
    QCOMPARE(numbers(), QList<int>({3, 65535, 3}));
    m_session->qmlStartGetLogbook({});
    QVERIFY(m_session->diveHeaders().isEmpty());
    QVERIFY(m_log.await(kLogbookRead.first(), 3));
    QCOMPARE(numbers(), QList<int>({3, 65535, 3}));
}

void TestDiveHeaders::logbookInOneStream_data()
{
    QTest::addColumn<QByteArray>("link");
    QTest::addColumn<BleMode>("mode");
    const auto merged = R"("merge":true,"split":20,)"_ba;
    QTest::newRow("Gatt") << merged << BleMode::Gatt;
    QTest::newRow("Sps") << merged + R"("credits":"counted",)" << BleMode::Sps;
}

void TestDiveHeaders::logbookInOneStream()
{
    QFETCH(const QByteArray, link);
    QFETCH(const BleMode, mode);
    CONNECT(connectTo(link + R"("responses":{)" + kVarda
                          + answer("Logbook", {vardaHeader("0100"), vardaHeader("0200"), ""}) + "}",
                      mode));
    QCOMPARE(identify(), kIdentified);
    QCOMPARE(readLogbook(), kLogbookRead);
    QCOMPARE(numbers(), QList<int>({1, 2}));
    QCOMPARE(m_session->diveHeaders()[1].headerWord14, 270);
}

void TestDiveHeaders::damagedLogbook()
{
    CONNECT(connectTo(
        R"("faults":[{"step":"answer","command":"Logbook","nth":1,"frame":2,"kind":"wrongCrc"}],
           "responses":{)"_ba
        + answer("Logbook", {vardaHeader("0100"), vardaHeader("0200"), ""}) + "}"));
    m_session->startGetLogbook({});
    QVERIFY(m_log.await(u"exchangeError Logbook InvalidCrc"_s));
    QCOMPARE(m_log.take(), QStringList(u"exchangeError Logbook InvalidCrc"_s));
    QCOMPARE(numbers(), QList<int>({1}));
    QCOMPARE(m_session->diveHeader(2), nullptr);
    QCOMPARE(readLogbook(), kLogbookRead);
    QCOMPARE(numbers(), QList<int>({1, 2}));
    QCOMPARE(m_session->diveHeader(2), &m_session->diveHeaders()[1]);
}

void TestDiveHeaders::header_data()
{
    QTest::addColumn<QByteArray>("identification");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<ComputerModel::ComputerModelIn>("model");
    QTest::addColumn<int>("kindByte");
    QTest::addColumn<int>("gasSlotMask");
    QTest::addColumn<int>("lastSlot");
    QTest::addColumn<int>("tidemarBit");
    QTest::addColumn<int>("headerWord8");
    QTest::addColumn<int>("sampleInterval");
    QTest::addColumn<uint>("value32a");
    QTest::addColumn<int>("headerByte7");
    QTest::addColumn<int>("headerWord13");
    QTest::addColumn<int>("headerWord14");
    QTest::newRow("Varda, 10") << QByteArray(kVarda) << vardaHeader() << ComputerModel::Varda << 3
                               << 0x0009 << 0 << 1 << 0x108 << 10 << 7200U << 2 << 0x10D << 0x10E;
    QTest::newRow("Tidemar, 5") << QByteArray(kTidemar) << tidemarHeader() << ComputerModel::Tidemar
                                << 5 << 0x0F01 << 12 << 0 << 0 << 10 << 7200U << 0 << 1 << 900;
    QTest::newRow("VSKM, none") << QByteArray(kVskm) << vskmHeader() << ComputerModel::VSKM << 5
                                << 0x0081 << 8 << 1 << 0 << 5 << 0x11111111U << 0 << 1 << 900;
}

// The fields that the layouts place differently, and those before and behind them.
void TestDiveHeaders::header()
{
    QFETCH(const QByteArray, identification);
    QFETCH(const QByteArray, bytes);
    QFETCH(const int, lastSlot);
    CONNECT(connectToAnswers(identification + answer("Logbook", {bytes, ""})));
    QCOMPARE(identify(), kIdentified);
    QCOMPARE(readLogbook(), kLogbookRead);
    QCOMPARE(m_session->diveHeaders().size(), 1);
    const TidemarDiveHeader header = m_session->diveHeaders().first();
    QCOMPARE(header.diveNumber, 0x107);
    QTEST(header.model, "model");
    QTEST(int(header.kindByte), "kindByte");
    QCOMPARE(header.headerByte5, 9);
    QCOMPARE(header.headerByte1, 40);
    QCOMPARE(header.headerByte2, 85);
    QVERIFY(header.below1020);
    QCOMPARE(header.headerWord1, 1012);
    QCOMPARE(header.tissueN2[0], 0x101);
    QCOMPARE(header.tissueHe[0], 0x201);
    QCOMPARE(header.tissueN2[14], 1000);
    QCOMPARE(header.tissueHe[14], 0);
    QCOMPARE(header.tissueN2[15], 0x10F);
    QCOMPARE(header.tissueHe[15], 0x20F);
    QTEST(int(header.gasSlotMask), "gasSlotMask");
    QCOMPARE(header.gasO2[0], 21);
    QCOMPARE(header.gasHe[0], 40);
    QCOMPARE(header.gasO2[3], 100);
    if (lastSlot > 0) {
        QCOMPARE(header.gasO2[std::size_t(lastSlot - 1)], 33);
        QCOMPARE(header.gasHe[std::size_t(lastSlot - 1)], 9);
    }
    QCOMPARE(header.headerWord5, 70);
    QCOMPARE(header.headerWord6, 130);
    QCOMPARE(header.headerWord7, 0x105);
    QTEST(header.value32a, "value32a");
    QCOMPARE(header.value32d, 0x11223344U);
    QTEST(int(header.headerWord8), "headerWord8");
    QCOMPARE(header.stamp, quint64(1715934600));
    QCOMPARE(header.headerWord3, 0x103);
    QCOMPARE(header.tenths1, 30.9);
    QCOMPARE(header.tenths2, 15.5);
    QCOMPARE(header.signed1, -4.0);
    QCOMPARE(header.signed2, 25.0);
    QCOMPARE(header.value32b, 10000U);
    QCOMPARE(header.headerWord2, 0x102);
    QCOMPARE(header.count1, 3.0);
    QCOMPARE(header.count2, 100e6);
    QCOMPARE(header.headerWord4, 0x104);
    QCOMPARE(header.headerWord11, 220);
    QCOMPARE(header.headerWord12, 60);
    QCOMPARE(header.stamp2, qint64(-2));
    QCOMPARE(header.value32c, 42U);
    QCOMPARE(header.value32e, 0x04030201U);
    QCOMPARE(header.value32f, 0x08070605U);
    QTEST(int(header.sampleInterval), "sampleInterval");
    QTEST(int(header.headerByte7), "headerByte7");
    QTEST(int(header.headerWord13), "headerWord13");
    QTEST(int(header.headerWord14), "headerWord14");
    QTEST(int(header.tidemarBit), "tidemarBit");
}

void TestDiveHeaders::genericDive()
{
    CONNECT(connectTo(
        R"("model":"varda","firmware":"1.4.2.b","owner":"Zoë",
           "serial":"00420017-3138510D-37373934","responses":{)"_ba
        + answer("Logbook", {vardaHeader(), ""}) + ","
        + answer("Fullsamples", {"8003 0c e803 fa00 fe 3412 56 78 bc9a de f0 00 ffff f60f 19 0000 "
                                 "00 00 0000 00 00 13 e903 0008 7f 0000 00 00 0000 00 01",
                                 ""})
        + "}"));
    QCOMPARE(identify(), kIdentified);
    QCOMPARE(told(TidemarCommand::Serialnumber, u"endCommand Serialnumber"_s).size(), 1);
    QCOMPARE(told(TidemarCommand::Computer_new, u"endCommand Computer_new"_s).size(), 1);
    QCOMPARE(readLogbook(), kLogbookRead);
    QCOMPARE(readSamples(0x107), kSamplesRead);

    const Dive dive = TidemarDiveConverter::toDive(*m_session->diveHeader(0x107),
                                                   m_session->diveSamples(), *m_session);
    QCOMPARE(dive.diveNumber, 0x107);
    QCOMPARE(dive.model, ComputerModel::Varda);
    QCOMPARE(dive.value32a, 7200U);
    QCOMPARE(dive.tenths1, 30.9);
    QCOMPARE(dive.stamp2, qint64(-2));
    QCOMPARE(dive.numberText, u"263"_s);
    QCOMPARE(dive.ownerName, u"Zoë"_s);
    QCOMPARE(dive.serialNumber, u"00420017-3138510D-37373934"_s);
    QCOMPARE(dive.firmwareVersion, u"1.4.2.b"_s);
    QCOMPARE(dive.kind, 4);
    QCOMPARE(dive.modeByte, 2);
    QCOMPARE(dive.count, 1);
    QCOMPARE(dive.index, -1);
    QCOMPARE(dive.tagBytes, (std::array<std::uint8_t, 8>{0x44, 0x33, 0x22, 0x11, 0, 0, 0, 0}));

    QCOMPARE(dive.gases.size(), 2);
    QCOMPARE(dive.gases[0].oxygen, 0.21F);
    QCOMPARE(dive.gases[0].helium, 0.4F);
    QCOMPARE(dive.gases[0].nitrogen, 0.39F);
    QCOMPARE(dive.gases[0].usage, GasUsage::Diluent);
    QVERIFY(dive.gases[0].closedCircuit);
    QCOMPARE(dive.gases[1].oxygen, 1.0F);
    QCOMPARE(dive.gases[1].helium, 0.0F);
    QCOMPARE(dive.gases[1].nitrogen, 0.0F);
    QCOMPARE(dive.gases[1].usage, GasUsage::Sidemount);
    QVERIFY(!dive.gases[1].closedCircuit);

    QCOMPARE(dive.lines.size(), 3);
    const DiveLine first = dive.lines[0];
    QCOMPARE(first.time, 0.0);
    QCOMPARE(first.depth, 100.0);
    QCOMPARE(first.valueTenths, 25.0);
    QCOMPARE(first.valueNegated, 0);
    QCOMPARE(first.aux1Value, -2.0);
    QCOMPARE(first.gasIndex, 1);
    QCOMPARE(first.mode, 0);
    QCOMPARE(first.aux2, 0x1234);
    QCOMPARE(first.aux3, 0x56);
    QCOMPARE(first.aux4, 0x78);
    QCOMPARE(first.aux8, 0x9ABC);
    QCOMPARE(first.aux9, 0xDE);
    QCOMPARE(first.aux10, 0xF0);
    QCOMPARE(first.aux11, 255);
    const DiveLine second = dive.lines[1];
    QCOMPARE(second.time, 10.0);
    QCOMPARE(second.depth, 100.0);
    QCOMPARE(second.valueTenths, 0.0);
    QCOMPARE(second.valueNegated, 10);
    QCOMPARE(second.aux1Value, 25.0);
    QCOMPARE(second.gasIndex, 0);
    const DiveLine third = dive.lines[2];
    QCOMPARE(third.time, 20.0);
    QCOMPARE(third.depth, 100.1);
    QCOMPARE(third.valueNegated, 2048);
    QCOMPARE(third.mode, 3);
    // Slot 4 is not in use.
    QCOMPARE(third.gasIndex, 0);
    QCOMPARE(third.aux10, 1);
}

void TestDiveHeaders::genericDiveOfTidemar()
{
    CONNECT(connectTo(
        R"("model":"tidemar","owner":"Ada","responses":{)"_ba
        + answer("Logbook", {tidemarHeader(), ""}) + ","
        + answer("Fullsamples", {"8003 e883 f63f fe 11 22 33 4455 6677 88 99", "6420 fa10", ""})
        + "}"));
    QCOMPARE(identify(), kIdentified);
    QCOMPARE(told(TidemarCommand::Computer, u"endCommand Computer"_s).size(), 1);
    QCOMPARE(readLogbook(), kLogbookRead);
    QCOMPARE(readSamples(), kSamplesRead);
    const Dive dive = TidemarDiveConverter::toDive(m_session->diveHeaders().first(),
                                                   m_session->diveSamples(), *m_session);
    QCOMPARE(dive.model, ComputerModel::Tidemar);
    QCOMPARE(dive.kindByte, 5);
    QCOMPARE(dive.tidemarBit, 0);
    QCOMPARE(dive.modeByte, 0);
    QCOMPARE(dive.ownerName, u"Ada"_s);
    QCOMPARE(dive.serialNumber, QString());
    QCOMPARE(dive.tagBytes, (std::array<std::uint8_t, 8>{0, 0, 0, 0, 0, 0x44, 0x33, 0x22}));
    // Slots 0, 8, 9, 10 and 11; 8 to 10 hold nothing that is a gas, 11 is nitrox 33 with helium.
    QCOMPARE(dive.gases.size(), 5);
    QCOMPARE(dive.gases[0].helium, 0.4F);
    QCOMPARE(dive.gases[1].oxygen, 0.21F);
    QCOMPARE(dive.gases[1].helium, 0.0F);
    QCOMPARE(dive.gases[1].usage, GasUsage::Sidemount);
    QCOMPARE(dive.gases[4].oxygen, 0.33F);
    QCOMPARE(dive.gases[4].helium, 0.09F);

    QCOMPARE(dive.lines.size(), 2);
    const DiveLine first = dive.lines[0];
    QCOMPARE(first.depth, 100.0);
    QCOMPARE(first.flag, 1);
    QCOMPARE(first.gasIndex, 0);
    QCOMPARE(first.valueNegated, 10);
    QCOMPARE(first.mode, 3);
    QCOMPARE(first.aux1Value, -2.0);
    QCOMPARE(first.aux5, 0x11);
    QCOMPARE(first.aux6, 0x22);
    QCOMPARE(first.aux7, 0x33);
    QCOMPARE(first.aux2, 0x5544);
    QCOMPARE(first.aux8, 0x7766);
    QCOMPARE(first.aux9, 0x88);
    QCOMPARE(first.aux10, 0x99);
    QCOMPARE(first.aux11, 255);
    const DiveLine second = dive.lines[1];
    QCOMPARE(second.time, 10.0);
    QCOMPARE(second.depth, 10.0);
    QCOMPARE(second.flag, 0);
    QCOMPARE(second.valueTenths, 25.0);
    QCOMPARE(second.mode, 1);
    QCOMPARE(second.aux5, 0);
}

QTEST_GUILESS_MAIN(TestDiveHeaders)
#include "tst_diveheaders.moc"
