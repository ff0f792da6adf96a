// SPDX-License-Identifier: MIT
#include "images.h"
#include "jobtest.h"

using namespace Qt::StringLiterals;

namespace {

const QString kEnd = u"endCommand End_program"_s;

QString codes(const QStringList &frames)
{
    QStringList codes;
    for (const QString &frame : frames)
        codes.append(frame.first(2));
    return codes.join(u' ');
}

} // namespace

/** Uploads that a computer refuses somewhere on the way, or wants from some place on. */
class TestUploadSteps : public JobTest
{
    Q_OBJECT

private Q_SLOTS:
    void refusal_data();
    void refusal();
    void elapsedIsOfTheLastSuccess();
    void resumption_data();
    void resumption();
    void plainImageIsNotResumed();
};

void TestUploadSteps::refusal_data()
{
    QTest::addColumn<QByteArray>("refused");
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QStringList>("told");
    QTest::addColumn<QString>("wire");

    const QStringList first{u"uploadFirmwareProgress 128 21"_s};
    const QStringList second = first + QStringList{u"uploadFirmwareProgress 256 42"_s};
    const QStringList all = second
                            + QStringList{u"uploadFirmwareProgress 384 64"_s,
                                          u"uploadFirmwareProgress 512 85"_s,
                                          u"uploadFirmwareProgress 640 106"_s};
    const auto row = [](const char *name, const char *refused, const char *header,
                        const QStringList &progress, const char *error, const char *wire) {
        QTest::newRow(name) << QByteArray(refused) << QByteArray(header)
                            << progress + QStringList(u"exchangeError "_s + QLatin1String(error))
                            << QString::fromLatin1(wire);
    };
    constexpr auto kPlain = "00000000";
    constexpr auto kHeader = kBootloaderHeader;
    row("begin", R"("command":"Begin_program","nth":1)", kPlain, {},
        "Begin_program BeginProgramError", "0d");
    row("first block", R"("command":"Program","nth":1)", kPlain, first, "Program ProgramError",
        "0d 0e");
    row("second block", R"("command":"Program","nth":2)", kPlain, second, "Program ProgramError",
        "0d 0e 0e");
    row("last block", R"("command":"Program","nth":5)", kPlain, all, "Program ProgramError",
        "0d 0e 0e 0e 0e 0e");
    row("end", R"("command":"End_program","nth":1)", kPlain, all, "End_program EndProgramError",
        "0d 0e 0e 0e 0e 0e 0f");
    // The newer commands are reported as the older ones, but for the begin.
    row("begin, header", R"("command":"BeginUpdate","nth":1)", kHeader, {},
        "BeginUpdate BeginProgramError", "1e");
    row("first block, header", R"("command":"ProgramUpdate","nth":1)", kHeader, first,
        "Program ProgramError", "1e 1f");
    row("second block, header", R"("command":"ProgramUpdate","nth":2)", kHeader, second,
        "Program ProgramError", "1e 1f 1f");
    row("last block, header", R"("command":"ProgramUpdate","nth":5)", kHeader, all,
        "Program ProgramError", "1e 1f 1f 1f 1f 1f");
    row("end, header", R"("command":"EndUpdate","nth":1)", kHeader, all,
        "End_program EndProgramError", "1e 1f 1f 1f 1f 1f 20");
}

void TestUploadSteps::refusal()
{
    QFETCH(const QByteArray, refused);
    QFETCH(const QByteArray, header);
    QFETCH(const QStringList, told);
    QFETCH(const QString, wire);
    CONNECT(connectTo(R"("faults":[{"step":"answer","kind":"refuse",)" + refused
                      + R"(}],"responses":{"Begin_program":["01"],"Program":["01"],
                      "End_program":["01"],"BeginUpdate":["ff"],"ProgramUpdate":["80"],
                      "EndUpdate":["02"],"Close":["01"]})"));
    const QByteArray firmware = image(600, header);
    QCOMPARE(m_session->uploadFirmware(firmware, u"a"_s, false), 600);
    QVERIFY(m_log.await(told.last()));
    Simulator::settle();
    Simulator::settle();
    QCOMPARE(m_log.take(), told);
    QCOMPARE(codes(sent()), wire);
    QCOMPARE(m_session->uploadElapsed().count(), 0);

    // It may be tried again.
    m_session->uploadFirmware(firmware, u"a"_s, false);
    QVERIFY(m_log.await(kEnd));
    QVERIFY(m_session->uploadElapsed().count() > 0);
}

void TestUploadSteps::elapsedIsOfTheLastSuccess()
{
    CONNECT(connectTo(R"("responses":{"Begin_program":["01"],"Program":["01"],"Close":["01"],
        "End_program":["01"]},
        "faults":[{"step":"answer","command":"End_program","nth":2,"kind":"refuse"}])"));
    m_session->uploadFirmware(image(100), u"a"_s, false);
    QVERIFY(m_log.await(kEnd));
    const auto elapsed = m_session->uploadElapsed();
    QVERIFY(elapsed.count() > 0);
    m_session->uploadFirmware(image(100), u"a"_s, false);
    QVERIFY(m_log.await(u"exchangeError End_program EndProgramError"_s));
    QCOMPARE(m_session->uploadElapsed(), elapsed);
}

void TestUploadSteps::resumption_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<int>("offset");
    QTest::addColumn<QStringList>("progress");
    QTest::addColumn<QString>("wire");
    const QStringList nothing;
    const QString straightToTheEnd = u"1e 20 ff"_s;
    const QString all = u"1e "_s + u"1f "_s.repeated(8) + u"20 ff"_s;
    // Of 1000 bytes in blocks of 128
    const QStringList fromTheBegin{u"128 12"_s, u"256 25"_s, u"384 38"_s, u"512 51"_s,
                                   u"640 64"_s, u"768 76"_s, u"896 89"_s, u"1024 102"_s};
    QTest::newRow("one byte") << QByteArray("01") << 0 << fromTheBegin << all;
    QTest::newRow("0") << QByteArray("0100000000") << 0 << fromTheBegin << all;
    QTest::newRow("a block") << QByteArray("0180000000") << 128 << fromTheBegin.mid(1)
                             << u"1e "_s + u"1f "_s.repeated(7) + u"20 ff"_s;
    QTest::newRow("between blocks")
        << QByteArray("0120030000") << 800 << QStringList{u"928 92"_s, u"1056 105"_s}
        << u"1e 1f 1f 20 ff"_s;
    QTest::newRow("bytes missing")
        << QByteArray("012003") << 800 << QStringList{u"928 92"_s, u"1056 105"_s}
        << u"1e 1f 1f 20 ff"_s;
    QTest::newRow("one byte of four") << QByteArray("0180") << 128 << fromTheBegin.mid(1)
                                      << u"1e "_s + u"1f "_s.repeated(7) + u"20 ff"_s;
    QTest::newRow("bytes to spare")
        << QByteArray("0120030000ffff") << 800 << QStringList{u"928 92"_s, u"1056 105"_s}
        << u"1e 1f 1f 20 ff"_s;
    QTest::newRow("the last byte")
        << QByteArray("01e7030000") << 999 << QStringList{u"1127 112"_s} << u"1e 1f 20 ff"_s;
    QTest::newRow("the end") << QByteArray("01e8030000") << -1 << nothing << straightToTheEnd;
    QTest::newRow("behind it") << QByteArray("01e9030000") << -1 << nothing << straightToTheEnd;
    QTest::newRow("half of all") << QByteArray("0100000080") << -1 << nothing << straightToTheEnd;
    QTest::newRow("as far as can be")
        << QByteArray("01ffffffff") << -1 << nothing << straightToTheEnd;
}

void TestUploadSteps::resumption()
{
    QFETCH(const QByteArray, answer);
    QFETCH(const int, offset);
    QFETCH(const QStringList, progress);
    QFETCH(const QString, wire);
    CONNECT(connectToAnswers(JobTest::answer("BeginUpdate", {answer})
                             + R"(,"ProgramUpdate":["01"],"EndUpdate":["01"],"Close":["01"])"));
    const QByteArray firmware = image(1000, kBootloaderHeader);
    QCOMPARE(m_session->uploadFirmware(firmware, u"a"_s, false), 1000);
    QVERIFY(m_log.await(kEnd));
    QTRY_COMPARE(codes(sent()), wire);
    if (offset >= 0)
        QCOMPARE(sent()[1], u"1f"_s + QString::fromLatin1(firmware.mid(offset, 128).toHex()));
    QStringList expected;
    for (const QString &each : progress)
        expected.append(u"uploadFirmwareProgress "_s + each);
    QCOMPARE(m_log.take(), expected + QStringList({u"uploadFirmwareProgress 0 100"_s, kEnd}));
}

void TestUploadSteps::plainImageIsNotResumed()
{
    CONNECT(connectToAnswers(
        R"("Begin_program":["0180000000"],"Program":["01"],"End_program":["01"],"Close":["01"])"));
    m_session->uploadFirmware(image(200), u"a"_s, false);
    QVERIFY(m_log.await(kEnd));
    QTRY_COMPARE(codes(sent()), u"0d 0e 0e 0f ff"_s);
    QCOMPARE(sent()[1], u"0e"_s + QString::fromLatin1(image(128).toHex()));
}

QTEST_GUILESS_MAIN(TestUploadSteps)
#include "tst_uploadsteps.moc"
