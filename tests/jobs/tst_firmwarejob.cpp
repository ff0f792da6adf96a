// SPDX-License-Identifier: MIT
#include <QtTest/qsignalspy.h>

#include <chrono>
#include <memory>

#include <varda/vardacomputer.h>

#include "images.h"
#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Reason = VardaJob::Reason;

namespace {

constexpr int kSize = 4000;

QStringList requests(const QString &code)
{
    QStringList found = Simulator::frames();
    found.removeIf([&code](const QString &frame) { return frame.mid(16, 2) != code; });
    return found;
}

} // namespace

/** Firmware: resumed, refused, rejected, and what is known at the end. */
class TestFirmwareJob : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_computer = std::make_unique<VardaComputer>(); }
    void healthy_data();
    void healthy();
    void resumedAfterALostLink();
    void withoutHeaderItStartsAgain();
    void lostAfterTheEnd();
    void lostWhileItIsIdentified_data();
    void lostWhileItIsIdentified();
    void lostBeforeTheEndArrives();
    void refused_data();
    void refused();
    void rejectedBeforeConnecting_data();
    void rejectedBeforeConnecting();
    void sameVersion();
    void bootloaderUnknown();
    void silentClose();
    void silentCloseAndASlowSystem();
    void lateClose();
    void silentBlock();
    void identifiedAnewAfterAnUpload();
    void lostBeforeTheSameVersionIsInstalled();
    void lostAgainAndAgain_data();
    void lostAgainAndAgain();
    void eachResumptionIsAPart();

private:
    FirmwareJob *upload(const QByteArray &image, bool force = false);

    std::unique_ptr<VardaComputer> m_computer;
    qint64 m_highest = 0;
    qint64 m_resumedAt = 0;
    std::chrono::milliseconds m_elapsed{0};
};

FirmwareJob *TestFirmwareJob::upload(const QByteArray &image, bool force)
{
    auto *const job = m_computer->uploadFirmware(image, u"Name.4.5.6.d.bin"_s, force);
    m_highest = 0;
    connect(job, &VardaJob::progressed, this,
            [this, size = image.size()](qint64 done, qint64 total) {
                QVERIFY(done >= m_highest);
                QVERIFY(done <= size);
                QCOMPARE(total, size);
                m_highest = done;
            });
    connect(job, &VardaJob::finished, this, [this, job] {
        m_resumedAt = job->resumedAt();
        m_elapsed = job->elapsed();
    });
    return job;
}

void TestFirmwareJob::healthy_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::newRow("firmware") << QByteArray(kFirmwareHeader);
    QTest::newRow("bootloader") << QByteArray(kBootloaderHeader);
    QTest::newRow("without header") << QByteArray(8, '0');
}

void TestFirmwareJob::healthy()
{
    QFETCH(const QByteArray, header);
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    QSignalSpy lost(m_computer.get(), &VardaComputer::linkLost);
    const QByteArray bytes = image(kSize, header);
    JobSpy spy(upload(bytes));
    JobSpy next(m_computer->readClock());
    ENDS_WELL(spy);
    QCOMPARE(spy.value.toLongLong(), kSize);
    QCOMPARE(m_highest, kSize);
    QCOMPARE(m_resumedAt, 0);
    QVERIFY(m_elapsed.count() > 0);
    QCOMPARE(Simulator::firmware(), bytes);
    ENDS_WELL(next);
    QVERIFY(lost.isEmpty());
}

void TestFirmwareJob::resumedAfterALostLink()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"answer","command":"ProgramUpdate","nth":6,)"
                              R"("times":1,"kind":"drop"}])"));
    const QByteArray bytes = image(kSize, kFirmwareHeader);
    JobSpy spy(upload(bytes));
    ENDS_WELL(spy);
    QCOMPARE(Simulator::firmware(), bytes);
    QVERIFY(m_resumedAt > 0);
    QCOMPARE(m_highest, kSize);
    QCOMPARE(requests(u"1e"_s).size(), 2);
}

void TestFirmwareJob::withoutHeaderItStartsAgain()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"answer","command":"Program","nth":6,)"
                              R"("times":1,"kind":"drop"}])"));
    const QByteArray bytes = image(kSize);
    JobSpy spy(upload(bytes));
    ENDS_WELL(spy);
    QCOMPARE(Simulator::firmware(), bytes);
    QCOMPARE(m_resumedAt, 0);
    QCOMPARE(m_highest, kSize);
}

void TestFirmwareJob::lostAfterTheEnd()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"answer","command":"EndUpdate","nth":1,)"
                              R"("times":1,"kind":"drop"}])"));
    const QByteArray bytes = image(kSize, kFirmwareHeader);
    JobSpy spy(upload(bytes));
    ENDS_WELL(spy);
    QVERIFY(!spy.outcomeUnknown);
    QCOMPARE(Simulator::firmware(), bytes);
    QCOMPARE(requests(u"1e"_s).size(), 1);
    QCOMPARE(requests(u"20"_s).size(), 1);
    QCOMPARE(spy.done, kSize);
}

void TestFirmwareJob::lostWhileItIsIdentified_data()
{
    QTest::addColumn<QByteArray>("drops");
    QTest::addColumn<int>("links");
    const QByteArray drop = R"({"kind":"drop","step":"answer","command":)";
    QTest::newRow("before the upload") << QByteArray(drop + R"("Identification","nth":1})") << 2;
    // The first identification after the end is that of the new link.
    QTest::newRow("after its end")
        << QByteArray(drop + R"("EndUpdate","nth":1},)" + drop + R"("Identification","nth":3})")
        << 3;
}

void TestFirmwareJob::lostWhileItIsIdentified()
{
    QFETCH(const QByteArray, drops);
    QFETCH(const int, links);
    LOAD(Simulator::loadKnown(R"("faults":[)" + drops + "]"));
    const QByteArray bytes = image(kSize, kFirmwareHeader);
    JobSpy spy(upload(bytes));
    ENDS_WELL(spy);
    QCOMPARE(Simulator::firmware(), bytes);
    QCOMPARE(requests(u"1e"_s).size(), 1);
    QCOMPARE(Simulator::count(u"connected"_s), links);
}

void TestFirmwareJob::lostBeforeTheEndArrives()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"write","command":"EndUpdate","nth":1,)"
                              R"("times":1,"kind":"drop"}])"));
    const QByteArray bytes = image(kSize, kFirmwareHeader);
    JobSpy spy(upload(bytes));
    ENDS_WELL(spy);
    QCOMPARE(Simulator::firmware(), bytes);
    QCOMPARE(requests(u"1e"_s).size(), 2);
}

void TestFirmwareJob::refused_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<VardaJob::Reason>("reason");
    QTest::addColumn<QByteArray>("header");
    QTest::newRow("begin") << QByteArray("BeginUpdate") << Reason::BeginRefused
                           << QByteArray(kFirmwareHeader);
    QTest::newRow("block") << QByteArray("ProgramUpdate") << Reason::BlockRefused
                           << QByteArray(kFirmwareHeader);
    QTest::newRow("end") << QByteArray("EndUpdate") << Reason::EndRefused
                         << QByteArray(kFirmwareHeader);
    QTest::newRow("plain begin") << QByteArray("Begin_program") << Reason::BeginRefused
                                 << QByteArray(8, '0');
    QTest::newRow("plain block") << QByteArray("Program") << Reason::BlockRefused
                                 << QByteArray(8, '0');
    QTest::newRow("plain end") << QByteArray("End_program") << Reason::EndRefused
                               << QByteArray(8, '0');
}

void TestFirmwareJob::refused()
{
    QFETCH(const QByteArray, command);
    QFETCH(const VardaJob::Reason, reason);
    QFETCH(const QByteArray, header);
    LOAD(Simulator::loadKnown(R"("owner":"Ada","faults":[{"step":"answer","command":")" + command
                              + R"(","kind":"refuse"}])"));
    JobSpy spy(upload(image(kSize, header)));
    JobSpy next(m_computer->readClock());
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Refused);
    QCOMPARE(spy.reason, reason);
    QVERIFY(!spy.outcomeUnknown);
    ENDS_WELL(next);
    QCOMPARE(Simulator::count(u"connected"_s), 1);
}

void TestFirmwareJob::rejectedBeforeConnecting_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<VardaJob::Reason>("reason");
    QTest::newRow("unknown") << image(kSize, "12345678") << Reason::UnknownImage;
    QTest::newRow("empty") << QByteArray() << Reason::BadArgument;
}

void TestFirmwareJob::rejectedBeforeConnecting()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const VardaJob::Reason, reason);
    LOAD(Simulator::loadKnown());
    JobSpy spy(m_computer->uploadFirmware(bytes, u"x.bin"_s));
    QCOMPARE(spy.ends, 0);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Rejected);
    QCOMPARE(spy.reason, reason);
    QVERIFY(!spy.outcomeUnknown);
    QCOMPARE(Simulator::count(u"Connect"_s), 0);
}

void TestFirmwareJob::sameVersion()
{
    LOAD(Simulator::loadKnown(R"("firmware":"4.5.6.d")"));
    const QByteArray bytes = image(kSize, kFirmwareHeader);
    JobSpy spy(upload(bytes));
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Rejected);
    QCOMPARE(spy.reason, Reason::SameVersion);
    QVERIFY(!spy.outcomeUnknown);
    QVERIFY(requests(u"1e"_s).isEmpty());
    JobSpy forced(upload(bytes, true));
    ENDS_WELL(forced);
    QCOMPARE(Simulator::firmware(), bytes);
}

void TestFirmwareJob::bootloaderUnknown()
{
    LOAD(Simulator::loadKnown(R"("bootloader":null)"));
    JobSpy spy(upload(image(kSize, kFirmwareHeader)));
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Rejected);
    QCOMPARE(spy.reason, Reason::BootloaderUnknown);
}

void TestFirmwareJob::silentClose()
{
    LOAD(Simulator::loadKnown(
        R"("owner":"Ada","faults":[{"step":"answer","command":"Close","kind":"silent"}])"));
    QSignalSpy lost(m_computer.get(), &VardaComputer::linkLost);
    JobSpy spy(upload(image(kSize, kFirmwareHeader)));
    JobSpy next(m_computer->readOwner());
    ENDS_WELL(spy);
    QCOMPARE(m_computer->state(), VardaComputer::Settling);
    QCOMPARE(next.ends, 0);
    ENDS_WELL(next);
    QVERIFY(lost.isEmpty());
    QCOMPARE(Simulator::count(u"connected"_s), 2);
}

/** The link that the system is slow to end is on its way down: it is not the next job's. */
void TestFirmwareJob::silentCloseAndASlowSystem()
{
    LOAD(Simulator::loadScenario(
        R"({"disconnectDelay":1500,"devices":[{"known":true,"owner":"Ada",)"
        R"("faults":[{"step":"answer","command":"Close","kind":"silent"}]}]})"));
    JobSpy spy(upload(image(kSize, kFirmwareHeader)));
    auto *const reading = m_computer->readOwner();
    reading->setRetries(0);
    JobSpy next(reading);
    ENDS_WELL(spy);
    ENDS_WELL(next);
    QCOMPARE(next.value.toString(), u"Ada"_s);
    QCOMPARE(Simulator::record({u"connected"_s, u"disconnected"_s}),
             (QStringList{u"connected"_s, u"disconnected"_s, u"connected"_s}));
}

void TestFirmwareJob::lateClose()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada","faults":[{"step":"answer","command":"Close",)"
                              R"("kind":"late","ms":1000}])"));
    JobSpy spy(upload(image(kSize, kFirmwareHeader)));
    JobSpy next(m_computer->readOwner());
    ENDS_WELL(spy);
    QCOMPARE(m_computer->state(), VardaComputer::Settling);
    QCOMPARE(next.ends, 0);
    ENDS_WELL(next);
    QCOMPARE(next.value.toString(), u"Ada"_s);
    QCOMPARE(Simulator::count(u"connected"_s), 1);
}

/** Some of it was answered, so it has no end rather than no answer. */
void TestFirmwareJob::silentBlock()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"answer","command":"ProgramUpdate","nth":3,)"
                              R"("kind":"silent"}])"));
    auto *const job = upload(image(kSize, kFirmwareHeader));
    job->setRetries(0);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::TimedOut);
    QCOMPARE(spy.reason, Reason::NoEnd);
    QVERIFY(spy.outcomeUnknown);
}

void TestFirmwareJob::identifiedAnewAfterAnUpload()
{
    LOAD(Simulator::loadKnown(R"("firmware":"1.0.0.a")"));
    JobSpy spy(upload(image(kSize, kFirmwareHeader)));
    ENDS_WELL(spy);
    JobSpy logbook(m_computer->readLogbook());
    ENDS_WELL(logbook);
    QCOMPARE(m_computer->identity().firmwareVersionStr, u"4.5.6.d"_s);
    // The same once more is known to be there.
    JobSpy again(upload(image(kSize, kFirmwareHeader)));
    QVERIFY(again.wait());
    QCOMPARE(again.reason, Reason::SameVersion);
}

/** The version that the computer has had all along does not show that the image has arrived. */
void TestFirmwareJob::lostBeforeTheSameVersionIsInstalled()
{
    LOAD(Simulator::loadKnown(R"("firmware":"4.5.6.d","faults":[{"step":"write","nth":1,)"
                              R"("command":"EndUpdate","kind":"refuse"}])"));
    const QByteArray bytes = image(kSize, kFirmwareHeader);
    JobSpy spy(upload(bytes, true));
    ENDS_WELL(spy);
    QCOMPARE(Simulator::firmware(), bytes);
}

void TestFirmwareJob::lostAgainAndAgain_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<int>("links");
    QTest::newRow("begin") << QByteArray("BeginUpdate") << QByteArray(kFirmwareHeader) << 2;
    QTest::newRow("block") << QByteArray("ProgramUpdate") << QByteArray(kFirmwareHeader) << 2;
    // Once more: the second time it has the whole image.
    QTest::newRow("end") << QByteArray("EndUpdate") << QByteArray(kFirmwareHeader) << 3;
    QTest::newRow("plain begin") << QByteArray("Begin_program") << QByteArray(8, '0') << 2;
    QTest::newRow("plain block") << QByteArray("Program") << QByteArray(8, '0') << 2;
    QTest::newRow("plain end") << QByteArray("End_program") << QByteArray(8, '0') << 2;
}

/** That the computer can be identified on each new link is no progress of the upload. */
void TestFirmwareJob::lostAgainAndAgain()
{
    QFETCH(const QByteArray, command);
    QFETCH(const QByteArray, header);
    QFETCH(const int, links);
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"write","command":")" + command
                              + R"(","kind":"drop"}])"));
    auto *const job = upload(image(kSize, header));
    job->setRetries(1);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::LinkLost);
    QVERIFY(spy.outcomeUnknown);
    QCOMPARE(Simulator::count(u"connected"_s), links);
}

/** What the computer keeps of an image is a part that is done. */
void TestFirmwareJob::eachResumptionIsAPart()
{
    const QByteArray drop = R"({"step":"answer","command":"ProgramUpdate","kind":"drop","nth":)";
    LOAD(Simulator::loadKnown(R"("faults":[)" + drop + "4}," + drop + "8}," + drop + "12}]"));
    const QByteArray bytes = image(kSize, kFirmwareHeader);
    auto *const job = upload(bytes);
    job->setRetries(1);
    JobSpy spy(job);
    ENDS_WELL(spy);
    QCOMPARE(Simulator::firmware(), bytes);
    QCOMPARE(Simulator::count(u"connected"_s), 4);
}

QTEST_MAIN(TestFirmwareJob)
#include "tst_firmwarejob.moc"
