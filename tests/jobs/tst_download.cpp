// SPDX-License-Identifier: MIT
#include <QtCore/qtimer.h>
#include <QtTest/qsignalspy.h>

#include <memory>

#include <varda/vardacomputer.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Reason = VardaJob::Reason;

namespace {

/** The requests of that code that have arrived, in hex. */
QStringList requests(const QString &code)
{
    QStringList found = Simulator::frames();
    found.removeIf([&code](const QString &frame) { return frame.mid(16, 2) != code; });
    return found;
}

} // namespace

/** Downloads: each dive once and whole, whatever happens on the way. */
class TestDownload : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_computer = std::make_unique<VardaComputer>(); }
    void oldestFirst();
    void lostLink_data();
    void lostLink();
    void lostAgainAndAgain();
    void damagedOnce();
    void damagedAlways();
    void silentDive();
    void silentConfiguration();
    void pauseAndResume();
    void pauseAtTheLastDive();
    void resumedWhileItWaits();
    void deletedWhenAskedWhatIsWanted();
    void linkLostWhilePaused();
    void wanted();
    void wantedNothing();
    void knownOnceTheComputerIs();
    void trusted();
    void smallMtu();
    void gasTablesOverASmallMtu();
    void logWithAPause_data();
    void logWithAPause();
    void longAnswer();
    void fourHundredDives();
    void sps();
    void otherLinkMode();

private:
    DownloadJob *download(const QList<std::uint16_t> &known = {});

    std::unique_ptr<VardaComputer> m_computer;
    QList<int> m_numbers;
    QList<int> m_damaged;
    QList<int> m_samples;
};

DownloadJob *TestDownload::download(const QList<std::uint16_t> &known)
{
    m_numbers.clear();
    m_damaged.clear();
    m_samples.clear();
    auto *const job = m_computer->downloadDives(known);
    connect(job, &DownloadJob::diveRead, this,
            [this](const Dive &dive, const TidemarDiveHeader &header,
                   const QList<DiveSample> &samples) {
                m_numbers << header.diveNumber;
                m_samples << int(samples.size());
                QCOMPARE(dive.numberText, QString::number(header.diveNumber));
            });
    connect(job, &DownloadJob::diveDamaged, this,
            [this](std::uint16_t number) { m_damaged << number; });
    return job;
}

void TestDownload::oldestFirst()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":4,"first":7,"samples":30})"));
    auto *const job = download({8});
    QList<QList<TidemarDiveHeader>> announced;
    connect(job, &DownloadJob::headersRead, this,
            [&](const QList<TidemarDiveHeader> &headers) { announced << headers; });
    qint64 highest = 0;
    connect(job, &VardaJob::progressed, this, [&](qint64 done, qint64 total) {
        QVERIFY(done >= highest);
        QVERIFY(done <= total);
        highest = done;
    });
    QCOMPARE(job->total(), -1);
    JobSpy spy(job);
    ENDS_WELL(spy);
    QCOMPARE(m_numbers, (QList<int>{7, 9, 10}));
    QCOMPARE(m_samples, (QList<int>{30, 30, 30}));
    QCOMPARE(announced.size(), 1);
    QCOMPARE(announced.constFirst().size(), 3);
    QCOMPARE(spy.value.toInt(), 3);
    QCOMPARE(spy.done, 3);
    QCOMPARE(spy.total, 3);
}

void TestDownload::lostLink_data()
{
    QTest::addColumn<QByteArray>("fault");
    for (const auto *fault : {R"("step":"answer","command":"Identification","nth":1)",
                              R"("step":"notification","command":"Logbook","nth":2)",
                              R"("step":"notification","command":"Fullsamples","nth":2)",
                              R"("step":"write","command":"Fullsamples","nth":2)"})
        QTest::newRow(fault) << QByteArray(fault);
}

void TestDownload::lostLink()
{
    QFETCH(const QByteArray, fault);
    LOAD(Simulator::loadKnown(
        R"("dives":{"count":2,"samples":40},"faults":[{"times":1,"kind":"drop",)" + fault + "}]"));
    QSignalSpy lost(m_computer.get(), &VardaComputer::linkLost);
    JobSpy spy(download());
    ENDS_WELL(spy);
    QCOMPARE(m_numbers, (QList<int>{1, 2}));
    QCOMPARE(m_samples, (QList<int>{40, 40}));
    QVERIFY(m_damaged.isEmpty());
    QCOMPARE(lost.size(), 1);
    QCOMPARE(Simulator::count(u"connected"_s), 2);
}

void TestDownload::lostAgainAndAgain()
{
    // Each dive costs a link, and each dive that is read gives the retries back.
    LOAD(Simulator::loadKnown(
        R"("dives":{"count":3,"samples":20},"faults":[)"
        R"({"step":"answer","command":"Fullsamples","nth":1,"times":1,"kind":"drop"},)"
        R"({"step":"answer","command":"Fullsamples","nth":3,"times":1,"kind":"drop"},)"
        R"({"step":"answer","command":"Fullsamples","nth":5,"times":1,"kind":"drop"}])"));
    auto *const job = download();
    job->setRetries(1);
    JobSpy spy(job);
    ENDS_WELL(spy);
    QCOMPARE(m_numbers, (QList<int>{1, 2, 3}));
    QCOMPARE(Simulator::count(u"connected"_s), 4);
}

void TestDownload::damagedOnce()
{
    LOAD(Simulator::loadKnown(
        R"("dives":{"count":3,"samples":40},"faults":[{"step":"answer","command":"Fullsamples",)"
        R"("nth":2,"times":1,"kind":"wrongCrc","frame":2}])"));
    JobSpy spy(download());
    ENDS_WELL(spy);
    QCOMPARE(m_numbers, (QList<int>{1, 2, 3}));
    QCOMPARE(m_samples, (QList<int>{40, 40, 40}));
    QVERIFY(m_damaged.isEmpty());
}

void TestDownload::damagedAlways()
{
    LOAD(Simulator::loadKnown(
        R"("dives":{"count":3,"samples":40},"faults":[{"step":"answer","command":"Fullsamples",)"
        R"("nth":2,"times":2,"kind":"wrongCrc"}])"));
    auto *const job = download();
    job->setRetries(1);
    QList<std::uint16_t> listed;
    connect(job, &VardaJob::finished, this, [&] { listed = job->damaged(); });
    JobSpy spy(job);
    ENDS_WELL(spy);
    QCOMPARE(m_numbers, (QList<int>{1, 3}));
    QCOMPARE(m_damaged, (QList<int>{2}));
    QCOMPARE(listed, (QList<std::uint16_t>{2}));
    QCOMPARE(spy.value.toInt(), 2);
    QCOMPARE(spy.done, 3);
    QCOMPARE(Simulator::count(u"connected"_s), 1);
}

void TestDownload::silentDive()
{
    LOAD(Simulator::loadKnown(
        R"("dives":{"count":3,"samples":20},"faults":[{"step":"answer","command":"Fullsamples",)"
        R"("nth":2,"times":2,"kind":"silent"}])"));
    auto *const job = download();
    job->setIdleLimit(2s);
    JobSpy spy(job);
    ENDS_WELL(spy);
    QCOMPARE(m_numbers, (QList<int>{1, 3}));
    QCOMPARE(m_damaged, (QList<int>{2}));
}

/** A dive says a little less without it. */
void TestDownload::silentConfiguration()
{
    LOAD(Simulator::loadKnown(
        R"("dives":{"count":2,"samples":20},"faults":[{"step":"answer","command":"Computer",)"
        R"("kind":"silent"}])"));
    auto *const job = download();
    job->setIdleLimit(1s);
    JobSpy spy(job);
    ENDS_WELL(spy);
    QCOMPARE(m_numbers, (QList<int>{1, 2}));
    QCOMPARE(requests(u"05"_s).size(), 1);
}

void TestDownload::pauseAndResume()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":3,"samples":20})"));
    auto *const job = download();
    job->setIdleLimit(2s);
    job->setTotalLimit(20s);
    connect(job, &DownloadJob::diveRead, job, &DownloadJob::pause);
    JobSpy spy(job);
    QTRY_COMPARE(job->state(), VardaJob::Paused);
    QCOMPARE(m_numbers, (QList<int>{1}));
    // Longer than it may be silent.
    QTest::qWait(2300);
    QCOMPARE(job->state(), VardaJob::Paused);
    QCOMPARE(m_computer->state(), VardaComputer::Connected);
    job->resume();
    QTRY_COMPARE(m_numbers, (QList<int>{1, 2}));
    QTRY_COMPARE(job->state(), VardaJob::Paused);
    job->resume();
    ENDS_WELL(spy);
    QCOMPARE(m_numbers, (QList<int>{1, 2, 3}));
    QCOMPARE(Simulator::count(u"connected"_s), 1);
}

void TestDownload::pauseAtTheLastDive()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":1,"samples":20})"));
    auto *const job = download();
    connect(job, &DownloadJob::diveRead, job, &DownloadJob::pause);
    JobSpy spy(job);
    QVERIFY(spy.wait(10'000)); // there is no next dive to hold before
    QCOMPARE(spy.error, VardaJob::NoError);
}

void TestDownload::resumedWhileItWaits()
{
    LOAD(Simulator::loadKnown(R"("clock":1000,"dives":{"count":2,"samples":20})"));
    JobSpy first(m_computer->readClock());
    auto *const job = download();
    job->pause();
    job->resume();
    QCOMPARE(job->state(), VardaJob::Waiting);
    JobSpy spy(job);
    ENDS_WELL(first);
    ENDS_WELL(spy);
    QCOMPARE(m_numbers, (QList<int>{1, 2}));
}

void TestDownload::deletedWhenAskedWhatIsWanted()
{
    LOAD(Simulator::loadKnown(R"("clock":1000,"dives":{"count":2,"samples":20})"));
    const QPointer<DownloadJob> job(download());
    job->setWanted([job](const TidemarDiveHeader &) {
        delete job;
        return true;
    });
    JobSpy next(m_computer->readClock());
    ENDS_WELL(next);
    QVERIFY(!job);
    QCOMPARE(next.value.toLongLong(), 1000);
    QCOMPARE(m_numbers, QList<int>());
}

void TestDownload::linkLostWhilePaused()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":3,"samples":20})"));
    auto *const job = download();
    connect(job, &DownloadJob::diveRead, job, &DownloadJob::pause, Qt::SingleShotConnection);
    JobSpy spy(job);
    QTRY_COMPARE(job->state(), VardaJob::Paused);
    QSignalSpy lost(m_computer.get(), &VardaComputer::linkLost);
    Simulator::drop();
    QTRY_COMPARE(lost.size(), 1);
    QCOMPARE(job->state(), VardaJob::Paused);
    job->resume();
    QCOMPARE(job->state(), VardaJob::Recovering);
    ENDS_WELL(spy);
    QCOMPARE(m_numbers, (QList<int>{1, 2, 3}));
    // What is known of the computer stays true: one identification is enough.
    QCOMPARE(requests(u"01"_s).size(), 1);
}

void TestDownload::wanted()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":5,"samples":20})"));
    auto *const job = download();
    job->setWanted([](const TidemarDiveHeader &header) { return header.diveNumber % 2 == 0; });
    JobSpy spy(job);
    ENDS_WELL(spy);
    QCOMPARE(m_numbers, (QList<int>{2, 4}));
    // None is the same as the default.
    auto *const again = download({1, 2, 3});
    again->setWanted({});
    JobSpy all(again);
    ENDS_WELL(all);
    QCOMPARE(m_numbers, (QList<int>{4, 5}));
}

void TestDownload::wantedNothing()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":5,"samples":20})"));
    JobSpy spy(download({1, 2, 3, 4, 5}));
    ENDS_WELL(spy);
    QVERIFY(m_numbers.isEmpty());
    QCOMPARE(spy.done, 0);
    QCOMPARE(spy.total, 0);
}

void TestDownload::knownOnceTheComputerIs()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":5,"samples":20})"));
    auto *const job = download();
    QStringList read;
    connect(job, &DownloadJob::computerRead, this, [&](const VardaIdentity &identity) {
        read << identity.serialNumber;
        job->pause();
    });
    JobSpy spy(job);
    QTRY_COMPARE(job->state(), VardaJob::Paused);
    QCOMPARE(requests(u"13"_s), QStringList());
    job->setKnown({1, 2, 3});
    job->resume();
    ENDS_WELL(spy);
    QCOMPARE(read, QStringList{u"00420017-3138510D-37373934"_s});
    QCOMPARE(m_numbers, (QList<int>{4, 5}));
    QVERIFY(requests(u"13"_s).constFirst().mid(18).startsWith("010002000300"_L1));
}

void TestDownload::trusted()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":5,"samples":20})"));
    auto *const job = download({1, 2, 3});
    QList<int> came;
    job->setTrusted([&](const QList<TidemarDiveHeader> &headers) {
        came << int(headers.size());
        return false;
    });
    JobSpy spy(job);
    ENDS_WELL(spy);
    QCOMPARE(came, (QList<int>{2})); // not asked about all of them
    QCOMPARE(m_numbers, (QList<int>{1, 2, 3, 4, 5}));
    QCOMPARE(requests(u"13"_s).size(), 2);
    auto *const again = download({1, 2, 3});
    again->setTrusted([](const QList<TidemarDiveHeader> &) { return true; });
    JobSpy known(again);
    ENDS_WELL(known);
    QCOMPARE(m_numbers, (QList<int>{4, 5}));
}

void TestDownload::smallMtu()
{
    LOAD(Simulator::loadKnown(R"("mtu":23,"dives":{"count":3,"samples":40})"));
    JobSpy identity(m_computer->readIdentity());
    ENDS_WELL(identity);
    QVERIFY(identity.value.value<VardaIdentity>().serialNumber.isEmpty());
    QVERIFY(!identity.value.value<VardaIdentity>().firmwareVersionStr.isEmpty());
    JobSpy spy(download());
    ENDS_WELL(spy);
    QCOMPARE(m_numbers, (QList<int>{1, 2, 3}));
    QCOMPARE(m_samples, (QList<int>{40, 40, 40}));
}

void TestDownload::gasTablesOverASmallMtu()
{
    LOAD(Simulator::loadKnown(R"("mtu":23)"));
    JobSpy spy(m_computer->readGasTables());
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Damaged);
    QCOMPARE(spy.reason, Reason::SmallMtu);
    QVERIFY(!spy.value.isValid());
}

void TestDownload::logWithAPause_data()
{
    QTest::addColumn<int>("nth");
    QTest::addColumn<int>("ms");
    QTest::newRow("in a frame") << 2 << 1400;
    QTest::newRow("long") << 2 << 3500;
    QTest::newRow("at the end") << 5 << 1400;
}

void TestDownload::logWithAPause()
{
    QFETCH(const int, nth);
    QFETCH(const int, ms);
    const QByteArray log = R"("logText":["one is a line of some length, so that it fills a part",)"
                           R"("two is a line of some length, so that it fills a part",)"
                           R"("three","four","five"],"split":40)";
    LOAD(Simulator::loadKnown(log + R"(,"faults":[{"step":"notification","command":"Syslog","nth":)"
                              + QByteArray::number(nth) + R"(,"times":1,"kind":"late","ms":)"
                              + QByteArray::number(ms) + "}]"));
    JobSpy spy(m_computer->readLog());
    ENDS_WELL(spy);
    QCOMPARE(spy.value.toStringList().size(), 5);
    QCOMPARE(spy.value.toStringList().constFirst(),
             u"one is a line of some length, so that it fills a part"_s);
    QCOMPARE(spy.value.toStringList().constLast(), u"five"_s);
}

void TestDownload::longAnswer()
{
    LOAD(Simulator::loadScenario(R"({"recordTraffic":false,"devices":[{"known":true,)"
                                 R"("dives":{"count":1,"samples":70000}}]})"));
    JobSpy spy(download());
    ENDS_WELL(spy);
    QCOMPARE(m_numbers, (QList<int>{1}));
    QCOMPARE(m_samples, (QList<int>{70'000}));
}

void TestDownload::fourHundredDives()
{
    LOAD(Simulator::loadScenario(R"({"recordTraffic":false,"devices":[{"known":true,)"
                                 R"("dives":{"count":400,"samples":10}}]})"));
    JobSpy spy(download());
    QVERIFY(spy.wait(900'000));
    QCOMPARE(spy.text, QString());
    QCOMPARE(m_numbers.size(), 400);
    QCOMPARE(m_numbers.constFirst(), 1);
    QCOMPARE(m_numbers.constLast(), 400);
    QVERIFY(std::is_sorted(m_numbers.cbegin(), m_numbers.cend()));
    QCOMPARE(m_samples, QList<int>(400, 10));
}

void TestDownload::sps()
{
    LOAD(Simulator::loadKnown(R"("mode":"sps","owner":"Ada","credits":"counted")"));
    JobSpy spy(m_computer->readOwner());
    ENDS_WELL(spy);
    QCOMPARE(spy.value.toString(), u"Ada"_s);
}

void TestDownload::otherLinkMode()
{
    LOAD(Simulator::loadKnown(R"("mode":"sps","owner":"Ada")"));
    m_computer->setLinkMode(BleMode::Gatt);
    JobSpy spy(m_computer->readOwner());
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::NotConnected);
    QCOMPARE(spy.reason, Reason::OtherLinkMode);
    QCOMPARE(Simulator::count(u"Connect"_s), 1);
    m_computer->setLinkMode({});
    JobSpy again(m_computer->readOwner());
    ENDS_WELL(again);
}

QTEST_MAIN(TestDownload)
#include "tst_download.moc"
