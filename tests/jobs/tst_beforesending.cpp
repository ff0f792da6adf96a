// SPDX-License-Identifier: MIT
#include <QtTest/qsignalspy.h>

#include <functional>
#include <memory>

#include <varda/vardacomputer.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;
using Reason = VardaJob::Reason;

/**
 * What happens between a job's turn and its first request: the request is held until the system's
 * service has shown that it is not frozen.
 */
class TestBeforeSending : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_computer = std::make_unique<VardaComputer>(); }
    void stopped_data();
    void stopped();
    void computerDeleted();
    void lostBeforeARestart();
    void lostBeforeADeletion();
    void answerBefore_data();
    void answerBefore();
    void noise();
    void cancelledInNoise();

private:
    std::unique_ptr<VardaComputer> m_computer;
};

namespace {

/** Calls @p act when the job's request has its turn and is not sent yet. */
void onTurn(VardaJob *job, const std::function<void()> &act)
{
    QObject::connect(job, &VardaJob::stateChanged, job, [job, act] {
        if (job->state() == VardaJob::Running)
            act();
    });
}

} // namespace

void TestBeforeSending::stopped_data()
{
    QTest::addColumn<QString>("deed");
    QTest::addColumn<VardaJob::Reason>("reason");
    QTest::addColumn<int>("links");
    QTest::newRow("cancel") << u"cancel"_s << Reason::ByCaller << 1;
    QTest::newRow("abort") << u"abort"_s << Reason::ByCaller << 2;
    // Its request is one of several steps.
    QTest::newRow("cancel a layout") << u"cancel a layout"_s << Reason::ByCaller << 1;
    QTest::newRow("delete") << u"delete"_s << Reason::None << 1;
    QTest::newRow("disconnect") << u"disconnect"_s << Reason::ByDisconnect << 2;
    QTest::newRow("other device") << u"other device"_s << Reason::ByOtherDevice << 2;
}

void TestBeforeSending::stopped()
{
    QFETCH(const QString, deed);
    QFETCH(const VardaJob::Reason, reason);
    QFETCH(const int, links);
    LOAD(Simulator::loadKnown(R"("clock":1000)"));
    VardaJob *job = nullptr;
    if (deed == "cancel a layout"_L1)
        job = m_computer->addLayout("New");
    else
        job = m_computer->deleteLastDive();
    JobSpy spy(job);
    onTurn(job, [&] {
        if (deed.startsWith("cancel"_L1))
            job->cancel();
        else if (deed == "abort"_L1)
            job->abort();
        else if (deed == "delete"_L1)
            delete job;
        else if (deed == "disconnect"_L1)
            m_computer->disconnectFromComputer();
        else
            m_computer->setDevice(BleDeviceInfo::fromAddress(u"00:AA:01:01:00:99"_s, u"Varda"_s));
    });
    if (deed == "delete"_L1) {
        const QPointer<VardaJob> alive(job);
        QTRY_VERIFY(!alive);
    } else {
        QVERIFY(spy.wait());
        QCOMPARE(spy.error, VardaJob::Cancelled);
        QCOMPARE(spy.reason, reason);
        QVERIFY(!spy.outcomeUnknown);
    }
    m_computer->setDevice(knownDevice());
    JobSpy next(m_computer->readClock());
    ENDS_WELL(next);
    QCOMPARE(next.value.toLongLong(), 1000);
    QCOMPARE(Simulator::frames().size(), 1);
    QCOMPARE(Simulator::count(u"connected"_s), links);
}

void TestBeforeSending::computerDeleted()
{
    LOAD(Simulator::loadKnown());
    VardaJob *const job = m_computer->deleteLastDive();
    JobSpy spy(job);
    onTurn(job, [this] { m_computer.reset(); });
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
    QCOMPARE(spy.reason, Reason::ComputerDeleted);
    QVERIFY(!spy.outcomeUnknown);
    QCOMPARE(Simulator::frames().size(), 0);
}

/** A link that goes by itself is no restart. */
void TestBeforeSending::lostBeforeARestart()
{
    LOAD(Simulator::loadKnown());
    QSignalSpy lost(m_computer.get(), &VardaComputer::linkLost);
    JobSpy first(m_computer->readClock());
    ENDS_WELL(first);
    VardaJob *const job = m_computer->restart();
    JobSpy spy(job);
    connect(m_computer.get(), &VardaComputer::currentJobChanged, job, [this, job] {
        if (m_computer->currentJob() == job)
            Simulator::drop();
    });
    ENDS_WELL(spy);
    QCOMPARE(Simulator::state()["resets"_L1].toInt(), 1);
    QCOMPARE(Simulator::count(u"connected"_s), 2);
    QCOMPARE(lost.size(), 1);
}

/** What has not been sent is not in doubt, so it is sent on the next link. */
void TestBeforeSending::lostBeforeADeletion()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":3,"samples":20})"));
    JobSpy first(m_computer->readClock());
    ENDS_WELL(first);
    VardaJob *const job = m_computer->deleteLastDive();
    JobSpy spy(job);
    connect(m_computer.get(), &VardaComputer::currentJobChanged, job, [this, job] {
        if (m_computer->currentJob() == job)
            Simulator::drop();
    });
    ENDS_WELL(spy);
    JobSpy logbook(m_computer->readLogbook());
    ENDS_WELL(logbook);
    QCOMPARE(logbook.value.value<QList<TidemarDiveHeader>>().size(), 2);
}

void TestBeforeSending::answerBefore_data()
{
    QTest::addColumn<int>("retries");
    QTest::addColumn<QByteArray>("second");
    const QByteArray accepted = "\"dcdc0200900b00002701\"";
    const QByteArray refused = "\"dcdc0200b11b00002700\"";
    QTest::newRow("once") << 0 << accepted;
    QTest::newRow("again") << 3 << accepted;
    QTest::newRow("refused once") << 0 << refused;
    QTest::newRow("refused again") << 3 << refused;
}

/** A second copy of the answer before is not taken for the answer to what has not been sent. */
void TestBeforeSending::answerBefore()
{
    QFETCH(const int, retries);
    QFETCH(const QByteArray, second);
    // What the second job asks of the service meanwhile is answered behind the copy.
    LOAD(Simulator::loadKnown(
        R"("responses":{"LayoutRemove":{"notifications":["dcdc0200900b00002701",)" + second
        + R"(]}},"faults":[{"step":"notification","nth":2,"times":1,)"
          R"("command":"LayoutRemove","kind":"freeze","ms":300},)"
          R"({"step":"notification","nth":4,"command":"LayoutRemove","kind":"lost"}])"));
    JobSpy first(m_computer->removeLayout(2));
    auto *const job = m_computer->removeLayout(3);
    job->setRetries(retries);
    JobSpy spy(job);
    ENDS_WELL(first);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, retries > 0 ? VardaJob::NoError : VardaJob::Repeated);
    QCOMPARE(Simulator::frames().size(), retries > 0 ? 2 : 1);
}

/** Bytes that nobody has asked for are no fault of a request that is not sent yet. */
void TestBeforeSending::noise()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    JobSpy first(m_computer->readClock());
    ENDS_WELL(first);
    auto *const job = m_computer->readOwner();
    job->setRetries(0);
    JobSpy spy(job);
    connect(m_computer.get(), &VardaComputer::currentJobChanged, job, [this, job] {
        if (m_computer->currentJob() == job)
            Simulator::notify("noise");
    });
    ENDS_WELL(spy);
    QCOMPARE(spy.value.toString(), u"Ada"_s);
    QCOMPARE(Simulator::frames().size(), 2);
}

void TestBeforeSending::cancelledInNoise()
{
    LOAD(Simulator::loadKnown(R"("clock":1000,"owner":"Ada")"));
    JobSpy first(m_computer->readClock());
    ENDS_WELL(first);
    auto *const job = m_computer->readOwner();
    JobSpy spy(job);
    connect(m_computer.get(), &VardaComputer::currentJobChanged, job, [this, job] {
        if (m_computer->currentJob() == job)
            Simulator::notify("noise");
    });
    onTurn(job, [job] { job->cancel(); });
    JobSpy next(m_computer->readClock());
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
    ENDS_WELL(next);
    QCOMPARE(next.value.toLongLong(), 1000);
    QCOMPARE(Simulator::frames().size(), 2);
}

QTEST_MAIN(TestBeforeSending)
#include "tst_beforesending.moc"
