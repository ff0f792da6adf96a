// SPDX-License-Identifier: MIT
#include <QtCore/qdir.h>
#include <QtCore/qtemporarydir.h>

#include "images.h"
#include "jobtest.h"

using namespace Qt::StringLiterals;

namespace {

// A computer that takes everything, with firmware 1.4.2.b and bootloader 12.0.9.d.
constexpr auto kTaking = R"("responses":{"Identification":["620204010b"],
    "BootloaderVersion":["6409000c"],"Begin_program":["01"],"Program":["01"],"End_program":["01"],
    "BeginUpdate":["01"],"ProgramUpdate":["01"],"EndUpdate":["01"],"Close":["01"],
    "Time":["0000000000000000"]})";
// One that lets the test answer.
constexpr auto kSilent = R"("faults":[{"step":"answer","kind":"silent"}])";

const QString kName = u"Tidemar.1.4.2.b.bin"_s;
const QString kEnd = u"endCommand End_program"_s;
const QString kFirmwareBegin =
    u"1eefbeadde010203046406050405060708090a0b0c0d0e0f101112131415161718"_s;
const QString kBootloaderBegin =
    u"1e544f4f42f1f2f3f464060504f5f6f7f8e1e2e3e4e5e6e7e8d1d2d3d4d5d6d7d8"_s;

QString wire(const char *code, const QByteArray &bytes)
{
    return QLatin1String(code) + QString::fromLatin1(bytes.toHex());
}

/** The codes of frames, without what they carry. */
QString codes(const QStringList &frames)
{
    QStringList codes;
    for (const QString &frame : frames)
        codes.append(frame.first(2));
    return codes.join(u' ');
}

} // namespace

/** Uploads of firmware and bootloaders to a computer that takes or refuses them. */
class TestUpload : public JobTest
{
    Q_OBJECT

private Q_SLOTS:
    void plainImage();
    void imageWithHeader_data();
    void imageWithHeader();
    void percentagesAreOfAFloatingProduct();
    void oneAfterTheOther();
    void beginOfPlainImage_data();
    void beginOfPlainImage();
    void file();
    void nothingToSend();
    void acceptedImages();
    void withoutLink();
    void progressOfLargeImages();
    void progressAfterAnotherUpload();
    void answersWithoutUpload();
    void jobAtTheEnd();
    void jobAtFullProgress();
    void anotherUploadFromProgress();

private:
    /** Lets the session know both versions of the computer. */
    [[nodiscard]] bool getToKnow()
    {
        m_session->startCommand(TidemarCommand::Identification);
        if (!m_log.await(u"endCommand Identification"_s))
            return false;
        m_session->startCommand(TidemarCommand::BootloaderVersion);
        const bool known = m_log.await(u"endCommand BootloaderVersion"_s);
        m_log.take();
        return known;
    }
};

void TestUpload::plainImage()
{
    CONNECT(connectTo(kTaking));
    QCOMPARE(m_session->uploadElapsed().count(), 0);
    const QByteArray firmware = image(300);
    QCOMPARE(m_session->uploadFirmware(firmware, kName, false), 300);
    QVERIFY(m_log.await(kEnd));
    QTRY_COMPARE(Simulator::count(u"notification"_s), 6);
    Simulator::settle();
    QCOMPARE(m_log.take(),
             QStringList({u"uploadFirmwareProgress 128 42"_s, u"uploadFirmwareProgress 256 85"_s,
                          u"uploadFirmwareProgress 384 128"_s, u"uploadFirmwareProgress 0 100"_s,
                          kEnd}));
    // Name, version 1.4.2.b, size and checksum, the last by Python's binascii.crc_hqx(…, 0x1D0F).
    const QString begin = u"0d546964656d6172"_s + QString(50, u'0') + u"620204012c010000891d0000"_s;
    QCOMPARE(sent(), QStringList({begin, wire("0e", firmware.first(128)),
                                  wire("0e", firmware.sliced(128, 128)),
                                  wire("0e", firmware.sliced(256, 44)), u"0f"_s, u"ff"_s}));
    QVERIFY(m_session->uploadElapsed().count() > 0);
}

void TestUpload::imageWithHeader_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QString>("begin");
    QTest::newRow("firmware") << QByteArray(kFirmwareHeader) << kFirmwareBegin;
    QTest::newRow("bootloader") << QByteArray(kBootloaderHeader) << kBootloaderBegin;
}

void TestUpload::imageWithHeader()
{
    QFETCH(const QByteArray, header);
    QFETCH(const QString, begin);
    CONNECT(connectTo(kTaking));
    QVERIFY(getToKnow());
    Simulator::settle();
    const QByteArray firmware = image(600, header);
    QCOMPARE(m_session->uploadFirmware(firmware, u"unused.9.9.9.z"_s, false), 600);
    QVERIFY(m_log.await(kEnd));
    QTRY_COMPARE(Simulator::count(u"notification"_s), 10);
    Simulator::settle();
    QCOMPARE(m_log.take(),
             QStringList({u"uploadFirmwareProgress 128 21"_s, u"uploadFirmwareProgress 256 42"_s,
                          u"uploadFirmwareProgress 384 64"_s, u"uploadFirmwareProgress 512 85"_s,
                          u"uploadFirmwareProgress 640 106"_s, u"uploadFirmwareProgress 0 100"_s,
                          kEnd}));
    QCOMPARE(
        sent().sliced(2),
        QStringList({begin, wire("1f", firmware.first(128)), wire("1f", firmware.sliced(128, 128)),
                     wire("1f", firmware.sliced(256, 128)), wire("1f", firmware.sliced(384, 128)),
                     wire("1f", firmware.sliced(512, 88)), u"20"_s, u"ff"_s}));
    QVERIFY(m_session->uploadElapsed().count() > 0);
}

// 6272 times 100.0 / 9800 is a little less than 64.
void TestUpload::percentagesAreOfAFloatingProduct()
{
    CONNECT(connectTo(kTaking));
    QCOMPARE(m_session->uploadFirmware(image(9800), kName, false), 9800);
    QVERIFY(m_log.await(kEnd));
    const QStringList told = m_log.take();
    QVERIFY(told.contains(u"uploadFirmwareProgress 6144 62"_s));
    QVERIFY(told.contains(u"uploadFirmwareProgress 6272 63"_s));
    QVERIFY(told.contains(u"uploadFirmwareProgress 6400 65"_s));
}

// Each begin chooses the family of what follows it.
void TestUpload::oneAfterTheOther()
{
    CONNECT(connectTo(kTaking));
    m_session->uploadFirmware(image(600, kBootloaderHeader), kName, false);
    QVERIFY(m_log.await(kEnd));
    const auto first = m_session->uploadElapsed();
    m_session->uploadFirmware(image(10), kName, false);
    QCOMPARE(m_session->uploadElapsed(), first);
    QVERIFY(m_log.await(kEnd, 2));
    m_session->uploadFirmware(image(600, kBootloaderHeader), kName, false);
    QVERIFY(m_log.await(kEnd, 3));
    QTRY_COMPARE(codes(sent()), u"1e 1f 1f 1f 1f 1f 20 ff 0d 0e 0f ff 1e 1f 1f 1f 1f 1f 20 ff"_s);
}

void TestUpload::beginOfPlainImage_data()
{
    CONNECT(connectTo(kSilent));

    QTest::addColumn<QString>("fileName");
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("zeros");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("sizeAndCrc");
    const auto row = [](const char *tag, const QString &fileName, const QString &name, int zeros,
                        const QString &version) {
        QTest::newRow(tag) << fileName << 1 << name << zeros << version << u"010000009ccc0000"_s;
    };
    row("all of it", u"Tidemar.1.4.2.b.bin"_s, u"546964656d6172"_s, 25, u"62020401"_s);
    row("nothing", QString(), QString(), 32, u"00000000"_s);
    row("a name", u"a"_s, u"61"_s, 31, u"00000000"_s);
    row("a dot", u"a."_s, u"61"_s, 31, u"00000000"_s);
    row("one number", u"a.1"_s, u"61"_s, 31, u"00000001"_s);
    row("three numbers", u"a.1.2.3"_s, u"61"_s, 31, u"00030201"_s);
    row("no extension", u"a.1.2.3.b"_s, u"61"_s, 31, u"62030201"_s);
    row("only an extension", u"firmware.bin"_s, u"6669726d77617265"_s, 24, u"00000000"_s);
    row("no number", u"a.x.2.3.b.bin"_s, u"61"_s, 31, u"62030200"_s);
    row("not only a number", u"a.1x.2.3.b"_s, u"61"_s, 31, u"62030200"_s);
    row("no name", u".1.2.3.b"_s, QString(), 32, u"62030201"_s);
    row("empty fields", u"a..2..b"_s, u"61"_s, 31, u"62000200"_s);
    row("an empty last field", u"a.1.2.3..b"_s, u"61"_s, 31, u"00030201"_s);
    row("many letters", u"a.1.2.3.beta.bin"_s, u"61"_s, 31, u"62030201"_s);
    row("a digit for a letter", u"a.1.2.3.4.bin"_s, u"61"_s, 31, u"34030201"_s);
    // More than a byte holds runs over into the field before.
    row("large numbers", u"a.256.300.511.b"_s, u"61"_s, 31, u"62ff2d01"_s);
    row("a negative number", u"a.0.0.-1.b"_s, u"61"_s, 31, u"62ffffff"_s);
    // The last character counts with its sign.
    row("0x7F", u"a.1.2.3.\u007f"_s, u"61"_s, 31, u"7f030201"_s);
    row("0x80", u"a.1.2.3.\u0080"_s, u"61"_s, 31, u"80ffffff"_s);
    row("0xE9", u"a.1.2.3.é"_s, u"61"_s, 31, u"e9ffffff"_s);
    row("0xFF", u"a.1.2.3.ÿ"_s, u"61"_s, 31, u"ffffffff"_s);
    row("beyond Latin-1", u"a.1.2.3.€"_s, u"61"_s, 31, u"00030201"_s);
    row("beyond 16 bits", u"a.1.2.3.😀"_s, u"61"_s, 31, u"00030201"_s);
    // Filled up by the number of characters, written in bytes.
    row("two-byte character", u"Zoë.1.2.3.b"_s, u"5a6fc3ab"_s, 29, u"62030201"_s);
    row("three-byte character", u"€"_s, u"e282ac"_s, 31, u"00000000"_s);
    row("character of two units", u"😀"_s, u"f09f9880"_s, 30, u"00000000"_s);
    row("31 characters", QString(31, u'x') + u".1"_s, QString(u"78"_s).repeated(31), 1,
        u"00000001"_s);
    row("32 characters", QString(32, u'x') + u".1"_s, QString(u"78"_s).repeated(32), 0,
        u"00000001"_s);
    row("33 characters", QString(33, u'x') + u".1"_s, QString(u"78"_s).repeated(33), 0,
        u"00000001"_s);
    row("32 two-byte characters", QString(32, u'é'), QString(u"c3a9"_s).repeated(32), 0,
        u"00000000"_s);

    const auto sizeRow = [](int size, const QString &sizeAndCrc) {
        QTest::addRow("%d bytes", size)
            << u"a"_s << size << u"61"_s << 31 << u"00000000"_s << sizeAndCrc;
    };
    // Checksums by Python's binascii.crc_hqx(image, 0x1D0F).
    sizeRow(300, u"2c010000891d0000"_s);
    sizeRow(512, u"00020000887a0000"_s);
    sizeRow(514, u"0202000012f70000"_s);
    sizeRow(1000, u"e803000019bf0000"_s);
    sizeRow(65536, u"00000100f1350000"_s);
    sizeRow(70000, u"7011010020090000"_s);
    sizeRow(100000, u"a0860100b7860000"_s);
}

void TestUpload::beginOfPlainImage()
{
    QFETCH(const QString, fileName);
    QFETCH(const int, size);
    QFETCH(const QString, name);
    QFETCH(const int, zeros);
    QFETCH(const QString, version);
    QFETCH(const QString, sizeAndCrc);
    const qsizetype before = sent().size();
    QCOMPARE(m_session->uploadFirmware(image(size), fileName, false), size);
    QTRY_COMPARE(sent().size(), before + 1);
    QCOMPARE(sent().last(),
             u"0d"_s + name + QString(u"00"_s).repeated(zeros) + version + sizeAndCrc);
}

// The name is that of the file, wherever it lies.
void TestUpload::file()
{
    CONNECT(connectTo(kSilent));
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath(u"v.9.9/x.y"_s));
    const QString path = folder.filePath(u"v.9.9/x.y/Kite.1.4.2.b.bin"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(image(300));
    file.close();
    QCOMPARE(m_session->uploadFirmware(path, false), 300);
    QTRY_COMPARE(sent().size(), 1);
    QCOMPARE(sent().first(), u"0d4b697465"_s + QString(56, u'0') + u"620204012c010000891d0000"_s);
}

void TestUpload::nothingToSend()
{
    CONNECT(connectTo(kSilent));
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"empty.1.2.3.b"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QCOMPARE(m_session->uploadFirmware(path, true), 0);
    QCOMPARE(m_session->uploadFirmware(folder.filePath(u"none.bin"_s), true), 0);
    QCOMPARE(m_session->uploadFirmware(QByteArray(), kName, true), 0);
    // A computer that goes on all the same gets nothing.
    for (const char *frame : {"dcdc0200bde200000d01", "dcdc02009db400001e01",
                              "dcdc0200eeb700000e01", "dcdc0200ac8700001f01"})
        Simulator::notify(QByteArray::fromHex(frame));
    Simulator::settle();
    Simulator::settle();
    QCOMPARE(sent(), QStringList());
    QCOMPARE(m_log.take(), QStringList());
}

// What is sent at all depends on the versions that the computer has.
void TestUpload::acceptedImages()
{
    CONNECT(connectTo(kTaking));
    const auto upload = [this](const char *start, const QByteArray &version, bool force) {
        return m_session->uploadFirmware(image(544, start + QByteArray("00000000") + version),
                                         kName, force);
    };
    constexpr auto kFirmware = "efbeadde";
    constexpr auto kBootloader = "544f4f42";

    // Of the bootloader nothing is known, so no firmware is sent.
    QCOMPARE(told(TidemarCommand::Identification, u"endCommand Identification"_s).size(), 1);
    QCOMPARE(m_session->firmwareVersion(), 0x01040262U);
    QCOMPARE(upload(kFirmware, "62020401", false), -3);
    QCOMPARE(upload(kFirmware, "62020401", true), -4);
    QCOMPARE(upload(kFirmware, "63020401", false), -4);
    QCOMPARE(upload(kFirmware, "63020401", true), -4);
    QCOMPARE(upload(kBootloader, "00000000", false), -2);
    QCOMPARE(upload("01000000", "63020401", true), -1);
    QCOMPARE(upload("deadbeef", "63020401", true), -1);
    QCOMPARE(told(TidemarCommand::BootloaderVersion, u"endCommand BootloaderVersion"_s).size(), 1);
    QCOMPARE(m_session->bootloaderVersion(), 0x0C000964U);
    QCOMPARE(upload(kFirmware, "62020401", false), -3);
    QCOMPARE(upload(kBootloader, "6409000c", false), -2);
    QCOMPARE(codes(sent()), u"01 21"_s);

    qsizetype ends = 0;
    const auto goesThrough = [&](const char *start, const QByteArray &version, bool force) {
        return upload(start, version, force) == 544 && m_log.await(kEnd, int(++ends));
    };
    QVERIFY(goesThrough(kFirmware, "62020401", true));
    QVERIFY(goesThrough(kFirmware, "61020401", false));
    QVERIFY(goesThrough(kFirmware, "6409000c", false));
    QVERIFY(goesThrough(kBootloader, "6409000c", true));
    QVERIFY(goesThrough(kBootloader, "62020401", false));
    // Without a header there is no such check.
    QVERIFY(goesThrough("00000000", "62020401", false));
}

void TestUpload::withoutLink()
{
    CONNECT(connectTo(kTaking));
    Simulator::drop();
    QVERIFY(m_log.await(u"disconnectController"_s));
    m_log.take();
    QCOMPARE(m_session->uploadFirmware(image(300), kName, false), 300);
    QCOMPARE(m_session->uploadFirmware(image(600, kBootloaderHeader), kName, false), 600);
    QCOMPARE(m_session->uploadFirmware(image(600, kFirmwareHeader), kName, false), -4);
    QCOMPARE(m_session->uploadFirmware(image(600, "01"), kName, false), -1);
    Simulator::settle();
    QCOMPARE(sent(), QStringList());
    QCOMPARE(m_log.take(), QStringList());
}

// Of the first of them 0 % is news only to a plain upload.
void TestUpload::progressOfLargeImages()
{
    CONNECT(connectTo(R"("faults":[{"step":"answer","command":"ProgramUpdate","nth":4,
        "kind":"refuse"},{"step":"answer","command":"Program","nth":4,"kind":"refuse"}],)"_ba
                      + kTaking));
    QCOMPARE(m_session->uploadFirmware(image(20'000, kBootloaderHeader), kName, false), 20'000);
    QVERIFY(m_log.await(u"exchangeError Program ProgramError"_s));
    QCOMPARE(m_log.take(),
             QStringList({u"uploadFirmwareProgress 256 1"_s, u"uploadFirmwareProgress 512 2"_s,
                          u"exchangeError Program ProgramError"_s}));
    QCOMPARE(m_session->uploadFirmware(image(20'000), kName, false), 20'000);
    QVERIFY(m_log.await(u"exchangeError Program ProgramError"_s));
    QCOMPARE(
        m_log.take(),
        QStringList({u"uploadFirmwareProgress 128 0"_s, u"uploadFirmwareProgress 256 1"_s,
                     u"uploadFirmwareProgress 512 2"_s, u"exchangeError Program ProgramError"_s}));
    QCOMPARE(m_session->uploadElapsed().count(), 0);
}

// With a header the percentage goes on from the upload before, without one it begins anew.
void TestUpload::progressAfterAnotherUpload()
{
    CONNECT(connectTo(R"("faults":[{"step":"answer","command":"ProgramUpdate","times":2,"nth":1,
        "kind":"refuse"},{"step":"answer","command":"Program","kind":"refuse"}],)"_ba
                      + kTaking));
    const QString refused = u"exchangeError Program ProgramError"_s;
    const QString first = u"uploadFirmwareProgress 128 21"_s;
    const auto upload = [&](const QByteArray &firmware) {
        return told([&] { m_session->uploadFirmware(firmware, kName, false); }, refused);
    };
    QCOMPARE(upload(image(600, kBootloaderHeader)), QStringList({first, refused}));
    QCOMPARE(upload(image(600, kBootloaderHeader)), QStringList(refused));
    QCOMPARE(upload(image(600)), QStringList({first, refused}));
    QCOMPARE(upload(image(600)), QStringList({first, refused}));
    m_session->uploadFirmware(image(600, kBootloaderHeader), kName, false);
    QVERIFY(m_log.await(kEnd));
    QCOMPARE(m_log.entries().first(), u"uploadFirmwareProgress 256 42"_s);
}

// A session that has no image answers nothing, and tells of an end as of any other.
void TestUpload::answersWithoutUpload()
{
    CONNECT(connectTo(kTaking));
    m_session->startCommand(TidemarCommand::Program);
    QTRY_COMPARE(Simulator::count(u"notification"_s), 1);
    m_session->startCommand(TidemarCommand::BeginUpdate);
    QTRY_COMPARE(Simulator::count(u"notification"_s), 2);
    Simulator::settle();
    QCOMPARE(codes(sent()), u"0e 1e"_s);
    QCOMPARE(m_log.take(), QStringList());
    m_session->startCommand(TidemarCommand::EndUpdate);
    QVERIFY(m_log.await(kEnd));
    QTRY_COMPARE(codes(sent()), u"0e 1e 20 ff"_s);
    QCOMPARE(m_log.take(), QStringList({u"uploadFirmwareProgress 0 100"_s, kEnd}));
}

void TestUpload::jobAtTheEnd()
{
    CONNECT(connectTo(kTaking));
    m_log.react = [this](const QString &entry) {
        if (entry == kEnd)
            m_session->startCommand(TidemarCommand::Time);
    };
    m_session->uploadFirmware(image(100), kName, false);
    QVERIFY(m_log.await(u"endCommand Time"_s));
    Simulator::settle();
    QCOMPARE(codes(sent()), u"0d 0e 0f 07"_s);
    QCOMPARE(m_log.take(),
             QStringList({u"uploadFirmwareProgress 128 128"_s, u"uploadFirmwareProgress 0 100"_s,
                          kEnd, u"endCommand Time"_s}));
}

void TestUpload::jobAtFullProgress()
{
    CONNECT(connectTo(kTaking));
    m_log.react = [this](const QString &entry) {
        if (entry == u"uploadFirmwareProgress 0 100"_s)
            m_session->startCommand(TidemarCommand::Time);
    };
    m_session->uploadFirmware(image(100), kName, false);
    QVERIFY(m_log.await(u"endCommand Time"_s));
    Simulator::settle();
    QCOMPARE(codes(sent()), u"0d 0e 0f 07"_s);
    QCOMPARE(m_log.take(),
             QStringList({u"uploadFirmwareProgress 128 128"_s, u"uploadFirmwareProgress 0 100"_s,
                          kEnd, u"endCommand Time"_s}));
}

// The block that was to follow belongs to an upload that is no more.
void TestUpload::anotherUploadFromProgress()
{
    CONNECT(connectTo(kTaking));
    m_log.react = [this](const QString &entry) {
        if (entry == u"uploadFirmwareProgress 256 85"_s) {
            m_log.react = nullptr;
            QCOMPARE(m_session->uploadFirmware(image(100), u"a"_s, false), 100);
        }
    };
    m_session->uploadFirmware(image(300), kName, false);
    QVERIFY(m_log.await(kEnd));
    QTRY_COMPARE(codes(sent()), u"0d 0e 0d 0e 0f ff"_s);
    QCOMPARE(sent()[3], wire("0e", image(100)));
    QCOMPARE(m_log.take(),
             QStringList({u"uploadFirmwareProgress 128 42"_s, u"uploadFirmwareProgress 256 85"_s,
                          u"uploadFirmwareProgress 128 128"_s, u"uploadFirmwareProgress 0 100"_s,
                          kEnd}));
}

QTEST_GUILESS_MAIN(TestUpload)
#include "tst_upload.moc"
