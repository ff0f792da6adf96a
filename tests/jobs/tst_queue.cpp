// SPDX-License-Identifier: MIT
#include <QtCore/qthread.h>
#include <QtTest/qsignalspy.h>

#include <memory>

#include <varda/vardacomputer.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Reason = VardaJob::Reason;

namespace {

constexpr auto kSecond = "00:AA:01:01:00:02";
constexpr auto kTwoInReach = R"({"devices":[{"owner":"Ada","advertise":[{"after":10}]},)"
                             R"({"owner":"Grace","advertise":[{"after":600}]}]})";

BleDeviceInfo secondDevice()
{
    return BleDeviceInfo::fromAddress(QString::fromLatin1(kSecond), u"Varda"_s);
}

} // namespace

/** Which job runs when, and on which computer. */
class TestQueue : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_computer = std::make_unique<VardaComputer>(); }
    void order();
    void leftJobsGoWithTheApplication();
    void fiveWithoutAComputer();
    void setDeviceEndsWhatIsQueued();
    void disconnectionOvertakes();
    void askedForWhileDisconnecting();
    void twoComputersForOneDevice();
    void twoComputersAtOnce();
    void nothingLeft();
    void twoComputersAndNothingSet();
    void ambiguousForWriters();
    void readersTakeTheFirst();
    void ambiguousEndsNoReader();
    void writerTakesNoAttemptOfAReader_data();
    void writerTakesNoAttemptOfAReader();
    void otherThread();
    void linger();
    void lingerAtOnce();
    void lingerNoMore();
    void identityIsKnownOnceRead();
    void otherComputerIsAskedAnew();

private:
    std::unique_ptr<VardaComputer> m_computer;
};

void TestQueue::order()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    QStringList ended;
    const auto note = [&](VardaJob *job, const QString &name) {
        connect(job, &VardaJob::finished, this, [&ended, name](VardaJob *each) {
            ended << name
                         + (each->error() == VardaJob::NoError ? u""_s
                                                               : u" "_s + each->errorText());
        });
    };
    auto *const first = m_computer->readClock();
    note(first, u"clock"_s);
    note(m_computer->readOwner(), u"owner"_s);
    auto *const sensors = m_computer->readSensors();
    note(sensors, u"sensors"_s);
    QCOMPARE(m_computer->waitingJobs().size(), 3);
    QCOMPARE(m_computer->waitingJobs().constFirst(), first);
    // What is asked for at the end of a job comes after what waits.
    connect(first, &VardaJob::finished, this,
            [&] { note(m_computer->readTissues(), u"tissues"_s); });
    QTRY_COMPARE(ended, (QStringList{u"clock"_s, u"owner"_s, u"sensors"_s, u"tissues"_s}));
    QCOMPARE(Simulator::count(u"connected"_s), 1);
    QCOMPARE(m_computer->currentJob(), nullptr);
    QVERIFY(m_computer->waitingJobs().isEmpty());
}

/** Nothing deletes them if the event loop has ended with their computer. */
void TestQueue::leftJobsGoWithTheApplication()
{
    LOAD(Simulator::loadScenario(R"({"devices":[]})"));
    const QPointer<VardaJob> job = m_computer->readClock();
    QPointer<QObject> home = job->parent();
    m_computer.reset();
    QVERIFY(job);
    QCOMPARE(home->parent(), QCoreApplication::instance());
    QTRY_VERIFY(!job);
    QTRY_VERIFY(!home);
}

void TestQueue::fiveWithoutAComputer()
{
    LOAD(Simulator::loadScenario(R"({"devices":[]})"));
    std::vector<std::unique_ptr<JobSpy>> spies;
    QList<int> order;
    for (int i = 0; i < 5; ++i) {
        auto *const job = m_computer->readClock();
        job->setConnectLimit(1500ms);
        connect(job, &VardaJob::finished, this, [&order, i] { order << i; });
        spies.push_back(std::make_unique<JobSpy>(job));
    }
    QVERIFY(spies.front()->wait());
    // All have waited for the same: no second wait begins.
    const QPointer<VardaJob> running = m_computer->currentJob();
    QVERIFY(spies.back()->wait(1000));
    QVERIFY(!running);
    for (const auto &spy : spies) {
        QCOMPARE(spy->error, VardaJob::NotFound);
        QCOMPARE(spy->reason, Reason::Silent);
        QCOMPARE(spy->text, u"no computer found within 2 s"_s);
        QCOMPARE(spy->ends, 1);
    }
    QCOMPARE(order, (QList<int>{0, 1, 2, 3, 4}));
    QCOMPARE(Simulator::count(u"StartDiscovery"_s), 1);

    // Later ones try anew.
    auto *const again = m_computer->readClock();
    again->setConnectLimit(500ms);
    JobSpy spy(again);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::NotFound);
    QCOMPARE(Simulator::count(u"StartDiscovery"_s), 2);
}

void TestQueue::setDeviceEndsWhatIsQueued()
{
    LOAD(Simulator::loadScenario(R"({"devices":[{"owner":"Ada"},{"owner":"Grace"}]})"));
    m_computer->setDevice(knownDevice());
    JobSpy before(m_computer->readOwner());
    ENDS_WELL(before);
    QCOMPARE(before.value.toString(), u"Ada"_s);

    JobSpy running(m_computer->readLog());
    JobSpy waiting(m_computer->readOwner());
    QTRY_COMPARE(running.job->state(), VardaJob::Running);
    QSignalSpy changed(m_computer.get(), &VardaComputer::deviceChanged);
    m_computer->setDevice(secondDevice());
    QCOMPARE(running.ends + waiting.ends, 0);
    QCOMPARE(changed.size(), 1);
    JobSpy after(m_computer->readOwner());
    ENDS_WELL(after);
    QCOMPARE(after.value.toString(), u"Grace"_s);
    QCOMPARE(running.reason, Reason::ByOtherDevice);
    QCOMPARE(waiting.reason, Reason::ByOtherDevice);

    // The same one again ends nothing.
    JobSpy kept(m_computer->readOwner());
    m_computer->setDevice(secondDevice());
    ENDS_WELL(kept);
}

void TestQueue::disconnectionOvertakes()
{
    LOAD(Simulator::loadKnown(
        R"("owner":"Ada","faults":[{"step":"answer","command":"Time","kind":"silent","times":1}])"));
    QStringList ended;
    const auto note = [&](VardaJob *job, const QString &name) {
        connect(job, &VardaJob::finished, this, [&ended, name] { ended << name; });
    };
    auto *const clock = m_computer->readClock();
    note(clock, u"clock"_s);
    note(m_computer->readSensors(), u"sensors"_s);
    // In a slot of one that is cancelled: it runs after the disconnection, and connects again.
    connect(clock, &VardaJob::finished, this,
            [&] { note(m_computer->readTissues(), u"inside"_s); });
    QTRY_COMPARE(clock->state(), VardaJob::Running);
    JobSpy gone(m_computer->disconnectFromComputer());
    note(gone.job, u"gone"_s);
    note(m_computer->readOwner(), u"owner"_s);
    QVERIFY(ended.isEmpty());
    ENDS_WELL(gone);
    QTRY_COMPARE(ended,
                 (QStringList{u"clock"_s, u"sensors"_s, u"gone"_s, u"owner"_s, u"inside"_s}));
    QCOMPARE(Simulator::count(u"connected"_s), 2);
    QCOMPARE(m_computer->state(), VardaComputer::Connected);
}

void TestQueue::askedForWhileDisconnecting()
{
    LOAD(Simulator::loadScenario(
        R"({"disconnectDelay":500,"devices":[{"known":true,"owner":"Ada"}]})"));
    JobSpy first(m_computer->readOwner());
    ENDS_WELL(first);
    JobSpy gone(m_computer->disconnectFromComputer());
    JobSpy goneToo(m_computer->disconnectFromComputer());
    QCOMPARE(m_computer->state(), VardaComputer::Disconnecting);
    JobSpy next(m_computer->readOwner());
    ENDS_WELL(next);
    QCOMPARE(gone.ends, 1);
    QCOMPARE(goneToo.ends, 1);
    QCOMPARE(goneToo.error, VardaJob::NoError);
    QCOMPARE(Simulator::count(u"connected"_s), 2);
}

void TestQueue::twoComputersForOneDevice()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    VardaComputer other;
    for (VardaComputer *each : {m_computer.get(), &other})
        each->setDevice(knownDevice());
    JobSpy first(m_computer->readOwner());
    ENDS_WELL(first);
    JobSpy second(other.readOwner());
    JobSpy third(other.readClock());
    QVERIFY(second.wait());
    QCOMPARE(second.error, VardaJob::InUse);
    QCOMPARE(second.reason, Reason::OtherComputer);
    QVERIFY(third.wait());
    QCOMPARE(third.error, VardaJob::InUse);
    QCOMPARE(m_computer->state(), VardaComputer::Connected);

    JobSpy gone(m_computer->disconnectFromComputer());
    ENDS_WELL(gone);
    JobSpy again(other.readOwner());
    ENDS_WELL(again);
    QCOMPARE(again.value.toString(), u"Ada"_s);
    // Now the first is the second.
    JobSpy late(m_computer->readOwner());
    QVERIFY(late.wait());
    QCOMPARE(late.error, VardaJob::InUse);
}

/** Neither has it when the other begins to look for it. */
void TestQueue::twoComputersAtOnce()
{
    LOAD(Simulator::loadDevice(R"("owner":"Ada","advertise":[{"after":300}])"));
    VardaComputer other;
    for (VardaComputer *each : {m_computer.get(), &other})
        each->setDevice(knownDevice());
    JobSpy first(m_computer->readOwner());
    JobSpy second(other.readOwner());
    QVERIFY(first.wait());
    QVERIFY(second.wait());
    const bool isFirst = first.error == VardaJob::NoError;
    QCOMPARE((isFirst ? first : second).value.toString(), u"Ada"_s);
    QCOMPARE((isFirst ? second : first).error, VardaJob::InUse);
    QCOMPARE(Simulator::count(u"connected"_s), 1);
}

/** The only computer in reach is taken. */
void TestQueue::nothingLeft()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    JobSpy first(m_computer->readOwner());
    ENDS_WELL(first);
    VardaComputer other;
    JobSpy second(other.readOwner());
    QVERIFY(second.wait());
    QCOMPARE(second.error, VardaJob::InUse);
    QCOMPARE(second.reason, Reason::OtherComputer);
}

void TestQueue::twoComputersAndNothingSet()
{
    LOAD(Simulator::loadScenario(kTwoInReach));
    VardaComputer other;
    JobSpy first(m_computer->readOwner());
    JobSpy second(other.readOwner());
    ENDS_WELL(first);
    ENDS_WELL(second);
    QVERIFY(first.value != second.value);
}

void TestQueue::ambiguousForWriters()
{
    LOAD(Simulator::loadScenario(kTwoInReach));
    JobSpy spy(m_computer->writeOwner(u"Eve"_s));
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Ambiguous);
    QCOMPARE(spy.reason, Reason::ManyInReach);
    QVERIFY(!spy.outcomeUnknown);
    QVERIFY(!m_computer->device().isValid());
    QCOMPARE(Simulator::count(u"Connect"_s), 0);
    // With one that is set there is no question.
    m_computer->setDevice(secondDevice());
    JobSpy sure(m_computer->writeOwner(u"Eve"_s));
    ENDS_WELL(sure);
    QCOMPARE(Simulator::state(kSecond)["owner"_L1].toString(), u"Eve"_s);
}

void TestQueue::readersTakeTheFirst()
{
    LOAD(Simulator::loadScenario(kTwoInReach));
    QSignalSpy changed(m_computer.get(), &VardaComputer::deviceChanged);
    JobSpy spy(m_computer->readOwner());
    ENDS_WELL(spy);
    QCOMPARE(spy.value.toString(), u"Ada"_s);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(m_computer->device().address(), QString::fromLatin1(kAddress));
}

void TestQueue::ambiguousEndsNoReader()
{
    LOAD(Simulator::loadScenario(kTwoInReach));
    JobSpy writer(m_computer->writeOwner(u"Eve"_s));
    JobSpy reader(m_computer->readOwner());
    QVERIFY(writer.wait());
    QCOMPARE(writer.error, VardaJob::Ambiguous);
    ENDS_WELL(reader);
    QCOMPARE(reader.value.toString(), u"Ada"_s);
}

void TestQueue::writerTakesNoAttemptOfAReader_data()
{
    QTest::addColumn<QString>("deed");
    for (const auto *deed : {"cancel", "delete", "cancel two"})
        QTest::newRow(deed) << QString::fromLatin1(deed);
}

void TestQueue::writerTakesNoAttemptOfAReader()
{
    QFETCH(const QString, deed);
    LOAD(Simulator::loadScenario(
        R"({"devices":[{"owner":"Ada","faults":[{"step":"discover","nth":1,"times":1,"kind":"late","ms":500}]},)"
        R"({"owner":"Grace"}]})"));
    auto *const reader = m_computer->readOwner();
    VardaJob *const second = deed == "cancel two"_L1 ? m_computer->readClock() : nullptr;
    JobSpy writer(m_computer->writeOwner(u"Eve"_s));
    QTRY_COMPARE(m_computer->state(), VardaComputer::Connecting);
    if (deed == "delete"_L1)
        delete reader;
    else
        reader->cancel();
    if (second)
        second->cancel();
    QVERIFY(writer.wait());
    QCOMPARE(writer.error, VardaJob::Ambiguous);
    QCOMPARE(Simulator::state()["owner"_L1].toString(), u"Ada"_s);
}

void TestQueue::otherThread()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    QThread thread;
    m_computer->moveToThread(&thread);
    QString owner;
    QString text;
    QThread *endedOn = nullptr;
    QObject *home = nullptr;
    auto *const computer = m_computer.get();
    connect(&thread, &QThread::started, computer, [&] {
        auto *const job = computer->readOwner();
        home = job->parent();
        connect(job, &VardaJob::finished, computer, [&, job] {
            owner = job->result();
            text = job->errorText();
            endedOn = QThread::currentThread();
            m_computer.reset();
            thread.quit();
        });
    });
    thread.start();
    QTRY_VERIFY_WITH_TIMEOUT(thread.isFinished(), 20'000);
    QVERIFY(thread.wait());
    QCOMPARE(text, QString());
    QCOMPARE(owner, u"Ada"_s);
    QCOMPARE(endedOn, &thread);
    QVERIFY(home);
}

void TestQueue::linger()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    m_computer->setLinger(300ms);
    JobSpy first(m_computer->readOwner());
    ENDS_WELL(first);
    JobSpy second(m_computer->readOwner());
    ENDS_WELL(second);
    QCOMPARE(Simulator::count(u"connected"_s), 1);
    QTRY_COMPARE(m_computer->state(), VardaComputer::Unconnected);
    QCOMPARE(Simulator::count(u"connected"_s), 1);
    JobSpy third(m_computer->readOwner());
    ENDS_WELL(third);
    QCOMPARE(Simulator::count(u"connected"_s), 2);
}

void TestQueue::lingerAtOnce()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    m_computer->setLinger(0ms);
    QSignalSpy lost(m_computer.get(), &VardaComputer::linkLost);
    // What a slot queues at the end keeps the link.
    auto *const job = m_computer->readOwner();
    std::unique_ptr<JobSpy> next;
    connect(job, &VardaJob::finished, this,
            [&] { next = std::make_unique<JobSpy>(m_computer->readClock()); });
    QTRY_VERIFY(next);
    ENDS_WELL(*next);
    QCOMPARE(Simulator::count(u"connected"_s), 1);
    QTRY_COMPARE(m_computer->state(), VardaComputer::Unconnected);
    QVERIFY(lost.isEmpty());
}

void TestQueue::lingerNoMore()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    m_computer->setLinger(300ms);
    JobSpy spy(m_computer->readOwner());
    ENDS_WELL(spy);
    m_computer->setLinger(-1ms);
    QTest::qWait(900); // longer than that
    QCOMPARE(m_computer->state(), VardaComputer::Connected);
}

void TestQueue::identityIsKnownOnceRead()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    JobSpy owner(m_computer->readOwner());
    ENDS_WELL(owner);
    QVERIFY(m_computer->identity().firmwareVersionStr.isEmpty());
    JobSpy identity(m_computer->readIdentity());
    ENDS_WELL(identity);
    QCOMPARE(m_computer->identity().firmwareVersionStr,
             identity.value.value<VardaIdentity>().firmwareVersionStr);
    QVERIFY(!m_computer->identity().firmwareVersionStr.isEmpty());
}

void TestQueue::otherComputerIsAskedAnew()
{
    LOAD(Simulator::loadScenario(
        R"({"devices":[{"model":"varda","dives":2},{"model":"tidemar","dives":3}]})"));
    m_computer->setDevice(knownDevice());
    JobSpy first(m_computer->readLogbook());
    ENDS_WELL(first);
    QCOMPARE(first.value.value<QList<TidemarDiveHeader>>().size(), 2);
    m_computer->setDevice(secondDevice());
    QVERIFY(m_computer->identity().firmwareVersionStr.isEmpty());
    JobSpy second(m_computer->readLogbook());
    ENDS_WELL(second);
    QCOMPARE(second.value.value<QList<TidemarDiveHeader>>().size(), 3);
    QCOMPARE(m_computer->identity().model, ComputerModel::Tidemar);
}

QTEST_MAIN(TestQueue)
#include "tst_queue.moc"
