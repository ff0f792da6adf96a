// SPDX-License-Identifier: MIT
#include <QtCore/qloggingcategory.h>

#include "protocollink.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kGattData = "49535343-1e4d-4bd9-ba61-23c647249616"_L1;
constexpr auto kSpsFifo = "2456e1b9-26e2-8f83-e744-f34f01e9d703"_L1;

/** A computer that hears and says nothing, so that the test can speak for it. */
constexpr auto kMute = R"("faults":[{"step":"answer","kind":"silent"}])";

// Frames of a computer, written out.
constexpr auto kIdentificationA = "dcdc0200bb160000010a"; // payload 0a
constexpr auto kIdentificationB = "dcdc02009a060000010b"; // payload 0b
constexpr auto kTime = "dcdc0500199b00000701020304";      // payload 01 02 03 04
constexpr auto kLogbook = "dcdc04005aef000013010203";     // payload 01 02 03
constexpr auto kLogbookEnd = "dcdc0100ceee000013";        // no payload

QByteArray join(std::initializer_list<const char *> parts)
{
    QByteArray all;
    for (const char *part : parts)
        all += part;
    return all;
}

QStringList wire;

void noteWire(QtMsgType, const QMessageLogContext &context, const QString &text)
{
    if (qstrcmp(context.category, "varda.wire") == 0)
        wire.append(text);
}

} // namespace

class TestProtocol : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void roadOverGatt();
    void roadOverSps();
    void otherModesAreSpsWithoutCredits();
    void setupCharacteristicsTellsTheLinksAnswer();
    void framesOnTheWire_data();
    void framesOnTheWire();
    void withoutCharacteristics();
    void withoutDevice();

    void response_data();
    void response();
    void nothingGood_data();
    void nothingGood();
    void answerInTwoNotifications();
    void crcError();
    void crcErrorInTheSecondFrame();

    void longAnswersAreCollected();
    void shortAnswersAreNotCollected();
    void quietLine();
    void framesOfOneAnswer();
    void sendingForgetsWhatCame();
    void fourThousandNotifications();
    void emptyNotificationEndsTheAnswer();
    void creditsRunOut();

    void sendFromInside();
    void inside_data();
    void inside();
    void wireIsLogged();
};

void TestProtocol::roadOverGatt()
{
    LOAD(Simulator::loadKnown(R"("mode":"both")"));
    ProtocolLink link(m_log, BleMode::Gatt);
    m_log.watch(link.device.get());
    QCOMPARE(link.protocol->frameSize(), 128);
    link.open();
    QVERIFY(m_log.await(u"ready"_s));
    // BlueZ does not tell the MTU.
    QCOMPARE(link.protocol->frameSize(), 128);
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Identification));
    QVERIFY(m_log.await(u"response Identification 620204010b 6"_s));
    m_log.take();
    QCOMPARE(Simulator::record({u"StartNotify"_s, u"write"_s}),
             QStringList({u"StartNotify "_s + kGattData,
                          u"write "_s + kGattData + u" command dcdc0100bddc000001"_s}));
}

void TestProtocol::roadOverSps()
{
    LOAD(Simulator::loadKnown(R"("mode":"both")"));
    ProtocolLink link(m_log, BleMode::Sps);
    link.open();
    QVERIFY(m_log.await(u"ready"_s));
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Identification));
    QVERIFY(m_log.await(u"response Identification 620204010b 6"_s));
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Identification));
    QVERIFY(m_log.await(u"response Identification 620204010b 6"_s, 2));
    QCOMPARE(Simulator::record({u"StartNotify"_s, u"write"_s}),
             QStringList({u"StartNotify "_s + kSpsFifo,
                          u"write 2456e1b9-26e2-8f83-e744-f34f01e9d704 command 20"_s,
                          u"write "_s + kSpsFifo + u" command dcdc0100bddc000001"_s,
                          u"write "_s + kSpsFifo + u" command dcdc0100bddc000001"_s}));
}

void TestProtocol::otherModesAreSpsWithoutCredits()
{
    LOAD(Simulator::loadKnown(R"("mode":"both")"));
    // NOLINTNEXTLINE(clang-analyzer-optin.core.EnumCastOutOfRange): that is the point
    OPEN(link, BleMode(2));
    QCOMPARE(Simulator::record({u"StartNotify"_s, u"write"_s}),
             QStringList(u"StartNotify "_s + kSpsFifo));
}

void TestProtocol::setupCharacteristicsTellsTheLinksAnswer()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"discover","kind":"empty","nth":1}])"));
    BleDevice device;
    VardaBleProtocol protocol(&device, BleMode::Gatt);
    m_log.watch(&device);
    QVERIFY(!protocol.setupCharacteristics());
    QCOMPARE(m_log.entries(), QStringList());
    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"servicesDiscovered"_s));
    QVERIFY(!protocol.setupCharacteristics());
    QCOMPARE(m_log.entries().last(), u"error No service found"_s);
    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"servicesDiscovered"_s, 2));
    QVERIFY(protocol.setupCharacteristics());
    QVERIFY(m_log.await(u"connected"_s));
}

void TestProtocol::framesOnTheWire_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<QString>("frame");
    QTest::newRow("Identification") << 1 << QByteArray() << u"dcdc0100bddc000001"_s;
    QTest::newRow("Sync") << 0 << QByteArray() << u"dcdc01009ccc000000"_s;
    QTest::newRow("Close") << 255 << QByteArray() << u"dcdc01006cd20000ff"_s;
    QTest::newRow("SuperUserMode") << 252 << QByteArray("01") << u"dcdc02004dc20000fc01"_s;
    QTest::newRow("Logbook") << 19 << QByteArray("0100ff7f") << u"dcdc050075e10000130100ff7f"_s;
    QTest::newRow("GetGases") << 34 << QByteArray("00") << u"dcdc020044e400002200"_s;
    // Only the low byte of a code goes out.
    QTest::newRow("beyond a byte") << 257 << QByteArray() << u"dcdc0100bddc000001"_s;
}

void TestProtocol::framesOnTheWire()
{
    QFETCH(const int, command);
    QFETCH(const QByteArray, payload);
    QFETCH(const QString, frame);

    LOAD(Simulator::loadKnown());
    OPEN(link, BleMode::Gatt);
    QVERIFY(link.protocol->sendCommand(
        {TidemarCommand::TidemarCommandIn(command), QByteArray::fromHex(payload)}));
    QTRY_COMPARE(Simulator::record({u"write"_s}),
                 QStringList(u"write "_s + kGattData + u" command "_s + frame));
}

void TestProtocol::withoutCharacteristics()
{
    BleDevice device;
    VardaBleProtocol protocol(&device, BleMode::Gatt);
    m_log.watch(&device);
    QVERIFY(!protocol.sendCommand(TidemarCommand::Identification));
    QCOMPARE(m_log.entries(), QStringList(u"error Write failed: characteristic not ready"_s));
}

void TestProtocol::withoutDevice()
{
    VardaBleProtocol never(nullptr, BleMode::Sps);
    QVERIFY(!never.setupCharacteristics());
    QVERIFY(!never.sendCommand(TidemarCommand::Identification));
    QCOMPARE(never.frameSize(), 128);

    auto device = std::make_unique<BleDevice>();
    VardaBleProtocol left(device.get(), BleMode::Gatt);
    device.reset();
    QVERIFY(!left.setupCharacteristics());
    QVERIFY(!left.sendCommand(TidemarCommand::Identification));
}

void TestProtocol::response_data()
{
    QTest::addColumn<QByteArray>("notification");
    QTest::addColumn<QStringList>("entries");
    QTest::newRow("one frame") << QByteArray(kTime) << QStringList(u"response Time 01020304 5"_s);
    QTest::newRow("no payload") << QByteArray(kLogbookEnd) << QStringList(u"response Logbook  1"_s);
    QTest::newRow("two frames") << join({kIdentificationA, kIdentificationB})
                                << QStringList({u"response Identification 0a 2"_s,
                                                u"response Identification 0b 2"_s});
    QTest::newRow("another command")
        << QByteArray(kTime) << QStringList(u"response Time 01020304 5"_s);
    QTest::newRow("reserved bytes")
        << QByteArray("dcdc030039c2123401aabb") << QStringList(u"response Identification aabb 3"_s);
    QTest::newRow("code without a name")
        << QByteArray("dcdc02001c0b0000c801") << QStringList(u"response 200 01 2"_s);
    QTest::newRow("Close") << QByteArray("dcdc02007da70000ff02")
                           << QStringList(u"response Close 02 2"_s);
    QTest::newRow("Sync") << QByteArray("dcdc0200a3b400000003")
                          << QStringList(u"response Sync 03 2"_s);
    QTest::newRow("garbage behind a frame") << join({kIdentificationA, "00112233445566778899"})
                                            << QStringList(u"response Identification 0a 2"_s);
    QTest::newRow("some bytes behind a frame") << join({kIdentificationA, "dcdc0100bddc00"})
                                               << QStringList(u"response Identification 0a 2"_s);
    QTest::newRow("cut frame behind a frame") << join({kIdentificationA, "dcdc0200bb16000001"})
                                              << QStringList(u"response Identification 0a 2"_s);
}

void TestProtocol::response()
{
    QFETCH(const QByteArray, notification);
    QFETCH(const QStringList, entries);

    const ProtocolLink link(m_log, BleMode::Gatt);
    link.receive(notification);
    QCOMPARE(m_log.take(), entries);
    // Nothing of it is left for the next.
    link.receive(kIdentificationA);
    QCOMPARE(m_log.entries(), QStringList(u"response Identification 0a 2"_s));
}

void TestProtocol::nothingGood_data()
{
    QTest::addColumn<QByteArray>("notification");
    QTest::newRow("one byte") << QByteArray("dc");
    QTest::newRow("seven bytes") << QByteArray("dcdc0100bddc00");
    QTest::newRow("a header alone") << QByteArray("dcdc0100bddc0000");
    QTest::newRow("first start byte") << QByteArray("ddc0200bb160000010a");
    QTest::newRow("wrong first start byte") << QByteArray("dddc0200bb160000010a");
    QTest::newRow("wrong second start byte") << QByteArray("dcdd0200bb160000010a");
    QTest::newRow("frame after a byte") << join({"00", kIdentificationA});
    QTest::newRow("length of more than there is") << QByteArray("dcdc0300bb160000010a");
    QTest::newRow("length of 65535") << QByteArray("dcdcffffbb160000010a");
    QTest::newRow("length of 0") << QByteArray("dcdc00000f1d0000");
    QTest::newRow("length of 0 before a frame") << join({"dcdc00000f1d0000", kIdentificationA});
}

void TestProtocol::nothingGood()
{
    QFETCH(const QByteArray, notification);

    const ProtocolLink link(m_log, BleMode::Gatt);
    link.receive(notification);
    QCOMPARE(m_log.entries(), QStringList());
    link.receive(kIdentificationA);
    QCOMPARE(m_log.entries(), QStringList(u"response Identification 0a 2"_s));
}

// A command with a short answer wants it whole.
void TestProtocol::answerInTwoNotifications()
{
    LOAD(Simulator::loadKnown(R"("responses":{"Identification":
        {"notifications":["dcdc0300bb1600","00010a","dcdc02009a060000010b"]}})"));
    OPEN(link, BleMode::Gatt);
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Identification));
    QVERIFY(m_log.await(u"response Identification 0b 2"_s));
    QCOMPARE(m_log.entries(), QStringList(u"response Identification 0b 2"_s));
    QCOMPARE(Simulator::count(u"notification"_s), 3);
}

void TestProtocol::crcError()
{
    const ProtocolLink link(m_log, BleMode::Gatt);
    link.receive(join({"dcdc0200ba160000010a", kIdentificationB}));
    link.receive("dcdc05001a9b00000701020304");
    // The command byte itself may be what is wrong.
    link.receive("dcdc0200bb160000990a");
    QCOMPARE(m_log.entries(),
             QStringList({u"protocolError Identification InvalidCrc"_s,
                          u"protocolError Time InvalidCrc"_s, u"protocolError 153 InvalidCrc"_s}));
}

void TestProtocol::crcErrorInTheSecondFrame()
{
    const ProtocolLink link(m_log, BleMode::Gatt);
    link.receive(join({kIdentificationA, "dcdc05001a9b00000701020304", kIdentificationB}));
    QCOMPARE(m_log.entries(),
             QStringList({u"response Identification 0a 2"_s, u"protocolError Time InvalidCrc"_s}));
}

// Two halves of a frame are joined, once nothing has come for a while.
void TestProtocol::longAnswersAreCollected()
{
    LOAD(Simulator::loadKnown(kMute));
    OPEN(link, BleMode::Gatt);
    for (const int command : {2, 5, 17, 19, 20, 22, 24, 29, 36, 37, 238}) {
        QVERIFY(link.protocol->sendCommand(TidemarCommand::TidemarCommandIn(command)));
        link.receive("dcdc0500199b000007");
        link.receive("01020304");
        QCOMPARE(m_log.entries(), QStringList());
        QVERIFY2(m_log.await(u"response Time 01020304 5"_s), qPrintable(QString::number(command)));
        m_log.take();
    }
}

// Two halves of a frame are both lost, and a whole one is there at once.
void TestProtocol::shortAnswersAreNotCollected()
{
    LOAD(Simulator::loadKnown(kMute));
    OPEN(link, BleMode::Gatt);
    for (const int command :
         {0,  1,  3,  4,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16,  18,  21,  23,  25, 26,
          27, 28, 30, 31, 32, 33, 34, 35, 38, 39, 40, 41, 42, 43, 237, 252, 253, 254, 255}) {
        QVERIFY(link.protocol->sendCommand(TidemarCommand::TidemarCommandIn(command)));
        link.receive("dcdc0500199b000007");
        link.receive("01020304");
        link.receive(kTime);
        QCOMPARE(m_log.take(), QStringList(u"response Time 01020304 5"_s));
    }
}

// Longer pauses than the whole answer would be allowed to take, were they counted together.
void TestProtocol::quietLine()
{
    LOAD(Simulator::loadKnown(R"("split":3,"pace":{"ms":500,"count":1},
        "responses":{"Logbook":["010203"]})"));
    OPEN(link, BleMode::Gatt);
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Logbook));
    QVERIFY(m_log.await(u"response Logbook 010203 4"_s));
    QCOMPARE(m_log.entries(), QStringList(u"response Logbook 010203 4"_s));
    QCOMPARE(Simulator::count(u"notification"_s), 4);
}

void TestProtocol::framesOfOneAnswer()
{
    LOAD(Simulator::loadKnown(R"("mode":"sps","merge":true,"split":7,
        "responses":{"Logbook":["0a","0b0c",""]})"));
    OPEN(link, BleMode::Sps);
    QCOMPARE(m_log.entries(), QStringList());
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Logbook));
    QVERIFY(m_log.await(u"response Logbook  1"_s));
    QCOMPARE(m_log.entries(), QStringList({u"response Logbook 0a 2"_s, u"response Logbook 0b0c 3"_s,
                                           u"response Logbook  1"_s}));
}

void TestProtocol::sendingForgetsWhatCame()
{
    LOAD(Simulator::loadKnown(kMute));
    OPEN(link, BleMode::Gatt);
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Logbook));
    link.receive(kLogbook);
    link.receive("dcdc0400");
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Owner));
    link.receive(kLogbookEnd);
    QVERIFY(m_log.await(u"response Logbook  1"_s));
    QCOMPARE(m_log.entries(), QStringList(u"response Logbook  1"_s));
}

void TestProtocol::fourThousandNotifications()
{
    LOAD(Simulator::loadKnown(kMute));
    OPEN(link, BleMode::Gatt);
    const auto receiveByteByByte = [&](const QByteArray &header, int length) {
        const QByteArray frame = QByteArray::fromHex(header) + QByteArray(length, '\0');
        for (const char byte : frame)
            Q_EMIT link.device->notificationReceived(QByteArray(1, byte));
    };

    // As many as there is room for.
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Logbook));
    receiveByteByByte("dcdcf80f28ea000013", 4087);
    QVERIFY(m_log.await(u"response Logbook %1 4088"_s.arg(u"00"_s.repeated(4087))));
    m_log.take();

    // One more: all of it is lost, and what comes then is the beginning of something new.
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Logbook));
    receiveByteByByte("dcdcf90f6474000013", 4088);
    link.receive(kLogbook);
    QVERIFY(m_log.await(u"response Logbook 010203 4"_s));
    QCOMPARE(m_log.entries(), QStringList(u"response Logbook 010203 4"_s));
}

void TestProtocol::emptyNotificationEndsTheAnswer()
{
    LOAD(Simulator::loadKnown(kMute));
    OPEN(link, BleMode::Gatt);
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Logbook));
    link.receive(kLogbook);
    link.receive("");
    link.receive(kLogbookEnd);
    QVERIFY(m_log.await(u"response Logbook 010203 4"_s));
    QCOMPARE(m_log.entries(), QStringList(u"response Logbook 010203 4"_s));
}

// Credits are given once; a computer that counts them sends no more than these.
void TestProtocol::creditsRunOut()
{
    QByteArray payloads;
    for (int i = 0; i < 40; ++i)
        payloads += (i ? R"(,")" : R"(")") + QByteArray(1, char(i)).toHex() + R"(")";
    LOAD(Simulator::loadKnown(R"("mode":"sps","credits":"counted","responses":{"Logbook":[)"
                              + payloads + "]}"));
    OPEN(link, BleMode::Sps);
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Logbook));
    QVERIFY(m_log.await(u"response Logbook 1f 2"_s));
    QCOMPARE(m_log.entries().size(), 32);
    QCOMPARE(Simulator::count(u"creditsExhausted"_s), 1);
    QCOMPARE(Simulator::count(u"write"_s), 2);
}

void TestProtocol::sendFromInside()
{
    LOAD(Simulator::loadKnown(R"("responses":{"Time":["01020304"]})"));
    OPEN(link, BleMode::Gatt);
    m_log.react = [&](const QString &entry) {
        if (entry == u"response Identification 0a 2"_s)
            QVERIFY(link.protocol->sendCommand(TidemarCommand::Time));
    };
    link.receive(join({kIdentificationA, kIdentificationB}));
    QVERIFY(m_log.await(u"response Time 01020304 5"_s));
    QCOMPARE(m_log.entries(),
             QStringList({u"response Identification 0a 2"_s, u"response Identification 0b 2"_s,
                          u"response Time 01020304 5"_s}));
}

void TestProtocol::inside_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("deed");
    for (const auto *deed : {"protocol", "device", "both", "connectTo"}) {
        for (const auto *entry : {"ready", "response Identification 0a 2",
                                  "response Identification 0b 2", "protocolError Time InvalidCrc"})
            QTest::addRow("%s in %s", deed, entry)
                << QString::fromLatin1(entry) << QString::fromLatin1(deed);
    }
}

void TestProtocol::inside()
{
    QFETCH(const QString, entry);
    QFETCH(const QString, deed);

    LOAD(Simulator::loadKnown());
    const QStringList all{u"ready"_s, u"response Identification 0a 2"_s,
                          u"response Identification 0b 2"_s, u"protocolError Time InvalidCrc"_s};
    ProtocolLink link(m_log, BleMode::Gatt);
    link.open();
    m_log.react = [&](const QString &each) {
        if (each != entry)
            return;
        if (deed == u"protocol"_s || deed == u"both"_s)
            link.protocol.reset();
        if (deed == u"device"_s || deed == u"both"_s)
            link.device.reset();
        if (deed == u"connectTo"_s)
            link.device->connectTo(knownDevice());
    };
    QVERIFY(m_log.await(u"ready"_s));
    if (link.device)
        link.receive(join({kIdentificationA, kIdentificationB, "dcdc05001a9b00000701020304"}));
    Simulator::settle();
    QStringList expected = all;
    if (deed == u"protocol"_s || deed == u"both"_s || (deed == u"device"_s && entry == all[0]))
        expected = all.mid(0, all.indexOf(entry) + 1);
    QCOMPARE(m_log.entries(), expected);
    m_log.react = nullptr;
}

void TestProtocol::wireIsLogged()
{
    LOAD(Simulator::loadKnown(R"("responses":{"Identification":["0a"]})"));
    OPEN(link, BleMode::Gatt);
    wire.clear();
    const QtMessageHandler before = qInstallMessageHandler(noteWire);
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Identification));
    const bool first = m_log.await(u"response Identification 0a 2"_s);
    const QStringList silent = wire;
    QLoggingCategory::setFilterRules(u"varda.wire.debug=true"_s);
    link.protocol->sendCommand(TidemarCommand::Identification);
    const bool second = m_log.await(u"response Identification 0a 2"_s, 2);
    link.receive("dcdc0200");
    QLoggingCategory::setFilterRules({});
    qInstallMessageHandler(before);
    QVERIFY(first && second);
    QCOMPARE(silent, QStringList());
    QCOMPARE(wire,
             QStringList({u"-> dc dc 01 00 bd dc 00 00 01"_s, u"<- dc dc 02 00 bb 16 00 00 01 0a"_s,
                          u"discarded dc dc 02 00"_s}));
}

QTEST_GUILESS_MAIN(TestProtocol)
#include "tst_protocol.moc"
