// SPDX-License-Identifier: MIT
#include <memory>

#include <varda/bledevice.h>
#include <varda/vardasession.h>

#include "linktest.h"

using namespace Qt::StringLiterals;

namespace {

// The real daemon takes two seconds to end a link, and hands the old one out until then.
constexpr auto kSlow = R"({"disconnectDelay":2000,"devices":[
    {"known":true},{"known":true,"model":"tidemar"}]})";

QStringList links()
{
    return Simulator::record({u"connected"_s, u"disconnected"_s});
}

const QStringList kOneAfterTheOther{u"connected"_s, u"disconnected"_s, u"connected"_s};

} // namespace

/** A new connection while the old one is still on its way down. */
class TestClosingLink : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void device();
    void anotherDevice();
    void anotherComputer();
    void anotherComputerMeanwhile();
    void disconnectionMeanwhile();
    void slowerThanTheWait();
    void session_data();
    void session();
    void sessionConnectsTwice();
    void anotherSession();

private:
    void connectSession(VardaSession &session)
    {
        m_log.watch(&session);
        session.connectTo(knownDevice());
        QVERIFY(m_log.await(u"Connected"_s));
        m_log.take();
    }

    /** The new link is one that lasts, so that a job runs to its end. */
    void useIt(VardaSession &session)
    {
        QVERIFY(m_log.await(u"Connected"_s));
        session.startCommand(TidemarCommand::Owner);
        QVERIFY(m_log.await(u"endCommand Owner"_s));
        QVERIFY(session.isConnected());
        QCOMPARE(links(), kOneAfterTheOther);
    }
};

void TestClosingLink::device()
{
    LOAD(Simulator::loadScenario(kSlow));
    BleDevice device;
    m_log.watch(&device);
    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"servicesDiscovered"_s));
    m_log.take();
    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"servicesDiscovered"_s));
    QCOMPARE(m_log.entries(),
             QStringList({u"state Disconnected"_s, u"deviceName Varda"_s, u"state Connecting"_s,
                          u"state DiscoveringServices"_s, u"servicesDiscovered"_s}));
    QCOMPARE(links(), kOneAfterTheOther);
}

void TestClosingLink::anotherDevice()
{
    LOAD(Simulator::loadScenario(kSlow));
    auto first = std::make_unique<BleDevice>();
    m_log.watch(first.get());
    first->connectTo(knownDevice());
    QVERIFY(m_log.await(u"servicesDiscovered"_s));
    first.reset();
    m_log.take();
    BleDevice second;
    m_log.watch(&second);
    second.connectTo(knownDevice());
    QVERIFY(m_log.await(u"servicesDiscovered"_s));
    QCOMPARE(links(), kOneAfterTheOther);
}

// Only the link to the same computer is waited for.
void TestClosingLink::anotherComputer()
{
    LOAD(Simulator::loadScenario(kSlow));
    BleDevice device;
    m_log.watch(&device);
    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"servicesDiscovered"_s));
    device.connectTo(BleDeviceInfo::fromAddress(u"00:AA:01:01:00:02"_s, u"Tidemar"_s));
    QVERIFY(m_log.await(u"servicesDiscovered"_s, 2));
    QCOMPARE(links(), QStringList({u"connected"_s, u"connected"_s}));
}

// Who has turned to another computer while waiting is not taken back.
void TestClosingLink::anotherComputerMeanwhile()
{
    LOAD(Simulator::loadScenario(kSlow));
    BleDevice device;
    m_log.watch(&device);
    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"servicesDiscovered"_s));
    device.connectTo(knownDevice());
    device.connectTo(BleDeviceInfo::fromAddress(u"00:AA:01:01:00:02"_s, u"Tidemar"_s));
    QVERIFY(m_log.await(u"servicesDiscovered"_s, 2));
    m_log.take();
    QTRY_COMPARE(links(), QStringList({u"connected"_s, u"connected"_s, u"disconnected"_s}));
    Simulator::settle();
    QCOMPARE(m_log.entries(), QStringList());
    QCOMPARE(device.deviceName(), u"Tidemar"_s);
    QCOMPARE(Simulator::state()["connected"_L1].toBool(), false);
}

void TestClosingLink::disconnectionMeanwhile()
{
    LOAD(Simulator::loadScenario(kSlow));
    BleDevice device;
    m_log.watch(&device);
    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"servicesDiscovered"_s));
    device.connectTo(knownDevice());
    m_log.take();
    device.disconnect();
    QCOMPARE(m_log.take(), QStringList({u"state Disconnected"_s, u"disconnected"_s}));
    device.disconnect();
    QTRY_COMPARE(links(), QStringList({u"connected"_s, u"disconnected"_s}));
    Simulator::settle();
    QCOMPARE(m_log.take(), QStringList());
    QCOMPARE(Simulator::count(u"Connect"_s), 1);
    // Nothing is left of it.
    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"servicesDiscovered"_s));
    QCOMPARE(links(), kOneAfterTheOther);
}

// The wait has an end; what then comes of the new link is between Qt and the system.
void TestClosingLink::slowerThanTheWait()
{
    LOAD(Simulator::loadScenario(R"({"disconnectDelay":8000,"devices":[{"known":true}]})"));
    BleDevice device;
    m_log.watch(&device);
    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"servicesDiscovered"_s));
    m_log.take();
    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"state DiscoveringServices"_s));
    QCOMPARE(links(), QStringList(u"connected"_s));
    QVERIFY(m_log.await(u"disconnected"_s));
    QCOMPARE(links(), QStringList({u"connected"_s, u"disconnected"_s}));
}

void TestClosingLink::session_data()
{
    QTest::addColumn<bool>("disconnects");
    QTest::addColumn<bool>("scans");
    QTest::newRow("connectTo") << false << false;
    QTest::newRow("autoConnect") << false << true;
    QTest::newRow("disconnect, connectTo") << true << false;
    QTest::newRow("disconnect, autoConnect") << true << true;
}

void TestClosingLink::session()
{
    QFETCH(const bool, disconnects);
    QFETCH(const bool, scans);

    LOAD(Simulator::loadScenario(R"({"disconnectDelay":2000,"devices":[{"known":true}]})"));
    VardaSession session;
    connectSession(session);
    QStringList expected;
    if (disconnects) {
        session.controllerDisconnect();
        expected += {u"message Disconnect from device"_s, u"disconnectController"_s};
    }
    if (scans) {
        session.autoConnect();
        expected += {u"message Scan Devices"_s,
                     u"message Name: Varda - Address: 00:AA:01:01:00:01"_s,
                     u"message Varda found"_s, u"Created"_s};
    } else {
        session.connectTo(knownDevice());
        expected += u"message Connect to Varda"_s;
    }
    useIt(session);
    expected += {u"message Device connected"_s, u"Connected"_s, u"endCommand Owner"_s};
    QCOMPARE(m_log.entries(), expected);
}

// An attempt that was given up while it waited does not come back, and takes no link with it.
void TestClosingLink::sessionConnectsTwice()
{
    LOAD(Simulator::loadKnown());
    VardaSession session;
    connectSession(session);
    session.connectTo(knownDevice());
    session.connectTo(knownDevice());
    useIt(session);
    QCOMPARE(m_log.entries(),
             QStringList({u"message Connect to Varda"_s, u"message Connect to Varda"_s,
                          u"message Device connected"_s, u"Connected"_s, u"endCommand Owner"_s}));
}

void TestClosingLink::anotherSession()
{
    LOAD(Simulator::loadScenario(kSlow));
    auto first = std::make_unique<VardaSession>();
    connectSession(*first);
    first.reset();
    VardaSession second;
    m_log.watch(&second);
    second.connectTo(knownDevice());
    useIt(second);
}

QTEST_GUILESS_MAIN(TestClosingLink)
#include "tst_closinglink.moc"
