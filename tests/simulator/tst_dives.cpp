// SPDX-License-Identifier: MIT
#include "device/commands.h"
#include "devices.h"

#include <QtCore/qcryptographichash.h>
#include <QtCore/qdatetime.h>
#include <QtCore/qtimezone.h>
#include <QtTest/qtest.h>

using namespace Qt::StringLiterals;
using namespace simulator;

namespace {

// One dive whose fields are all different.
const QByteArray kHeader = R"({"diveNumber":513,"headerByte5":5,"kindByte":3,"headerByte1":17,
    "headerByte2":18,"density":1010,"headerWord1":4884,
    "tissueN2":[8192,8193,8194,8195,8196,8197,8198,8199,8200,8201,8202,8203,8204,8205,8206,8207],
    "tissueHe":[12288,12289,12290,12291,12292,12293,12294,12295,12296,12297,12298,12299,12300,
                12301,12302,12303],
    "gasSlotMask":3082,"gasO2":[65,66,67,68,69,70,71,72,73,74,75,76],
    "gasHe":[81,82,83,84,85,86,87,88,89,90,91,92],"headerWord5":"6162","headerWord6":"6364",
    "headerWord7":"6566","value32a":"71727374","value32d":"75767778","headerWord8":"797a",
    "stamp":"8182838485868788","headerWord3":"898a","tenths1":"8b8c","tenths2":"8d8e",
    "signed1":-3,"signed2":29,"value32b":"91929394","headerWord2":"9596","count1":"9798999a",
    "count2":"9b9c9d9e","headerWord4":"a1a2","headerWord11":"a3a4","headerWord12":"a5a6",
    "stamp2":"b1b2b3b4b5b6b7b8","value32c":"c1c2c3c4","value32e":"c5c6c7c8","value32f":"c9cacbcc",
    "sampleInterval":10,"headerByte7":"d1","headerWord13":"d2d3","headerWord14":"d4d5",
    "tidemarBit":1})";

// The parts of its header, as they follow each other on the wire.
const QString kStart = u"010205031112f2031413"
                       "00200030012001300220023003200330042004300520053006200630072007300820083009"
                       "2009300a200a300b200b300c200c300d200d300e200e300f200f30"_s;
const QString kEightGases = u"0a41514252435344544555465647574858"_s;
const QString kTwelveGases = u"0a0c41514252435344544555465647574858"
                             "49594a5a4b5b4c5c"_s;
const QString kTail = u"8887868584838281"
                      "8a898c8b8e8dfd1d"
                      "9493929196959a9998979e9d9c9ba2a1a4a3a6a5"
                      "b8b7b6b5b4b3b2b1c4c3c2c1c8c7c6c5cccbcac9"_s;

const QByteArray kSamples = R"([{"depth":1234,"code":9,"value12":-2,"mode":2,"flag":1,
    "status":33,"gasStatus":34,"aux1":-5,"aux2":513,"aux3":3,"aux4":4,"aux5":5,"aux6":6,"aux7":7,
    "aux8":2056,"aux9":9,"aux10":10,"aux11":11,"aux12":1},
    {"depth":4095,"value12":2047}])";

QByteArray with(const char *model, const QByteArray &rest)
{
    return R"({"model":")" + QByteArray(model) + "\"," + rest + "}";
}

QByteArray number(quint16 value)
{
    QByteArray bytes;
    bytes.append(char(value & 0xFF)).append(char(value >> 8));
    return bytes;
}

// What the decoded pieces of one dive's samples are together.
QByteArray stream(const QByteArray &json, quint16 dive)
{
    return QByteArray::fromHex(ask(json, Fullsamples, number(dive)).join(QString()).toLatin1());
}

} // namespace

class TestDives : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headers_data();
    void headers();
    void samples_data();
    void samples();
    void newestLayouts_data();
    void newestLayouts();
    void knownDivesAreLeftOut();
    void samplesOfNoDive();
    void deleting_data();
    void deleting();
    void exactBytes();
    void wishes();
    void generatedDivesNeverChange_data();
    void generatedDivesNeverChange();
    void generatedDivesAreInOrder();
    void generatedDivesAreWhole_data();
    void generatedDivesAreWhole();
    void complaints_data();
    void complaints();
};

void TestDives::headers_data()
{
    QTest::addColumn<QByteArray>("model");
    QTest::addColumn<int>("version");
    QTest::addColumn<QString>("payload");
    const auto row = [](const char *model, int version, const QString &payload) {
        QTest::addRow("%s %d", model, version) << QByteArray(model) << version << payload;
    };

    const QString shortMiddle = u"e5626164636665"_s;
    const QString longMiddle = u"e56261e5e5e56463e5e5e56665e5e5e5"_s;
    const QString plainBlock = u"7473727178777675"_s;
    const QString blockWithGap = u"e5e5e5e578777675"_s;
    const QString end = u"0a74737271"_s;

    row("varda", 0, kStart + kEightGases + shortMiddle + plainBlock + kTail);
    row("varda", 1,
        u"0180"_s + kStart + kEightGases + shortMiddle + blockWithGap + u"7a79"_s + kTail + end);
    row("varda", 4,
        u"0480"_s + kStart + kEightGases + shortMiddle + blockWithGap + u"7a79"_s + kTail + end);
    row("varda", 5,
        u"0580"_s + kStart + kTwelveGases + shortMiddle + blockWithGap + u"7a79"_s + kTail + end);
    row("varda", 6,
        u"0680"_s + kStart + kTwelveGases + shortMiddle + blockWithGap + u"7a79"_s + kTail + end
            + u"d1d3d2"_s);
    row("varda", 9,
        u"0980"_s + kStart + kTwelveGases + shortMiddle + blockWithGap + u"7a79"_s + kTail + end
            + u"d1d3d2"_s);
    row("varda", 10,
        u"0a80"_s + kStart + kTwelveGases + shortMiddle + blockWithGap + u"7a79"_s + kTail + end
            + u"d1d3d2d5d4"_s);
    row("varda", 255,
        u"ff80"_s + kStart + kTwelveGases + shortMiddle + blockWithGap + u"7a79"_s + kTail + end
            + u"d1d3d2d5d4"_s);
    row("tidemar", 0, kStart + kEightGases + longMiddle + plainBlock + kTail);
    row("tidemar", 1, u"0180"_s + kStart + kEightGases + longMiddle + blockWithGap + kTail + end);
    row("tidemar", 3, u"0380"_s + kStart + kEightGases + longMiddle + blockWithGap + kTail + end);
    row("tidemar", 4,
        u"0480"_s + kStart + kEightGases + longMiddle + blockWithGap + kTail + end + u"01"_s);
    row("tidemar", 5,
        u"0580"_s + kStart + kTwelveGases + longMiddle + blockWithGap + kTail + end + u"01"_s);
    row("tidemar", 10,
        u"0a80"_s + kStart + kTwelveGases + longMiddle + blockWithGap + kTail + end + u"01"_s);
    row("vskm", 0, kStart + kEightGases + longMiddle + plainBlock + kTail);
    row("vskm", 4, u"0480"_s + kStart + kEightGases + longMiddle + blockWithGap + kTail + end);
    row("vskm", 10, u"0a80"_s + kStart + kTwelveGases + longMiddle + blockWithGap + kTail + end);
    row("thirdparty", 0, kStart + kEightGases + shortMiddle + plainBlock + kTail);
    row("none", 10, u"0a80"_s + kStart + kTwelveGases + shortMiddle + blockWithGap + kTail + end);
}

void TestDives::headers()
{
    QFETCH(QByteArray, model);
    QFETCH(int, version);
    QFETCH(QString, payload);
    const QStringList answer = ask(with(model, R"("logbookVersion":)" + QByteArray::number(version)
                                                   + R"(,"dives":[{"header":)" + kHeader + "}]"),
                                   ListDives);
    QCOMPARE(answer, QStringList({payload, QString()}));
}

void TestDives::samples_data()
{
    QTest::addColumn<QByteArray>("model");
    QTest::addColumn<int>("version");
    QTest::addColumn<QString>("bytes");
    const auto row = [](const char *model, int version, const char *bytes) {
        QTest::addRow("%s %d", model, version)
            << QByteArray(model) << version << QString::fromLatin1(bytes);
    };
    row("varda", 0,
        "e6d2f4fefffb"
        "c0fffffff700");
    row("varda", 1,
        "8001"
        "e6d2f4fefffb0102"
        "c0fffffff7000000");
    row("varda", 2,
        "8002"
        "e6d2f4fefffb01020304"
        "c0fffffff70000000000");
    row("varda", 3,
        "8003"
        "e6d2f4fefffb010203040808090a"
        "c0fffffff7000000000000000000");
    row("varda", 4,
        "8004"
        "e6d2f4fefffb010203040808090a"
        "c0fffffff7000000000000000000");
    row("tidemar", 0,
        "e6d2f4fefffb"
        "c0fffffff700");
    row("tidemar", 1,
        "8001"
        "e6d2f4fefffb21220102"
        "c0fffffff70000000000");
    row("tidemar", 2,
        "8002"
        "e6d2f4fefffb2122010208080b01"
        "c0fffffff700000000000000ff00");
    row("tidemar", 3,
        "8003"
        "d294feef"
        "fb05060701020808090a"
        "ff0fffc7"
        "00000000000000000000");
    row("vskm", 0,
        "e6d2f4fefffb"
        "c0fffffff700");
    row("vskm", 1,
        "8001"
        "e6d2f4fefffb21220102"
        "c0fffffff70000000000");
    row("vskm", 3,
        "8003"
        "e6d2f4fefffb2122010208080b01"
        "c0fffffff700000000000000ff00");
    row("none", 2,
        "8002"
        "e6d2f4fefffb2122010208080b01"
        "c0fffffff700000000000000ff00");
}

void TestDives::samples()
{
    QFETCH(QByteArray, model);
    QFETCH(int, version);
    QFETCH(QString, bytes);
    const QByteArray json = with(model, R"("sampleVersion":)" + QByteArray::number(version)
                                            + R"(,"dives":[{"profile":)" + kSamples + "}]");
    QCOMPARE(ask(json, Fullsamples, number(1)), QStringList({bytes, QString()}));

    // The same in pieces that end inside a sample.
    const QStringList pieces = ask(json.chopped(1) + R"(,"sampleFrame":5})", Fullsamples,
                                   number(1));
    QCOMPARE(pieces.size(), (bytes.size() / 2 + 4) / 5 + 1);
    QCOMPARE(pieces.first(), bytes.left(10));
    QCOMPARE(pieces.join(QString()), bytes);
    QCOMPARE(pieces.last(), QString());
}

void TestDives::newestLayouts_data()
{
    QTest::addColumn<QByteArray>("model");
    QTest::addColumn<QString>("header");
    QTest::addColumn<QString>("samples");
    const auto row = [](const char *model, const char *header, const char *samples) {
        QTest::newRow(model) << QByteArray(model) << QString::fromLatin1(header)
                             << QString::fromLatin1(samples);
    };
    row("varda", "0a80", "8003");
    row("tidemar", "0580", "8003");
    row("vskm", "0580", "8002");
    row("none", "0580", "8002");
}

void TestDives::newestLayouts()
{
    QFETCH(QByteArray, model);
    QFETCH(QString, header);
    QFETCH(QString, samples);
    const QByteArray json = with(model, R"("dives":1)");
    QVERIFY(ask(json, ListDives).first().startsWith(header));
    QVERIFY(ask(json, Fullsamples, number(1)).first().startsWith(samples));
}

void TestDives::knownDivesAreLeftOut()
{
    const QByteArray json = R"({"dives":{"first":254,"count":4},"logbookVersion":0})";
    const auto numbers = [&](const QByteArray &known) {
        QStringList listed;
        const QStringList answer = ask(json, ListDives, known);
        for (const QString &header : answer)
            listed << header.left(4);
        return listed;
    };
    // The newest comes first.
    QCOMPARE(numbers({}), QStringList({u"0101"_s, u"0001"_s, u"ff00"_s, u"fe00"_s, QString()}));
    QCOMPARE(numbers(QByteArray::fromHex("00010109fe00")),
             QStringList({u"0101"_s, u"ff00"_s, QString()}));
    QCOMPARE(numbers(QByteArray::fromHex("00010101ff00fe00")), QStringList({QString()}));
    // Half a number is none.
    QCOMPARE(numbers(QByteArray::fromHex("0001010001")).size(), 5 - 1);
}

void TestDives::samplesOfNoDive()
{
    QCOMPARE(ask("{}", Fullsamples, number(999)), QStringList(QString()));
    QCOMPARE(ask("{}", Fullsamples, QByteArray(1, 1)), QStringList(QString()));
    QCOMPARE(ask("{}", Fullsamples), QStringList(QString()));
}

void TestDives::deleting_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QStringList>("left");
    QTest::newRow("the last") << int(DeleteLastDive) << u"0100000002000000"_s
                              << QStringList({u"0200"_s, u"0100"_s, QString()});
    QTest::newRow("all") << int(EraseDives) << u"0300000000000000"_s << QStringList({QString()});
    QTest::newRow("the memory") << int(EraseDivesFlash) << u"01"_s << QStringList({QString()});
}

void TestDives::deleting()
{
    QFETCH(int, command);
    QFETCH(QString, answer);
    QFETCH(QStringList, left);
    Computer computer(device(R"({"dives":3,"logbookVersion":0})"));
    QCOMPARE(ask(computer, quint8(command)), QStringList({answer}));
    QStringList numbers;
    const QStringList headers = ask(computer, ListDives);
    for (const QString &header : headers)
        numbers << header.left(4);
    QCOMPARE(numbers, left);
    QCOMPARE(computer.state().value(u"dives").toInt(), left.size() - 1);
    QCOMPARE(ask(computer, Fullsamples, number(3)), QStringList({QString()}));
}

void TestDives::exactBytes()
{
    const QByteArray json = R"({"logbookVersion":0,"dives":[
        {"number":7,"headerBytes":"00810700","sampleBytes":"80 01 02"},
        {"number":7,"headerBytes":"","sampleBytes":""},
        {"number":40000,"headerBytes":"ffff","sampleBytes":"03"}]})";
    QCOMPARE(ask(json, ListDives), QStringList({u"ffff"_s, QString(), u"00810700"_s, QString()}));
    QCOMPARE(ask(json, Fullsamples, number(40000)), QStringList({u"03"_s, QString()}));
    // Of two dives with one number it is the newer one.
    QCOMPARE(ask(json, Fullsamples, number(7)), QStringList({QString()}));
}

void TestDives::wishes()
{
    const QByteArray json = R"({"logbookVersion":0,"sampleVersion":0,"dives":
        {"count":2,"samples":7,"interval":20,"kind":"trimix","header":{"value32d":"0a"}}})";
    QCOMPARE(stream(json, 1).size(), 7 * 6);
    QCOMPARE(stream(json, 2).size(), 7 * 6);
    const QByteArray header = QByteArray::fromHex(ask(json, ListDives).first().toLatin1());
    // Three gases, six intervals of 20 s, the wish.
    QCOMPARE(header.mid(74, 7).toHex(), QByteArray("07122d32006400"));
    QCOMPARE(header.mid(98, 8).toHex(), QByteArray("780000000a000000"));
}

void TestDives::generatedDivesNeverChange_data()
{
    QTest::addColumn<int>("dive");
    QTest::addColumn<QByteArray>("hash");
    // An easy dive, one with stops, a closed-circuit one and one with trimix.
    QTest::newRow("1") << 1 << QByteArray("f143e09c7b2addf416e9bf047d5d9225");
    QTest::newRow("3") << 3 << QByteArray("5ae4f44d78119a2bb39222b2ae5f2843");
    QTest::newRow("5") << 5 << QByteArray("e79f91ad9ef84dd68d859ece2fc1aae1");
    QTest::newRow("6") << 6 << QByteArray("4a3e9bb10b2feecbfdec99c3da799c87");
}

void TestDives::generatedDivesNeverChange()
{
    QFETCH(int, dive);
    QFETCH(QByteArray, hash);
    const QByteArray json = R"({"dives":{"first":)" + QByteArray::number(dive)
                            + R"(,"count":1,"seed":7}})";
    const QByteArray all = QByteArray::fromHex(ask(json, ListDives).first().toLatin1())
                           + stream(json, quint16(dive));
    QCOMPARE(QCryptographicHash::hash(all, QCryptographicHash::Md5).toHex(), hash);
}

// Two a day, and nobody begins a dive before the last one has ended.
void TestDives::generatedDivesAreInOrder()
{
    QStringList days;
    quint64 end = 0;
    for (quint16 number = 1; number <= 60; ++number) {
        DiveRecipe recipe;
        recipe.number = number;
        const DiveHeader header = generateDive(recipe, Model::Varda).header;
        QVERIFY(header[HeaderField::Stamp] > end);
        end = header[HeaderField::Stamp2];
        days.append(
            QDateTime::fromSecsSinceEpoch(qint64(end), QTimeZone::utc()).toString(u"yyyy-MM-dd"_s));
    }
    QCOMPARE(days.first(4),
             QStringList({u"2024-03-01"_s, u"2024-03-01"_s, u"2024-03-02"_s, u"2024-03-02"_s}));
    QCOMPARE(days.last(), u"2024-03-30"_s);
}

void TestDives::generatedDivesAreWhole_data()
{
    QTest::addColumn<int>("dive");
    for (int dive = 1; dive <= 60; ++dive)
        QTest::addRow("%d", dive) << dive;
}

// As a diver would look at it: begins and ends at the surface, speeds that a body takes, only
// gases that the header knows, and a header that fits the samples.
void TestDives::generatedDivesAreWhole()
{
    QFETCH(int, dive);
    DiveRecipe recipe;
    recipe.number = quint16(dive);
    const GeneratedDive made = generateDive(recipe, Model::Varda);
    const QList<Sample> &samples = made.samples;
    QVERIFY(samples.size() > 200 && samples.size() < 3000);
    QCOMPARE(samples.first().depth, 0);
    QCOMPARE(samples.last().depth, 0);

    int deepest = 0;
    bool hadCeiling = false;
    for (qsizetype i = 0; i < samples.size(); ++i) {
        const Sample &sample = samples[i];
        deepest = std::max(deepest, sample.depth);
        QVERIFY(i == 0 || std::abs(sample.depth - samples[i - 1].depth) <= 20);
        QVERIFY(made.header[HeaderField::GasSlotMask] & (quint64(1) << sample.code));
        QVERIFY(sample.value12 >= -99 && sample.value12 <= 300 && sample.value12 != 0);
        // Nobody goes above a ceiling but by the swell.
        QVERIFY(sample.value12 < 0 || sample.depth + 2 >= sample.value12);
        QVERIFY(sample.aux1 >= -1 && sample.aux1 <= 29);
        QVERIFY(sample.aux4 < 200);
        hadCeiling = hadCeiling || sample.value12 > 0;
    }
    QCOMPARE(made.header[HeaderField::Tenths1], quint64(deepest));
    QCOMPARE(made.header[HeaderField::Value32a], quint64(samples.size() - 1) * 5);
    QCOMPARE(hadCeiling, dive % 6 == 3 || dive % 6 == 5 || dive % 6 == 0);
    QCOMPARE(made.header[HeaderField::KindByte], quint64(dive % 6 == 5 ? 1 : 0));
    QCOMPARE(samples.first().mode, dive % 6 == 5 ? 1 : 0);
}

void TestDives::complaints_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *json, const char *text) {
        QTest::newRow(json) << QByteArray(json) << QString::fromLatin1(text);
    };
    row(R"({"dives":-1})", "devices[0].dives: -1 is not between 0 and 65535");
    row(R"({"dives":{"first":65000,"count":600}})",
        "devices[0].dives.count: dive numbers end at 65535");
    row(R"({"logbookVersion":0,"dives":{"first":32768,"count":2}})",
        "devices[0].dives: logbook version 0 has no dive number above 32768");
    row(R"({"dives":[{},{"profile":[{"depth":4096}]}]})",
        "devices[0].dives[1].profile[0].depth: 4096 is not between 0 and 4095");
    row(R"({"dives":[{"header":{"headerByte1":256}}]})",
        "devices[0].dives[0].header.headerByte1: 256 is not between -128 and 255");
    row(R"({"dives":[{"header":{"headerByte1":"100"}}]})",
        "devices[0].dives[0].header.headerByte1: expected a number or a hexadecimal text that "
        "fits in 1 bytes");
    row(R"({"dives":[{"header":{"gasO2":[1,2,3,4,5,6,7,8,9,10,11,12,13]}}]})",
        "devices[0].dives[0].header.gasO2: at most 12 fit");
    row(R"({"dives":[{"header":{"nonsense":1}}]})",
        "devices[0].dives[0].header.nonsense: unknown key; known keys are count1, count2, density, "
        "diveNumber, gasHe, gasO2, gasSlotMask, headerByte1, headerByte2, headerByte5, "
        "headerByte7, headerWord1, headerWord11, headerWord12, headerWord13, headerWord14, "
        "headerWord2, headerWord3, headerWord4, headerWord5, headerWord6, headerWord7, "
        "headerWord8, kindByte, sampleInterval, signed1, signed2, stamp, stamp2, tenths1, "
        "tenths2, tidemarBit, tissueHe, tissueN2, value32a, value32b, value32c, value32d, "
        "value32e, value32f");
    row(R"({"dives":[{"kind":"dry"}]})",
        "devices[0].dives[0].kind: \"dry\" is not one of recreational, decompression, trimix, "
        "closedCircuit");
}

void TestDives::complaints()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    QCOMPARE(complaint(json), text);
}

QTEST_GUILESS_MAIN(TestDives)

#include "tst_dives.moc"
