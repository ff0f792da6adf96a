// SPDX-License-Identifier: MIT
#include <QtCore/qtimer.h>
#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbusmessage.h>
#include <QtTest/qsignalspy.h>

#include <memory>

#include <varda/vardacomputer.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Reason = VardaJob::Reason;

namespace {

void steer(const QString &method, const QVariantList &arguments = {})
{
    auto message = QDBusMessage::createMethodCall(
        u"org.varda.Simulator"_s, u"/org/varda/Simulator"_s, u"org.varda.Simulator1"_s, method);
    message.setArguments(arguments);
    // Not awaited: what is frozen does not answer.
    QDBusConnection::systemBus().send(message);
}

void freeze(uint milliseconds)
{
    steer(u"Freeze"_s, {milliseconds});
    QTest::qWait(100); // until it is: what is frozen does not report that
}

} // namespace

/** What the system's Bluetooth does to jobs. */
class TestBluetooth : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_computer = std::make_unique<VardaComputer>(); }
    void missing_data();
    void missing();
    void lost_data();
    void lost();
    void lostWhileSearching_data();
    void lostWhileSearching();
    void restartedInADownload();
    void frozen();
    void frozenInAnAnswer_data();
    void frozenInAnAnswer();
    void frozenBetweenDives();

private:
    std::unique_ptr<VardaComputer> m_computer;
};

void TestBluetooth::missing_data()
{
    QTest::addColumn<QByteArray>("world");
    QTest::addColumn<VardaJob::Reason>("reason");
    QTest::newRow("no adapter") << QByteArray(R"("adapter":{"present":false})")
                                << Reason::NoAdapter;
    QTest::newRow("off") << QByteArray(R"("adapter":{"powered":false})") << Reason::AdapterOff;
    QTest::newRow("no service") << QByteArray(R"("recordTraffic":true)") << Reason::ServiceGone;
}

void TestBluetooth::missing()
{
    QFETCH(const QByteArray, world);
    QFETCH(const VardaJob::Reason, reason);
    LOAD(Simulator::loadScenario("{" + world + R"(,"devices":[{}]})"));
    if (reason == Reason::ServiceGone)
        steer(u"EndDaemon"_s);
    Simulator::settle();
    m_computer = std::make_unique<VardaComputer>(); // one that has not seen the adapter go
    JobSpy reading(m_computer->readOwner());
    JobSpy second(m_computer->readClock());
    JobSpy search(m_computer->search());
    QVERIFY(reading.wait(10'000));
    QCOMPARE(reading.error, VardaJob::NoBluetooth);
    QCOMPARE(reading.reason, reason);
    QVERIFY(second.wait(2000));
    QCOMPARE(second.reason, reason);
    QVERIFY(search.wait(10'000));
    QCOMPARE(search.error, VardaJob::NoBluetooth);
    QCOMPARE(search.reason, reason);
    if (reason == Reason::ServiceGone)
        steer(u"StartDaemon"_s);
}

void TestBluetooth::lost_data()
{
    QTest::addColumn<VardaJob::Reason>("reason");
    QTest::newRow("off") << Reason::AdapterOff;
    QTest::newRow("removed") << Reason::AdapterRemoved;
    QTest::newRow("service gone") << Reason::ServiceGone;
}

void TestBluetooth::lost()
{
    QFETCH(const VardaJob::Reason, reason);
    LOAD(Simulator::loadKnown(
        R"("owner":"Ada","faults":[{"step":"answer","command":"Time","kind":"silent"}])"));
    auto *const job = m_computer->readClock();
    job->setRetries(0);
    JobSpy spy(job);
    QTRY_COMPARE(job->state(), VardaJob::Running);
    QSignalSpy lost(m_computer.get(), &VardaComputer::linkLost);
    if (reason == Reason::AdapterOff)
        Simulator::setPowered(false);
    else if (reason == Reason::AdapterRemoved)
        Simulator::removeAdapter();
    else
        steer(u"EndDaemon"_s);
    QVERIFY(spy.wait(3000)); // at once, not at a limit
    QCOMPARE(spy.error, VardaJob::NoBluetooth);
    QCOMPARE(spy.reason, reason);
    QCOMPARE(lost.size(), 1);
    QVERIFY(!spy.outcomeUnknown);

    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    JobSpy next(m_computer->readOwner());
    ENDS_WELL(next);
}

void TestBluetooth::lostWhileSearching_data()
{
    lost_data();
}

void TestBluetooth::lostWhileSearching()
{
    QFETCH(const VardaJob::Reason, reason);
    LOAD(Simulator::loadDevice(R"("advertise":[])"));
    auto *const job = m_computer->readClock();
    JobSpy spy(job);
    JobSpy search(m_computer->search());
    QTRY_COMPARE(Simulator::count(u"StartDiscovery"_s), 1);
    if (reason == Reason::AdapterOff)
        Simulator::setPowered(false);
    else if (reason == Reason::AdapterRemoved)
        Simulator::removeAdapter();
    else
        steer(u"EndDaemon"_s);
    QVERIFY(spy.wait(5000));
    QCOMPARE(spy.error, VardaJob::NoBluetooth);
    QCOMPARE(spy.reason, reason);
    QVERIFY(search.wait(5000));
    QCOMPARE(search.reason, reason);
    steer(u"StartDaemon"_s);
}

void TestBluetooth::restartedInADownload()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":4,"samples":20})"));
    auto *const job = m_computer->downloadDives();
    QList<int> numbers;
    connect(job, &DownloadJob::diveRead, this,
            [&](const Dive &, const TidemarDiveHeader &header, const QList<DiveSample> &) {
                numbers << header.diveNumber;
                if (numbers.size() != 2)
                    return;
                steer(u"EndDaemon"_s);
                QTimer::singleShot(1500ms, this, [] { steer(u"StartDaemon"_s); });
            });
    JobSpy spy(job);
    ENDS_WELL(spy);
    QCOMPARE(numbers, (QList<int>{1, 2, 3, 4}));
}

void TestBluetooth::frozen()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    freeze(7000);
    JobSpy spy(m_computer->readOwner());
    QVERIFY(spy.wait(20'000));
    QCOMPARE(spy.error, VardaJob::NoBluetooth);
    QCOMPARE(spy.reason, Reason::ServiceFrozen);
}

void TestBluetooth::frozenInAnAnswer_data()
{
    QTest::addColumn<int>("retries");
    QTest::newRow("once") << 0;
    QTest::newRow("again") << 3;
}

void TestBluetooth::frozenInAnAnswer()
{
    QFETCH(const int, retries);
    LOAD(
        Simulator::loadKnown(R"("dives":{"count":4,"samples":20},"faults":[{"step":"notification",)"
                             R"("command":"Fullsamples","nth":2,"kind":"freeze","ms":14000}])"));
    auto *const job = m_computer->downloadDives();
    job->setIdleLimit(2s);
    job->setRetries(retries);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::NoBluetooth);
    QCOMPARE(spy.reason, Reason::ServiceFrozen);
}

/** Qt must not be made to wait for it. */
void TestBluetooth::frozenBetweenDives()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":4,"samples":20})"));
    auto *const job = m_computer->downloadDives();
    connect(job, &DownloadJob::diveRead, job, &DownloadJob::pause, Qt::SingleShotConnection);
    JobSpy spy(job);
    QTRY_COMPARE(job->state(), VardaJob::Paused);
    freeze(7000);
    job->resume();
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::NoBluetooth);
    QCOMPARE(spy.reason, Reason::ServiceFrozen);
}

QTEST_MAIN(TestBluetooth)
#include "tst_bluetooth.moc"
