// SPDX-License-Identifier: MIT
#include "jobtest.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kVarda = R"("Identification":["620204010b"],)";

const QStringList kIdentified{u"endCommand Identification"_s};
const QStringList kSamplesRead{u"endCommand Fullsamples"_s};

} // namespace

/** Samples and logs, which come as streams of many frames, and settings that are refused. */
class TestStreams : public JobTest
{
    Q_OBJECT

private Q_SLOTS:
    void samples();
    void longSampleFrameIsCut();
    void textLog();
    void binaryLog();
    void answerWithoutEnd();
    void settingsAreTakenOrRefused_data();
    void settingsAreTakenOrRefused();

private:
    [[nodiscard]] QStringList readSamples(uint16_t number = 1)
    {
        return told([&] { m_session->startGetDiveSamples(number); }, u"endCommand Fullsamples"_s);
    }
    [[nodiscard]] QStringList identify()
    {
        return told(TidemarCommand::Identification, u"endCommand Identification"_s);
    }
    [[nodiscard]] QList<int> depths() const
    {
        QList<int> depths;
        for (const DiveSample &sample : m_session->diveSamples())
            depths.append(sample.depth);
        return depths;
    }
};

// The stream goes on from frame to frame, wherever it was cut.
void TestStreams::samples()
{
    CONNECT(connectToAnswers(kVarda
                             + answer("Fullsamples", {"80", "01 0d 1027", "fa00fe34 12 02ff",
                                                      "ff f60f7f0000", "", "01"})));
    QCOMPARE(identify(), kIdentified);
    QCOMPARE(readSamples(), kSamplesRead);
    QCOMPARE(m_session->diveSamples().size(), 2);
    const DiveSample first = m_session->diveSamples()[0];
    QCOMPARE(first.version, 1);
    QCOMPARE(first.mode, 1);
    QCOMPARE(first.code, 3);
    QCOMPARE(first.depth, 0x710);
    QCOMPARE(first.value12, 250);
    QCOMPARE(first.aux1, 0xFE);
    QCOMPARE(first.aux2, 0x1234);
    QCOMPARE(first.aux11, 255);
    const DiveSample second = m_session->diveSamples()[1];
    QCOMPARE(second.mode, 2);
    QCOMPARE(second.code, 0);
    // Deeper than any dive, so the depth of before stays.
    QCOMPARE(second.depth, 0x710);
    QCOMPARE(second.value12, -10);
    QCOMPARE(second.aux1, 0x7F);
    QCOMPARE(second.aux2, 0);

    // Another dive takes the place of this one.
    m_session->startGetDiveSamples(2);
    QVERIFY(m_session->diveSamples().isEmpty());
    QVERIFY(m_log.await(kSamplesRead.first()));
    m_log.take();
    QCOMPARE(depths(), QList<int>({0x710, 0x710}));
}

void TestStreams::longSampleFrameIsCut()
{
    CONNECT(connectToAnswers(
        kVarda
        + answer("Fullsamples", {QByteArray("006400000000").repeated(100), "c800000000", ""})));
    QCOMPARE(identify(), kIdentified);
    QCOMPARE(readSamples(), kSamplesRead);
    // 511 bytes of the first frame: 85 samples and the first byte of one that the next frame ends.
    QCOMPARE(depths(), QList<int>(85, 100) + QList<int>{200});
}

void TestStreams::textLog()
{
    CONNECT(connectToAnswers(answer("Syslog", {"61206c696e65", "c3a9", "623b00ff", "00", ""})));
    const auto read = [this] { return told(TidemarCommand::Syslog, u"endCommand Syslog"_s); };
    QCOMPARE(read(), QStringList(u"endCommand Syslog"_s));
    QCOMPARE(m_session->syslog(), u"a line\né\nb;\n\n"_s);
    m_session->startCommand(TidemarCommand::Syslog);
    QCOMPARE(m_session->syslog(), u"a line\né\nb;\n\n"_s);
    QVERIFY(m_log.await(u"endCommand Syslog"_s));
    QCOMPARE(m_session->syslog(), u"a line\né\nb;\n\na line\né\nb;\n\n"_s);
    QVERIFY(m_session->syslogBin().isEmpty());
}

void TestStreams::binaryLog()
{
    CONNECT(
        connectToAnswers(answer("SyslogBin", {"8815476600000000 05 28000000 87000000 ff",
                                              "ffffffffffffffff ff ffffffff 00000080", "1e", ""})));
    const auto read = [this] { return told(TidemarCommand::SyslogBin, u"endCommand SyslogBin"_s); };
    QCOMPARE(read(), QStringList(u"endCommand SyslogBin"_s));
    QCOMPARE(m_session->syslogBin().size(), 3);
    const SyslogBinRecord first = m_session->syslogBin()[0];
    QCOMPARE(first.time, 1715934600);
    QCOMPARE(first.type, 5);
    QCOMPARE(first.arg1, 40);
    QCOMPARE(first.arg2, 135);
    QCOMPARE(convertSyslogRecord(first, false),
             u"2024-04-17 08:30:00 Offgasing 40% reduction during 2h 15mn"_s);
    const SyslogBinRecord second = m_session->syslogBin()[1];
    QCOMPARE(second.time, -1);
    QCOMPARE(second.type, 255);
    QCOMPARE(second.arg1, -1);
    QCOMPARE(second.arg2, -2147483647 - 1);
    const SyslogBinRecord third = m_session->syslogBin()[2];
    QCOMPARE(third.time, 30);
    QCOMPARE(third.type, 0);

    m_session->startCommand(TidemarCommand::SyslogBin);
    QCOMPARE(m_session->syslogBin().size(), 3);
    QVERIFY(m_log.await(u"endCommand SyslogBin"_s));
    QCOMPARE(m_session->syslogBin().size(), 6);
    QCOMPARE(m_session->syslogBin()[5].time, 30);
    QCOMPARE(m_session->syslog(), QString());
}

// Only the empty frame ends such a job.
void TestStreams::answerWithoutEnd()
{
    CONNECT(connectToAnswers(kVarda + answer("Logbook", {"0100"}) + ","
                             + answer("Fullsamples", {"006400000000"})));
    QCOMPARE(identify(), kIdentified);
    m_session->startGetLogbook({});
    QTRY_COMPARE(m_session->diveHeaders().size(), 1);
    QCOMPARE(identify(), kIdentified);
    m_session->startGetDiveSamples(1);
    QTRY_COMPARE(Simulator::count(u"notification"_s), 4);
    QCOMPARE(identify(), kIdentified);
    QVERIFY(m_session->diveSamples().isEmpty());
}

void TestStreams::settingsAreTakenOrRefused_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<QString>("told");
    QTest::newRow("taken") << QByteArray("ff") << u"endCommand MarloSet"_s;
    QTest::newRow("refused") << QByteArray("00ff") << u"exchangeError MarloSet GenericError"_s;
    QTest::newRow("nothing") << QByteArray() << u"exchangeError MarloSet GenericError"_s;
}

void TestStreams::settingsAreTakenOrRefused()
{
    QFETCH(const QByteArray, payload);
    QFETCH(const QString, told);
    CONNECT(connectToAnswers(answer("MarloSet", {payload})));
    m_session->startMarloSettings({});
    QVERIFY(m_log.await(told));
    QCOMPARE(m_log.take(), QStringList(told));
}

QTEST_GUILESS_MAIN(TestStreams)
#include "tst_streams.moc"
