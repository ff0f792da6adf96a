// SPDX-License-Identifier: MIT
#include <functional>
#include <memory>

#include <varda/vardacomputer.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;
using Reason = VardaJob::Reason;

namespace {

constexpr auto kOneDive = R"("clock":1000,"dives":{"count":1,"samples":20})";
constexpr auto kAndADrop = R"(,"faults":[{"step":"answer","command":"Fullsamples","nth":1,)"
                           R"("times":1,"kind":"drop"}])";
constexpr auto kAndDamage = R"(,"faults":[{"step":"answer","command":"Fullsamples",)"
                            R"("kind":"wrongCrc"}])";

} // namespace

/** What an application may do in a slot, in each of them: the job ends once, the queue goes on. */
class TestJobEnds : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void finished() { everyDeed(&TestJobEnds::atFinished); }
    void progressed() { everyDeed(&TestJobEnds::atProgressed); }
    void lastProgress() { everyDeed(&TestJobEnds::atLastProgress); }
    void firstState() { everyDeed(&TestJobEnds::atFirstState); }
    void lastState() { everyDeed(&TestJobEnds::atLastState); }
    void headersRead() { everyDeed(&TestJobEnds::atHeadersRead); }
    void diveDamaged() { everyDeed(&TestJobEnds::atDiveDamaged); }
    void diveRead() { everyDeed(&TestJobEnds::atDiveRead); }
    void jobBegins() { everyDeed(&TestJobEnds::atJobBegins); }
    void jobEnds() { everyDeed(&TestJobEnds::atJobEnds); }
    void linkLost() { everyDeed(&TestJobEnds::atLinkLost); }
    void deviceChanged() { everyDeed(&TestJobEnds::atDeviceChanged); }

    void finished_data()
    {
        deeds(true);
        otherDeeds(true);
    }
    void progressed_data() { deeds(false); }
    void lastProgress_data() { deeds(true); }
    void firstState_data() { deeds(false); }
    void lastState_data() { deeds(true); }
    void headersRead_data() { deeds(false); }
    void diveRead_data()
    {
        deeds(false);
        otherDeeds(false);
    }
    void diveDamaged_data()
    {
        deeds(false);
        otherDeeds(false);
    }
    void jobBegins_data() { deeds(false); }
    void jobEnds_data() { deeds(true); }
    void linkLost_data()
    {
        deeds(false);
        otherDeeds(false);
    }
    void deviceChanged_data() { deeds(false); }

private:
    using Act = std::function<void()>;
    using At = void (TestJobEnds::*)(const Act &);

    static void deeds(bool atEnd)
    {
        QTest::addColumn<QString>("deed");
        QTest::addColumn<bool>("atEnd");
        addDeeds({"delete the job", "delete the computer"}, atEnd);
    }

    static void otherDeeds(bool atEnd)
    {
        addDeeds({"delete both", "cancel", "abort", "disconnect", "other device"}, atEnd);
    }

    static void addDeeds(std::initializer_list<const char *> deeds, bool atEnd)
    {
        for (const auto *deed : deeds)
            QTest::newRow(deed) << QString::fromLatin1(deed) << atEnd;
    }

    void everyDeed(At at);

    void atFinished(const Act &act) { connect(m_job, &VardaJob::finished, m_job, act); }
    void atProgressed(const Act &act) { connect(m_job, &VardaJob::progressed, m_job, act); }
    void atLastProgress(const Act &act)
    {
        connect(m_job, &VardaJob::progressed, m_job, [this, act] {
            if (!m_computer->currentJob())
                act();
        });
    }
    void atFirstState(const Act &act) { connect(m_job, &VardaJob::stateChanged, m_job, act); }
    void atLastState(const Act &act)
    {
        connect(m_job, &VardaJob::stateChanged, m_job, [this, act] {
            if (m_job->state() == VardaJob::Finished)
                act();
        });
    }
    void atHeadersRead(const Act &act) { connect(m_job, &DownloadJob::headersRead, m_job, act); }
    void atDiveRead(const Act &act) { connect(m_job, &DownloadJob::diveRead, m_job, act); }
    void atDiveDamaged(const Act &act) { connect(m_job, &DownloadJob::diveDamaged, m_job, act); }
    void atJobBegins(const Act &act)
    {
        connect(m_computer.get(), &VardaComputer::currentJobChanged, this, act);
    }
    void atJobEnds(const Act &act)
    {
        connect(m_computer.get(), &VardaComputer::currentJobChanged, this, [this, act] {
            if (!m_computer->currentJob())
                act();
        });
    }
    void atLinkLost(const Act &act)
    {
        connect(m_computer.get(), &VardaComputer::linkLost, this, act);
    }
    void atDeviceChanged(const Act &act)
    {
        connect(m_computer.get(), &VardaComputer::deviceChanged, this, act);
    }

    std::unique_ptr<VardaComputer> m_computer;
    DownloadJob *m_job = nullptr;
};

void TestJobEnds::everyDeed(At at)
{
    QFETCH(const QString, deed);
    QFETCH(const bool, atEnd);
    const QByteArray function = QTest::currentTestFunction();
    LOAD(Simulator::loadKnown(kOneDive
                              + QByteArray(function == "linkLost"      ? kAndADrop
                                           : function == "diveDamaged" ? kAndDamage
                                                                       : "")));
    m_computer = std::make_unique<VardaComputer>();
    m_job = m_computer->downloadDives();
    const QPointer<VardaJob> alive(m_job);
    JobSpy spy(m_job);
    JobSpy next(m_computer->readClock());
    bool done = false;
    bool endedInside = false;
    (this->*at)([&] {
        if (std::exchange(done, true))
            return;
        const int before = spy.ends + next.ends;
        if (deed == "delete the computer"_L1 || deed == "delete both"_L1)
            m_computer.reset();
        if (deed == "delete the job"_L1 || deed == "delete both"_L1)
            delete m_job;
        if (deed == "cancel"_L1)
            m_job->cancel();
        if (deed == "abort"_L1)
            m_job->abort();
        if (deed == "disconnect"_L1)
            m_computer->disconnectFromComputer();
        if (deed == "other device"_L1)
            m_computer->setDevice(BleDeviceInfo::fromAddress(u"00:AA:01:01:00:99"_s, u"Varda"_s));
        endedInside = spy.ends + next.ends != before;
    });

    QVERIFY(next.wait());
    QVERIFY(done);
    QVERIFY(!endedInside);
    const bool jobGone = deed == "delete the job"_L1 || deed == "delete both"_L1;
    if (!jobGone)
        QVERIFY(spy.wait());
    QTRY_VERIFY(!alive);
    QCOMPARE(spy.ends, jobGone && QTest::currentTestFunction() != "finished"_L1 ? 0 : 1);
    if (spy.ends > 0)
        QCOMPARE(spy.error, atEnd ? VardaJob::NoError : VardaJob::Cancelled);
    QCOMPARE(next.ends, 1);
    if (deed == "delete the job"_L1 || deed == "cancel"_L1 || deed == "abort"_L1) {
        QCOMPARE(next.text, QString());
        QCOMPARE(next.value.toLongLong(), 1000);
    } else {
        QCOMPARE(next.error, VardaJob::Cancelled);
        QCOMPARE(next.reason, deed == "disconnect"_L1     ? Reason::ByDisconnect
                              : deed == "other device"_L1 ? Reason::ByOtherDevice
                                                          : Reason::ComputerDeleted);
    }

    // Whatever it was, the next one is served.
    if (!m_computer)
        m_computer = std::make_unique<VardaComputer>();
    m_computer->setDevice(knownDevice());
    JobSpy later(m_computer->readClock());
    ENDS_WELL(later);
    QCOMPARE(later.value.toLongLong(), 1000);
    QCOMPARE(spy.ends + next.ends,
             (jobGone && QTest::currentTestFunction() != "finished"_L1) ? 1 : 2);
    m_computer.reset();
}

QTEST_MAIN(TestJobEnds)
#include "tst_jobends.moc"
