// SPDX-License-Identifier: MIT
#include "payload.h"

#include <QtTest/qtest.h>

#include <varda/bufferreader.h>

#include <limits>

class TestBufferReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsAtByteOne();
    void numbersAreLittleEndian();
    void readsAcrossTheEnd();
    void readsPastTheEnd();
    void readsAcrossTheBeginning();
    void jumpsBothWays();
    void jumpsAnywhere();
    void readsNothing();
    void assigns();
};

static constexpr int kFar = std::numeric_limits<int>::max();

static QByteArray read(BufferReader &reader, int n)
{
    QByteArray bytes(n, '\x77');
    reader.read(bytes.data(), n);
    return bytes.toHex();
}

void TestBufferReader::startsAtByteOne()
{
    const VardaData::Payload payload = payloadOf("11 22 33 44");
    BufferReader reader(payload);
    QCOMPARE(read(reader, 1), "11");
    QCOMPARE(read(reader, 3), "223344");
    QCOMPARE(read(reader, 2), "0000");
}

void TestBufferReader::numbersAreLittleEndian()
{
    const VardaData::Payload payload = payloadOf(
        "fe fe 3412 fdff 78563412 feffffff efcdab8967452301 f0ffffffffffffff 0000803f "
        "000000000000f0bf 5a");
    BufferReader reader(payload);
    QCOMPARE(reader.take<std::uint8_t>(), std::uint8_t(0xFE));
    QCOMPARE(reader.take<std::int8_t>(), std::int8_t(-2));
    QCOMPARE(reader.take<std::uint16_t>(), std::uint16_t(0x1234));
    QCOMPARE(reader.take<std::int16_t>(), std::int16_t(-3));
    QCOMPARE(reader.take<std::uint32_t>(), 0x12345678U);
    QCOMPARE(reader.take<std::int32_t>(), -2);
    QCOMPARE(reader.take<std::uint64_t>(), std::uint64_t(0x0123456789ABCDEF));
    QCOMPARE(reader.take<std::int64_t>(), std::int64_t(-16));
    QCOMPARE(reader.take<float>(), 1.0F);
    QCOMPARE(reader.take<double>(), -1.0);
    QCOMPARE(reader.take<char>(), 'Z');
}

// The last bytes of the pattern, 508 to 511, are e7 ee f5 fc.
void TestBufferReader::readsAcrossTheEnd()
{
    const VardaData::Payload payload = patternPayload();
    BufferReader reader(payload);
    reader.jump(507);
    QCOMPARE(read(reader, 4), "e7eef5fc");
    reader.jump(-2);
    QCOMPARE(read(reader, 4), "f5fc0000");
    reader.jump(-4);
    QCOMPARE(reader.take<std::uint32_t>(), 0x0000FCF5U);
    reader.jump(-3);
    QCOMPARE(reader.take<std::uint8_t>(), std::uint8_t(0xFC));
}

void TestBufferReader::readsPastTheEnd()
{
    const VardaData::Payload payload = patternPayload();
    BufferReader reader(payload);
    reader.jump(511);
    QCOMPARE(read(reader, 3), "000000");
    reader.jump(5000);
    QCOMPARE(reader.take<std::uint64_t>(), std::uint64_t(0));
    QCOMPARE(reader.take<float>(), 0.0F);
}

// The first bytes of the pattern are 03 0a 11.
void TestBufferReader::readsAcrossTheBeginning()
{
    const VardaData::Payload payload = patternPayload();
    BufferReader reader(payload);
    reader.jump(-3);
    QCOMPARE(read(reader, 5), "0000030a11");
    reader.jump(-100);
    QCOMPARE(read(reader, 2), "0000");
    reader.jump(96);
    QCOMPARE(read(reader, 1), "0a");

    std::array<char, 700> everything{};
    reader.jump(-52);
    reader.read(everything.data(), int(everything.size()));
    QCOMPARE(QByteArray(everything.data() + 49, 3).toHex(), "00030a");
    QCOMPARE(QByteArray(everything.data() + 560, 4).toHex(), "f5fc0000");
    QCOMPARE(read(reader, 1), "00");
}

void TestBufferReader::jumpsBothWays()
{
    const VardaData::Payload payload = patternPayload();
    BufferReader reader(payload);
    reader.jump(99);
    QCOMPARE(read(reader, 1), "bf"); // byte 100
    reader.jump(-1);
    QCOMPARE(read(reader, 1), "bf");
    reader.jump(0);
    QCOMPARE(read(reader, 1), "c6");
    reader.jump(-102);
    QCOMPARE(read(reader, 1), "03"); // byte 0
}

void TestBufferReader::jumpsAnywhere()
{
    const VardaData::Payload payload = patternPayload();
    BufferReader forward(payload);
    for (int i = 0; i < 3; ++i) {
        forward.jump(kFar);
        QCOMPARE(read(forward, 4), "00000000");
    }
    BufferReader back(payload);
    for (int i = 0; i < 3; ++i) {
        back.jump(-kFar - 1);
        QCOMPARE(read(back, 4), "00000000");
    }
    BufferReader there(payload);
    there.jump(1'000'000);
    there.jump(-1'000'000);
    QCOMPARE(read(there, 1), "0a");
}

void TestBufferReader::readsNothing()
{
    const VardaData::Payload payload = patternPayload();
    BufferReader reader(payload);
    char untouched = 'x';
    reader.read(&untouched, 0);
    reader.read(&untouched, -5);
    reader.read(&untouched, -kFar - 1);
    QCOMPARE(untouched, 'x');
    QCOMPARE(read(reader, 1), "0a");
}

void TestBufferReader::assigns()
{
    const VardaData::Payload first = payloadOf("01 02 03");
    const VardaData::Payload second = payloadOf("11 12 13");
    BufferReader reader(first);
    BufferReader other(second);
    other.jump(1);
    reader = std::move(other);
    QCOMPARE(read(reader, 2), "1213");
}

QTEST_APPLESS_MAIN(TestBufferReader)
#include "tst_bufferreader.moc"
