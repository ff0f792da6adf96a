// SPDX-License-Identifier: MIT
#include <QtCore/qtimer.h>
#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbusmessage.h>

#include <chrono>
#include <memory>

#include <varda/vardacomputer.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Reason = VardaJob::Reason;

namespace {

void steer(const QString &method)
{
    const auto message = QDBusMessage::createMethodCall(
        u"org.varda.Simulator"_s, u"/org/varda/Simulator"_s, u"org.varda.Simulator1"_s, method);
    QDBusConnection::systemBus().send(message);
}

} // namespace

/** Asking again, connecting again, and what remains when that does not help. */
class TestRecovery : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_computer = std::make_unique<VardaComputer>(); }
    void notRestored_data();
    void notRestored();
    void notConnected_data();
    void notConnected();
    void equalNeighbours();
    void differentNeighbours();
    void repeatedWithoutEnd();
    void refused();
    void cancelledWhileTheLinkCloses();
    void restartedWhileConnectingAgain();
    void notFoundAgain();
    void lostLogbook();
    void silentDives();
    void silentLogbook();
    void silentIdentification();
    void lostBehindADamagedAnswer();
    void lostDive();

private:
    std::unique_ptr<VardaComputer> m_computer;
};

void TestRecovery::notRestored_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<VardaJob::Error>("error");
    QTest::addColumn<VardaJob::Reason>("reason");
    QTest::newRow("silent") << QByteArray("silent") << VardaJob::TimedOut << Reason::NoAnswer;
    QTest::newRow("dropped") << QByteArray("drop") << VardaJob::LinkLost << Reason::LinkFailed;
}

/** The link does not come back: the first cause counts. */
void TestRecovery::notRestored()
{
    QFETCH(const QByteArray, kind);
    QFETCH(const VardaJob::Error, error);
    QFETCH(const VardaJob::Reason, reason);
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"answer","command":"Time","nth":1,"kind":")"
                              + kind
                              + R"("},{"step":"connect","nth":2,"times":0,"kind":"refuse"}])"));
    auto *const job = m_computer->readClock();
    job->setRetries(1);
    JobSpy spy(job);
    JobSpy next(m_computer->readOwner());
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, error);
    QCOMPARE(spy.reason, reason);
    QVERIFY(next.wait());
    QCOMPARE(next.error, VardaJob::NotConnected);
}

void TestRecovery::notConnected_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<VardaJob::Reason>("reason");
    QTest::addColumn<QString>("text");
    const QString computer = u"Varda (00:AA:01:01:00:01)"_s;
    QTest::newRow("no service") << QByteArray(R"("dataService":{"present":false})")
                                << Reason::NoService << QString();
    QTest::newRow("no services") << QByteArray(R"("faults":[{"step":"discover","kind":"empty"}])")
                                 << Reason::NoService << QString();
    QTest::newRow("no answer to the subscription")
        << QByteArray(R"("faults":[{"step":"subscribe","kind":"silent"}])") << Reason::LinkFailed
        << QString(u"could not connect to "_s + computer
                   + u": its notifications could not be switched on"_s);
    QTest::newRow("refused") << QByteArray(R"("faults":[{"step":"connect","kind":"refuse"}])")
                             << Reason::LinkFailed << QString();
}

void TestRecovery::notConnected()
{
    QFETCH(const QByteArray, keys);
    QFETCH(const VardaJob::Reason, reason);
    QFETCH(const QString, text);
    LOAD(Simulator::loadKnown(keys));
    auto *const job = m_computer->readClock();
    job->setRetries(0);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::NotConnected);
    QCOMPARE(spy.reason, reason);
    if (!text.isEmpty())
        QCOMPARE(spy.text, text);
}

/** Whether a frame came twice or the log has two equal lines, a second answer decides. */
void TestRecovery::equalNeighbours()
{
    LOAD(Simulator::loadKnown(R"("responses":{"Syslog":["61","61","62",""]})"));
    JobSpy spy(m_computer->readLog());
    ENDS_WELL(spy);
    QCOMPARE(spy.value.toStringList(), (QStringList{u"a"_s, u"a"_s, u"b"_s}));
    QCOMPARE(Simulator::frames().filter(u"dcdc0100"_s).size(), 2);
}

/** Frames of which now this one and now that one comes twice are none of a sound log. */
void TestRecovery::differentNeighbours()
{
    LOAD(Simulator::loadKnown(
        R"("responses":{"Syslog":["61","62","63",""]},"faults":[)"
        R"({"step":"notification","command":"Syslog","nth":1,"kind":"duplicate"},)"
        R"({"step":"notification","command":"Syslog","nth":6,"kind":"duplicate"}])"));
    JobSpy spy(m_computer->readLog());
    ENDS_WELL(spy);
    QCOMPARE(spy.value.toStringList(), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
    QCOMPARE(Simulator::frames().filter(u"dcdc0100"_s).size(), 3);
}

/** A computer that never stops sending what it has sent already costs the link. */
void TestRecovery::repeatedWithoutEnd()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada","faults":[{"step":"answer","command":"Owner",)"
                              R"("nth":1,"kind":"endless","ms":20}])"));
    JobSpy spy(m_computer->readOwner());
    ENDS_WELL(spy);
    QCOMPARE(spy.value.toString(), u"Ada"_s);
    QCOMPARE(Simulator::count(u"connected"_s), 2);
}

void TestRecovery::refused()
{
    LOAD(Simulator::loadKnown(
        R"("faults":[{"step":"answer","command":"LayoutRemove","kind":"refuse"}])"));
    JobSpy spy(m_computer->removeLayout(1));
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Refused);
    QCOMPARE(spy.reason, Reason::ComputerRefused);
    QVERIFY(!spy.outcomeUnknown);
}

void TestRecovery::cancelledWhileTheLinkCloses()
{
    LOAD(Simulator::loadKnown(
        R"("owner":"Ada","faults":[{"step":"answer","command":"Time","kind":"silent"},)"
        R"({"step":"disconnect","nth":1,"kind":"late","ms":1000}])"));
    auto *const job = m_computer->readClock();
    job->setIdleLimit(500ms);
    JobSpy spy(job);
    JobSpy next(m_computer->readOwner());
    QTRY_COMPARE(m_computer->state(), VardaComputer::Disconnecting);
    job->cancel();
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
    ENDS_WELL(next);
    QCOMPARE(next.value.toString(), u"Ada"_s);
}

/** The service goes while it is bringing the link back. */
void TestRecovery::restartedWhileConnectingAgain()
{
    LOAD(Simulator::loadKnown(
        R"("dives":{"count":3,"samples":20},"faults":[{"step":"connect","nth":2,"kind":"silent"}])"));
    auto *const job = m_computer->downloadDives();
    QList<int> numbers;
    connect(job, &DownloadJob::diveRead, this,
            [&](const Dive &, const TidemarDiveHeader &header, const QList<DiveSample> &) {
                numbers << header.diveNumber;
                if (numbers.size() == 1)
                    Simulator::drop();
            });
    JobSpy spy(job);
    QTRY_COMPARE(Simulator::count(u"Connect"_s), 2);
    steer(u"EndDaemon"_s);
    QTimer::singleShot(1500ms, this, [] { steer(u"StartDaemon"_s); });
    ENDS_WELL(spy);
    QCOMPARE(numbers, (QList<int>{1, 2, 3}));
}

/** That it is not there any more is how the link was lost, and no answer to a search. */
void TestRecovery::notFoundAgain()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"answer","command":"Time","kind":"silent"}])"));
    auto *const job = m_computer->readClock();
    job->setConnectLimit(2s);
    JobSpy spy(job);
    QTRY_COMPARE(Simulator::frames().size(), 1);
    LOAD(Simulator::loadScenario(R"({"devices":[]})"));
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::LinkLost);
    QCOMPARE(spy.reason, Reason::LinkFailed);
    QCOMPARE(spy.text, u"the link to Varda (00:AA:01:01:00:01) was lost"_s);
}

void TestRecovery::lostLogbook()
{
    LOAD(
        Simulator::loadKnown(R"("dives":{"count":3,"samples":20},"faults":[{"step":"notification",)"
                             R"("command":"Logbook","nth":2,"kind":"drop"}])"));
    JobSpy spy(m_computer->readLogbook({2}));
    ENDS_WELL(spy);
    QList<int> numbers;
    for (const auto &header : spy.value.value<QList<TidemarDiveHeader>>())
        numbers << header.diveNumber;
    QCOMPARE(numbers, (QList<int>{1, 3}));
    QCOMPARE(Simulator::count(u"connected"_s), 2);
}

/** One dive may be beyond what a computer can send, but not each. */
void TestRecovery::silentDives()
{
    LOAD(Simulator::loadKnown(
        R"("dives":{"count":3,"samples":20},"faults":[{"step":"answer","command":"Fullsamples",)"
        R"("kind":"silent"}])"));
    auto *const job = m_computer->downloadDives();
    job->setRetries(0);
    job->setIdleLimit(1s);
    QList<std::uint16_t> damaged;
    connect(job, &VardaJob::finished, this, [&] { damaged = job->damaged(); });
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::TimedOut);
    QCOMPARE(damaged, QList<std::uint16_t>{1});
}

void TestRecovery::silentLogbook()
{
    LOAD(Simulator::loadKnown(
        R"("faults":[{"step":"answer","command":"Logbook","kind":"silent"}])"));
    auto *const job = m_computer->downloadDives();
    job->setRetries(0);
    job->setIdleLimit(1s);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::TimedOut);
    QCOMPARE(spy.reason, Reason::NoAnswer);
}

void TestRecovery::silentIdentification()
{
    LOAD(Simulator::loadKnown(
        R"("faults":[{"step":"answer","command":"Identification","kind":"silent"}])"));
    auto *const job = m_computer->readIdentity();
    job->setRetries(0);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::TimedOut);
    QCOMPARE(spy.reason, Reason::NoAnswer);
}

/** What was wrong with the answer counts, not that the link went while the rest was waited for. */
void TestRecovery::lostBehindADamagedAnswer()
{
    LOAD(Simulator::loadKnown(
        R"("responses":{"Time":{"notifications":["dcdc0200000000000701","00"]}},)"
        R"("faults":[{"step":"notification","command":"Time","nth":2,"kind":"drop"}])"));
    auto *const job = m_computer->readClock();
    job->setRetries(0);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Damaged);
    QCOMPARE(spy.reason, Reason::WrongChecksum);
}

/** A lost link is no damage of the dive that was on its way. */
void TestRecovery::lostDive()
{
    LOAD(Simulator::loadKnown(
        R"("dives":{"count":3,"samples":20},"faults":[{"step":"answer","command":"Fullsamples",)"
        R"("nth":2,"kind":"drop"}])"));
    auto *const job = m_computer->downloadDives();
    job->setRetries(0);
    QList<std::uint16_t> damaged;
    connect(job, &VardaJob::finished, this, [&] { damaged = job->damaged(); });
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::LinkLost);
    QCOMPARE(damaged, QList<std::uint16_t>());
    QCOMPARE(spy.done, 1);
}

QTEST_MAIN(TestRecovery)
#include "tst_recovery.moc"
