// SPDX-License-Identifier: MIT
#include "protocol/crc16_p.h"
#include "protocol/frame_p.h"

#include <QtTest/qtest.h>

using namespace TidemarCommand;

static QByteArray pattern(int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (int i = 0; i < size; ++i)
        bytes[i] = char(7 * i + 3);
    return bytes;
}

class TestFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void crc_data();
    void crc();
    void crcAtCompileTime();
    void buildFrame_data();
    void buildFrame();
    void lengthWraps();
    void largestFrame();
    void startsFrame_data();
    void startsFrame();
    void parseHeader();
};

void TestFrame::crc_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<quint16>("crc");

    QTest::newRow("nothing") << QByteArray() << quint16(0x1D0F);
    QTest::newRow("check value") << QByteArray("123456789") << quint16(0xE5CC);
    QTest::newRow("01") << QByteArray("\x01") << quint16(0xDCBD);
    QTest::newRow("00") << QByteArray(1, '\0') << quint16(0xCC9C);
    QTest::newRow("ff") << QByteArray("\xFF") << quint16(0xD26C);
    QTest::newRow("A") << QByteArray("A") << quint16(0x9479);
    QTest::newRow("four zeros") << QByteArray(4, '\0') << quint16(0x0E10);
    QTest::newRow("65535 zeros") << QByteArray(65535, '\0') << quint16(0xCC9C);
    QTest::newRow("65536 zeros") << QByteArray(65536, '\0') << quint16(0x84C0);
    QTest::newRow("7 bytes") << pattern(7) << quint16(0x4040);
    QTest::newRow("8 bytes") << pattern(8) << quint16(0x7E13);
    QTest::newRow("9 bytes") << pattern(9) << quint16(0x0B61);
    QTest::newRow("15 bytes") << pattern(15) << quint16(0x97BD);
    QTest::newRow("16 bytes") << pattern(16) << quint16(0xE374);
    QTest::newRow("17 bytes") << pattern(17) << quint16(0xF7B9);
    QTest::newRow("an image of 70000 bytes") << pattern(70000) << quint16(0xE21A);
}

void TestFrame::crc()
{
    QFETCH(const QByteArray, data);
    QTEST(Crc16::computeCrc(data), "crc");
}

void TestFrame::crcAtCompileTime()
{
    static_assert(Crc16::kTables[0][0] == 0);
    static_assert(Crc16::kTables[0][1] == 0x1021);
    static_assert(Crc16::kTables[0][255] == 0x1EF0);
    static_assert(Crc16::kTables[7][0] == 0);
    static_assert(Crc16::kTables[7][1] == 0x47D3);
    static_assert(Crc16::kTables[7][255] == 0x944F);
}

void TestFrame::buildFrame_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<QByteArray>("frame");

    const auto row = [](const char *name, int code, const char *payload, const char *frame) {
        QTest::newRow(name) << code << QByteArray::fromHex(payload) << QByteArray::fromHex(frame);
    };
    row("Identification", Identification, "", "dcdc 0100 bddc 0000 01");
    row("Logbook", Logbook, "", "dcdc 0100 ceee 0000 13");
    row("Close", Close, "", "dcdc 0100 6cd2 0000 ff");
    row("SuperUserMode", SuperUserMode, "01", "dcdc 0200 4dc2 0000 fc 01");
    row("Logbook without dives 1, 2 and 300", Logbook, "0100 0200 2c01",
        "dcdc 0700 e90c 0000 13 0100 0200 2c01");
    row("Set_owner", Set_owner, "416e6472c3a9", "dcdc 0700 068d 0000 17 416e6472c3a9");
    row("a code that has no name", 0x1FF, "", "dcdc 0100 6cd2 0000 ff");
}

void TestFrame::buildFrame()
{
    QFETCH(const int, code);
    QFETCH(const QByteArray, payload);
    const BleCommand command(TidemarCommandIn(code), payload);
    QTEST(Frame::buildFrame(command), "frame");
}

// L counts 16 bits; the CRC covers the body that L tells.
void TestFrame::lengthWraps()
{
    const QByteArray none = Frame::buildFrame({Identification, QByteArray(65535, 'x')});
    QCOMPARE(none.size(), 8 + 65536);
    QCOMPARE(none.left(9), QByteArray::fromHex("dcdc 0000 0f1d 0000 01"));

    const QByteArray one = Frame::buildFrame({Identification, QByteArray(65536, 'x')});
    QCOMPARE(one.size(), 8 + 65537);
    QCOMPARE(one.left(9), QByteArray::fromHex("dcdc 0100 bddc 0000 01"));
}

void TestFrame::largestFrame()
{
    const QByteArray frame = Frame::buildFrame({Sync, QByteArray(65534, '\0')});
    QCOMPARE(frame.size(), 8 + 65535);
    QCOMPARE(frame.left(9), QByteArray::fromHex("dcdc ffff 9ccc 0000 00"));
}

void TestFrame::startsFrame_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("starts");

    const auto row = [](const char *name, const char *bytes, bool starts) {
        QTest::newRow(name) << QByteArray::fromHex(bytes) << starts;
    };
    row("nothing", "", false);
    row("7 bytes", "dcdc 0100 bddc 00", false);
    row("a whole header", "dcdc 0100 bddc 0000", true);
    row("a whole frame", "dcdc 0100 bddc 0000 01", true);
    row("reserved bytes are not looked at", "dcdc 0100 bddc abcd 01", true);
    row("wrong first byte", "dddc 0100 bddc 0000 01", false);
    row("wrong second byte", "dcdd 0100 bddc 0000 01", false);
}

void TestFrame::startsFrame()
{
    QFETCH(const QByteArray, bytes);
    QTEST(Frame::startsFrame(bytes), "starts");
}

void TestFrame::parseHeader()
{
    const Frame::Header header = Frame::parseHeader(
        QByteArrayView("\xDC\xDC\x34\x12\x78\xF6\xAA\xBB", 8));
    QCOMPARE(header.length, quint16(0x1234));
    QCOMPARE(header.crc, quint16(0xF678));
}

QTEST_APPLESS_MAIN(TestFrame)
#include "tst_frame.moc"
