// SPDX-License-Identifier: MIT
#include "payload.h"

#include <QtTest/qtest.h>

#include <utility>

class TestSamples : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void layouts_data();
    void layouts();
    void remapping_data();
    void remapping();
    void depthFilter();
    void depthFilterLooksAtTheList();
    void cutLastSample_data();
    void cutLastSample();
    void emptyStream();
    void headerAlone_data();
    void headerAlone();
    void flagsCarryOver();
    void twoStreams();
    void closedAgainAndAgain();
    void collects();
    void longPayload_data();
    void longPayload();
    void decodesOnlyAtTheEnd_data();
    void decodesOnlyAtTheEnd();
};

static QStringList textsOf(const QList<DiveSample> &samples)
{
    QStringList texts;
    for (const DiveSample &s : samples) {
        texts << QStringLiteral("v%1 %2 flag %3 code %4 value %5 mode %6 modeFlag %7; ")
                         .arg(s.version)
                         .arg(s.depth)
                         .arg(s.flag)
                         .arg(s.code)
                         .arg(s.value12)
                         .arg(s.mode)
                         .arg(s.modeFlag)
                     + QStringLiteral("%1 %2 %3 %4 %5 %6 %7 ")
                           .arg(s.aux1)
                           .arg(s.aux2)
                           .arg(s.aux3)
                           .arg(s.aux4)
                           .arg(s.aux5)
                           .arg(s.aux6)
                           .arg(s.aux7)
                     + QStringLiteral("%1 %2 %3 %4 %5")
                           .arg(s.aux8)
                           .arg(s.aux9)
                           .arg(s.aux10)
                           .arg(s.aux11)
                           .arg(int(s.aux12));
    }
    return texts;
}

/** Hands over a stream in as many answers as it needs, and the empty one behind it. */
static void deliver(VardaData &data, const QByteArray &hex)
{
    const QByteArray stream = QByteArray::fromHex(hex);
    for (qsizetype at = 0; at < stream.size(); at += 100) {
        const QByteArray part = stream.mid(at, 100);
        data.processSamples(payloadOf(part.toHex()), std::uint16_t(part.size() + 1));
    }
    data.processSamples(payloadOf(""), 1);
}

static QList<DiveSample> decode(ComputerModel::ComputerModelIn model, const QByteArray &hex)
{
    VardaData data;
    data.computerModel = model;
    deliver(data, hex);
    return data.diveSamples;
}

/*
 * Texts: version, depth, flag, code, value12, mode, modeFlag; aux1 to aux11, aux12.
 * Each stream holds two samples, so that the first one's size shows.
 */
void TestSamples::layouts_data()
{
    QTest::addColumn<ComputerModel::ComputerModelIn>("model");
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<QStringList>("samples");

    const auto row = [](const char *name, ComputerModel::ComputerModelIn model, const char *stream,
                        const char *first, const char *second) {
        QTest::newRow(name) << model << QByteArray(stream)
                            << QStringList{QLatin1String(first), QLatin1String(second)};
    };
    using namespace ComputerModel;
    row("Varda 0", Varda, "cd d2f4 fa50 fe  0e 0a00 0600 05",
        "v0 1234 flag 0 code 3 value 250 mode 1 modeFlag 0; 254 0 0 0 0 0 0 0 0 0 255 0",
        "v0 10 flag 0 code 3 value 6 mode 2 modeFlag 0; 5 0 0 0 0 0 0 0 0 0 255 0");
    row("Varda 0, told", Varda, "8000 cd d2f4 fa50 fe  0e 0a00 0600 05",
        "v0 1234 flag 0 code 3 value 250 mode 1 modeFlag 0; 254 0 0 0 0 0 0 0 0 0 255 0",
        "v0 10 flag 0 code 3 value 6 mode 2 modeFlag 0; 5 0 0 0 0 0 0 0 0 0 255 0");
    row("Varda 1", Varda, "8001 3f 0a00 f60f 01 3412  00 0b00 0008 02 7856",
        "v1 10 flag 0 code 15 value -10 mode 3 modeFlag 0; 1 4660 0 0 0 0 0 0 0 0 255 0",
        "v1 11 flag 0 code 0 value -2048 mode 0 modeFlag 0; 2 22136 0 0 0 0 0 0 0 0 255 0");
    row("Varda 2", Varda, "8002 04 0a00 ff07 01 3412 11 12  08 0b00 ff0f 02 7856 13 14",
        "v2 10 flag 0 code 1 value 2047 mode 0 modeFlag 0; 1 4660 17 18 0 0 0 0 0 0 255 0",
        "v2 11 flag 0 code 2 value -1 mode 0 modeFlag 0; 2 22136 19 20 0 0 0 0 0 0 255 0");
    row("Varda 3", Varda,
        "8003 04 0a00 0000 01 3412 11 12 cdab 15 16  08 0b00 0000 02 7856 13 14 0100 17 18",
        "v3 10 flag 0 code 1 value 0 mode 0 modeFlag 0; 1 4660 17 18 0 0 0 43981 21 22 255 0",
        "v3 11 flag 0 code 2 value 0 mode 0 modeFlag 0; 2 22136 19 20 0 0 0 1 23 24 255 0");
    row("Varda 255", Varda,
        "80ff 04 0a00 0000 01 3412 11 12 cdab 15 16  08 0b00 0000 02 7856 13 14 0100 17 18",
        "v255 10 flag 0 code 1 value 0 mode 0 modeFlag 0; 1 4660 17 18 0 0 0 43981 21 22 255 0",
        "v255 11 flag 0 code 2 value 0 mode 0 modeFlag 0; 2 22136 19 20 0 0 0 1 23 24 255 0");
    row("VSKM 0", VSKM, "cd d2f4 fa50 fe  0e 0a00 0600 05",
        "v0 1234 flag 0 code 3 value 250 mode 1 modeFlag 0; 254 0 0 0 0 0 0 0 0 0 255 0",
        "v0 10 flag 0 code 3 value 6 mode 2 modeFlag 0; 5 0 0 0 0 0 0 0 0 0 255 0");
    row("VSKM 1", VSKM, "8001 04 0a00 0000 01 02 03 3412  08 0b00 0000 02 00 00 7856",
        "v1 10 flag 0 code 1 value 0 mode 0 modeFlag 0; 1 4660 0 0 3 0 1 0 0 0 255 0",
        "v1 11 flag 0 code 2 value 0 mode 0 modeFlag 0; 2 22136 0 0 0 0 0 0 0 0 255 0");
    row("VSKM 2", VSKM,
        "8002 04 0a00 0000 01 04 0c 3412 cdab 07 02  08 0b00 0000 02 00 00 7856 0100 00 00",
        "v2 10 flag 0 code 1 value 0 mode 0 modeFlag 0; 1 4660 0 0 12 0 4 43981 0 0 7 1",
        "v2 11 flag 0 code 2 value 0 mode 0 modeFlag 0; 2 22136 0 0 0 0 0 1 0 0 0 0");
    row("VSKM 3", VSKM,
        "8003 04 0a00 0000 01 04 0c 3412 cdab 07 02  08 0b00 0000 02 00 00 7856 0100 00 00",
        "v3 10 flag 0 code 1 value 0 mode 0 modeFlag 0; 1 4660 0 0 12 0 4 43981 0 0 7 1",
        "v3 11 flag 0 code 2 value 0 mode 0 modeFlag 0; 2 22136 0 0 0 0 0 1 0 0 0 0");
    row("Tidemar 0", Tidemar, "cd d2f4 fa50 fe  0e 0a00 0600 05",
        "v0 1234 flag 0 code 3 value 250 mode 1 modeFlag 0; 254 0 0 0 0 0 0 0 0 0 255 0",
        "v0 10 flag 0 code 3 value 6 mode 2 modeFlag 0; 5 0 0 0 0 0 0 0 0 0 255 0");
    row("Tidemar 2", Tidemar,
        "8002 04 0a00 0000 01 04 0c 3412 cdab 07 02  08 0b00 0000 02 00 00 7856 0100 00 00",
        "v2 10 flag 0 code 1 value 0 mode 0 modeFlag 0; 1 4660 0 0 12 0 4 43981 0 0 7 1",
        "v2 11 flag 0 code 2 value 0 mode 0 modeFlag 0; 2 22136 0 0 0 0 0 1 0 0 0 0");
    row("Tidemar 3", Tidemar,
        "8003 d2f4 fae0 01 55 1f 40 3412 cdab 15 16  0a30 ffdf 02 ff fe fd 7856 0100 17 18",
        "v3 1234 flag 1 code 7 value 250 mode 2 modeFlag 0; 1 4660 0 0 85 31 64 43981 21 22 255 0",
        "v3 10 flag 0 code 3 value -1 mode 1 modeFlag 0; "
        "2 22136 0 0 255 254 253 1 23 24 255 0");
    row("Tidemar 200", Tidemar,
        "80c8 d274 fa30 01 55 1f 40 3412 cdab 15 16  0a80 00f8 02 ff fe fd 7856 0100 17 18",
        "v200 1234 flag 0 code 7 value 250 mode 3 modeFlag 0; "
        "1 4660 0 0 85 31 64 43981 21 22 255 0",
        "v200 10 flag 1 code 0 value -2048 mode 3 modeFlag 0; "
        "2 22136 0 0 255 254 253 1 23 24 255 0");
    row("no model 2", Unknown,
        "8002 04 0a00 0000 01 04 0c 3412 cdab 07 02  08 0b00 0000 02 00 00 7856 0100 00 00",
        "v2 10 flag 0 code 1 value 0 mode 0 modeFlag 0; 1 4660 0 0 12 0 4 43981 0 0 7 1",
        "v2 11 flag 0 code 2 value 0 mode 0 modeFlag 0; 2 22136 0 0 0 0 0 1 0 0 0 0");
    row("third party 3", ThirdParty,
        "8003 04 0a00 0000 01 04 0c 3412 cdab 07 02  08 0b00 0000 02 00 00 7856 0100 00 00",
        "v3 10 flag 0 code 1 value 0 mode 0 modeFlag 0; 1 4660 0 0 12 0 4 43981 0 0 7 1",
        "v3 11 flag 0 code 2 value 0 mode 0 modeFlag 0; 2 22136 0 0 0 0 0 1 0 0 0 0");
}

void TestSamples::layouts()
{
    QFETCH(const ComputerModel::ComputerModelIn, model);
    QFETCH(const QByteArray, stream);
    QTEST(textsOf(decode(model, stream)), "samples");
}

void TestSamples::remapping_data()
{
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<int>("aux5");
    QTest::addColumn<int>("aux6");
    QTest::addColumn<int>("aux7");

    const auto row = [](const char *status, int aux5, int aux6, int aux7) {
        QTest::newRow(status) << QByteArray(status) << aux5 << aux6 << aux7;
    };
    row("01 00", 0x00, 0x04, 0x00);
    row("02 00", 0x03, 0x00, 0x00);
    row("04 00", 0x0C, 0x00, 0x00);
    row("08 00", 0x30, 0x00, 0x00);
    row("10 00", 0x00, 0x08, 0x00);
    row("20 00", 0x00, 0x10, 0x00);
    row("40 00", 0xC0, 0x00, 0x00);
    row("80 00", 0x00, 0x03, 0x00);
    row("ff 00", 0xFF, 0x1F, 0x00);
    row("00 01", 0x00, 0x00, 0x01);
    row("00 02", 0x00, 0x00, 0x01);
    row("00 03", 0x00, 0x00, 0x01);
    row("00 04", 0x00, 0x00, 0x04);
    row("00 08", 0x00, 0x00, 0x04);
    row("00 10", 0x00, 0x00, 0x10);
    row("00 20", 0x00, 0x00, 0x10);
    row("00 40", 0x00, 0x00, 0x40);
    row("00 80", 0x00, 0x00, 0x40);
    row("00 ff", 0x00, 0x00, 0x55);
}

void TestSamples::remapping()
{
    QFETCH(const QByteArray, status);
    const QList<DiveSample> samples = decode(ComputerModel::VSKM,
                                             "8001 00 0000 0000 00" + status + "0000");
    QCOMPARE(samples.size(), 1);
    QTEST(int(samples[0].aux5), "aux5");
    QTEST(int(samples[0].aux6), "aux6");
    QTEST(int(samples[0].aux7), "aux7");
}

// 3600, 3500, 3501, 4095, 120, 3501 in tenths of a metre.
void TestSamples::depthFilter()
{
    const QList<DiveSample> samples = decode(
        ComputerModel::Varda, "00 100e 0000 00  00 ac0d 0000 00  00 ad0d 0000 00  00 ff0f 0000 00 "
                              "00 7800 0000 00  00 ad0d 0000 00");
    QList<int> depths;
    for (const DiveSample &sample : samples)
        depths << sample.depth;
    QCOMPARE(depths, (QList<int>{0, 3500, 3500, 3500, 120, 120}));
}

void TestSamples::depthFilterLooksAtTheList()
{
    VardaData data;
    data.computerModel = ComputerModel::Tidemar;
    DiveSample before;
    before.depth = 77;
    data.diveSamples << before;
    deliver(data, "8003 ad0d 0000 00000000000000000000");
    QCOMPARE(data.diveSamples.size(), 2);
    QCOMPARE(int(data.diveSamples[1].depth), 77);
}

void TestSamples::cutLastSample_data()
{
    QTest::addColumn<ComputerModel::ComputerModelIn>("model");
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<QString>("last");

    const auto row = [](const char *name, ComputerModel::ComputerModelIn model, const char *stream,
                        const char *last) {
        QTest::newRow(name) << model << QByteArray(stream) << QString::fromLatin1(last);
    };
    using namespace ComputerModel;
    row("Varda 0, 1 byte", Varda, "00 0a00 0000 01  07",
        "v0 0 flag 0 code 1 value 0 mode 3 modeFlag 0; 0 0 0 0 0 0 0 0 0 0 255 0");
    row("Varda 3, 13 bytes", Varda, "8003 04 0a00 0000 01 3412 11 12 cdab 15",
        "v3 10 flag 0 code 1 value 0 mode 0 modeFlag 0; 1 4660 17 18 0 0 0 43981 21 0 255 0");
    row("VSKM 2, 12 bytes: aux11 is read as zero", VSKM, "8002 04 0a00 0000 01 04 0c 3412 cdab",
        "v2 10 flag 0 code 1 value 0 mode 0 modeFlag 0; 1 4660 0 0 12 0 4 43981 0 0 0 0");
    row("VSKM 2, half a word", VSKM, "8002 04 0a00 0000 01 04 0c 34",
        "v2 10 flag 0 code 1 value 0 mode 0 modeFlag 0; 1 52 0 0 12 0 4 0 0 0 0 0");
    row("Tidemar 3, 3 bytes", Tidemar, "8003 d2f4 fa",
        "v3 1234 flag 1 code 7 value 250 mode 0 modeFlag 0; 0 0 0 0 0 0 0 0 0 0 255 0");
}

void TestSamples::cutLastSample()
{
    QFETCH(const ComputerModel::ComputerModelIn, model);
    QFETCH(const QByteArray, stream);
    QTEST(textsOf(decode(model, stream)).last(), "last");
}

void TestSamples::emptyStream()
{
    for (const auto model : {ComputerModel::Varda, ComputerModel::Tidemar, ComputerModel::VSKM})
        QVERIFY(decode(model, "").isEmpty());
}

// One sample is decoded behind the header, whatever there is.
void TestSamples::headerAlone_data()
{
    QTest::addColumn<ComputerModel::ComputerModelIn>("model");
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<QString>("sample");

    const auto row = [](const char *name, ComputerModel::ComputerModelIn model, const char *stream,
                        const char *sample) {
        QTest::newRow(name) << model << QByteArray(stream) << QString::fromLatin1(sample);
    };
    using namespace ComputerModel;
    row("Varda 1", Varda, "8001",
        "v1 0 flag 0 code 0 value 0 mode 0 modeFlag 0; 0 0 0 0 0 0 0 0 0 0 255 0");
    row("VSKM 2", VSKM, "8002",
        "v2 0 flag 0 code 0 value 0 mode 0 modeFlag 0; 0 0 0 0 0 0 0 0 0 0 0 0");
    row("Tidemar 3", Tidemar, "8003",
        "v3 0 flag 0 code 0 value 0 mode 0 modeFlag 0; 0 0 0 0 0 0 0 0 0 0 255 0");
    row("half a header", Varda, "80",
        "v0 0 flag 0 code 0 value 0 mode 0 modeFlag 0; 0 0 0 0 0 0 0 0 0 0 255 0");
}

void TestSamples::headerAlone()
{
    QFETCH(const ComputerModel::ComputerModelIn, model);
    QFETCH(const QByteArray, stream);
    const QStringList samples = textsOf(decode(model, stream));
    QCOMPARE(samples.size(), 1);
    QTEST(samples.first(), "sample");
}

// Layouts without these bits repeat the sample before, but only of the same stream.
void TestSamples::flagsCarryOver()
{
    VardaData data;
    DiveSample before;
    before.flag = 1;
    before.modeFlag = 1;
    before.aux3 = 9;
    data.diveSamples << before;
    data.computerModel = ComputerModel::Varda;
    deliver(data, "00 0a00 0000 01  00 0b00 0000 02");
    QCOMPARE(data.diveSamples.size(), 3);
    for (int i : {1, 2}) {
        QCOMPARE(int(data.diveSamples[i].flag), 0);
        QCOMPARE(int(data.diveSamples[i].modeFlag), 0);
        QCOMPARE(int(data.diveSamples[i].aux3), 0);
    }

    // Layout B reads the flag each time.
    const QList<DiveSample> tidemar = decode(ComputerModel::Tidemar,
                                             "8003 0a80 0000 00000000000000000000 "
                                             "0b00 0000 00000000000000000000");
    QCOMPARE(int(tidemar[0].flag), 1);
    QCOMPARE(int(tidemar[1].flag), 0);
    QCOMPARE(int(tidemar[1].modeFlag), 0);
}

// Neither buffer nor list is cleared by the decoder.
void TestSamples::twoStreams()
{
    VardaData data;
    data.computerModel = ComputerModel::Varda;
    deliver(data, "00 0a00 0000 01");
    deliver(data, "00 0b00 0000 02");
    QStringList depths;
    for (const DiveSample &sample : std::as_const(data.diveSamples))
        depths << QString::number(sample.depth);
    QCOMPARE(depths.join(QLatin1Char(' ')), QStringLiteral("10 10 11"));
    QCOMPARE(data.samplesBuffer.toHex(), "000a00000001000b00000002");
}

// Each closing decodes all again; that many closings must not eat up the memory.
void TestSamples::closedAgainAndAgain()
{
    VardaData data;
    data.computerModel = ComputerModel::Varda;
    for (int i = 0; i < 600; ++i)
        data.processSamples({}, 501);
    for (int i = 0; i < 100; ++i)
        data.processSamples({}, 1);
    QCOMPARE(data.diveSamples.size(), 400'000); // 8 times 50 000
}

void TestSamples::collects()
{
    VardaData data;
    data.processSamples(payloadOf("01 02 03 04"), 4);
    data.processSamples(payloadOf("05 06"), 2);
    QCOMPARE(data.samplesBuffer.toHex(), "01020305");
    QVERIFY(data.diveSamples.isEmpty());
}

void TestSamples::longPayload_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("size");

    for (const auto &[length, size] :
         {std::pair(2, 1), {511, 510}, {512, 511}, {513, 511}, {601, 511}, {65535, 511}})
        QTest::addRow("%d", length) << length << size;
}

void TestSamples::longPayload()
{
    QFETCH(const int, length);
    QFETCH(const int, size);
    VardaData data;
    data.processSamples(patternPayload(), std::uint16_t(length));
    QCOMPARE(data.samplesBuffer.size(), size);
    QCOMPARE(data.samplesBuffer.left(1).toHex(), "0a");
    if (size == 511)
        QCOMPARE(data.samplesBuffer.right(2).toHex(), "f5fc");
}

void TestSamples::decodesOnlyAtTheEnd_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("samples");

    QTest::newRow("0") << 0 << 1;
    QTest::newRow("1") << 1 << 1;
    QTest::newRow("2") << 2 << 0;
}

void TestSamples::decodesOnlyAtTheEnd()
{
    QFETCH(const int, length);
    VardaData data;
    data.processSamples(payloadOf("00 0a00 0000 01"), 7);
    data.processSamples(payloadOf("00"), std::uint16_t(length));
    QTEST(int(data.diveSamples.size()), "samples");
}

QTEST_APPLESS_MAIN(TestSamples)
#include "tst_samples.moc"
