// SPDX-License-Identifier: MIT
#include <QtCore/qprocess.h>
#include <QtTest/qsignalspy.h>

#include <memory>

#include <varda/vardacomputer.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Reason = VardaJob::Reason;

/** What ends a job that nothing else would end, and how often a part is tried. */
class TestLimits : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_computer = std::make_unique<VardaComputer>(); }
    void notFoundByItsAddress();
    void idleLimit();
    void idleLimitWithinAnAnswer();
    void shortIdleLimit();
    void connectLimitOfAFoundComputer();
    void connectLimitIsThatOfTheSearch();
    void totalLimit();
    void totalLimitOfAWriter();
    void noRetries();
    void noRetriesToConnect();
    void connectionIsTriedAgain();
    void silentRequestIsRepeatedOnce();
    void damagedAnswerIsRepeated();
    void notRepeatedOnceSent_data();
    void lateSecondCopy_data();
    void lateSecondCopy();
    void notRepeatedOnceSent();
    void writingIsRepeated();
    void superUserMode();
    void superUserModeWithoutAnAnswer();
    void restart();
    void restartThatIsRefusedByTheSystem();
    void gapInTime();

private:
    std::unique_ptr<VardaComputer> m_computer;
};

void TestLimits::notFoundByItsAddress()
{
    LOAD(Simulator::loadScenario(R"({"devices":[]})"));
    m_computer->setDevice(BleDeviceInfo::fromAddress(u"00:AA:01:01:00:99"_s, u"Varda"_s));
    auto *const job = m_computer->readOwner();
    job->setConnectLimit(1s);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::NotFound);
    QCOMPARE(spy.reason, Reason::Silent);
    QCOMPARE(spy.text, u"Varda (00:AA:01:01:00:99) was not found within 1 s"_s);
}

void TestLimits::idleLimit()
{
    LOAD(Simulator::loadKnown(
        R"("owner":"Ada","faults":[{"step":"answer","command":"Time","kind":"silent"}])"));
    auto *const job = m_computer->readClock();
    job->setIdleLimit(500ms);
    job->setRetries(0);
    JobSpy spy(job);
    JobSpy next(m_computer->readOwner());
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::TimedOut);
    QCOMPARE(spy.reason, Reason::NoAnswer);
    ENDS_WELL(next);
    QCOMPARE(Simulator::count(u"connected"_s), 2);
}

void TestLimits::idleLimitWithinAnAnswer()
{
    // The frame that ends the answer never comes.
    LOAD(Simulator::loadKnown(R"("log":20,"faults":[{"step":"notification","command":"Syslog",)"
                              R"("nth":3,"times":1,"kind":"late","ms":60000}])"));
    auto *const job = m_computer->readLog();
    job->setIdleLimit(2s);
    job->setRetries(0);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::TimedOut);
    QCOMPARE(spy.reason, Reason::NoEnd);
}

void TestLimits::shortIdleLimit()
{
    // This answer ends with a second of silence.
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    auto *const job = m_computer->readOwner();
    job->setIdleLimit(500ms);
    job->setRetries(0);
    JobSpy spy(job);
    ENDS_WELL(spy);
    QCOMPARE(spy.value, u"Ada"_s);
}

void TestLimits::connectLimitOfAFoundComputer()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"discover","kind":"silent"}])"));
    auto *const job = m_computer->readClock();
    job->setConnectLimit(1500ms);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::TimedOut);
    QCOMPARE(spy.reason, Reason::ConnectLimit);
    QCOMPARE(spy.text, u"Varda (00:AA:01:01:00:01) was found, but not connected within 2 s"_s);
}

void TestLimits::connectLimitIsThatOfTheSearch()
{
    // A search of the system ends after 30 s, but there is time left.
    LOAD(Simulator::loadDevice(R"("owner":"Ada","advertise":[])"));
    auto *const job = m_computer->readOwner();
    job->setConnectLimit(33s);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::NotFound);
    QCOMPARE(spy.text, u"no computer found within 33 s"_s);
}

void TestLimits::totalLimit()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada","faults":[{"step":"answer","command":"Time",)"
                              R"("kind":"wrongCrc"}])"));
    auto *const job = m_computer->readClock();
    job->setTotalLimit(2500ms);
    JobSpy spy(job);
    JobSpy next(m_computer->readOwner());
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::TimedOut);
    QCOMPARE(spy.reason, Reason::TotalLimit);
    ENDS_WELL(next);
}

void TestLimits::totalLimitOfAWriter()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada","faults":[{"step":"answer","command":"Set_owner",)"
                              R"("kind":"silent"}])"));
    JobSpy connection(m_computer->connectToComputer());
    ENDS_WELL(connection);
    auto *const job = m_computer->writeOwner(u"Eve"_s);
    job->setTotalLimit(1500ms);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.reason, Reason::TotalLimit);
    QVERIFY(spy.outcomeUnknown);
}

void TestLimits::noRetries()
{
    LOAD(Simulator::loadKnown(
        R"("faults":[{"step":"answer","command":"Time","times":1,"nth":1,"kind":"drop"}])"));
    QSignalSpy lost(m_computer.get(), &VardaComputer::linkLost);
    auto *const job = m_computer->readClock();
    job->setRetries(0);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::LinkLost);
    QCOMPARE(spy.text, u"the link to Varda (00:AA:01:01:00:01) was lost"_s);
    QCOMPARE(lost.size(), 1);
    QCOMPARE(Simulator::count(u"Connect"_s), 1);
    JobSpy again(m_computer->readClock());
    ENDS_WELL(again);
}

void TestLimits::noRetriesToConnect()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"connect","kind":"refuse"}])"));
    auto *const job = m_computer->readClock();
    job->setRetries(0);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::NotConnected);
    QCOMPARE(spy.reason, Reason::LinkFailed);
    QVERIFY(!spy.text.endsWith(u": "_s));
    QCOMPARE(Simulator::count(u"Connect"_s), 1);
}

void TestLimits::connectionIsTriedAgain()
{
    LOAD(Simulator::loadKnown(
        R"("owner":"Ada","faults":[{"step":"connect","nth":1,"times":2,"kind":"refuse"}])"));
    JobSpy spy(m_computer->readOwner());
    ENDS_WELL(spy);
    QCOMPARE(spy.value.toString(), u"Ada"_s);
    QCOMPARE(Simulator::count(u"Connect"_s), 3);
}

void TestLimits::silentRequestIsRepeatedOnce()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"answer","command":"Time","kind":"silent"}])"));
    auto *const job = m_computer->readClock();
    job->setIdleLimit(500ms);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.reason, Reason::NoAnswer);
    QCOMPARE(Simulator::frames().size(), 2);
}

void TestLimits::damagedAnswerIsRepeated()
{
    LOAD(Simulator::loadKnown(R"("clock":1000,"faults":[{"step":"answer","command":"Time",)"
                              R"("nth":1,"times":3,"kind":"wrongCrc"}])"));
    JobSpy spy(m_computer->readClock());
    ENDS_WELL(spy);
    QCOMPARE(spy.value.toLongLong(), 1000);
    QCOMPARE(Simulator::frames().size(), 4);
    QCOMPARE(Simulator::count(u"connected"_s), 1);
}

void TestLimits::notRepeatedOnceSent_data()
{
    QTest::addColumn<QByteArray>("command");
    for (const auto *command :
         {"DeleteLastDive", "EraseDives", "LayoutAdd", "LayoutRemove", "LayoutRemoveAll"})
        QTest::newRow(command) << QByteArray(command);
}

/**
 * The second copy comes when the next request is about to be sent or is under way, without whose
 * answer a job can do.
 */
void TestLimits::lateSecondCopy_data()
{
    QTest::addColumn<QByteArray>("computer");
    QTest::addColumn<int>("retries");
    QTest::addColumn<VardaJob::Error>("error");
    QTest::addColumn<QString>("serialNumber");
    const auto add = [](const char *name, const QByteArray &computer) {
        QTest::addRow("%s once", name) << computer << 0 << VardaJob::Repeated << QString();
        QTest::addRow("%s again", name)
            << computer << 3 << VardaJob::NoError << u"00420017-3138510D-37373934"_s;
    };
    const QByteArray identification = "\"dcdc0600339a000001620204010b\"";
    // What the job asks of the service meanwhile is answered behind all copies.
    add("about to be sent", R"("responses":{"Identification":{"notifications":[)"
                                + QByteArrayList(3, identification).join(',')
                                + R"(]}},"faults":[{"step":"notification","nth":2,"times":2,)"
                                  R"("command":"Identification","kind":"freeze","ms":300}])");
    add("under way", R"("responses":{"Identification":{"notifications":[)" + identification
                         + R"(]}},"faults":[{"step":"notification","command":"Serialnumber",)"
                           R"("nth":1,"kind":"insert","bytes":)"
                         + identification + "}]");
}

void TestLimits::lateSecondCopy()
{
    QFETCH(const QByteArray, computer);
    QFETCH(const int, retries);
    QFETCH(const VardaJob::Error, error);
    QFETCH(const QString, serialNumber);
    LOAD(Simulator::loadKnown(computer));
    auto *const job = m_computer->readIdentity();
    job->setRetries(retries);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, error);
    QCOMPARE(spy.value.value<VardaIdentity>().serialNumber, serialNumber);
}

void TestLimits::notRepeatedOnceSent()
{
    QFETCH(const QByteArray, command);
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"answer","nth":1,"times":1,"kind":"drop",)"
                              R"("command":")"
                              + command + "\"}]"));
    VardaJob *const job = command == "DeleteLastDive" ? m_computer->deleteLastDive()
                          : command == "EraseDives"   ? m_computer->eraseDives()
                          : command == "LayoutAdd"    ? m_computer->addLayout("New")
                          : command == "LayoutRemove" ? m_computer->removeLayout(2)
                                                      : m_computer->removeAllLayouts();
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::LinkLost);
    QVERIFY(spy.outcomeUnknown);
    QCOMPARE(Simulator::frames().size(), 1);
}

void TestLimits::writingIsRepeated()
{
    LOAD(Simulator::loadKnown(
        R"("faults":[{"step":"answer","command":"Set_owner","nth":1,"times":1,"kind":"drop"}])"));
    JobSpy spy(m_computer->writeOwner(u"Eve"_s));
    ENDS_WELL(spy);
    QVERIFY(!spy.outcomeUnknown);
    QCOMPARE(Simulator::state()["owner"_L1].toString(), u"Eve"_s);
    QCOMPARE(Simulator::frames().size(), 2);
}

void TestLimits::superUserMode()
{
    LOAD(Simulator::loadKnown());
    QSignalSpy lost(m_computer.get(), &VardaComputer::linkLost);
    JobSpy spy(m_computer->setSuperUserMode(true));
    ENDS_WELL(spy);
    QCOMPARE(spy.value, QVariant(true));
    QVERIFY(Simulator::state()["superUser"_L1].toBool());
    // A link that is lost later is nobody's wish.
    Simulator::drop();
    QTRY_COMPARE(lost.size(), 1);
}

void TestLimits::superUserModeWithoutAnAnswer()
{
    LOAD(Simulator::loadKnown(
        R"("owner":"Ada","faults":[{"step":"answer","command":"SuperUserMode","kind":"silent"}])"));
    QSignalSpy lost(m_computer.get(), &VardaComputer::linkLost);
    JobSpy spy(m_computer->setSuperUserMode(true));
    ENDS_WELL(spy);
    QCOMPARE(spy.value, QVariant(false));
    JobSpy next(m_computer->readOwner());
    ENDS_WELL(next);
    QCOMPARE(Simulator::count(u"connected"_s), 1);

    JobSpy again(m_computer->setSuperUserMode(true));
    ENDS_WELL(again);
    QCOMPARE(again.value, QVariant(false));
    // Then the silence costs the link, which nobody calls lost.
    QTRY_COMPARE(m_computer->state(), VardaComputer::Unconnected);
    QVERIFY(lost.isEmpty());
}

void TestLimits::restart()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    QSignalSpy lost(m_computer.get(), &VardaComputer::linkLost);
    JobSpy spy(m_computer->restart());
    JobSpy next(m_computer->readOwner());
    ENDS_WELL(spy);
    ENDS_WELL(next);
    QCOMPARE(Simulator::state()["resets"_L1].toInt(), 1);
    QVERIFY(lost.isEmpty());
}

void TestLimits::restartThatIsRefusedByTheSystem()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"write","command":"Reset","kind":"refuse"}])"));
    JobSpy spy(m_computer->restart());
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::LinkLost);
    QCOMPARE(spy.reason, Reason::WriteFailed);
    QCOMPARE(Simulator::state()["resets"_L1].toInt(), 0);
}

void TestLimits::gapInTime()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":3,"samples":20},"faults":[{"step":"answer",)"
                              R"("command":"Fullsamples","nth":2,"times":1,"kind":"silent"}])"));
    auto *const job = m_computer->downloadDives();
    QList<int> numbers;
    connect(job, &DownloadJob::diveRead, this,
            [&](const Dive &, const TidemarDiveHeader &header, const QList<DiveSample> &) {
                numbers << header.diveNumber;
                if (numbers.size() > 1)
                    return;
                // The next answer is due while this process does not run.
                QProcess::startDetached(
                    u"sh"_s, {u"-c"_s, u"sleep 0.3; kill -STOP %1; sleep 7; kill -CONT %1"_s.arg(
                                           QCoreApplication::applicationPid())});
            });
    // One try would be used up by the silence; a gap in time is none.
    job->setConnectLimit(5s);
    job->setTotalLimit(15s);
    JobSpy spy(job);
    ENDS_WELL(spy);
    QCOMPARE(numbers, (QList<int>{1, 2, 3}));
}

QTEST_MAIN(TestLimits)
#include "tst_limits.moc"
