// SPDX-License-Identifier: MIT
#include <memory>
#include <utility>

#include <varda/vardacomputer.h>

#include "images.h"
#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;
using Reason = VardaJob::Reason;

/** A job that is stopped in each of its states, and what comes after it. */
class TestStopping : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void waiting_data() { deeds(); }
    void waiting();
    void searching_data() { deeds(); }
    void searching();
    void connecting_data() { deeds(); }
    void connecting();
    void beforeItsTurnToConnect_data() { deeds(); }
    void beforeItsTurnToConnect();
    void running_data() { deeds(); }
    void running();
    void paused_data() { deeds(); }
    void paused();
    void recovering_data() { deeds(); }
    void recovering();
    void cancelling_data() { deeds(); }
    void cancelling();
    void cancelledUploadFreesTheLine();
    void cancelledLayoutFreesTheLine();
    void endlessAnswerCostsTheLink();
    void repeatedAnswerCostsTheLink();
    void linkLostWhileCancelling();
    void writtenAndRecovering();
    void totalLimitDoesNotReplaceCancelled();
    void searchIsCancelledWithTheComputer();
    void resumedWithoutItsComputer();

private:
    static void deeds()
    {
        QTest::addColumn<QString>("deed");
        for (const auto *deed : {"cancel", "abort", "delete", "disconnect"})
            QTest::newRow(deed) << QString::fromLatin1(deed);
    }

    /** Stops it, and sees that it ends once, from the event loop, and that the next one is right. */
    void stop(VardaJob *job);

    VardaComputer *computer() { return m_computer.get(); }
    void make() { m_computer = std::make_unique<VardaComputer>(); }

    std::unique_ptr<VardaComputer> m_computer;
};

void TestStopping::stop(VardaJob *job)
{
    QFETCH(const QString, deed);
    JobSpy spy(job);
    if (deed == "cancel"_L1)
        job->cancel();
    else if (deed == "abort"_L1)
        job->abort();
    else if (deed == "delete"_L1)
        delete job;
    else
        m_computer->disconnectFromComputer();
    QCOMPARE(spy.ends, 0);
    JobSpy next(m_computer->readClock());
    ENDS_WELL(next);
    QCOMPARE(next.value.toLongLong(), 1000);
    if (deed == "delete"_L1) {
        QCOMPARE(spy.ends, 0);
    } else {
        QCOMPARE(spy.ends, 1);
        QCOMPARE(spy.error, VardaJob::Cancelled);
        QCOMPARE(spy.reason, deed == "disconnect"_L1 ? Reason::ByDisconnect : Reason::ByCaller);
    }
    m_computer.reset();
}

void TestStopping::waiting()
{
    LOAD(Simulator::loadKnown(R"("clock":1000)"));
    make();
    JobSpy first(m_computer->readLog());
    auto *const job = m_computer->readClock();
    QTRY_COMPARE(first.job->state(), VardaJob::Running);
    QCOMPARE(job->state(), VardaJob::Waiting);
    stop(job);
}

void TestStopping::searching()
{
    LOAD(Simulator::loadDevice(R"("clock":1000,"advertise":[{"after":1500}])"));
    make();
    auto *const job = m_computer->readClock();
    QTRY_COMPARE(m_computer->state(), VardaComputer::Searching);
    QCOMPARE(job->state(), VardaJob::Connecting);
    stop(job);
}

void TestStopping::connecting()
{
    LOAD(Simulator::loadKnown(
        R"("clock":1000,"faults":[{"step":"discover","nth":1,"times":1,"kind":"late","ms":2000}])"));
    make();
    auto *const job = m_computer->readClock();
    QTRY_COMPARE(m_computer->state(), VardaComputer::Connecting);
    stop(job);
}

/** Found, and about to be connected to. */
void TestStopping::beforeItsTurnToConnect()
{
    LOAD(Simulator::loadKnown(R"("clock":1000)"));
    make();
    auto *const job = m_computer->readClock();
    JobSpy spy(job);
    QFETCH(const QString, deed);
    bool done = false;
    connect(computer(), &VardaComputer::stateChanged, this, [&] {
        if (m_computer->state() != VardaComputer::Connecting || std::exchange(done, true))
            return;
        if (deed == "cancel"_L1)
            job->cancel();
        else if (deed == "abort"_L1)
            job->abort();
        else if (deed == "delete"_L1)
            delete job;
        else
            m_computer->disconnectFromComputer();
    });
    QTRY_VERIFY(done);
    JobSpy next(m_computer->readClock());
    ENDS_WELL(next);
    QCOMPARE(next.value.toLongLong(), 1000);
    QCOMPARE(spy.ends, deed == "delete"_L1 ? 0 : 1);
    // One that has not begun is not carried out any more.
    if (deed == "disconnect"_L1)
        QCOMPARE(Simulator::count(u"Connect"_s), 1);
}

void TestStopping::running()
{
    LOAD(Simulator::loadKnown(
        R"("clock":1000,"faults":[{"step":"answer","command":"Time","nth":1,"times":1,)"
        R"("kind":"late","ms":1500}])"));
    make();
    auto *const job = m_computer->readClock();
    QTRY_COMPARE(job->state(), VardaJob::Running);
    stop(job);
}

void TestStopping::paused()
{
    LOAD(Simulator::loadKnown(R"("clock":1000,"dives":{"count":3,"samples":20})"));
    make();
    auto *const job = m_computer->downloadDives();
    job->pause();
    QTRY_COMPARE(job->state(), VardaJob::Paused);
    stop(job);
}

void TestStopping::recovering()
{
    LOAD(Simulator::loadKnown(
        R"("clock":1000,"faults":[{"step":"answer","command":"Time","nth":1,"times":1,"kind":"drop"},)"
        R"({"step":"connect","nth":2,"times":1,"kind":"refuse"}])"));
    make();
    auto *const job = m_computer->readClock();
    QTRY_COMPARE(job->state(), VardaJob::Recovering);
    stop(job);
}

void TestStopping::cancelling()
{
    LOAD(Simulator::loadKnown(
        R"("clock":1000,"faults":[{"step":"answer","command":"Time","nth":1,"times":1,)"
        R"("kind":"late","ms":1500}])"));
    make();
    auto *const job = m_computer->readClock();
    QTRY_COMPARE(job->state(), VardaJob::Running);
    job->cancel();
    QCOMPARE(job->state(), VardaJob::Cancelling);
    QTRY_COMPARE(m_computer->state(), VardaComputer::Settling);
    QFETCH(const QString, deed);
    if (deed == "disconnect"_L1) {
        // It has been cancelled already, and that is what it was.
        JobSpy spy(job);
        JobSpy gone(m_computer->disconnectFromComputer());
        ENDS_WELL(gone);
        QCOMPARE(spy.ends, 1);
        QCOMPARE(spy.error, VardaJob::Cancelled);
        return;
    }
    stop(job);
}

void TestStopping::cancelledUploadFreesTheLine()
{
    LOAD(Simulator::loadKnown(
        R"("clock":1000,"faults":[{"step":"answer","command":"ProgramUpdate","nth":2,"times":1,)"
        R"("kind":"late","ms":300}])"));
    make();
    auto *const job = m_computer->uploadFirmware(image(4000, kFirmwareHeader), u"x.bin"_s);
    JobSpy spy(job);
    connect(job, &VardaJob::progressed, job, &VardaJob::cancel);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
    QVERIFY(spy.outcomeUnknown);
    JobSpy next(m_computer->readClock());
    ENDS_WELL(next);
    // The computer has answered what was under way, so the link was there to stay.
    QCOMPARE(Simulator::count(u"connected"_s), 1);
    QCOMPARE(Simulator::count(u"disconnected"_s), 0);
}

void TestStopping::cancelledLayoutFreesTheLine()
{
    LOAD(Simulator::loadKnown(
        R"("clock":1000,"faults":[{"step":"answer","command":"LayoutAdd","nth":1,"times":1,)"
        R"("kind":"late","ms":1000}])"));
    make();
    auto *const job = m_computer->addLayout(QByteArray(2000, 'L'));
    JobSpy spy(job);
    QTRY_VERIFY(!Simulator::frames().isEmpty());
    job->cancel();
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
    QVERIFY(spy.outcomeUnknown);
    JobSpy next(m_computer->readClock());
    ENDS_WELL(next);
    QCOMPARE(Simulator::count(u"connected"_s), 1);
}

void TestStopping::endlessAnswerCostsTheLink()
{
    LOAD(Simulator::loadKnown(
        R"("clock":1000,"faults":[{"step":"answer","command":"Syslog","nth":1,"times":1,)"
        R"("kind":"endless","ms":50}])"));
    make();
    auto *const job = m_computer->readLog();
    JobSpy spy(job);
    QTRY_VERIFY(job->bytes() > 500);
    job->cancel();
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
    JobSpy next(m_computer->readClock());
    ENDS_WELL(next);
    QCOMPARE(Simulator::count(u"connected"_s), 2);
}

/** What has been endless for a while already has less time left. */
void TestStopping::repeatedAnswerCostsTheLink()
{
    LOAD(Simulator::loadKnown(
        R"("clock":1000,"faults":[{"step":"answer","command":"Owner","nth":1,"times":1,)"
        R"("kind":"endless","ms":50}])"));
    make();
    auto *const job = m_computer->readOwner();
    JobSpy spy(job);
    QTRY_VERIFY(job->bytes() > 500);
    job->cancel();
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
    JobSpy next(m_computer->readClock());
    ENDS_WELL(next);
    QCOMPARE(Simulator::count(u"connected"_s), 2);
}

void TestStopping::linkLostWhileCancelling()
{
    LOAD(Simulator::loadKnown(
        R"("clock":1000,"faults":[{"step":"answer","command":"Owner","nth":1,"kind":"silent"}])"));
    make();
    auto *const job = m_computer->readOwner();
    JobSpy spy(job);
    QTRY_COMPARE(Simulator::frames().size(), 1);
    job->cancel();
    JobSpy next(m_computer->readClock());
    QCOMPARE(job->state(), VardaJob::Cancelling);
    Simulator::drop();
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
    QCOMPARE(spy.reason, Reason::ByCaller);
    ENDS_WELL(next);
    QCOMPARE(next.value.toLongLong(), 1000);
    QCOMPARE(Simulator::count(u"connected"_s), 2);
}

void TestStopping::writtenAndRecovering()
{
    // The owner has arrived, its answer has not; nobody knows when the job is cancelled.
    LOAD(Simulator::loadKnown(
        R"("clock":1000,"faults":[{"step":"answer","command":"Set_owner","nth":1,"times":1,"kind":"drop"},)"
        R"({"step":"connect","nth":2,"times":0,"kind":"refuse"}])"));
    make();
    auto *const job = m_computer->writeOwner(u"Grace"_s);
    JobSpy spy(job);
    QTRY_COMPARE(job->state(), VardaJob::Recovering);
    QTRY_COMPARE(m_computer->state(), VardaComputer::Connecting);
    job->cancel();
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
    QVERIFY(spy.outcomeUnknown);
}

void TestStopping::totalLimitDoesNotReplaceCancelled()
{
    LOAD(Simulator::loadKnown(
        R"("clock":1000,"faults":[{"step":"answer","command":"Time","nth":1,"times":1,)"
        R"("kind":"late","ms":3000}])"));
    make();
    JobSpy connection(m_computer->connectToComputer());
    ENDS_WELL(connection);
    auto *const job = m_computer->readClock();
    job->setTotalLimit(std::chrono::seconds(1));
    JobSpy spy(job);
    QTRY_COMPARE(job->state(), VardaJob::Running);
    job->cancel();
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
}

void TestStopping::searchIsCancelledWithTheComputer()
{
    LOAD(Simulator::loadDevice(""));
    make();
    JobSpy spy(m_computer->search(std::chrono::seconds(60)));
    JobSpy early(m_computer->search());
    QTRY_COMPARE(spy.job->state(), VardaJob::Running);
    m_computer.reset();
    QCOMPARE(spy.ends, 0);
    QVERIFY(spy.wait(5000));
    QCOMPARE(spy.error, VardaJob::Cancelled);
    QCOMPARE(spy.reason, Reason::ComputerDeleted);
    QVERIFY(early.wait(5000));
    QCOMPARE(early.reason, Reason::ComputerDeleted);
}

void TestStopping::resumedWithoutItsComputer()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":3,"samples":20})"));
    make();
    auto *const job = m_computer->downloadDives();
    job->pause();
    JobSpy spy(job);
    QTRY_COMPARE(job->state(), VardaJob::Paused);
    m_computer.reset();
    job->resume();
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
    QCOMPARE(spy.reason, Reason::ComputerDeleted);
}

QTEST_MAIN(TestStopping)
#include "tst_stopping.moc"
