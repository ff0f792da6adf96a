// SPDX-License-Identifier: MIT
#include "fields.h"
#include "payload.h"

#include <QtTest/qtest.h>

#include <algorithm>
#include <array>
#include <functional>

class TestConfiguration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyField_data();
    void everyField();
    void form_data();
    void form();
    void entries_data();
    void entries();
    void owner_data();
    void owner();
    void tidemarByHand();
};

/** A store whose every setting is 0xEE.., so that what a decoder leaves alone shows. */
static VardaData usedStore()
{
    VardaData data;
    BleConfig &config = data.config;
    config.configWord = config.cfgE = config.surfacePressure = config.cfgH = 0xEEEE;
    config.cfgA = config.cfgB = config.cfgC = config.cfgD = 0xEE;
    config.waterType = config.cfgF = config.cfgG = 0xEE;
    config.cfgBytes.fill(0xEE);
    config.gasTable1.fill({0xEE, 0xEE});
    config.gasTable2.fill({0xEE, 0xEE});
    config.cfgTriple.fill({0xEEEE, 0xEEEE, 0xEE});
    config.tailBytes.fill(0xEE);
    BleComputer &computer = data.computer;
    computer.rawBlock.fill(char(0xEE));
    computer.batteryType = computer.setting1 = computer.setting2 = computer.setting3 = 0xEE;
    computer.setting4 = computer.setting5 = computer.setting7 = computer.setting8 = 0xEE;
    computer.setting6 = 0xEEEE;
    computer.value64a = computer.value64b = computer.value64c = 0xEEEEEEEEEEEEEEEE;
    computer.value64d = computer.value64e = 0xEEEEEEEEEEEEEEEE;
    computer.flags32.fill(0xEE);
    computer.entryCount = computer.computerByte1 = computer.computerByte2 = 0xEE;
    computer.computerByte3 = computer.computerByte4 = computer.computerByte5 = 0xEE;
    computer.quadWords.fill(0xEEEE);
    computer.computerWord1 = computer.computerWord2 = computer.computerWord3 = 0xEEEE;
    computer.computerWord4 = computer.computerWord5 = computer.computerWord6 = 0xEEEE;
    computer.computerWord7 = 0xEEEE;
    computer.sixWords.fill(0xEEEE);
    data.owner = QStringLiteral("before");
    return data;
}

// One part of each record of a table, such as the oxygen of its gases.
template <typename Record, std::size_t N, typename Part>
static QString partOf(const char *name, const std::array<Record, N> &table, Part Record::*part)
{
    std::array<Part, N> values{};
    std::transform(table.begin(), table.end(), values.begin(), std::mem_fn(part));
    return QLatin1String(name) + QLatin1Char('=') + hexOf(values);
}

static QStringList fieldsOf(const BleConfig &c)
{
    return {FIELD(c, configWord),
            FIELD(c, cfgA),
            FIELD(c, cfgB),
            FIELD(c, cfgC),
            FIELD(c, cfgD),
            FIELD(c, cfgE),
            FIELD(c, waterType),
            FIELD(c, surfacePressure),
            FIELD(c, cfgF),
            FIELD(c, cfgG),
            FIELD(c, cfgBytes),
            partOf("gasTable1.oxygen", c.gasTable1, &BleConfig::Gas::oxygen),
            partOf("gasTable1.helium", c.gasTable1, &BleConfig::Gas::helium),
            partOf("gasTable2.oxygen", c.gasTable2, &BleConfig::Gas::oxygen),
            partOf("gasTable2.helium", c.gasTable2, &BleConfig::Gas::helium),
            FIELD(c, cfgH),
            partOf("cfgTriple.first", c.cfgTriple, &BleConfig::Triple::first),
            partOf("cfgTriple.second", c.cfgTriple, &BleConfig::Triple::second),
            partOf("cfgTriple.third", c.cfgTriple, &BleConfig::Triple::third),
            FIELD(c, tailBytes)};
}

static QStringList fieldsOf(const BleComputer &c)
{
    return {FIELD(c, rawBlock),      FIELD(c, batteryType),   FIELD(c, setting1),
            FIELD(c, setting2),      FIELD(c, setting3),      FIELD(c, setting4),
            FIELD(c, setting5),      FIELD(c, setting6),      FIELD(c, setting7),
            FIELD(c, setting8),      FIELD(c, value64a),      FIELD(c, flags32),
            FIELD(c, value64b),      FIELD(c, entryCount),    FIELD(c, value64c),
            FIELD(c, computerByte1), FIELD(c, quadWords),     FIELD(c, computerWord1),
            FIELD(c, computerWord2), FIELD(c, computerWord3), FIELD(c, computerWord4),
            FIELD(c, computerWord5), FIELD(c, computerWord6), FIELD(c, sixWords),
            FIELD(c, computerByte2), FIELD(c, computerByte3), FIELD(c, computerByte4),
            FIELD(c, value64d),      FIELD(c, value64e),      FIELD(c, computerByte5),
            FIELD(c, computerWord7)};
}

static QStringList fieldsOf(const VardaData &data)
{
    return fieldsOf(data.config) + fieldsOf(data.computer);
}

// Where the layouts differ: a Varda's short form, a Varda's before version 13 and from it on, and
// what Tidemar and VSKM share before version 2, before version 8 and from it on.
enum Layout { VardaShort, Varda1, Varda13, Shared1, Shared2, Shared8, kLayouts };

// What is sent for a field, and what is read.
struct Field {
    const char *name;
    int width;                         // of a number, in bytes
    int stride;                        // from one number of several to the next
    std::array<int, kLayouts> offsets; // 0: the layout does not have it
    const char *sent;                  // the numbers
    const char *read;                  // no text: the same
};

// The bytes differ, so that one from the wrong place shows.
// clang-format off
constexpr Field kSettings[] = {
    // name, width, stride, offsets in a Varda's short form, 1, 13, in the shared 1, 2, 8
    {"configWord",        2, 0, {  0,   4,   4,   4,   4,   4}, "5049", nullptr},
    {"cfgA",              1, 0, {  3,   6,   6,   6,   6,   6}, "57", nullptr},
    {"cfgB",              1, 0, {  4,   7,   7,   7,   7,   7}, "5e", nullptr},
    {"cfgC",              1, 0, {  5,   8,   8,   8,   8,   8}, "65", nullptr},
    {"cfgD",              1, 0, {  6,   9,   9,   9,   9,   9}, "6c", nullptr},
    {"cfgE",              2, 0, {  7,  10,  10,  10,  10,  10}, "7a73", nullptr},
    {"waterType",         1, 0, {  9,  12,  12,  12,  12,  12}, "81", nullptr},
    {"surfacePressure",   2, 0, { 10,  13,  13,  13,  13,  13}, "8f88", nullptr},
    {"cfgF",              1, 0, { 12,  15,  15,  15,  15,  15}, "96", nullptr},
    {"cfgG",              1, 0, { 13,  16,  16,  16,  16,  16}, "9d", nullptr},
    {"tailBytes",         1, 1, { 14,  17,  17,   0,   0,   0}, "a4 ab b2", "a4abb2eeeeee"},
    {"tailBytes",         1, 1, {  0,   0,   0,  17,  17,  17}, "a4 ab b2", "eeeeeea4abb2"},
    {"cfgBytes",          1, 1, { 17,  20,  20,   0,   0,   0}, "b9 c0 c7 ce d5", "b9c0c7ced5ee"},
    {"cfgBytes",          1, 1, {  0,   0,   0,  20,  20,  20}, "b9 c0 c7 ce d5 dc", nullptr},
    {"gasTable1.oxygen",  1, 2, { 23,  26,   0,  26,  26,   0},
     "e3 f1 ff 0d 1b 29 37 45",
     "e3f1ff0d1b293745eeeeeeee"},
    {"gasTable1.oxygen",  1, 2, {  0,   0,  26,   0,   0,   0},
     "e3 f1 ff 0d 1b 29 37 45 53 61 6f 7d",
     nullptr},
    {"gasTable1.oxygen",  1, 4, {  0,   0,   0,   0,   0,  26},
     "e3 f1 ff 0d 1b 29 37 45",
     "e3f1ff0d1b293745eeeeeeee"},
    {"gasTable1.helium",  1, 2, { 24,  27,   0,  27,  27,   0},
     "ea f8 06 14 22 30 3e 4c",
     "eaf8061422303e4ceeeeeeee"},
    {"gasTable1.helium",  1, 2, {  0,   0,  27,   0,   0,   0},
     "ea f8 06 14 22 30 3e 4c 5a 68 76 84",
     nullptr},
    {"gasTable1.helium",  1, 4, {  0,   0,   0,   0,   0,  27},
     "ea f8 06 14 22 30 3e 4c",
     "eaf8061422303e4ceeeeeeee"},
    {"gasTable2.oxygen",  1, 2, {  0,   0,   0,   0,  58,   0},
     "8b 99 a7 b5 c3 d1 df ed",
     "8b99a7b5c3d1dfedeeeeeeee"},
    {"gasTable2.oxygen",  1, 4, {  0,   0,   0,   0,   0,  74},
     "8b 99 a7 b5 c3 d1 df ed",
     "8b99a7b5c3d1dfedeeeeeeee"},
    {"gasTable2.helium",  1, 2, {  0,   0,   0,   0,  59,   0},
     "92 a0 ae bc ca d8 e6 f4",
     "92a0aebccad8e6f4eeeeeeee"},
    {"gasTable2.helium",  1, 4, {  0,   0,   0,   0,   0,  75},
     "92 a0 ae bc ca d8 e6 f4",
     "92a0aebccad8e6f4eeeeeeee"},
    {"cfgH",              1, 0, { 39,  42,  50,  42,  42,  58}, "fb", "00fb"},
    {"cfgTriple.first",   2, 2, { 40,  43,  51,   0,   0,   0}, "0902 1710 251e", nullptr},
    {"cfgTriple.first",   2, 5, {  0,   0,   0,  43,  43,  59}, "0902 1710 251e", nullptr},
    {"cfgTriple.second",  2, 5, {  0,   0,   0,  45,  45,  61}, "332c 413a 4f48", nullptr},
    {"cfgTriple.third",   1, 5, {  0,   0,   0,  47,  47,  63}, "56 5d 64", nullptr},
};

// Behind a gap that grows with the versions of Tidemar and VSKM.
constexpr Field kBehindTheGap[] = {
    {"rawBlock",          1, 1, { 46,  49,  57,  58,  74, 109},
     "6b 72 79 80 87 8e 95 9c a3 aa b1 b8 bf c6 cd d4 "
     "db e2 e9 f0 f7 fe 05 0c 13 1a 21 28 2f 36 3d 44",
     nullptr},
    {"batteryType",       1, 0, { 78,  81,  89,  90, 106, 141}, "4b", nullptr},
    {"setting1",          1, 0, { 79,  82,  90,   0,   0,   0}, "52", nullptr},
    {"setting2",          1, 0, { 80,  83,  91,  91, 107, 142}, "59", nullptr},
    {"setting3",          1, 0, { 81,  84,  92,  92, 108, 143}, "60", nullptr},
    {"setting4",          1, 0, { 82,  85,  93,  93, 109, 144}, "67", nullptr},
    {"setting5",          1, 0, { 83,  86,  94,  94, 110, 145}, "6e", nullptr},
    {"setting6",          2, 0, { 84,  87,  95,  95, 111, 146}, "7c75", nullptr},
    {"setting7",          1, 0, { 86,  89,  97,  97, 113, 148}, "83", nullptr},
    {"setting8",          1, 0, { 87,  90,  98,  98, 114, 149}, "8a", nullptr},
    {"value64a",          8, 0, { 88,  91,  99,  99, 115, 150}, "c2bbb4ada69f9891", nullptr},
    {"flags32",           1, 1, { 96,  99, 107, 107, 123, 158},
     "c9 d0 d7 de e5 ec f3 fa 01 08 0f 16 1d 24 2b 32 "
     "39 40 47 4e 55 5c 63 6a 71 78 7f 86 8d 94 9b a2",
     nullptr},
};

constexpr Field kExtended[] = {
    {"setting1",          1, 0, {  0,   0,   0, 151, 167, 204}, "52", nullptr},
    {"value64b",          8, 0, {128, 131, 139,   0,   0,   0}, "dad3ccc5beb7b0a9", nullptr},
    {"entryCount",        1, 0, {136, 139, 147,   0,   0,   0}, "02", nullptr},
    {"value64c",          8, 0, {159, 162, 170,   0,   0,   0}, "120b04fdf6efe8e1", nullptr},
    {"computerByte1",     1, 0, {167, 170, 178, 142, 158, 193}, "19", nullptr},
    {"quadWords",         2, 2, {168, 171, 179, 143, 159, 194}, "2720 352e 433c 514a", nullptr},
    {"computerWord1",     2, 0, {176, 179, 187,   0,   0,   0}, "5f58", nullptr},
    {"computerWord2",     2, 0, {178, 181, 189,   0,   0,   0}, "6d66", nullptr},
    {"computerWord3",     2, 0, {180, 183, 191,   0,   0,   0}, "7b74", nullptr},
    {"computerWord4",     2, 0, {182, 185, 193,   0,   0,   0}, "8982", nullptr},
    {"computerByte2",     1, 0, {184, 187, 195,   0,   0,   0}, "90", nullptr},
    {"computerByte3",     1, 0, {185, 188, 196,   0,   0,   0}, "97", nullptr},
    {"computerByte4",     1, 0, {186, 189, 197,   0,   0,   0}, "9e", nullptr},
    {"value64d",          8, 0, {187, 190, 198,   0,   0,   0}, "d6cfc8c1bab3aca5", nullptr},
    {"value64e",          8, 0, {195, 198, 206,   0,   0,   0}, "1c150e07f9f2ebe4", nullptr},
    {"computerByte5",     1, 0, {203, 206, 214, 141, 157, 192}, "23", nullptr},
    {"computerWord6",     2, 0, {204, 207, 215,   0,   0,   0}, "312a", nullptr},
    {"computerWord5",     2, 0, {206, 209, 217,   0,   0,   0}, "3f38", nullptr},
    {"computerWord7",     2, 0, {208, 211, 219, 139, 155, 190}, "4d46", nullptr},
    {"sixWords",          2, 2, {  0,   0, 221,   0,   0,   0},
     "5b54 6962 7770 857e 938c a19a",
     nullptr},
};
// clang-format on

// The bytes of a field's numbers, little-endian.
static void put(VardaData::Payload &payload, const Field &field, int offset)
{
    const QList<QByteArray> numbers = QByteArray(field.sent).split(' ');
    for (const QByteArray &number : numbers) {
        const quint64 value = number.toULongLong(nullptr, 16);
        for (int i = 0; i < field.width; ++i)
            payload[std::size_t(offset + i)] = std::uint8_t(value >> (8 * i));
        offset += field.stride;
    }
}

static QString textOf(const Field &field)
{
    QString text = QLatin1String(field.read ? field.read : field.sent);
    text.replace(QLatin1Char(' '), QLatin1String(field.width == 1 ? "" : ","));
    return QLatin1String(field.name) + QLatin1Char('=') + text;
}

// An answer, and what a used store holds afterwards.
struct Answer {
    VardaData::Payload payload{};
    QStringList fields = fieldsOf(usedStore());

    Answer() { payload.fill(0xDD); } // what a decoder reads at the wrong place shows

    void send(const Field &field, Layout layout, int gap)
    {
        if (field.offsets[layout] > 0)
            put(payload, field, field.offsets[layout] + gap);
    }

    void expect(const Field &field, Layout layout)
    {
        if (field.offsets[layout] == 0)
            return;
        const QString text = textOf(field);
        const QString start = text.left(text.indexOf(QLatin1Char('=')) + 1);
        for (QString &each : fields) {
            if (each.startsWith(start))
                each = text;
        }
    }
};

// What is skipped beyond the table's offsets: in the gap, and once more before setting1.
static Answer answerOf(Layout layout, bool extended, int gap, int beforeSetting1)
{
    Answer answer;
    for (const Field &field : kSettings) {
        answer.send(field, layout, 0);
        answer.expect(field, layout);
    }
    for (const Field &field : kBehindTheGap) {
        answer.send(field, layout, gap);
        answer.expect(field, layout);
    }
    for (const Field &field : kExtended) {
        const bool isSetting1 = qstrcmp(field.name, "setting1") == 0;
        answer.send(field, layout, isSetting1 ? gap + beforeSetting1 : gap);
        if (extended)
            answer.expect(field, layout);
    }
    return answer;
}

void TestConfiguration::everyField_data()
{
    QTest::addColumn<VardaData::Payload>("payload");
    QTest::addColumn<bool>("extended");
    QTest::addColumn<QStringList>("fields");

    for (const bool extended : {false, true}) {
        Answer answer = answerOf(VardaShort, extended, 0, 0);
        answer.payload[1] = 0xFE; // a setting, and no version
        answer.payload[2] = 0x00;
        answer.fields[0] = QStringLiteral("configWord=00fe");
        QTest::addRow("short form%s", extended ? ", extended" : "")
            << answer.payload << extended << answer.fields;
    }

    const QMetaEnum names = QMetaEnum::fromType<ComputerModel::ComputerModelIn>();
    const auto row = [&](ComputerModel::ComputerModelIn model, int version, Layout layout,
                         int gap = 0, int beforeSetting1 = 0) {
        for (const bool extended : {false, true}) {
            Answer answer = answerOf(layout, extended, gap, beforeSetting1);
            answer.payload[1] = std::uint8_t(version);
            answer.payload[2] = 1;
            answer.payload[3] = std::uint8_t(model);
            QTest::addRow("%s %d%s", names.valueToKey(model), version, extended ? ", extended" : "")
                << answer.payload << extended << answer.fields;
        }
    };
    using enum ComputerModel::ComputerModelIn;
    row(Varda, 0, Varda1);
    row(Varda, 1, Varda1);
    row(Varda, 8, Varda1);
    row(Varda, 12, Varda1);
    row(Varda, 13, Varda13);
    row(Varda, 14, Varda13);
    row(Varda, 255, Varda13);
    row(Tidemar, 0, Shared1);
    row(Tidemar, 1, Shared1);
    row(Tidemar, 2, Shared2);
    row(Tidemar, 4, Shared2);
    row(Tidemar, 5, Shared2, 3);
    row(Tidemar, 7, Shared2, 3);
    row(Tidemar, 8, Shared8);
    row(Tidemar, 9, Shared8);
    row(Tidemar, 10, Shared8, 1);
    row(Tidemar, 11, Shared8, 5);
    row(Tidemar, 12, Shared8, 5, 7);
    row(Tidemar, 13, Shared8, 5, 7);
    row(Tidemar, 255, Shared8, 5, 7);
    row(VSKM, 0, Shared1);
    row(VSKM, 1, Shared1);
    row(VSKM, 2, Shared2);
    row(VSKM, 4, Shared2);
    row(VSKM, 5, Shared2, 3);
    row(VSKM, 7, Shared2, 3);
    row(VSKM, 8, Shared8);
    row(VSKM, 9, Shared8);
    row(VSKM, 10, Shared8, 1);
    row(VSKM, 11, Shared8, 5);
    row(VSKM, 12, Shared8, 6);
    row(VSKM, 13, Shared8, 10);
    row(VSKM, 14, Shared8, 12);
    row(VSKM, 15, Shared8, 38);
    row(VSKM, 16, Shared8, 38);
    row(VSKM, 17, Shared8, 41);
    row(VSKM, 18, Shared8, 41);
    row(VSKM, 19, Shared8, 41);
    row(VSKM, 20, Shared8, 65);
    row(VSKM, 21, Shared8, 79);
    row(VSKM, 22, Shared8, 79);
    row(VSKM, 255, Shared8, 79);
}

void TestConfiguration::everyField()
{
    QFETCH(const VardaData::Payload, payload);
    QFETCH(const bool, extended);
    VardaData data = usedStore();
    data.processComputer(payload, extended);
    QFETCH(const QStringList, fields);
    QCOMPARE(fieldsOf(data), fields);
    QVERIFY(data.computer.entries.isEmpty());
}

// Where the fields start, and which reader goes on.
void TestConfiguration::form_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<int>("configWord");
    QTest::addColumn<int>("cfgA");
    QTest::addColumn<QByteArray>("tailBytes");

    const auto row = [](const char *name, const char *header, int configWord, int cfgA,
                        const char *tailBytes) {
        QTest::newRow(name) << QByteArray(header) << configWord << cfgA << QByteArray(tailBytes);
    };
    // The header is followed by 10 11 .. 1a (11 bytes of fields) and 1b 1c 1d.
    row("0", "0000", 0, 0x10, "1b1c1deeeeee");
    row("254", "fe00", 254, 0x10, "1b1c1deeeeee");
    row("255, Varda", "ff00 01 3412", 0x1234, 0x10, "1b1c1deeeeee");
    row("0x010D, no model", "0d01 00 3412", 0x1234, 0x10, "1b1c1deeeeee");
    row("0x010D, Varda", "0d01 01 3412", 0x1234, 0x10, "1b1c1deeeeee");
    row("0x010D, Tidemar", "0d01 02 3412", 0x1234, 0x10, "eeeeee1b1c1d");
    row("0x010D, VSKM", "0d01 03 3412", 0x1234, 0x10, "eeeeee1b1c1d");
    row("0x010D, third party", "0d01 04 3412", 0x1234, 0x10, "eeeeeeeeeeee");
    row("0x010D, 255", "0d01 ff 3412", 0x1234, 0x10, "eeeeeeeeeeee");
    row("0x0100", "0001 02 3412", 0x1234, 0x10, "eeeeee1b1c1d");
    row("0xFFFF", "ffff 03 ffff", 0xFFFF, 0x10, "eeeeee1b1c1d");
}

void TestConfiguration::form()
{
    QFETCH(const QByteArray, header);
    VardaData data = usedStore();
    data.processComputer(payloadOf(header + "10111213 1514 16 1817 191a 1b1c1d"), true);
    QTEST(int(data.config.configWord), "configWord");
    QTEST(int(data.config.cfgA), "cfgA");
    QCOMPARE(int(data.config.cfgD), 0x13);
    QCOMPARE(int(data.config.cfgE), 0x1415);
    QCOMPARE(int(data.config.waterType), 0x16);
    QCOMPARE(int(data.config.surfacePressure), 0x1718);
    QCOMPARE(int(data.config.cfgG), 0x1A);
    QTEST(hexOf(data.config.tailBytes).toLatin1(), "tailBytes");

    const bool isRead = data.config.tailBytes[0] != 0xEE || data.config.tailBytes[3] != 0xEE;
    QCOMPARE(int(data.computer.value64a != 0xEEEEEEEEEEEEEEEE), int(isRead));
    QCOMPARE(data.owner.isEmpty(), data.config.tailBytes[3] != 0xEE);
}

// Of 11 bytes each, behind their count; 34 and more end outside the answer.
void TestConfiguration::entries_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("offset");
    QTest::addColumn<quint64>("value64c");
    QTest::addColumn<int>("computerByte1");
    QTest::addColumn<int>("quadWords0");
    QTest::addColumn<int>("quadWords1");

    const auto row = [](int count, int offset, quint64 value64c, int computerByte1, int quadWords0,
                        int quadWords1) {
        QTest::addRow("%d", count)
            << count << offset << value64c << computerByte1 << quadWords0 << quadWords1;
    };
    // The answer ends with its byte 511.
    row(0, 148, 0x0807060504030201, 0x09, 0x0B0A, 0x0D0C);
    row(1, 159, 0x0807060504030201, 0x09, 0x0B0A, 0x0D0C);
    row(3, 181, 0x0807060504030201, 0x09, 0x0B0A, 0x0D0C);
    row(32, 500, 0x0807060504030201, 0x09, 0x0B0A, 0x000C);
    row(33, 511, 0x0000000000000001, 0x00, 0x0000, 0x0000);
    row(34, 512, 0x0000000000000000, 0x00, 0x0000, 0x0000);
    row(255, 512, 0x0000000000000000, 0x00, 0x0000, 0x0000);
}

void TestConfiguration::entries()
{
    QFETCH(const int, count);
    QFETCH(const int, offset);
    VardaData::Payload payload{};
    payload.fill(0xDD);
    payload[1] = 13;
    payload[2] = 1;
    payload[3] = std::uint8_t(ComputerModel::Varda);
    payload[147] = std::uint8_t(count);
    std::uint8_t byte = 0;
    for (std::size_t i = std::size_t(offset); i < payload.size(); ++i)
        payload[i] = ++byte;
    VardaData data = usedStore();
    data.processComputer(payload, true);
    QCOMPARE(int(data.computer.entryCount), count);
    QTEST(quint64(data.computer.value64c), "value64c");
    QTEST(int(data.computer.computerByte1), "computerByte1");
    QTEST(int(data.computer.quadWords[0]), "quadWords0");
    QTEST(int(data.computer.quadWords[1]), "quadWords1");
    QVERIFY(data.computer.entries.isEmpty());
}

// Version 1 of Tidemar and VSKM has the text at byte 58, version 12 of Varda at byte 49.
void TestConfiguration::owner_data()
{
    QTest::addColumn<int>("model");
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<QString>("owner");

    for (const int model : {2, 3}) {
        const auto row = [model](const char *name, const QByteArray &block, const QString &owner) {
            QTest::addRow("%d, %s", model, name) << model << block << owner;
        };
        row("plain", QByteArray("Jean\0trash", 10), QStringLiteral("Jean"));
        row("UTF-8", "Andr\xC3\xA9", QStringLiteral("Andr\u00E9"));
        row("nobody", QByteArray("\0nobody", 7), QString());
        row("32 bytes", QByteArray(32, 'w'), QString(32, QLatin1Char('w')));
    }
    QTest::newRow("Varda keeps it") << 1 << QByteArray("Jean") << QStringLiteral("before");
}

void TestConfiguration::owner()
{
    QFETCH(const int, model);
    QFETCH(const QByteArray, block);
    const std::size_t at = model == ComputerModel::Varda ? 49 : 58;
    VardaData::Payload payload{};
    payload[1] = model == ComputerModel::Varda ? 12 : 1;
    payload[2] = 1;
    payload[3] = std::uint8_t(model);
    std::copy(block.begin(), block.end(), payload.begin() + std::ptrdiff_t(at));
    payload[at + 32] = 'x';
    VardaData data = usedStore();
    data.processComputer(payload, false);
    QTEST(data.owner, "owner");
    QCOMPARE(QByteArray(data.computer.rawBlock.data(), int(block.size())), block);
    QCOMPARE(int(data.computer.batteryType), int('x'));
}

// A whole answer as a computer would give it, version 8 with the extended section.
void TestConfiguration::tidemarByHand()
{
    VardaData data;
    data.processComputer(
        payloadOf("0801 02 3412"               // version 8, Tidemar, configWord
                  "01020304 0605 00 f503 0708" // cfgA .. cfgD, cfgE, sea water, 1013 mbar
                  "a1a2a3 b1b2b3b4b5b6"        // tailBytes, cfgBytes
                  "1500 ffff 2023 ffff 3200 ffff 6400 ffff" // air, 32/35, 50 %, oxygen
                  "0000 ffff 0000 ffff 0000 ffff 0c41 ffff" // ..., 12/65
                  "05"                                      // cfgH
                  "0100 0200 03 0400 0500 06 0700 0800 09"
                  "0a50 ffff 0000 ffff 0000 ffff 0000 ffff" // 10/80
                  "0000 ffff 0000 ffff 0000 ffff 1520 ffff"
                  "ffffff" // skipped from version 5 on
                  "4d6172636f00000000000000000000000000000000000000000000000000000000" // Marco
                  "000000000000000000000000000000000000000000000000000000000000000000"),
        true);
    QCOMPARE(int(data.config.configWord), 0x1234);
    QCOMPARE(int(data.config.surfacePressure), 1013);
    QCOMPARE(hexOf(data.config.tailBytes), QStringLiteral("000000a1a2a3"));
    QCOMPARE(hexOf(data.config.cfgBytes), QStringLiteral("b1b2b3b4b5b6"));
    const QStringList fields = fieldsOf(data.config);
    const QStringList expected = fieldList(R"(
        gasTable1.oxygen=152032640000000c00000000 gasTable1.helium=002300000000004100000000
        gasTable2.oxygen=0a0000000000001500000000 gasTable2.helium=500000000000002000000000
        cfgTriple.first=0001,0004,0007 cfgTriple.second=0002,0005,0008 cfgTriple.third=030609)");
    for (const QString &field : expected)
        QVERIFY2(fields.contains(field), qPrintable(field));
    QCOMPARE(data.owner, QStringLiteral("Marco"));
}

QTEST_APPLESS_MAIN(TestConfiguration)
#include "tst_configuration.moc"
