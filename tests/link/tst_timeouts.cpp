// SPDX-License-Identifier: MIT
#include <QtCore/qtimer.h>
#include <QtTest/qsignalspy.h>

#include "protocollink.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kSilent = R"("faults":[{"step":"answer","kind":"silent"}])";
constexpr auto kIdentification = "dcdc0200bb160000010a";

} // namespace

/** The time within which a computer has to answer. Each of these takes it, so they run alone. */
class TestTimeouts : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void noAnswer();
    void answerStopsIt();
    void notificationsPutItOff();
    void quietLineOfAnEarlierAnswer();
    void refusedWriteLeavesIt();
    void deletionFromInside();

private:
    /** Lets the time of a command that was sent before pass. */
    static void letItPass()
    {
        QTimer longer;
        longer.setSingleShot(true);
        QSignalSpy spy(&longer, &QTimer::timeout);
        longer.start(5300);
        QVERIFY(spy.wait(20'000));
    }
};

void TestTimeouts::noAnswer()
{
    LOAD(Simulator::loadKnown(kSilent));
    OPEN(link, BleMode::Gatt);
    // Only the last command counts.
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Time));
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Identification));
    QVERIFY(m_log.await(u"receiveTimeout Identification"_s));
    // What comes late is told all the same.
    link.receive(kIdentification);
    QCOMPARE(m_log.entries(),
             QStringList({u"receiveTimeout Identification"_s, u"response Identification 0a 2"_s}));
    QVERIFY(link.device->isConnected());
}

void TestTimeouts::answerStopsIt()
{
    LOAD(Simulator::loadKnown(R"("responses":{"Time":["01020304"]})"));
    OPEN(link, BleMode::Gatt);
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Time));
    QVERIFY(m_log.await(u"response Time 01020304 5"_s));
    letItPass();
    QCOMPARE(m_log.entries(), QStringList(u"response Time 01020304 5"_s));
}

// Every bit of a long answer gives it its time again.
void TestTimeouts::notificationsPutItOff()
{
    LOAD(Simulator::loadKnown(R"("split":2,"pace":{"ms":800,"count":1},
        "responses":{"Logbook":["0102030405"]})"));
    OPEN(link, BleMode::Gatt);
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Logbook));
    QVERIFY(m_log.await(u"response Logbook 0102030405 6"_s));
    QCOMPARE(m_log.entries(), QStringList(u"response Logbook 0102030405 6"_s));
}

void TestTimeouts::quietLineOfAnEarlierAnswer()
{
    LOAD(Simulator::loadKnown(kSilent));
    OPEN(link, BleMode::Gatt);
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Logbook));
    link.receive("dcdc");
    // The quiet line after these bytes must not be taken for an answer to the next command.
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Identification));
    QVERIFY(m_log.await(u"receiveTimeout Identification"_s));
    QCOMPARE(m_log.entries(), QStringList(u"receiveTimeout Identification"_s));
}

void TestTimeouts::refusedWriteLeavesIt()
{
    LOAD(Simulator::loadKnown(kSilent));
    OPEN(link, BleMode::Gatt);
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Identification));
    QTRY_COMPARE(Simulator::count(u"frame"_s), 1);
    link.device->connectTo(knownDevice());
    QVERIFY(!link.protocol->sendCommand(TidemarCommand::Time));
    QVERIFY(m_log.await(u"receiveTimeout Identification"_s));
    QVERIFY(!m_log.entries().contains(u"receiveTimeout Time"_s));
}

void TestTimeouts::deletionFromInside()
{
    LOAD(Simulator::loadKnown(kSilent));
    OPEN(link, BleMode::Gatt);
    m_log.react = [&](const QString &) {
        link.protocol.reset();
        link.device.reset();
    };
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Identification));
    QVERIFY(m_log.await(u"receiveTimeout Identification"_s));
    QTRY_COMPARE(Simulator::state()["connected"_L1].toBool(), false);
    QCOMPARE(m_log.entries().size(), 1);
    m_log.react = nullptr;
}

QTEST_GUILESS_MAIN(TestTimeouts)
#include "tst_timeouts.moc"
