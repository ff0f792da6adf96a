// SPDX-License-Identifier: MIT
#include "central.h"
#include <varda/simulatorprocess.h>

#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbusmessage.h>
#include <QtTest/qsignalspy.h>
#include <QtTest/qtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString kAddress = u"00:AA:01:01:00:01"_s;
const QString kOther = u"00:AA:01:01:00:02"_s;
const QByteArray kAskIdentification = QByteArray::fromHex("dcdc0100bddc000001");

std::unique_ptr<SimulatorProcess> simulator;

} // namespace

// The real Qt Bluetooth against the simulator.
class TestBluez : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void readsAComputer();
    void disconnects();
    void reportsDevicesAsTheDaemonDoes();
    void tellsOfAnotherSignalStrength();
    void adapterOff();
    void noAdapter();
    void connectionRefused();
    void connectionDropped();
    void droppedOnACommand();
    void subscriptionRefused();
    void subscriptionOutlivesADrop();
    void secondSubscriber();
    void writeTooLong();
    void notificationTooLong();
    void splitAndMerged_data();
    void splitAndMerged();
    void wrongChecksum();
    void mutePeer();
    void countsCredits();
    void ownServices();
    void badScenarios_data();
    void badScenarios();
    void removedDevice();
    void controlErrors();
};

void TestBluez::initTestCase()
{
    simulator = std::make_unique<SimulatorProcess>();
    QVERIFY(simulator->isRunning());
}

void TestBluez::cleanupTestCase()
{
    simulator.reset();
}

void TestBluez::readsAComputer()
{
    QCOMPARE(simulator->loadDevice(R"({"name":"Varda","firmware":"1.2.3.a","rssi":-71})"),
             QString());
    Central central;
    QVERIFY(central.reach(kAddress));
    QCOMPARE(central.found.first().name(), u"Varda"_s);
    QCOMPARE(central.found.first().rssi(), qint16(-71));
    central.write(kAskIdentification);
    QVERIFY(central.waitForReceived(1));
    QCOMPARE(central.received,
             QList<QByteArray>{QByteArray::fromHex("dcdc0600f5b0000001610302010b")});

    QCOMPARE(simulator->values(u"frame"_s), QStringList{u"dcdc0100bddc000001"_s});
    QCOMPARE(simulator->values(u"write"_s, u"type"_s), QStringList{u"command"_s});
    QCOMPARE(simulator->values(u"cccd"_s, u"value"_s), QStringList{u"0100"_s});
    QCOMPARE(simulator->values(u"SetDiscoveryFilter"_s, u"transport"_s), QStringList{u"le"_s});
    QVERIFY(simulator->state(kAddress).value(u"subscribed").toBool());
}

void TestBluez::disconnects()
{
    QCOMPARE(simulator->loadDevice("{}"), QString());
    Central central;
    QVERIFY(central.reach(kAddress));
    central.controller->disconnectFromDevice();
    QVERIFY(central.waitFor(u"disconnected"_s));
    QVERIFY(!central.log.contains(u"error 1"_s));
    QVERIFY(!simulator->state(kAddress).value(u"connected").toBool());
}

void TestBluez::reportsDevicesAsTheDaemonDoes()
{
    QCOMPARE(simulator->load(R"({"devices":[
        {"name":"Varda","address":"00:AA:01:01:00:01"},
        {"name":null,"address":"00:AA:01:01:00:02"},
        {"name":"Headset","address":"00:AA:01:01:00:03","type":"classic"},
        {"name":"Late","address":"00:AA:01:01:00:04","advertise":[{"after":60}]},
        {"name":"Away","address":"00:AA:01:01:00:05","advertise":[]}]})"),
             QString());
    Central central;
    QVERIFY(central.scanFor(u"00:AA:01:01:00:04"_s));
    QHash<QString, QString> names;
    for (const QBluetoothDeviceInfo &info : central.found)
        names.insert(info.address().toString(), info.name());
    QCOMPARE(names, (QHash<QString, QString>{{u"00:AA:01:01:00:01"_s, u"Varda"_s},
                                             {u"00:AA:01:01:00:02"_s, u"00-AA-01-01-00-02"_s},
                                             {u"00:AA:01:01:00:03"_s, u"Headset"_s},
                                             {u"00:AA:01:01:00:04"_s, u"Late"_s}}));
    for (const QBluetoothDeviceInfo &info : central.found) {
        const bool classic = info.name() == u"Headset"_s;
        QCOMPARE(info.coreConfigurations(), classic
                                                ? QBluetoothDeviceInfo::BaseRateCoreConfiguration
                                                : QBluetoothDeviceInfo::LowEnergyCoreConfiguration);
    }
}

void TestBluez::tellsOfAnotherSignalStrength()
{
    QCOMPARE(
        simulator->loadDevice(R"({"advertise":[{"after":5,"rssi":-60},{"after":40,"rssi":-72}]})"),
        QString());
    Central central;
    central.agent.setLowEnergyDiscoveryTimeout(60000);
    central.agent.start(QBluetoothDeviceDiscoveryAgent::LowEnergyMethod);
    QVERIFY(central.waitFor(u"updated 00:AA:01:01:00:01 -72"_s));
    QCOMPARE(simulator->call(u"Advertise"_s, {kAddress, QVariant::fromValue(short(-48))}),
             QString());
    QVERIFY(central.waitFor(u"updated 00:AA:01:01:00:01 -48"_s));
    central.agent.stop();
    QCOMPARE(central.found.first().rssi(), qint16(-60));
}

void TestBluez::adapterOff()
{
    QCOMPARE(simulator->load(R"({"adapter":{"powered":false},"devices":[{}]})"), QString());
    Central central;
    central.agent.start(QBluetoothDeviceDiscoveryAgent::LowEnergyMethod);
    QCOMPARE(central.log, QStringList{u"scanError 2"_s});

    QCOMPARE(simulator->call(u"SetPowered"_s, {true}), QString());
    QVERIFY(central.reach(kAddress));
    QCOMPARE(simulator->call(u"SetPowered"_s, {false}), QString());
    QVERIFY(central.waitFor(u"disconnected"_s));
}

void TestBluez::noAdapter()
{
    QCOMPARE(simulator->load(R"({"adapter":{"present":false},"devices":[{}]})"), QString());
    Central central;
    central.agent.start(QBluetoothDeviceDiscoveryAgent::LowEnergyMethod);
    QCOMPARE(central.log, QStringList{u"scanError 1"_s});
}

void TestBluez::connectionRefused()
{
    QCOMPARE(simulator->loadDevice(R"({"faults":[{"step":"connect","kind":"refuse","nth":1}]})"),
             QString());
    Central central;
    QVERIFY(central.scanFor(kAddress));
    central.connectTo(kAddress);
    QVERIFY(central.waitFor(u"error 1"_s));
    QVERIFY(!central.log.contains(u"disconnected"_s));
    QVERIFY(central.reach(kAddress));
}

void TestBluez::connectionDropped()
{
    QCOMPARE(simulator->loadDevice(R"({"faults":[{"step":"connect","kind":"drop"}]})"), QString());
    Central central;
    QVERIFY(central.scanFor(kAddress));
    central.connectTo(kAddress);
    QVERIFY(central.waitFor(u"error 5"_s));
    QVERIFY(!central.log.contains(u"connected"_s));
    QCOMPARE(simulator->events(u"disconnected"_s).size(), 1);
}

void TestBluez::droppedOnACommand()
{
    QCOMPARE(
        simulator->loadDevice(
            R"({"faults":[{"step":"answer","command":"Identification","nth":2,"kind":"drop"}]})"),
        QString());
    Central central;
    QVERIFY(central.reach(kAddress));
    central.write(kAskIdentification);
    QVERIFY(central.waitForReceived(1));
    QVERIFY(!central.log.contains(u"disconnected"_s));
    central.write(kAskIdentification);
    QVERIFY(central.waitFor(u"disconnected"_s));
    QCOMPARE(central.received.size(), 1);
    QVERIFY(central.log.filter(u"rror"_s).isEmpty());
}

void TestBluez::subscriptionRefused()
{
    QCOMPARE(simulator->loadDevice(R"({"faults":[{"step":"subscribe","kind":"refuse"}]})"),
             QString());
    Central central;
    QVERIFY(central.scanFor(kAddress));
    central.connectTo(kAddress);
    QVERIFY(central.waitFor(u"connected"_s));
    QVERIFY(central.discover(u"49535343-fe7d-4ae5-8fa9-9fafd205e455"_s,
                             u"49535343-1e4d-4bd9-ba61-23c647249616"_s));
    central.subscribe();
    QVERIFY(central.waitFor(u"serviceError 3"_s));
    QVERIFY(simulator->events(u"cccd"_s).isEmpty());
}

void TestBluez::subscriptionOutlivesADrop()
{
    QCOMPARE(simulator->loadDevice("{}"), QString());
    Central central;
    QVERIFY(central.reach(kAddress));
    QCOMPARE(simulator->call(u"Drop"_s, {kAddress}), QString());
    QVERIFY(central.waitFor(u"disconnected"_s));
    QCOMPARE(simulator->call(u"ClearRecord"_s), QString());
    central.log.clear();
    central.connectTo(kAddress);
    QVERIFY(central.waitFor(u"connected"_s));
    QCOMPARE(simulator->values(u"cccd"_s, u"value"_s), QStringList{u"0100"_s});
    QVERIFY(simulator->events(u"StartNotify"_s).isEmpty());
}

void TestBluez::secondSubscriber()
{
    QCOMPARE(simulator->loadDevice("{}"), QString());
    Central central;
    QVERIFY(central.reach(kAddress));
    QDBusConnection other = QDBusConnection::connectToBus(simulator->address(), u"other"_s);
    other.call(QDBusMessage::createMethodCall(
        u"org.bluez"_s, simulator->values(u"StartNotify"_s, u"path"_s).value(0),
        u"org.bluez.GattCharacteristic1"_s, u"StartNotify"_s));
    QCOMPARE(simulator->call(u"Notify"_s, {kAddress, QByteArray("once")}), QString());
    QVERIFY(central.waitForReceived(2));
    QCOMPARE(central.received, (QList<QByteArray>{"once", "once"}));
    QCOMPARE(simulator->values(u"notification"_s), QStringList{u"6f6e6365"_s});
    QDBusConnection::disconnectFromBus(u"other"_s);
}

void TestBluez::writeTooLong()
{
    QCOMPARE(simulator->loadDevice(R"({"mtu":50})"), QString());
    Central central;
    QVERIFY(central.reach(kAddress));
    central.write(QByteArray(47, 'x'));
    central.write(QByteArray(48, 'x'));
    QVERIFY(central.waitFor(u"serviceError 2"_s));
    QCOMPARE(simulator->values(u"frame"_s), QStringList{QString(47, u'x').toLatin1().toHex()});
}

void TestBluez::notificationTooLong()
{
    QCOMPARE(simulator->loadDevice(R"({"mtu":23})"), QString());
    Central central;
    QVERIFY(central.reach(kAddress));
    QCOMPARE(simulator->call(u"Notify"_s, {kAddress, QByteArray(40, 'a')}), QString());
    QCOMPARE(simulator->call(u"Notify"_s, {kAddress, QByteArray("short")}), QString());
    QVERIFY(central.waitForReceived(2));
    QCOMPARE(central.received, (QList<QByteArray>{QByteArray(20, 'a'), "short"}));
}

void TestBluez::splitAndMerged_data()
{
    QTest::addColumn<QByteArray>("device");
    QTest::addColumn<QList<qsizetype>>("sizes");
    const QByteArray twoFrames = R"("responses":{"Identification":["0102","0304"]})";
    QTest::newRow("one frame in each") << "{" + twoFrames + "}" << QList<qsizetype>{11, 11};
    QTest::newRow("cut") << R"({"split":8,)" + twoFrames + "}" << QList<qsizetype>{8, 3, 8, 3};
    QTest::newRow("merged") << R"({"merge":true,)" + twoFrames + "}" << QList<qsizetype>{22};
    QTest::newRow("merged and cut")
        << R"({"merge":true,"split":15,)" + twoFrames + "}" << QList<qsizetype>{15, 7};
    QTest::newRow("paced") << R"({"pace":{"ms":20,"count":1},)" + twoFrames + "}"
                           << QList<qsizetype>{11, 11};
    QTest::newRow("raw") << QByteArray(
        R"({"responses":{"1":{"notifications":["00","","112233"]}}})")
                         << QList<qsizetype>{1, 0, 3};
}

void TestBluez::splitAndMerged()
{
    QFETCH(QByteArray, device);
    QFETCH(QList<qsizetype>, sizes);
    QCOMPARE(simulator->loadDevice(device), QString());
    Central central;
    QVERIFY(central.reach(kAddress));
    central.write(kAskIdentification);
    QVERIFY(central.waitForReceived(sizes.size()));
    QList<qsizetype> seen;
    for (const QByteArray &each : central.received)
        seen.append(each.size());
    QCOMPARE(seen, sizes);
}

void TestBluez::wrongChecksum()
{
    QCOMPARE(simulator->loadDevice(R"({"responses":{"1":["07"]},
        "faults":[{"step":"answer","kind":"wrongCrc","nth":1}]})"),
             QString());
    Central central;
    QVERIFY(central.reach(kAddress));
    central.write(kAskIdentification);
    central.write(kAskIdentification);
    QVERIFY(central.waitForReceived(2));
    QVERIFY(central.received[0] != central.received[1]);
    QCOMPARE(central.received[0].mid(6), central.received[1].mid(6));
}

void TestBluez::mutePeer()
{
    QCOMPARE(simulator->loadDevice(R"({"faults":[{"step":"discover","kind":"empty"}]})"),
             QString());
    Central central;
    QVERIFY(central.scanFor(kAddress));
    central.connectTo(kAddress);
    QVERIFY(central.waitFor(u"connected"_s));
    central.controller->discoverServices();
    QVERIFY(central.waitFor(u"discovered"_s));
    QVERIFY(central.controller->services().isEmpty());
}

void TestBluez::countsCredits()
{
    QCOMPARE(simulator->loadDevice(R"({"mode":"sps","credits":"counted",
        "responses":{"1":["01","02","03"]}})"),
             QString());
    Central central;
    QVERIFY(central.scanFor(kAddress));
    central.connectTo(kAddress);
    QVERIFY(central.waitFor(u"connected"_s));
    QVERIFY(central.discover(u"2456e1b9-26e2-8f83-e744-f34f01e9d701"_s,
                             u"2456e1b9-26e2-8f83-e744-f34f01e9d703"_s));
    central.subscribe();
    QVERIFY(central.waitFor(u"descriptorWritten 0100"_s));
    const QLowEnergyCharacteristic credits = central.service->characteristic(
        QBluetoothUuid(u"2456e1b9-26e2-8f83-e744-f34f01e9d704"_s));
    central.service->writeCharacteristic(credits, QByteArray(1, 2),
                                         QLowEnergyService::WriteWithoutResponse);
    central.write(kAskIdentification);
    QVERIFY(central.waitForReceived(2));
    QVERIFY(QTest::qWaitFor([] { return simulator->events(u"creditsExhausted"_s).size() == 1; }));
    QCOMPARE(simulator->events(u"creditsExhausted"_s).first().value(u"waiting").toInt(), 1);
    QCOMPARE(central.received.size(), 2);
    central.service->writeCharacteristic(credits, QByteArray(1, 1),
                                         QLowEnergyService::WriteWithoutResponse);
    QVERIFY(central.waitForReceived(3));
}

void TestBluez::ownServices()
{
    QCOMPARE(simulator->loadDevice(R"({
        "servicesBefore":[{"uuid":"180f","characteristics":[{"uuid":"2a19","flags":["read"],"value":"64"}]}],
        "dataService":{"flags":["write-without-response","indicate"],"cccd":false}})"),
             QString());
    Central central;
    QVERIFY(central.scanFor(kAddress));
    central.connectTo(kAddress);
    QVERIFY(central.waitFor(u"connected"_s));
    QVERIFY(central.discover(u"49535343-fe7d-4ae5-8fa9-9fafd205e455"_s,
                             u"49535343-1e4d-4bd9-ba61-23c647249616"_s));
    QCOMPARE(central.controller->services().size(), 5);
    QVERIFY(!central.data.clientCharacteristicConfiguration().isValid());
    QCOMPARE(central.data.properties(),
             QLowEnergyCharacteristic::WriteNoResponse | QLowEnergyCharacteristic::Indicate);
}

void TestBluez::badScenarios_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("text");
    QTest::newRow("no JSON") << QByteArray("{\n  \"devices\" [\n")
                             << u"line 2, column 13: missing name separator"_s;
    QTest::newRow("unknown key")
        << QByteArray(R"({"device":[]})")
        << u"device: unknown key; known keys are adapter, devices, disconnectDelay, recordTraffic, temporaryTimeout"_s;
    QTest::newRow("unknown step")
        << QByteArray(R"({"devices":[{},{"faults":[{"step":"x","kind":"late"}]}]})")
        << u"devices[1].faults[0].step: \"x\" is not one of connect, discover, details, "
           "subscribe, write, answer, notification, disconnect"_s;
    QTest::newRow("impossible")
        << QByteArray(R"({"devices":[{"faults":[{"step":"connect","kind":"wrongCrc"}]}]})")
        << u"devices[0].faults[0].kind: \"wrongCrc\" cannot happen at step \"connect\""_s;
    QTest::newRow("range") << QByteArray(R"({"devices":[{"mtu":22}]})")
                           << u"devices[0].mtu: 22 is not between 23 and 517"_s;
    QTest::newRow("same address") << QByteArray(
        R"({"devices":[{},{"address":"00:AA:01:01:00:01"}]})")
                                  << u"devices[1].address: 00:AA:01:01:00:01 is already taken"_s;
    QTest::newRow("setting") << QByteArray(R"({"devices":[{"configuration":{"cfgA":256}}]})")
                             << u"devices[0].configuration.cfgA: 256 is not between 0 and 255"_s;
    QTest::newRow("command") << QByteArray(R"({"devices":[{"responses":{"Foo":[]}}]})")
                             << u"devices[0].responses.Foo: unknown command \"Foo\""_s;
    QTest::newRow("hex")
        << QByteArray(R"({"devices":[{"responses":{"1":["0"]}}]})")
        << u"devices[0].responses.1[0]: expected bytes in hexadecimal, two digits each"_s;
}

void TestBluez::badScenarios()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    QCOMPARE(simulator->loadDevice(R"({"name":"Before"})"), QString());
    QCOMPARE(simulator->load(json), u"org.varda.Simulator.Error.BadScenario: "_s + text);
    QVERIFY(!simulator->state(kAddress).isEmpty());
}

void TestBluez::removedDevice()
{
    QCOMPARE(simulator->loadDevice("{}"), QString());
    Central central;
    QVERIFY(central.reach(kAddress));
    QCOMPARE(simulator->loadDevice(R"({"name":"Next"})"), QString());
    QVERIFY(central.waitFor(u"disconnected"_s));
    central.log.clear();
    QVERIFY(central.reach(kAddress));
    QCOMPARE(central.found.first().name(), u"Next"_s);
}

void TestBluez::controlErrors()
{
    QCOMPARE(simulator->loadDevice("{}"), QString());
    QCOMPARE(
        simulator->call(u"Drop"_s, {kOther}),
        u"org.varda.Simulator.Error.UnknownDevice: the scenario has no device 00:AA:01:01:00:02"_s);
    QCOMPARE(simulator->call(u"Drop"_s, {kAddress}),
             u"org.varda.Simulator.Error.NotConnected: 00:AA:01:01:00:01 is not connected"_s);
    QCOMPARE(
        simulator->call(u"Notify"_s, {kAddress, QByteArray("x")}),
        u"org.varda.Simulator.Error.NotSubscribed: nobody is subscribed to the data of 00:AA:01:01:00:01"_s);
}

QTEST_GUILESS_MAIN(TestBluez)

#include "tst_bluez.moc"
