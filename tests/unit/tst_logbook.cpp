// SPDX-License-Identifier: MIT
#include "headerfields.h"
#include "payload.h"

#include <QtTest/qtest.h>

#include <array>

class TestLogbook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyField_data();
    void everyField();
    void form_data();
    void form();
    void kindByte_data();
    void kindByte();
    void below1020_data();
    void below1020();
    void tidemarBit_data();
    void tidemarBit();
    void signedBytes();
    void vardaByHand();
    void appends();
};

static TidemarDiveHeader decode(const VardaData::Payload &payload,
                                ComputerModel::ComputerModelIn model)
{
    VardaData data;
    data.computerModel = model;
    data.processLogbook(payload);
    return data.diveHeaders.value(0);
}

// What no answer fills; looked at once, in everyField().
static QStringList unfilled()
{
    return fieldList("headerByte3=00 reservedBlock="
                     "000000000000000000000000000000000000000000000000"
                     "000000000000000000000000000000000000000000000000 "
                     "headerByte4=00 headerByte6=00 headerWord9=0000 headerWord10=0000 "
                     "text1= text2= text3= text4=");
}

// Where the layouts differ: those of a Varda, those of Tidemar and VSKM with their gaps, and those
// without either's; each without a version, before version 5 and from it on.
enum Layout { Varda0, Varda1, Varda5, Tidemar0, Tidemar1, Tidemar5, Plain1, Plain5, kLayouts };

// What is sent for a field, and what is read.
struct Field {
    const char *name;
    int width;                         // of a number, in bytes
    int stride;                        // from one number of several to the next
    std::array<int, kLayouts> offsets; // 0: the layout does not have it
    const char *sent;                  // the numbers
    const char *read;
    const char *otherwise; // what is there if it is not sent; no text: another row says it
};

// The bytes differ, so that one from the wrong place shows.
// clang-format off
constexpr Field kFields[] = {
    // name, width, stride, offsets in Varda 0, 1, 5, Tidemar 0, 1, 5, neither 1, 5
    {"diveNumber",    2, 0, {  1,   3,   3,   1,   3,   3,   3,   3}, "1f18",             "7960",                   nullptr},
    {"stamp",         8, 0, {107, 111, 120, 116, 118, 127, 109, 118}, "7c756e676059524b", "7c756e676059524b",       nullptr},
    {"stamp2",        8, 0, {143, 147, 156, 152, 154, 163, 145, 154}, "78716a635c554e47", "8678834931903057479",    nullptr},
    {"tenths1",       2, 0, {117, 121, 130, 126, 128, 137, 119, 128}, "9891",             "3905.7",                 nullptr},
    {"tenths2",       2, 0, {119, 123, 132, 128, 130, 139, 121, 130}, "a69f",             "4265.5",                 nullptr},
    {"sampleInterval", 1, 0, {  0, 167, 176,   0, 174, 183, 165, 174}, "d3",               "211",                    "5"},
    {"value32a",      4, 0, { 99, 168, 177, 108, 175, 184, 166, 175}, "efe8e1da",         "efe8e1da",               nullptr},
    {"kindByte",      1, 0, {  4,   6,   6,   4,   6,   6,   6,   6}, "2d",               "2d",                     nullptr},
    {"tidemarBit",    1, 0, {  0,   0,   0,   0,   0,   0,   0,   0}, "96",               "0",                      "1"},
    {"headerWord1",   2, 0, {  9,  11,  11,   9,  11,  11,  11,  11}, "5750",             "5750",                   nullptr},
    {"below1020",     2, 0, {  7,   9,   9,   7,   9,   9,   9,   9}, "03fb",             "1",                      nullptr},
    {"headerByte1",   1, 0, {  5,   7,   7,   5,   7,   7,   7,   7}, "34",               "34",                     nullptr},
    {"headerByte2",   1, 0, {  6,   8,   8,   6,   8,   8,   8,   8}, "3b",               "3b",                     nullptr},
    {"headerWord2",   2, 0, {127, 131, 140, 136, 138, 147, 129, 138}, "ded7",             "ded7",                   nullptr},
    {"headerWord3",   2, 0, {115, 119, 128, 124, 126, 135, 117, 126}, "8a83",             "8a83",                   nullptr},
    {"headerWord4",   2, 0, {137, 141, 150, 146, 148, 157, 139, 148}, "241d",             "241d",                   nullptr},
    {"value32b",      4, 0, {123, 127, 136, 132, 134, 143, 125, 134}, "d0c9c2bb",         "d0c9c2bb",               nullptr},
    {"count1",        4, 0, {129, 133, 142, 138, 140, 149, 131, 140}, "faf3ece5",         "4210289893",             nullptr},
    {"count2",        4, 0, {133, 137, 146, 142, 144, 153, 135, 144}, "160f0801",         "370083841",              nullptr},
    {"value32c",      4, 0, {151, 155, 164, 160, 162, 171, 153, 162}, "948d867f",         "948d867f",               nullptr},
    {"tissueN2",      2, 4, { 11,  13,  13,  11,  13,  13,  13,  13},
     "655e 817a 9d96 b9b2 d5ce f1ea 0d06 2922 "
     "453e 615a 7d76 9992 b5ae d1ca ede6 0902",
     "655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,"
     "453e,615a,7d76,9992,b5ae,d1ca,ede6,0902",
     nullptr},
    {"tissueHe",      2, 4, { 13,  15,  15,  13,  15,  15,  15,  15},
     "736c 8f88 aba4 c7c0 e3dc fff8 1b14 3730 "
     "534c 6f68 8b84 a7a0 c3bc dfd8 fbf4 1710",
     "736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,"
     "534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710",
     nullptr},
    {"gasSlotMask",   1, 0, { 75,  77,   0,  75,  77,   0,  77,   0}, "1e",               "001e",                   nullptr},
    {"gasSlotMask",   2, 0, {  0,   0,  77,   0,   0,  77,   0,  77}, "251e",             "251e",                   nullptr},
    {"gasO2",         1, 2, { 76,  78,   0,  76,  78,   0,  78,   0},
     "2c 3a 48 56 64 72 80 8e",
     "2c3a48566472808e00000000",
     nullptr},
    {"gasO2",         1, 2, {  0,   0,  79,   0,   0,  79,   0,  79},
     "2c 3a 48 56 64 72 80 8e 9c aa b8 c6",
     "2c3a48566472808e9caab8c6",
     nullptr},
    {"gasHe",         1, 2, { 77,  79,   0,  77,  79,   0,  79,   0},
     "33 41 4f 5d 6b 79 87 95",
     "33414f5d6b79879500000000",
     nullptr},
    {"gasHe",         1, 2, {  0,   0,  80,   0,   0,  80,   0,  80},
     "33 41 4f 5d 6b 79 87 95 a3 b1 bf cd",
     "33414f5d6b798795a3b1bfcd",
     nullptr},
    {"headerByte5",   1, 0, {  3,   5,   5,   3,   5,   5,   5,   5}, "26",               "26",                     nullptr},
    {"headerWord5",   2, 0, { 93,  95, 104,  93,  95, 104,  95, 104}, "e2db",             "e2db",                   nullptr},
    {"headerWord6",   2, 0, { 95,  97, 106,  98, 100, 109,  97, 106}, "f0e9",             "f0e9",                   nullptr},
    {"headerWord7",   2, 0, { 97,  99, 108, 103, 105, 114,  99, 108}, "fef7",             "fef7",                   nullptr},
    {"value32d",      4, 0, {103, 105, 114, 112, 114, 123, 105, 114}, "362f2821",         "362f2821",               nullptr},
    {"headerWord8",   2, 0, {  0, 109, 118,   0,   0,   0,   0,   0}, "443d",             "443d",                   "0000"},
    {"signed1",       1, 0, {121, 125, 134, 130, 132, 141, 123, 132}, "ad",               "-83",                    nullptr},
    {"signed2",       1, 0, {122, 126, 135, 131, 133, 142, 124, 133}, "b4",               "-76",                    nullptr},
    {"headerWord11",  2, 0, {139, 143, 152, 148, 150, 159, 141, 150}, "322b",             "322b",                   nullptr},
    {"headerWord12",  2, 0, {141, 145, 154, 150, 152, 161, 143, 152}, "4039",             "4039",                   nullptr},
    {"value32e",      4, 0, {155, 159, 168, 164, 166, 175, 157, 166}, "b0a9a29b",         "b0a9a29b",               nullptr},
    {"value32f",      4, 0, {159, 163, 172, 168, 170, 179, 161, 170}, "ccc5beb7",         "ccc5beb7",               nullptr},
    {"headerByte7",   1, 0, {  0,   0,   0,   0,   0,   0,   0,   0}, "f6",               "f6",                     "00"},
    {"headerWord13",  2, 0, {  0,   0,   0,   0,   0,   0,   0,   0}, "04fd",             "04fd",                   "0001"},
    {"headerWord14",  2, 0, {  0,   0,   0,   0,   0,   0,   0,   0}, "120b",             "120b",                   "0384"},
};
// clang-format on

// Where one version of a layout has a field.
struct Place {
    const char *field;
    int offset;
};

static int offsetOf(const Field &field, Layout layout, const QList<Place> &places)
{
    for (const Place &place : places) {
        if (qstrcmp(place.field, field.name) == 0)
            return place.offset;
    }
    return field.offsets[layout];
}

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

void TestLogbook::everyField_data()
{
    QTest::addColumn<ComputerModel::ComputerModelIn>("model");
    QTest::addColumn<VardaData::Payload>("payload");
    QTest::addColumn<QStringList>("fields");

    const auto row = [](const char *name, ComputerModel::ComputerModelIn model, int first,
                        Layout layout, const QList<Place> &places) {
        VardaData::Payload payload{};
        payload.fill(0xEE); // what a decoder reads at the wrong place shows
        payload[1] = std::uint8_t(first);
        payload[2] = std::uint8_t(first >> 8);
        QStringList fields;
        for (const Field &field : kFields) {
            const int offset = offsetOf(field, layout, places);
            if (offset > 0)
                put(payload, field, offset);
            if (const char *text = offset > 0 ? field.read : field.otherwise)
                fields << QLatin1String(field.name) + QLatin1Char('=') + QLatin1String(text);
        }
        QTest::newRow(name) << model << payload << fields;
    };
    row("Varda 0", ComputerModel::Varda, 0x1234, Varda0, {});
    row("Varda 1", ComputerModel::Varda, 0x8001, Varda1, {});
    row("Varda 4", ComputerModel::Varda, 0x8004, Varda1, {});
    row("Varda 5", ComputerModel::Varda, 0x8005, Varda5, {});
    row("Varda 6", ComputerModel::Varda, 0x8006, Varda5,
        {{"headerByte7", 181}, {"headerWord13", 182}});
    row("Varda 10", ComputerModel::Varda, 0x800A, Varda5,
        {{"headerByte7", 181}, {"headerWord13", 182}, {"headerWord14", 184}});
    row("Tidemar 0", ComputerModel::Tidemar, 0x1234, Tidemar0, {});
    row("Tidemar 1", ComputerModel::Tidemar, 0x8001, Tidemar1, {});
    row("Tidemar 4", ComputerModel::Tidemar, 0x8004, Tidemar1, {{"tidemarBit", 179}});
    row("Tidemar 5", ComputerModel::Tidemar, 0x8005, Tidemar5, {{"tidemarBit", 188}});
    row("Tidemar 6", ComputerModel::Tidemar, 0x8006, Tidemar5, {{"tidemarBit", 188}});
    row("Tidemar 10", ComputerModel::Tidemar, 0x800A, Tidemar5, {{"tidemarBit", 188}});
    row("VSKM 0", ComputerModel::VSKM, 0x1234, Tidemar0, {});
    row("VSKM 1", ComputerModel::VSKM, 0x8001, Tidemar1, {});
    row("VSKM 4", ComputerModel::VSKM, 0x8004, Tidemar1, {});
    row("VSKM 5", ComputerModel::VSKM, 0x8005, Tidemar5, {});
    row("VSKM 6", ComputerModel::VSKM, 0x8006, Tidemar5, {});
    row("VSKM 10", ComputerModel::VSKM, 0x800A, Tidemar5, {});
    row("no model, 4", ComputerModel::Unknown, 0x8004, Plain1, {});
    row("third party, 10", ComputerModel::ThirdParty, 0x800A, Plain5, {});
    row("Varda, 0x8100", ComputerModel::Varda, 0x8100, Plain1,
        {{"sampleInterval", 0}, {"value32a", 101}});
    row("Tidemar, 0x8100", ComputerModel::Tidemar, 0x8100, Tidemar1,
        {{"sampleInterval", 0}, {"value32a", 110}});
}

void TestLogbook::everyField()
{
    QFETCH(const ComputerModel::ComputerModelIn, model);
    QFETCH(const VardaData::Payload, payload);
    const TidemarDiveHeader header = decode(payload, model);
    QCOMPARE(header.model, model);

    QStringList fields = headerFieldsOf(header)
                         + QStringList{FIELD(header, headerByte7), FIELD(header, headerWord13),
                                       FIELD(header, headerWord14)};
    fields.removeIf([](const QString &field) { return field.startsWith(QLatin1String("model=")); });
    const QStringList defaults = unfilled();
    for (const QString &field : defaults)
        QVERIFY2(fields.removeOne(field), qPrintable(field));
    QTEST(fields, "fields");
}

void TestLogbook::form_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("diveNumber");
    QTest::addColumn<int>("headerByte5");

    // Bytes 3 and on are 11 22 33.
    const auto row = [](int first, int diveNumber, int headerByte5) {
        QTest::addRow("0x%04X", first) << first << diveNumber << headerByte5;
    };
    row(0x0000, 0, 0x11);
    row(0x0001, 1, 0x11);
    row(0x7FFF, 0x7FFF, 0x11);
    row(0x8000, 0x8000, 0x11);
    row(0x8001, 0x2211, 0x33);
    row(0x8100, 0x2211, 0x33);
    row(0xFFFF, 0x2211, 0x33);
}

void TestLogbook::form()
{
    QFETCH(const int, first);
    VardaData::Payload payload = payloadOf("0000 11 22 33 44");
    payload[1] = std::uint8_t(first);
    payload[2] = std::uint8_t(first >> 8);
    const TidemarDiveHeader header = decode(payload, ComputerModel::Varda);
    QTEST(int(header.diveNumber), "diveNumber");
    QTEST(int(header.headerByte5), "headerByte5");
}

void TestLogbook::kindByte_data()
{
    QTest::addColumn<ComputerModel::ComputerModelIn>("model");
    QTest::addColumn<int>("sent");
    QTest::addColumn<int>("kindByte");

    QTest::newRow("Varda 3") << ComputerModel::Varda << 3 << 3;
    QTest::newRow("no model 3") << ComputerModel::Unknown << 3 << 3;
    QTest::newRow("third party 3") << ComputerModel::ThirdParty << 3 << 3;
    QTest::newRow("Tidemar 3") << ComputerModel::Tidemar << 3 << 5;
    QTest::newRow("VSKM 3") << ComputerModel::VSKM << 3 << 5;
    QTest::newRow("Tidemar 2") << ComputerModel::Tidemar << 2 << 2;
    QTest::newRow("Tidemar 5") << ComputerModel::Tidemar << 5 << 5;
    QTest::newRow("VSKM 0") << ComputerModel::VSKM << 0 << 0;
}

void TestLogbook::kindByte()
{
    QFETCH(const ComputerModel::ComputerModelIn, model);
    QFETCH(const int, sent);
    VardaData::Payload payload{};
    payload[1] = 9;
    payload[4] = std::uint8_t(sent);
    QTEST(int(decode(payload, model).kindByte), "kindByte");

    payload = payloadOf("0580 0900");
    payload[6] = std::uint8_t(sent);
    QTEST(int(decode(payload, model).kindByte), "kindByte");
}

void TestLogbook::below1020_data()
{
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<bool>("below");

    QTest::newRow("0") << QByteArray("0000") << true;
    QTest::newRow("1019") << QByteArray("fb03") << true;
    QTest::newRow("1020") << QByteArray("fc03") << false;
    QTest::newRow("65535") << QByteArray("ffff") << false;
}

void TestLogbook::below1020()
{
    QFETCH(const QByteArray, word);
    QTEST(decode(payloadOf("0100 00000000" + word), ComputerModel::Varda).below1020, "below");
    QTEST(decode(payloadOf("0180 0100 00000000" + word), ComputerModel::VSKM).below1020, "below");
}

// The byte stands at 179 in version 4 and at 188 from version 5 on.
void TestLogbook::tidemarBit_data()
{
    QTest::addColumn<ComputerModel::ComputerModelIn>("model");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("bit");

    QTest::newRow("Tidemar 0") << ComputerModel::Tidemar << 0x0001 << 0 << 1;
    QTest::newRow("Tidemar 3") << ComputerModel::Tidemar << 0x8003 << 179 << 1;
    QTest::newRow("Tidemar 4") << ComputerModel::Tidemar << 0x8004 << 179 << 0;
    QTest::newRow("Tidemar 5") << ComputerModel::Tidemar << 0x8005 << 188 << 0;
    QTest::newRow("Tidemar 255") << ComputerModel::Tidemar << 0x80FF << 188 << 0;
    QTest::newRow("VSKM 4") << ComputerModel::VSKM << 0x8004 << 179 << 1;
    QTest::newRow("Varda 4") << ComputerModel::Varda << 0x8004 << 179 << 1;
}

void TestLogbook::tidemarBit()
{
    QFETCH(const ComputerModel::ComputerModelIn, model);
    QFETCH(const int, first);
    QFETCH(const int, offset);
    VardaData::Payload payload{};
    payload.fill(0xFF);
    payload[1] = std::uint8_t(first);
    payload[2] = std::uint8_t(first >> 8);
    if (offset > 0)
        payload[std::size_t(offset)] = 0xFE;
    QTEST(int(decode(payload, model).tidemarBit), "bit");
}

// The plain layout of a Varda has the two at bytes 121 and 122.
void TestLogbook::signedBytes()
{
    VardaData::Payload payload = payloadOf("0100");
    payload[121] = 0x80;
    payload[122] = 0xFF;
    const TidemarDiveHeader header = decode(payload, ComputerModel::Varda);
    QCOMPARE(header.signed1, -128.0);
    QCOMPARE(header.signed2, -1.0);
}

// Version 10, where everything that a Varda can send is there.
void TestLogbook::vardaByHand()
{
    const TidemarDiveHeader header = decode(
        payloadOf("0a80 2a00"   // version 10, dive 42
                  "01 00 50 4b" // headerByte5, kindByte, headerByte1, headerByte2
                  "f503 0201"   // 1013, headerWord1
                  "0100 0200 0300 0400 0500 0600 0700 0800 0900 0a00 0b00 0c00 0d00 0e00 0f00 1000"
                  "1100 1200 1300 1400 1500 1600 1700 1800 1900 1a00 1b00 1c00 1d00 1e00 1f00 2000"
                  "0300" // gas slots 0 and 1
                  "1500 3200 0000 0000 0000 0000 0000 0000 0000 0000 0000 1241"
                  "ff 0403 0605 0807"          // skipped, headerWord5 to headerWord7
                  "0d0c0b0a 11100f0e"          // value32a for a while, value32d
                  "1312"                       // headerWord8
                  "00f1536500000000"           // stamp
                  "0200 7b00 f401"             // headerWord3, 12.3, 50.0
                  "f6 14"                      // -10, 20
                  "04030201 0605"              // value32b, headerWord2
                  "e8030000 ffffffff"          // 1000, 4294967295
                  "0100 0200 0300"             // headerWord4, headerWord11, headerWord12
                  "feffffffffffffff"           // stamp2
                  "01000000 02000000 03000000" // value32c, value32e, value32f
                  "0a 78563412"                // sampleInterval, value32a
                  "07 0403"                    // headerByte7, headerWord13
                  "8403"                       // headerWord14
                  "ffffffffffff"),
        ComputerModel::Varda);
    QCOMPARE(headerFieldsOf(header), fieldList(R"(
        diveNumber=42 model=Varda stamp=000000006553f100 stamp2=-2 tenths1=12.3 tenths2=50
        sampleInterval=10 value32a=12345678 kindByte=00 tidemarBit=1 headerWord1=0102 below1020=1
        headerByte1=50 headerByte2=4b headerWord2=0506 headerWord3=0002 headerWord4=0001
        value32b=01020304 count1=1000 count2=4294967295 value32c=00000001
        tissueN2=0001,0003,0005,0007,0009,000b,000d,000f,0011,0013,0015,0017,0019,001b,001d,001f
        tissueHe=0002,0004,0006,0008,000a,000c,000e,0010,0012,0014,0016,0018,001a,001c,001e,0020
        gasSlotMask=0003 headerByte3=00 gasO2=153200000000000000000012
        gasHe=000000000000000000000041
        reservedBlock=000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000
        headerByte4=00 headerByte5=01 headerByte6=00 headerWord5=0304 headerWord6=0506
        headerWord7=0708 value32d=0e0f1011 headerWord8=1213 signed1=-10 signed2=20
        headerWord9=0000 headerWord10=0000 headerWord11=0002 headerWord12=0003 value32e=00000002
        value32f=00000003 text1= text2= text3= text4=)"));
    QCOMPARE(int(header.headerByte7), 7);
    QCOMPARE(int(header.headerWord13), 0x0304);
    QCOMPARE(int(header.headerWord14), 900);
}

void TestLogbook::appends()
{
    VardaData data;
    data.computerModel = ComputerModel::Tidemar;
    data.processLogbook(payloadOf("0300"));
    data.computerModel = ComputerModel::VSKM;
    data.processLogbook(payloadOf("0100"));
    data.processLogbook(payloadOf("0300"));
    QCOMPARE(data.diveHeaders.size(), 3);
    QCOMPARE(int(data.diveHeaders[0].diveNumber), 3);
    QCOMPARE(data.diveHeaders[0].model, ComputerModel::Tidemar);
    QCOMPARE(int(data.diveHeaders[1].diveNumber), 1);
    QCOMPARE(data.diveHeaders[1].model, ComputerModel::VSKM);
    QCOMPARE(int(data.diveHeaders[2].diveNumber), 3);
}

QTEST_APPLESS_MAIN(TestLogbook)
#include "tst_logbook.moc"
