// SPDX-License-Identifier: MIT
#include <QtCore/qtimer.h>
#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbusconnectioninterface.h>
#include <QtDBus/qdbusmessage.h>
#include <QtDBus/qdbusservicewatcher.h>
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
    void searchFailsWhileTheServiceComesBack();
    void goneInAnOptionalPart_data();
    void goneInAnOptionalPart();
    void offInARestart();
    void offAndOnAgain();
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

/** An adapter that is off once more just after it was seen on fails the search, not the job. */
void TestBluetooth::searchFailsWhileTheServiceComesBack()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":4,"samples":20})"));
    auto *const job = m_computer->downloadDives();
    QList<int> numbers;
    connect(job, &DownloadJob::diveRead, this,
            [&](const Dive &, const TidemarDiveHeader &header, const QList<DiveSample> &) {
                numbers << header.diveNumber;
                if (numbers.size() == 2)
                    steer(u"EndDaemon"_s);
            });
    const QDBusServiceWatcher watcher(u"org.bluez"_s, QDBusConnection::systemBus());
    connect(&watcher, &QDBusServiceWatcher::serviceUnregistered, this,
            [] { steer(u"StartDaemon"_s); });
    connect(&watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        // By then the job's side has heard of it, and it asks for the adapter first.
        (void)QDBusConnection::systemBus().interface()->isServiceRegistered(u"org.bluez"_s);
        QMetaObject::invokeMethod(
            this, [] { steer(u"SetPowered"_s, {false}); }, Qt::QueuedConnection);
        QTimer::singleShot(1500ms, this, [] { steer(u"SetPowered"_s, {true}); });
    });
    JobSpy spy(job);
    ENDS_WELL(spy);
    QCOMPARE(numbers, (QList<int>{1, 2, 3, 4}));
}

void TestBluetooth::goneInAnOptionalPart_data()
{
    QTest::addColumn<int>("retries");
    QTest::addColumn<VardaJob::Error>("error");
    QTest::newRow("once") << 0 << VardaJob::NoBluetooth;
    QTest::newRow("again") << 3 << VardaJob::NoError;
}

/** What is not asked again is left out, once the service is back for the rest. */
void TestBluetooth::goneInAnOptionalPart()
{
    QFETCH(const int, retries);
    QFETCH(const VardaJob::Error, error);
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"answer","command":"Serialnumber","nth":1,)"
                              R"("kind":"daemonGone"}])"));
    const QDBusServiceWatcher watcher(u"org.bluez"_s, QDBusConnection::systemBus());
    connect(&watcher, &QDBusServiceWatcher::serviceUnregistered, this,
            [] { steer(u"StartDaemon"_s); });
    auto *const job = m_computer->readIdentity();
    job->setRetries(retries);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, error);
    QCOMPARE(spy.value.value<VardaIdentity>().serialNumber, QString());
    QCOMPARE(spy.value.value<VardaIdentity>().bootloaderVersionStr,
             retries > 0 ? u"1.0.3.a"_s : QString());
}

/** That the link goes with the adapter is no restart of the computer. */
void TestBluetooth::offInARestart()
{
    LOAD(
        Simulator::loadKnown(R"("faults":[{"step":"write","command":"Reset","kind":"powerOff"}])"));
    JobSpy spy(m_computer->restart());
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::NoBluetooth);
    QCOMPARE(spy.reason, Reason::AdapterOff);
    QVERIFY(spy.outcomeUnknown);
}

/** It costs the link, and no more. */
void TestBluetooth::offAndOnAgain()
{
    LOAD(Simulator::loadKnown(
        R"("clock":1000,"faults":[{"step":"answer","command":"Time","nth":1,"kind":"silent"}])"));
    JobSpy spy(m_computer->readClock());
    QTRY_COMPARE(Simulator::frames().size(), 1);
    steer(u"SetPowered"_s, {false});
    steer(u"SetPowered"_s, {true});
    ENDS_WELL(spy);
    QCOMPARE(spy.value.toLongLong(), 1000);
    QCOMPARE(Simulator::count(u"connected"_s), 2);
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
