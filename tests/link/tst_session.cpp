// SPDX-License-Identifier: MIT
#include <QtCore/qeventloop.h>
#include <QtCore/qthread.h>
#include <QtCore/qtimer.h>

#include <memory>

#include <varda/bledevice.h>
#include <varda/blescanner.h>
#include <varda/vardableprotocol.h>
#include <varda/vardasession.h>

#include "discoverytimeout.h"
#include "linktest.h"

using namespace Qt::StringLiterals;

namespace {

/** What a computer sees of a connection. */
const QStringList kCalls{u"StartDiscovery"_s, u"StopDiscovery"_s, u"Connect"_s,
                         u"connected"_s,      u"StartNotify"_s,   u"write"_s,
                         u"notification"_s,   u"Disconnect"_s,    u"disconnected"_s};

constexpr auto kGattData = "49535343-1e4d-4bd9-ba61-23c647249616";
constexpr auto kSpsFifo = "2456e1b9-26e2-8f83-e744-f34f01e9d703";

QStringList subscriptions()
{
    return Simulator::record({u"StartNotify"_s});
}

} // namespace

class TestSession : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void beforeAnything();
    void roadOverGatt();
    void roadOverSps();
    void createControllerIsGatt();
    void knownComputerNeedsNoScan();
    void computerThatTheHostHasMet();
    void names_data();
    void names();
    void secondComputerIsIgnored();
    void reportsWithoutAutoConnectAreIgnored();

    void nobodyThere();
    void stopJobEndsTheScan();
    void scanError_data();
    void scanError();
    void scanTornDownIsSilent();

    void noService();
    void servicesOfNoLink();
    void linkFailure_data();
    void linkFailure();
    void silentCccd();
    void unknownComputer();
    void connectionRefused();
    void failureWhileConnected();

    void dropAndReconnect();
    void reconnectionIsGatt();
    void dropBeforeReady();
    void dropBeforeConnected();
    void letGoInsideALoop();
    void adapterSwitchedOff();
    void adapterRemoved();

    void reconnectWithoutDevice();
    void reconnectWithoutRecord();
    void reconnectAfterDisconnect();

    void disconnectWhileScanning();
    void disconnectWhileConnected();
    void disconnectBeforeConnected();
    void disconnectWithoutDevice();
    void autoConnectWhileConnected();
    void lastDeviceStays();
    void insideOperations_data();
    void insideOperations();

    void insideARefusedJob();
    void wrongCrc();
    void noAnswer();
    void inAThread();

private:
    /** Brings @p session to the point where jobs may start, and forgets the road. */
    void connectSession(VardaSession &session, BleMode mode = BleMode::Gatt)
    {
        m_log.watch(&session);
        session.connectTo(knownDevice(), mode);
        QVERIFY(m_log.await(u"Connected"_s));
        m_log.take();
    }
};

void TestSession::init()
{
    DiscoveryTimeout::replaceBy(-1);
}

void TestSession::beforeAnything()
{
    LOAD(Simulator::loadKnown());
    VardaSession session;
    m_log.watch(&session);

    QCOMPARE(session.message(), QString());
    QCOMPARE(session.qmlGetMessage(), QString());
    QVERIFY(!session.isConnected());
    QVERIFY(!session.qmlConnected());
    QVERIFY(!session.lastDevice().isValid());
    QCOMPARE(session.computerModelStr(), u"Unknown"_s);
    QCOMPARE(session.qmlComputerModel(), u"Unknown"_s);
    QCOMPARE(session.qmlCurrentMode(), u"Unknown"_s);

    session.startCommand(TidemarCommand::Identification);
    session.startGetGases(0);
    session.setOwner(u"Nobody"_s);
    session.startSetTime();
    session.startGetBatteryInformation();
    session.stopJob();
    QVERIFY(!session.startSetPressure(1013));

    Simulator::settle();
    QCOMPARE(m_log.entries(), QStringList());
    QCOMPARE(Simulator::record(kCalls), QStringList());
}

void TestSession::roadOverGatt()
{
    LOAD(Simulator::loadDevice(""));
    VardaSession session;
    m_log.watch(&session);
    session.autoConnect();
    QCOMPARE(DiscoveryTimeout::asked(), 30'000);
    QVERIFY(m_log.await(u"Connected"_s));
    QVERIFY(session.isConnected());
    session.startCommand(TidemarCommand::Identification);
    QVERIFY(m_log.await(u"endCommand Identification"_s));
    session.controllerDisconnect();
    QVERIFY(!session.isConnected());
    QTRY_COMPARE(Simulator::count(u"disconnected"_s), 1);

    QCOMPARE(m_log.entries(),
             QStringList({u"message Scan Devices"_s,
                          u"message Name: Varda - Address: 00:AA:01:01:00:01"_s,
                          u"message Varda found"_s, u"Created"_s, u"message Device connected"_s,
                          u"Connected"_s, u"endCommand Identification"_s,
                          u"message Disconnect from device"_s, u"disconnectController"_s}));
    QCOMPARE(Simulator::record(kCalls),
             QStringList({
                 u"StartDiscovery"_s,
                 u"StopDiscovery"_s,
                 u"Connect"_s,
                 u"connected"_s,
                 u"StartNotify 49535343-1e4d-4bd9-ba61-23c647249616"_s,
                 u"write 49535343-1e4d-4bd9-ba61-23c647249616 command dcdc0100bddc000001"_s,
                 u"notification 49535343-1e4d-4bd9-ba61-23c647249616 "
                 "dcdc0600339a000001620204010b"_s,
                 u"Disconnect"_s,
                 u"disconnected"_s,
             }));
}

void TestSession::roadOverSps()
{
    LOAD(Simulator::loadDevice(R"("mode":"sps","model":"vskm","credits":"counted")"));
    VardaSession session;
    m_log.watch(&session);
    session.autoConnect(BleMode::Sps);
    QVERIFY(m_log.await(u"Connected"_s));
    session.startCommand(TidemarCommand::Identification);
    QVERIFY(m_log.await(u"endCommand Identification"_s));

    QCOMPARE(m_log.entries(),
             QStringList({u"message Scan Devices"_s,
                          u"message Name: VSK-0042 - Address: 00:AA:01:01:00:01"_s,
                          u"message VSK-0042 found"_s, u"Created"_s, u"message Device connected"_s,
                          u"Connected"_s, u"endCommand Identification"_s}));
    QCOMPARE(Simulator::record(kCalls).first(7),
             QStringList({
                 u"StartDiscovery"_s,
                 u"StopDiscovery"_s,
                 u"Connect"_s,
                 u"connected"_s,
                 u"StartNotify 2456e1b9-26e2-8f83-e744-f34f01e9d703"_s,
                 u"write 2456e1b9-26e2-8f83-e744-f34f01e9d704 command 20"_s,
                 u"write 2456e1b9-26e2-8f83-e744-f34f01e9d703 command dcdc0100bddc000001"_s,
             }));
    QCOMPARE(session.computerModelStr(), u"VSKM"_s);
}

void TestSession::createControllerIsGatt()
{
    LOAD(Simulator::loadDevice(R"("mode":"both")"));
    VardaSession session;
    m_log.watch(&session);
    session.createController();
    QVERIFY(m_log.await(u"Connected"_s));
    QCOMPARE(m_log.entries().first(), u"message Scan Devices"_s);
    QCOMPARE(subscriptions(), QStringList(u"StartNotify "_s + QLatin1String(kGattData)));
}

void TestSession::knownComputerNeedsNoScan()
{
    LOAD(Simulator::loadKnown(R"("mode":"both")"));
    VardaSession session;
    m_log.watch(&session);
    session.connectTo(knownDevice(u"Ours"_s), BleMode::Sps);
    QVERIFY(m_log.await(u"Connected"_s));
    QCOMPARE(m_log.entries(), QStringList({u"message Connect to Ours"_s,
                                           u"message Device connected"_s, u"Connected"_s}));
    QCOMPARE(subscriptions(), QStringList(u"StartNotify "_s + QLatin1String(kSpsFifo)));
    QCOMPARE(Simulator::count(u"StartDiscovery"_s), 0);
}

// Such a computer is reported before the start of the scan has returned.
void TestSession::computerThatTheHostHasMet()
{
    LOAD(Simulator::loadKnown());
    VardaSession session;
    m_log.watch(&session);
    session.autoConnect();
    QVERIFY(m_log.await(u"Connected"_s));
    QCOMPARE(m_log.entries(), QStringList({u"message Scan Devices"_s,
                                           u"message Name: Varda - Address: 00:AA:01:01:00:01"_s,
                                           u"message Varda found"_s, u"Created"_s,
                                           u"message Device connected"_s, u"Connected"_s}));
}

void TestSession::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("ours");
    for (const auto *name : {"Varda", "Tidemar", "VSK-0042", "VSK-", "RN4871", "RN4871-1A2B"})
        QTest::newRow(name) << QString::fromLatin1(name) << true;
    for (const auto *name : {"varda", "VARDA", "Varda 2", "tidemar", "Tidemar-1", "MyTidemar",
                             "VSK", "vsk-0042", "XVSK-1", "rn4871", "RN487", "ARN4871"})
        QTest::newRow(name) << QString::fromLatin1(name) << false;
}

void TestSession::names()
{
    QFETCH(const QString, name);
    QFETCH(const bool, ours);

    LOAD(Simulator::loadScenario(
        u"{\"devices\":[{\"name\":\"%1\"},{\"advertise\":[{\"after\":100}]}]}"_s.arg(name)
            .toUtf8()));
    VardaSession session;
    m_log.watch(&session);
    session.autoConnect();
    QVERIFY(m_log.await(u"Created"_s));

    QStringList expected{u"message Scan Devices"_s,
                         u"message Name: %1 - Address: 00:AA:01:01:00:01"_s.arg(name)};
    if (ours)
        expected += u"message %1 found"_s.arg(name);
    else
        expected += {u"message Name: Varda - Address: 00:AA:01:01:00:02"_s,
                     u"message Varda found"_s};
    expected += u"Created"_s;
    QCOMPARE(m_log.entries(), expected);
}

void TestSession::secondComputerIsIgnored()
{
    LOAD(Simulator::loadScenario(R"({"devices":[{},{"model":"tidemar","known":true}]})"));
    VardaSession session;
    m_log.watch(&session);
    // A platform may report another one although the scan was stopped.
    m_log.react = [&](const QString &entry) {
        if (entry == u"Created"_s) {
            Q_EMIT session.findChild<BleScanner *>()->deviceFound(
                BleDeviceInfo::fromAddress(u"00:AA:01:01:00:07"_s, u"Varda"_s));
        }
    };
    session.autoConnect();
    QVERIFY(m_log.await(u"Connected"_s));
    QCOMPARE(m_log.entries(), QStringList({u"message Scan Devices"_s,
                                           u"message Name: Tidemar - Address: 00:AA:01:01:00:02"_s,
                                           u"message Tidemar found"_s, u"Created"_s,
                                           u"message Device connected"_s, u"Connected"_s}));
    QCOMPARE(session.lastDevice().address(), u"00:AA:01:01:00:02"_s);
}

void TestSession::reportsWithoutAutoConnectAreIgnored()
{
    LOAD(Simulator::loadKnown());
    VardaSession session;
    connectSession(session);
    Q_EMIT session.findChild<BleScanner *>()->deviceFound(knownDevice());
    Q_EMIT session.findChild<BleScanner *>()->scanFinished();
    QCOMPARE(m_log.entries(), QStringList());
}

void TestSession::nobodyThere()
{
    LOAD(Simulator::loadDevice(R"("name":"Watch")"));
    DiscoveryTimeout::replaceBy(300);
    VardaSession session;
    m_log.watch(&session);
    session.autoConnect();
    QVERIFY(m_log.await(u"NotFound"_s));
    QCOMPARE(DiscoveryTimeout::asked(), 30'000);
    QCOMPARE(m_log.entries(),
             QStringList({u"message Scan Devices"_s,
                          u"message Name: Watch - Address: 00:AA:01:01:00:01"_s,
                          u"message End of scan, device not found"_s, u"NotFound"_s}));
}

void TestSession::stopJobEndsTheScan()
{
    LOAD(Simulator::loadScenario("{}"));
    VardaSession session;
    m_log.watch(&session);
    session.autoConnect();
    session.stopJob();
    QCOMPARE(m_log.entries(),
             QStringList({u"message Scan Devices"_s, u"message End of scan, device not found"_s,
                          u"NotFound"_s}));
}

void TestSession::scanError_data()
{
    QTest::addColumn<QByteArray>("adapter");
    QTest::addColumn<QString>("message");
    QTest::newRow("off") << QByteArray(R"("powered":false)")
                         << u"message Scan error: Device is powered off"_s;
    QTest::newRow("none") << QByteArray(R"("present":false)")
                          << u"message Scan error: Cannot find valid Bluetooth adapter."_s;
}

void TestSession::scanError()
{
    QFETCH(const QByteArray, adapter);
    QFETCH(const QString, message);

    LOAD(Simulator::loadScenario(R"({"adapter":{)" + adapter + "}}"));
    VardaSession session;
    m_log.watch(&session);
    session.autoConnect();
    QVERIFY(m_log.await(u"Error"_s));
    QCOMPARE(m_log.entries(), QStringList({u"message Scan Devices"_s, message, u"Error"_s}));
}

void TestSession::scanTornDownIsSilent()
{
    LOAD(Simulator::loadKnown(R"("name":"Watch")"));
    VardaSession session;
    m_log.watch(&session);
    session.autoConnect();
    session.autoConnect();
    session.connectTo(knownDevice());
    QVERIFY(m_log.await(u"Connected"_s));
    QCOMPARE(m_log.entries(),
             QStringList(
                 {u"message Scan Devices"_s, u"message Name: Watch - Address: 00:AA:01:01:00:01"_s,
                  u"message Scan Devices"_s, u"message Name: Watch - Address: 00:AA:01:01:00:01"_s,
                  u"message Connect to Varda"_s, u"message Device connected"_s, u"Connected"_s}));
    QCOMPARE(Simulator::count(u"StartDiscovery"_s), Simulator::count(u"StopDiscovery"_s));
}

void TestSession::noService()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"discover","kind":"empty"}])"));
    VardaSession session;
    m_log.watch(&session);
    session.connectTo(knownDevice());
    QVERIFY(m_log.await(u"NoService"_s));
    QTRY_COMPARE(Simulator::count(u"disconnected"_s), 1);
    Simulator::settle();
    QCOMPARE(m_log.entries(),
             QStringList({u"message Connect to Varda"_s, u"message BLE error: No service found"_s,
                          u"NotCreated"_s, u"message Service not found"_s, u"NoService"_s}));
    QVERIFY(!session.isConnected());
}

void TestSession::servicesOfNoLink()
{
    LOAD(Simulator::loadScenario("{}"));
    VardaSession session;
    m_log.watch(&session);
    session.autoConnect();
    Q_EMIT session.findChild<BleDevice *>()->servicesDiscovered();
    QCOMPARE(m_log.entries(), QStringList({u"message Scan Devices"_s,
                                           u"message Service not found"_s, u"NoService"_s}));
}

void TestSession::linkFailure_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QString>("message");
    QTest::newRow("characteristic missing")
        << QByteArray(R"("dataService":{"characteristicPresent":false})")
        << u"message BLE error: Characteristics not found in service"_s;
    QTest::newRow("service missing")
        << QByteArray(R"("dataService":{"present":false})")
        << u"message BLE error: Characteristics not found in service"_s;
    QTest::newRow("no CCCD") << QByteArray(R"("dataService":{"cccd":false})")
                             << u"message BLE error: CCCD descriptor not found"_s;
    QTest::newRow("no notifications")
        << QByteArray(R"("dataService":{"flags":["write","write-without-response"]})")
        << u"message BLE error: Characteristic supports neither Notify nor Indicate"_s;
    QTest::newRow("CCCD refused") << QByteArray(
        R"("faults":[{"step":"subscribe","kind":"refuse"}])")
                                  << u"message BLE error: Service error: 3"_s;
}

void TestSession::linkFailure()
{
    QFETCH(const QByteArray, keys);
    QFETCH(const QString, message);

    LOAD(Simulator::loadKnown(keys));
    VardaSession session;
    m_log.watch(&session);
    session.connectTo(knownDevice());
    QVERIFY(m_log.await(u"NotCreated"_s));
    QTRY_COMPARE(Simulator::count(u"disconnected"_s), 1);
    Simulator::settle();
    QCOMPARE(m_log.entries(),
             QStringList({u"message Connect to Varda"_s, message, u"NotCreated"_s}));
    session.controllerConnect();
    QCOMPARE(m_log.entries().last(), u"NoController"_s);
}

void TestSession::silentCccd()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"subscribe","kind":"silent"}])"));
    VardaSession session;
    m_log.watch(&session);
    session.connectTo(knownDevice());
    QVERIFY(m_log.await(u"NotCreated"_s));
    QTRY_COMPARE(Simulator::count(u"disconnected"_s), 1);
    Simulator::settle();
    QCOMPARE(m_log.entries(),
             QStringList({u"message Connect to Varda"_s,
                          u"message BLE error: Notifications activation timed out — "
                          "peripheral not responding"_s,
                          u"NotCreated"_s}));
}

void TestSession::unknownComputer()
{
    LOAD(Simulator::loadDevice(""));
    VardaSession session;
    m_log.watch(&session);
    session.connectTo(knownDevice());
    QVERIFY(m_log.await(u"NotCreated"_s));
    QCOMPARE(m_log.entries(),
             QStringList({u"message Connect to Varda"_s,
                          u"message BLE error: Controller error: Remote device cannot be found"_s,
                          u"NotCreated"_s}));
}

void TestSession::connectionRefused()
{
    LOAD(Simulator::loadDevice(R"("faults":[{"step":"connect","kind":"refuse"}])"));
    VardaSession session;
    m_log.watch(&session);
    session.autoConnect();
    QVERIFY(m_log.await(u"NotCreated"_s));
    QCOMPARE(m_log.entries(),
             QStringList(
                 {u"message Scan Devices"_s, u"message Name: Varda - Address: 00:AA:01:01:00:01"_s,
                  u"message Varda found"_s, u"Created"_s,
                  u"message BLE error: Controller error: Unknown Error"_s, u"NotCreated"_s}));
}

void TestSession::failureWhileConnected()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"write","kind":"refuse"}])"));
    VardaSession session;
    connectSession(session);
    session.startCommand(TidemarCommand::Time);
    QVERIFY(m_log.await(u"disconnectController"_s));
    QTRY_COMPARE(Simulator::count(u"disconnected"_s), 1);
    Simulator::settle();
    QCOMPARE(m_log.entries(),
             QStringList({u"message BLE error: Service error: 2"_s, u"disconnectController"_s}));
    QVERIFY(!session.isConnected());
}

void TestSession::dropAndReconnect()
{
    LOAD(Simulator::loadKnown());
    VardaSession session;
    connectSession(session);
    Simulator::drop();
    QVERIFY(m_log.await(u"disconnectController"_s));
    QVERIFY(!session.isConnected());
    // Without a link jobs do nothing.
    session.startCommand(TidemarCommand::Time);
    session.controllerConnect();
    QVERIFY(m_log.await(u"Connected"_s));
    session.startCommand(TidemarCommand::Identification);
    QVERIFY(m_log.await(u"endCommand Identification"_s));
    QCOMPARE(m_log.entries(),
             QStringList({u"message Device disconnected"_s, u"disconnectController"_s,
                          u"message Reconnecting to Varda"_s, u"message Device connected"_s,
                          u"Connected"_s, u"endCommand Identification"_s}));
    QCOMPARE(Simulator::frames(), QStringList(u"dcdc0100bddc000001"_s));
}

void TestSession::reconnectionIsGatt()
{
    LOAD(Simulator::loadKnown(R"("mode":"both")"));
    VardaSession session;
    connectSession(session, BleMode::Sps);
    Simulator::drop();
    QVERIFY(m_log.await(u"disconnectController"_s));
    session.controllerConnect();
    QVERIFY(m_log.await(u"Connected"_s));
    QCOMPARE(subscriptions(), QStringList({u"StartNotify "_s + QLatin1String(kSpsFifo),
                                           u"StartNotify "_s + QLatin1String(kGattData)}));
    // The credits of the first link.
    QCOMPARE(Simulator::count(u"write"_s), 1);
}

void TestSession::dropBeforeReady()
{
    LOAD(Simulator::loadKnown());
    VardaSession session;
    m_log.watch(&session);
    m_log.react = [](const QString &entry) {
        if (entry == u"message Device connected"_s && Simulator::count(u"Connect"_s) == 1)
            Simulator::drop();
    };
    session.connectTo(knownDevice());
    QVERIFY(m_log.await(u"disconnectController"_s));
    // The time of the first link is over before that of the second.
    session.controllerConnect();
    QVERIFY(m_log.await(u"Connected"_s));
    session.startCommand(TidemarCommand::Identification);
    QVERIFY(m_log.await(u"endCommand Identification"_s));
    QCOMPARE(m_log.entries(),
             QStringList({u"message Connect to Varda"_s, u"message Device connected"_s,
                          u"message Device disconnected"_s, u"disconnectController"_s,
                          u"message Reconnecting to Varda"_s, u"message Device connected"_s,
                          u"Connected"_s, u"endCommand Identification"_s}));
}

void TestSession::dropBeforeConnected()
{
    LOAD(Simulator::loadKnown());
    VardaSession session;
    m_log.watch(&session);
    session.connectTo(knownDevice());
    connect(session.findChild<VardaBleProtocol *>(), &VardaBleProtocol::ready, this,
            [] { Simulator::drop(); });
    QVERIFY(m_log.await(u"disconnectController"_s));
    session.controllerConnect();
    QVERIFY(m_log.await(u"Connected"_s));
    session.startCommand(TidemarCommand::Identification);
    QVERIFY(m_log.await(u"endCommand Identification"_s));
    QCOMPARE(m_log.entries(),
             QStringList({u"message Connect to Varda"_s, u"message Device connected"_s,
                          u"message Device disconnected"_s, u"disconnectController"_s,
                          u"message Reconnecting to Varda"_s, u"message Device connected"_s,
                          u"Connected"_s, u"endCommand Identification"_s}));
}

// While a slot waits in an event loop of its own, what has been let go in it lives on.
void TestSession::letGoInsideALoop()
{
    LOAD(Simulator::loadKnown());
    VardaSession session;
    m_log.watch(&session);
    QEventLoop outer;
    session.connectTo(knownDevice());
    connect(session.findChild<VardaBleProtocol *>(), &VardaBleProtocol::ready, &outer, [&] {
        session.controllerDisconnect();
        QEventLoop inner;
        // Longer than the session waits from here on; it was there first.
        QTimer::singleShot(600, &inner, &QEventLoop::quit);
        inner.exec();
        outer.quit();
    });
    outer.exec();
    QCOMPARE(m_log.entries(),
             QStringList({u"message Connect to Varda"_s, u"message Device connected"_s,
                          u"message Disconnect from device"_s, u"disconnectController"_s}));
}

void TestSession::adapterSwitchedOff()
{
    LOAD(Simulator::loadKnown());
    VardaSession session;
    connectSession(session);
    Simulator::setPowered(false);
    QVERIFY(m_log.await(u"disconnectController"_s));
    session.controllerConnect();
    QVERIFY(m_log.await(u"NotCreated"_s));
    QCOMPARE(m_log.entries(),
             QStringList({u"message Device disconnected"_s, u"disconnectController"_s,
                          u"message Reconnecting to Varda"_s,
                          u"message BLE error: Controller error: Error occurred trying to connect "
                          "to remote device."_s,
                          u"NotCreated"_s}));
}

void TestSession::adapterRemoved()
{
    LOAD(Simulator::loadKnown());
    VardaSession session;
    connectSession(session);
    Simulator::removeAdapter();
    QVERIFY(m_log.await(u"disconnectController"_s));
    Simulator::settle();
    QCOMPARE(m_log.entries(),
             QStringList({u"message Device disconnected"_s, u"disconnectController"_s}));
    QVERIFY(!session.isConnected());
}

void TestSession::reconnectWithoutDevice()
{
    VardaSession session;
    m_log.watch(&session);
    session.controllerConnect();
    QCOMPARE(m_log.entries(), QStringList(u"NoController"_s));
}

void TestSession::reconnectWithoutRecord()
{
    LOAD(Simulator::loadScenario("{}"));
    VardaSession session;
    m_log.watch(&session);
    session.autoConnect();
    session.controllerConnect();
    session.controllerConnect();
    QCOMPARE(m_log.entries(),
             QStringList({u"message Scan Devices"_s,
                          u"message No device known, please scan first"_s, u"NoController"_s,
                          u"message No device known, please scan first"_s, u"NoController"_s}));
}

void TestSession::reconnectAfterDisconnect()
{
    LOAD(Simulator::loadKnown());
    VardaSession session;
    connectSession(session);
    session.controllerDisConnect();
    session.controllerConnect();
    QCOMPARE(m_log.entries(), QStringList({u"message Disconnect from device"_s,
                                           u"disconnectController"_s, u"NoController"_s}));
}

void TestSession::disconnectWhileScanning()
{
    LOAD(Simulator::loadScenario("{}"));
    VardaSession session;
    m_log.watch(&session);
    session.autoConnect();
    session.controllerDisconnect();
    QTRY_COMPARE(Simulator::count(u"StopDiscovery"_s), 1);
    Simulator::settle();
    QCOMPARE(m_log.entries(),
             QStringList({u"message Scan Devices"_s, u"message Disconnect from device"_s}));
}

void TestSession::disconnectWhileConnected()
{
    LOAD(Simulator::loadKnown());
    VardaSession session;
    connectSession(session);
    m_log.react = [&](const QString &) {
        QVERIFY(session.message() == u"Disconnect from device"_s);
    };
    session.controllerDisconnect();
    QTRY_COMPARE(Simulator::count(u"disconnected"_s), 1);
    Simulator::settle();
    QCOMPARE(m_log.entries(),
             QStringList({u"message Disconnect from device"_s, u"disconnectController"_s}));
}

void TestSession::disconnectBeforeConnected()
{
    LOAD(Simulator::loadKnown());
    VardaSession session;
    m_log.watch(&session);
    session.connectTo(knownDevice());
    session.controllerDisconnect();
    QTRY_COMPARE(Simulator::state()["connected"_L1].toBool(), false);
    Simulator::settle();
    QCOMPARE(m_log.entries(),
             QStringList({u"message Connect to Varda"_s, u"message Disconnect from device"_s}));
}

void TestSession::disconnectWithoutDevice()
{
    VardaSession session;
    m_log.watch(&session);
    session.controllerDisconnect();
    session.controllerDisConnect();
    QCOMPARE(m_log.entries(), QStringList());
}

void TestSession::autoConnectWhileConnected()
{
    LOAD(Simulator::loadKnown());
    VardaSession session;
    connectSession(session);
    session.autoConnect();
    QVERIFY(!session.isConnected());
    QVERIFY(m_log.await(u"Connected"_s));
    QCOMPARE(m_log.entries(), QStringList({u"message Scan Devices"_s,
                                           u"message Name: Varda - Address: 00:AA:01:01:00:01"_s,
                                           u"message Varda found"_s, u"Created"_s,
                                           u"message Device connected"_s, u"Connected"_s}));
    QCOMPARE(Simulator::record({u"connected"_s, u"disconnected"_s}),
             QStringList({u"connected"_s, u"disconnected"_s, u"connected"_s}));
}

void TestSession::lastDeviceStays()
{
    LOAD(Simulator::loadKnown());
    VardaSession session;
    connectSession(session);
    session.controllerDisconnect();
    QCOMPARE(session.lastDevice().address(), u"00:AA:01:01:00:01"_s);
    QCOMPARE(session.lastDevice().name(), u"Varda"_s);
}

void TestSession::insideOperations_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<bool>("deletes");
    for (const auto *message : {"Connect to Varda", "Reconnecting to Varda",
                                "No device known, please scan first", "Disconnect from device"}) {
        QTest::addRow("deletion in %s", message) << QString::fromLatin1(message) << true;
        QTest::addRow("connection in %s", message) << QString::fromLatin1(message) << false;
    }
}

// An operation tells what it is about to do; a slot may see to it that it does not.
void TestSession::insideOperations()
{
    QFETCH(const QString, message);
    QFETCH(const bool, deletes);

    // A scan finds neither of them.
    LOAD(Simulator::loadScenario(R"({"devices":[{"known":true,"name":"Somebody"},
        {"known":true,"name":"Somebody else","model":"tidemar"}]})"));
    auto session = std::make_unique<VardaSession>();
    if (message.startsWith(u"Reconnecting"_s) || message.startsWith(u"Disconnect"_s))
        connectSession(*session);
    else
        m_log.watch(session.get());
    if (message.startsWith(u"Reconnecting"_s)) {
        Simulator::drop();
        QVERIFY(m_log.await(u"disconnectController"_s));
    } else if (message.startsWith(u"No device"_s)) {
        session->autoConnect();
    }
    m_log.take();
    const qsizetype before = Simulator::count(u"Connect"_s);

    m_log.react = [&](const QString &entry) {
        if (entry != u"message "_s + message)
            return;
        if (deletes)
            session.reset();
        else
            session->connectTo(BleDeviceInfo::fromAddress(u"00:AA:01:01:00:02"_s, u"Tidemar"_s));
    };
    if (message.startsWith(u"Connect"_s))
        session->connectTo(knownDevice());
    else if (message.startsWith(u"Disconnect"_s))
        session->controllerDisconnect();
    else
        session->controllerConnect();

    QStringList expected(u"message "_s + message);
    if (!deletes) {
        QVERIFY(m_log.await(u"Connected"_s));
        expected += {u"message Connect to Tidemar"_s, u"message Device connected"_s,
                     u"Connected"_s};
        QVERIFY(Simulator::state("00:AA:01:01:00:02")["connected"_L1].toBool());
    }
    QTRY_VERIFY(!Simulator::state()["connected"_L1].toBool());
    QCOMPARE(m_log.entries(), expected);
    QCOMPARE(Simulator::count(u"Connect"_s), before + (deletes ? 0 : 1));
    m_log.react = nullptr;
}

// A job that cannot be written is told as the link's failure, from inside its start.
void TestSession::insideARefusedJob()
{
    LOAD(Simulator::loadKnown());
    auto session = std::make_unique<VardaSession>();
    m_log.watch(session.get());
    const auto refusal = u"message BLE error: Write failed: characteristic not ready"_s;
    m_log.react = [&](const QString &entry) {
        if (entry == refusal)
            session.reset();
    };
    session->connectTo(knownDevice());
    VardaSession *const deleted = session.get();
    QVERIFY(!deleted->startSetPressure(1013));
    QVERIFY(!session);
    Simulator::settle();
    QCOMPARE(m_log.entries(), QStringList({u"message Connect to Varda"_s, refusal}));
    m_log.react = nullptr;
}

void TestSession::wrongCrc()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"answer","nth":1,"kind":"wrongCrc"}])"));
    VardaSession session;
    connectSession(session);
    session.startCommand(TidemarCommand::Identification);
    QVERIFY(m_log.await(u"exchangeError Identification InvalidCrc"_s));
    session.startCommand(TidemarCommand::Identification);
    QVERIFY(m_log.await(u"endCommand Identification"_s));
    QCOMPARE(m_log.entries(), QStringList({u"exchangeError Identification InvalidCrc"_s,
                                           u"endCommand Identification"_s}));
}

void TestSession::noAnswer()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"answer","nth":1,"kind":"silent"}])"));
    VardaSession session;
    connectSession(session);
    session.startCommand(TidemarCommand::Identification);
    QVERIFY(m_log.await(u"disconnectController"_s));
    QCOMPARE(m_log.entries(),
             QStringList({u"message Receive timeout"_s, u"message Device disconnected"_s,
                          u"disconnectController"_s}));
    m_log.take();
    session.controllerConnect();
    QVERIFY(m_log.await(u"Connected"_s));
    session.startCommand(TidemarCommand::Identification);
    QVERIFY(m_log.await(u"endCommand Identification"_s));
}

// All that a session does, it does in the thread that it was made in.
void TestSession::inAThread()
{
    LOAD(Simulator::loadKnown());
    QStringList entries;
    const std::unique_ptr<QThread> thread(QThread::create([&entries] {
        SignalLog log;
        VardaSession session;
        log.watch(&session);
        QEventLoop loop;
        log.react = [&](const QString &entry) {
            if (entry == u"Connected"_s)
                session.startCommand(TidemarCommand::Identification);
            else if (entry == u"endCommand Identification"_s)
                session.controllerDisconnect();
            else if (entry == u"disconnectController"_s)
                loop.quit();
        };
        session.connectTo(knownDevice());
        loop.exec();
        QTRY_VERIFY(!Simulator::state()["connected"_L1].toBool());
        entries = log.take();
    }));
    thread->start();
    QTRY_VERIFY_WITH_TIMEOUT(thread->isFinished(), 20'000);
    QCOMPARE(entries,
             QStringList({u"message Connect to Varda"_s, u"message Device connected"_s,
                          u"Connected"_s, u"endCommand Identification"_s,
                          u"message Disconnect from device"_s, u"disconnectController"_s}));
}

QTEST_GUILESS_MAIN(TestSession)
#include "tst_session.moc"
