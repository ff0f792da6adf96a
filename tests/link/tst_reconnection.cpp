// SPDX-License-Identifier: MIT
#include <QtCore/qtimer.h>
#include <QtTest/qsignalspy.h>

#include <varda/bledevice.h>
#include <varda/vardableprotocol.h>
#include <varda/vardasession.h>

#include "linktest.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kGattService = "49535343-fe7d-4ae5-8fa9-9fafd205e455";
constexpr auto kGattData = "49535343-1e4d-4bd9-ba61-23c647249616";
constexpr auto kSpsFifo = "2456e1b9-26e2-8f83-e744-f34f01e9d703";

const QStringList kNewLink{u"message Reconnecting to Varda"_s, u"message Device connected"_s,
                           u"Connected"_s};

} // namespace

/** A connection to the last computer while the link to it is up: nothing of the old one is left. */
class TestReconnection : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void beforeConnected_data();
    void beforeConnected();
    void unansweredJob_data() { modes(); }
    void unansweredJob();
    void answeredJob_data() { modes(); }
    void answeredJob();
    void insideTheTimeout();
    void insideTheWatchdog();

private:
    static void modes()
    {
        QTest::addColumn<BleMode>("mode");
        QTest::newRow("GATT") << BleMode::Gatt;
        QTest::newRow("SPS") << BleMode::Sps;
    }

    // As with the real daemon, the old link takes longer to go than the new one to be usable.
    static QString load(const QByteArray &keys = {})
    {
        return Simulator::loadScenario(R"({"disconnectDelay":2000,"devices":[
            {"known":true,"mode":"both")"
                                       + (keys.isEmpty() ? keys : "," + keys) + "}]}");
    }

    void connectSession(VardaSession &session, BleMode mode)
    {
        m_log.watch(&session);
        session.connectTo(knownDevice(), mode);
        QVERIFY(m_log.await(u"Connected"_s));
        m_log.take();
    }

    /** The new link is one of the same mode, and it lasts. */
    void useIt(VardaSession &session, BleMode mode)
    {
        QVERIFY(session.isConnected());
        session.startCommand(TidemarCommand::Owner);
        QVERIFY(m_log.await(u"endCommand Owner"_s));
        QVERIFY(session.isConnected());
        const auto characteristic = QLatin1String(mode == BleMode::Gatt ? kGattData : kSpsFifo);
        const QString subscription = u"StartNotify "_s + characteristic;
        QCOMPARE(Simulator::record({u"StartNotify"_s}), QStringList({subscription, subscription}));
    }
};

void TestReconnection::beforeConnected_data()
{
    QTest::addColumn<BleMode>("mode");
    QTest::addColumn<bool>("whenReady");
    QTest::newRow("GATT, connected") << BleMode::Gatt << false;
    QTest::newRow("GATT, ready") << BleMode::Gatt << true;
    QTest::newRow("SPS, connected") << BleMode::Sps << false;
    QTest::newRow("SPS, ready") << BleMode::Sps << true;
}

// Two delays come before Connected; those of the old link end during the new connection.
void TestReconnection::beforeConnected()
{
    QFETCH(const BleMode, mode);
    QFETCH(const bool, whenReady);

    LOAD(load());
    VardaSession session;
    m_log.watch(&session);
    session.connectTo(knownDevice(), mode);
    QSignalSpy ready(session.findChild<VardaBleProtocol *>(), &VardaBleProtocol::ready);
    QVERIFY(m_log.await(u"message Device connected"_s));
    QVERIFY(session.isConnected());
    QVERIFY(!whenReady || ready.wait());
    session.controllerConnect();
    QVERIFY(!session.isConnected());
    QVERIFY(m_log.await(u"Connected"_s));
    QCOMPARE(m_log.take(),
             QStringList({u"message Connect to Varda"_s, u"message Device connected"_s})
                 + kNewLink);
    useIt(session, mode);
}

void TestReconnection::unansweredJob()
{
    QFETCH(const BleMode, mode);

    LOAD(load(R"("faults":[{"step":"answer","nth":1,"kind":"silent"}])"));
    VardaSession session;
    connectSession(session, mode);
    session.startCommand(TidemarCommand::Identification);
    QTRY_COMPARE(Simulator::count(u"frame"_s), 1);
    QTimer longerThanAnAnswerMayTake;
    longerThanAnAnswerMayTake.setSingleShot(true);
    QSignalSpy passed(&longerThanAnAnswerMayTake, &QTimer::timeout);
    longerThanAnAnswerMayTake.start(5300);

    session.controllerConnect();
    QVERIFY(!session.isConnected());
    QVERIFY(m_log.await(u"Connected"_s));
    QVERIFY(!passed.isEmpty() || passed.wait(20'000));
    QCOMPARE(m_log.take(), kNewLink);
    useIt(session, mode);
}

// The answer is there, but the line has not been quiet for long enough to see that it is whole.
void TestReconnection::answeredJob()
{
    QFETCH(const BleMode, mode);

    LOAD(load());
    VardaSession session;
    connectSession(session, mode);
    session.startCommand(TidemarCommand::Owner);
    QTRY_VERIFY(Simulator::count(u"notification"_s) > 0);
    Simulator::settle();
    session.controllerConnect();
    QVERIFY(!session.isConnected());
    QVERIFY(m_log.await(u"Connected"_s));
    QCOMPARE(m_log.take(), kNewLink);
    QCOMPARE(session.owner(), QString());
    useIt(session, mode);
}

// A computer that has fallen silent is let go, but not any more once it is connected to anew.
void TestReconnection::insideTheTimeout()
{
    LOAD(load(R"("faults":[{"step":"answer","nth":1,"kind":"silent"}])"));
    VardaSession session;
    connectSession(session, BleMode::Sps);
    m_log.react = [&](const QString &entry) {
        if (entry == u"message Receive timeout"_s)
            session.controllerConnect();
    };
    session.startCommand(TidemarCommand::Identification);
    QVERIFY(m_log.await(u"Connected"_s));
    QCOMPARE(m_log.take(), QStringList(u"message Receive timeout"_s) + kNewLink);
    useIt(session, BleMode::Sps);
}

void TestReconnection::insideTheWatchdog()
{
    LOAD(load(R"("faults":[{"step":"subscribe","nth":1,"kind":"silent"}])"));
    BleDevice device;
    m_log.watch(&device);
    m_log.react = [&](const QString &entry) {
        if (entry == u"servicesDiscovered"_s)
            device.setupCharacteristics(QString::fromLatin1(kGattService),
                                        QString::fromLatin1(kGattData),
                                        QString::fromLatin1(kGattData));
        else if (entry == u"state Error"_s)
            device.connectTo(knownDevice());
    };
    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"connected"_s));
    const qsizetype failure = m_log.entries().indexOf(u"state Error"_s);
    QCOMPARE(m_log.entries().sliced(failure),
             QStringList({u"state Error"_s, u"state Disconnected"_s, u"deviceName Varda"_s,
                          u"state Connecting"_s, u"state DiscoveringServices"_s,
                          u"servicesDiscovered"_s, u"state Connected"_s, u"connected"_s}));
    m_log.react = nullptr;
}

QTEST_GUILESS_MAIN(TestReconnection)
#include "tst_reconnection.moc"
