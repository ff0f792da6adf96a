// SPDX-License-Identifier: MIT
#include <QtCore/qtimer.h>
#include <QtTest/qsignalspy.h>

#include <memory>
#include <vector>

#include "protocollink.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kSilent = R"("faults":[{"step":"answer","kind":"silent"}])";
constexpr auto kIdentification = "dcdc0200bb160000010a";

/**
 * A timer that is not precise ends early or late by where in a second it began, so these begin all
 * over one. A wait of the test that began before one of the library, and is shorter, also ends
 * before it, however busy the machine is.
 */
constexpr int kPhases = 40;
constexpr int kPhaseMs = 25;

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
    void refusedWriteInAnAnswer();
    void deletionFromInside();
    void pauseInAnAnswer();
    void answerInTime();

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

// What has come of the answer is gone, so that only the time ends it.
void TestTimeouts::refusedWriteInAnAnswer()
{
    LOAD(Simulator::loadKnown(kSilent));
    OPEN(link, BleMode::Gatt);
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Logbook));
    QTRY_COMPARE(Simulator::count(u"frame"_s), 1);
    link.receive("dcdc");
    link.device->connectTo(knownDevice());
    QVERIFY(!link.protocol->sendCommand(TidemarCommand::Time));
    QVERIFY(m_log.await(u"receiveTimeout Logbook"_s));
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

// An answer is whole after a quiet second, not after nearly one.
void TestTimeouts::pauseInAnAnswer()
{
    struct Answer {
        BleDevice device;
        VardaBleProtocol protocol{&device, BleMode::Gatt};
    };
    std::vector<std::unique_ptr<Answer>> answers;
    int whole = 0;
    for (int i = 0; i < kPhases; ++i) {
        auto *const answer = answers.emplace_back(std::make_unique<Answer>()).get();
        connect(&answer->protocol, &VardaBleProtocol::responseReceived, this, [&] { ++whole; });
        // Nobody is there to read it; what counts is how its answer is read.
        QVERIFY(!answer->protocol.sendCommand(TidemarCommand::Logbook));
        const auto receive = [answer](const char *hex) {
            Q_EMIT answer->device.notificationReceived(QByteArray::fromHex(hex));
        };
        QTimer::singleShot(i * kPhaseMs, Qt::PreciseTimer, &answer->device, [=] {
            QTimer::singleShot(990, Qt::PreciseTimer, &answer->device,
                               [=] { receive("160000010a"); });
            receive("dcdc0200bb");
        });
    }
    QTRY_COMPARE_WITH_TIMEOUT(whole, kPhases, 20'000);
}

void TestTimeouts::answerInTime()
{
    LOAD(Simulator::loadKnown(kSilent));
    OPEN(link, BleMode::Gatt);
    std::vector<std::unique_ptr<VardaBleProtocol>> protocols;
    QList<int> early;
    int late = 0;
    for (int i = 0; i < kPhases; ++i) {
        auto *const protocol =
            protocols.emplace_back(new VardaBleProtocol(link.device.get(), BleMode::Gatt)).get();
        auto *const inTime = new QTimer(protocol);
        inTime->setTimerType(Qt::PreciseTimer);
        inTime->setSingleShot(true);
        connect(protocol, &VardaBleProtocol::receiveTimeout, this, [=, &early, &late] {
            ++late;
            if (inTime->isActive())
                early.append(inTime->remainingTime());
        });
        QTimer::singleShot(i * kPhaseMs, Qt::PreciseTimer, protocol, [=] {
            inTime->start(4990);
            protocol->sendCommand(TidemarCommand::Identification);
        });
    }
    QTRY_COMPARE_WITH_TIMEOUT(late, kPhases, 20'000);
    QCOMPARE(early, QList<int>());
}

QTEST_GUILESS_MAIN(TestTimeouts)
#include "tst_timeouts.moc"
