// SPDX-License-Identifier: MIT
#include <QtCore/qpointer.h>
#include <QtCore/qtimer.h>
#include <QtTest/qsignalspy.h>

#include <memory>

#include <varda/bledevice.h>

#include "linktest.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kService = "49535343-fe7d-4ae5-8fa9-9fafd205e455"_L1;
constexpr auto kData = "49535343-1e4d-4bd9-ba61-23c647249616"_L1;

constexpr auto kMissing = "error Characteristics not found in service"_L1;

/** A link as it stands once its services are known. */
const QStringList kRoadToServices{u"deviceName Varda"_s, u"state Connecting"_s,
                                  u"state DiscoveringServices"_s, u"servicesDiscovered"_s};

QStringList roadToServices(const QStringList &then)
{
    return kRoadToServices + then;
}

} // namespace

class TestBleDevice : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void road();
    void beforeAnything();
    void servicesAndCharacteristics();
    void setupFails_data();
    void setupFails();
    void noServiceAtAll();
    void firstServiceStandsIn();
    void onlyTheFirstServiceStandsIn();
    void oneOfTwoCharacteristics();
    void uuidTexts_data();
    void uuidTexts();
    void twoCharacteristics();
    void laterCharacteristicWins();
    void descriptorValue_data();
    void descriptorValue();

    void cccdRefused();
    void cccdLate();
    void cccdSilent();
    void cccdTooLate();
    void secondAcknowledgement();
    void acknowledgementAfterAnError();
    void detailsOfNoService();
    void secondSetup();
    void secondSetupAtOnce();
    void secondSetupOfAnotherService();

    void write();
    void writeWithResponse();
    void writeRefused();
    void writeTooLong();
    void writeRaw();
    void writeRawBeforeDetails();
    void notifications();
    void everyCharacteristicIsHeard();

    void connectionRefused();
    void errorIsNotTheEnd();
    void unknownDevice();
    void adapterOff();
    void drop_data();
    void drop();
    void dropStopsTheWatchdog();
    void dropWhileConnected();
    void disconnectWhileConnecting();
    void deviceForgotten();

    void connectToAgain();
    void connectToWhileConnecting();
    void destructionDisconnects();
    void whatStays();
    void inside_data();
    void inside();
    void deletionInsideAnError_data();
    void deletionInsideAnError();
    void deletionInsideTheWatchdog();
    void insideANewConnection_data();
    void insideANewConnection();

private:
    /** Connects and sets up as a protocol does: from inside servicesDiscovered(). */
    void open(BleDevice &device, const QString &service = kService, const QString &notify = kData,
              const QString &write = kData)
    {
        m_log.watch(&device);
        connect(&device, &BleDevice::servicesDiscovered, this, [&device, service, notify, write] {
            device.setupCharacteristics(service, notify, write);
        });
        device.connectTo(knownDevice());
    }

    void openUntilConnected(BleDevice &device)
    {
        open(device);
        QVERIFY(m_log.await(u"connected"_s));
        m_log.take();
    }
};

void TestBleDevice::road()
{
    LOAD(Simulator::loadKnown());
    BleDevice device;
    open(device);
    QVERIFY(m_log.await(u"connected"_s));
    QVERIFY(device.isConnected());
    device.disconnect();
    QVERIFY(m_log.await(u"disconnected"_s));
    QVERIFY(!device.isConnected());
    QCOMPARE(m_log.entries(), roadToServices({u"state Connected"_s, u"connected"_s,
                                              u"state Disconnected"_s, u"disconnected"_s}));
    QCOMPARE(Simulator::record({u"Connect"_s, u"StartNotify"_s, u"write"_s, u"Disconnect"_s}),
             QStringList({u"Connect"_s, u"StartNotify "_s + kData, u"Disconnect"_s}));
}

void TestBleDevice::beforeAnything()
{
    BleDevice device;
    m_log.watch(&device);
    QCOMPARE(device.state(), BleDeviceState::Disconnected);
    QVERIFY(!device.isConnected());
    QCOMPARE(device.deviceName(), QString());
    QVERIFY(!device.lastDevice().isValid());
    QCOMPARE(device.mtu(), 0);
    QVERIFY(device.availableServices().isEmpty());
    QVERIFY(device.characteristicsForService(QBluetoothUuid(kService)).isEmpty());
    QVERIFY(!device.setupCharacteristics(kService, kData, kData));
    device.disconnect();
    QCOMPARE(m_log.take(), QStringList());

    QVERIFY(!device.write("1", QLowEnergyService::WriteWithoutResponse));
    QVERIFY(!device.writeRaw(kData, "1", QLowEnergyService::WriteWithoutResponse));
    QCOMPARE(m_log.entries(), QStringList({u"error Write failed: characteristic not ready"_s,
                                           u"error writeRaw failed: no service"_s}));
}

void TestBleDevice::servicesAndCharacteristics()
{
    LOAD(Simulator::loadKnown());
    BleDevice device;
    QList<QLowEnergyCharacteristic> early;
    m_log.react = [&](const QString &entry) {
        if (entry == u"servicesDiscovered"_s)
            early = device.characteristicsForService(QBluetoothUuid(kService));
    };
    open(device);
    QVERIFY(m_log.await(u"connected"_s));
    QVERIFY(early.isEmpty());
    const auto late = device.characteristicsForService(QBluetoothUuid(kService));
    QCOMPARE(late.size(), 1);
    QCOMPARE(late.first().uuid(), QBluetoothUuid(kData));
    QVERIFY(device.characteristicsForService(QBluetoothUuid(quint16(0x1234))).isEmpty());
    QCOMPARE(
        device.availableServices(),
        QList<QBluetoothUuid>({QBluetoothUuid(quint16(0x1800)), QBluetoothUuid(quint16(0x1801)),
                               QBluetoothUuid(quint16(0x180a)), QBluetoothUuid(kService)}));
}

void TestBleDevice::setupFails_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QString>("error");
    QTest::newRow("characteristic missing")
        << QByteArray(R"("dataService":{"characteristicPresent":false})") << QString(kMissing);
    QTest::newRow("service missing")
        << QByteArray(R"("dataService":{"present":false})") << QString(kMissing);
    QTest::newRow("no CCCD") << QByteArray(R"("dataService":{"cccd":false})")
                             << u"error CCCD descriptor not found"_s;
    QTest::newRow("neither notify nor indicate")
        << QByteArray(R"("dataService":{"flags":["read","write"]})")
        << u"error Characteristic supports neither Notify nor Indicate"_s;
}

void TestBleDevice::setupFails()
{
    QFETCH(const QByteArray, keys);
    QFETCH(const QString, error);

    LOAD(Simulator::loadKnown(keys));
    BleDevice device;
    open(device);
    QVERIFY(m_log.await(error));
    // The state is what it was, and the characteristic cannot be written to.
    QCOMPARE(device.state(), BleDeviceState::DiscoveringServices);
    if (error == kMissing)
        QVERIFY(!device.write("1", QLowEnergyService::WriteWithoutResponse));
    device.disconnect();
    QVERIFY(m_log.await(u"disconnected"_s));
    QStringList expected = roadToServices({error});
    if (error == kMissing)
        expected += u"error Write failed: characteristic not ready"_s;
    expected += {u"state Disconnected"_s, u"disconnected"_s};
    QCOMPARE(m_log.entries(), expected);
    QCOMPARE(Simulator::count(u"StartNotify"_s), 0);
}

void TestBleDevice::noServiceAtAll()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"discover","kind":"empty"}])"));
    BleDevice device;
    m_log.watch(&device);
    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"servicesDiscovered"_s));
    QVERIFY(device.availableServices().isEmpty());
    QVERIFY(!device.setupCharacteristics(kService, kData, kData));
    QCOMPARE(m_log.entries(), roadToServices({u"error No service found"_s}));
    QCOMPARE(device.state(), BleDeviceState::DiscoveringServices);
}

void TestBleDevice::firstServiceStandsIn()
{
    LOAD(Simulator::loadKnown(R"("dataService":{"uuid":"0001"})"));
    BleDevice device;
    open(device);
    QVERIFY(m_log.await(u"connected"_s));
    QCOMPARE(device.availableServices().first(), QBluetoothUuid(quint16(0x0001)));
    QCOMPARE(m_log.entries(), roadToServices({u"state Connected"_s, u"connected"_s}));
}

void TestBleDevice::onlyTheFirstServiceStandsIn()
{
    LOAD(Simulator::loadKnown(R"("dataService":{"uuid":"fff0"})"));
    BleDevice device;
    open(device);
    QVERIFY(m_log.await(kMissing));
    QCOMPARE(device.availableServices().last(), QBluetoothUuid(quint16(0xfff0)));
}

void TestBleDevice::oneOfTwoCharacteristics()
{
    LOAD(Simulator::loadKnown());
    BleDevice device;
    open(device, kService, kData, u"0000fff1-0000-1000-8000-00805f9b34fb"_s);
    QVERIFY(m_log.await(kMissing));
    QCOMPARE(Simulator::count(u"StartNotify"_s), 0);
}

void TestBleDevice::uuidTexts_data()
{
    QTest::addColumn<QString>("service");
    QTest::addColumn<QString>("characteristic");
    QTest::addColumn<bool>("works");
    const auto upper = [](QLatin1String text) { return QString(text).toUpper(); };
    const auto braced = [](QLatin1String text) { return u'{' + text + u'}'; };
    QTest::newRow("plain") << QString(kService) << QString(kData) << true;
    QTest::newRow("upper case") << upper(kService) << upper(kData) << true;
    QTest::newRow("service in braces") << braced(kService) << QString(kData) << true;
    QTest::newRow("characteristic in braces") << QString(kService) << braced(kData) << false;
    QTest::newRow("no UUID") << QString(kService) << u"data"_s << false;
}

void TestBleDevice::uuidTexts()
{
    QFETCH(const QString, service);
    QFETCH(const QString, characteristic);
    QFETCH(const bool, works);

    LOAD(Simulator::loadKnown());
    BleDevice device;
    open(device, service, characteristic, characteristic);
    QVERIFY(m_log.await(works ? u"connected"_s : QString(kMissing)));
}

void TestBleDevice::twoCharacteristics()
{
    LOAD(Simulator::loadKnown(R"("services":[{"uuid":"fff0","characteristics":[
        {"uuid":"fff1","flags":["write-without-response"]},
        {"uuid":"fff2","flags":["notify"],"role":"data"}]}])"));
    BleDevice device;
    open(device, u"0000fff0-0000-1000-8000-00805f9b34fb"_s,
         u"0000fff2-0000-1000-8000-00805f9b34fb"_s, u"0000fff1-0000-1000-8000-00805f9b34fb"_s);
    QVERIFY(m_log.await(u"connected"_s));
    QVERIFY(device.write("\x01\x02", QLowEnergyService::WriteWithoutResponse));
    Simulator::notify("\x03\x04");
    QVERIFY(m_log.await(u"notification 0304"_s));
    QCOMPARE(Simulator::record({u"StartNotify"_s, u"write"_s}),
             QStringList({u"StartNotify 0000fff2-0000-1000-8000-00805f9b34fb"_s,
                          u"write 0000fff1-0000-1000-8000-00805f9b34fb command 0102"_s}));
}

void TestBleDevice::laterCharacteristicWins()
{
    LOAD(Simulator::loadKnown(R"("services":[{"uuid":"fff0","characteristics":[
        {"uuid":"fff1","flags":["write"]},
        {"uuid":"fff1","flags":["write","notify"]}]}])"));
    BleDevice device;
    const auto both = u"0000fff1-0000-1000-8000-00805f9b34fb"_s;
    open(device, u"0000fff0-0000-1000-8000-00805f9b34fb"_s, both, both);
    QVERIFY(m_log.await(u"connected"_s));
    QCOMPARE(m_log.entries(), roadToServices({u"state Connected"_s, u"connected"_s}));
}

void TestBleDevice::descriptorValue_data()
{
    QTest::addColumn<QByteArray>("flags");
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("notify") << QByteArray(R"(["notify","write"])") << QByteArray("0100");
    QTest::newRow("indicate") << QByteArray(R"(["indicate","write"])") << QByteArray("0200");
    QTest::newRow("both") << QByteArray(R"(["indicate","notify","write"])") << QByteArray("0100");
}

void TestBleDevice::descriptorValue()
{
    QFETCH(const QByteArray, flags);
    QFETCH(const QByteArray, value);

    LOAD(Simulator::loadKnown(R"("dataService":{"flags":)" + flags + "}"));
    BleDevice device;
    QByteArray written;
    open(device);
    connect(&device, &BleDevice::servicesDiscovered, this, [&] {
        connect(device.findChild<QLowEnergyService *>(), &QLowEnergyService::descriptorWritten,
                this, [&](const QLowEnergyDescriptor &descriptor, const QByteArray &bytes) {
                    QCOMPARE(descriptor.uuid(), QBluetoothUuid(quint16(0x2902)));
                    written = bytes;
                });
    });
    QVERIFY(m_log.await(u"connected"_s));
    QTRY_COMPARE(written.toHex(), value);
    Simulator::notify("\x07");
    QVERIFY(m_log.await(u"notification 07"_s));
}

void TestBleDevice::cccdRefused()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"subscribe","kind":"refuse"}])"));
    BleDevice device;
    open(device);
    QVERIFY(m_log.await(u"error Service error: 3"_s));
    QCOMPARE(m_log.entries(), roadToServices({u"state Error"_s, u"error Service error: 3"_s}));
    QCOMPARE(device.state(), BleDeviceState::Error);
}

void TestBleDevice::cccdLate()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"subscribe","kind":"late","ms":700}])"));
    BleDevice device;
    open(device);
    QVERIFY(m_log.await(u"connected"_s));
    QCOMPARE(m_log.entries(), roadToServices({u"state Connected"_s, u"connected"_s}));
}

void TestBleDevice::cccdSilent()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"subscribe","kind":"silent"}])"));
    BleDevice device;
    bool returned = false;
    bool returnedBeforeError = false;
    qsizetype disconnectsBeforeError = 0;
    m_log.react = [&](const QString &entry) {
        if (entry == u"state Error"_s) {
            QMetaObject::invokeMethod(this, [&] { returned = true; }, Qt::QueuedConnection);
        } else if (entry.startsWith(u"error"_s)) {
            returnedBeforeError = returned;
            disconnectsBeforeError = Simulator::count(u"Disconnect"_s);
        }
    };
    open(device);
    QVERIFY(m_log.await(u"disconnected"_s));
    QCOMPARE(m_log.entries(),
             roadToServices({u"state Error"_s,
                             u"error Notifications activation timed out — peripheral not "
                             "responding"_s,
                             u"state Disconnected"_s, u"disconnected"_s}));
    QVERIFY(returnedBeforeError);
    QCOMPARE(disconnectsBeforeError, 1);
}

void TestBleDevice::cccdTooLate()
{
    LOAD(Simulator::loadScenario(R"({"disconnectDelay":1000,"devices":[{"known":true,
        "faults":[{"step":"subscribe","kind":"late","ms":2500}]}]})"));
    BleDevice device;
    open(device);
    QVERIFY(m_log.await(u"disconnected"_s));
    // Whatever comes of it while the link goes down, in the end the link is down.
    QCOMPARE(m_log.entries().mid(0, 6),
             roadToServices({u"state Error"_s,
                             u"error Notifications activation timed out — peripheral not "
                             "responding"_s}));
    QCOMPARE(m_log.entries().mid(m_log.entries().size() - 2),
             QStringList({u"state Disconnected"_s, u"disconnected"_s}));
}

void TestBleDevice::secondAcknowledgement()
{
    LOAD(Simulator::loadKnown());
    BleDevice device;
    openUntilConnected(device);
    QVERIFY(QMetaObject::invokeMethod(&device, "onDescriptorWritten",
                                      Q_ARG(QLowEnergyDescriptor, QLowEnergyDescriptor()),
                                      Q_ARG(QByteArray, QByteArray("\x01\x00", 2))));
    QCOMPARE(m_log.entries(), QStringList());
}

void TestBleDevice::acknowledgementAfterAnError()
{
    BleDevice device;
    m_log.watch(&device);
    QVERIFY(QMetaObject::invokeMethod(
        &device, "onControllerError",
        Q_ARG(QLowEnergyController::Error, QLowEnergyController::NetworkError)));
    QVERIFY(QMetaObject::invokeMethod(
        &device, "onServiceError",
        Q_ARG(QLowEnergyService::ServiceError, QLowEnergyService::OperationError)));
    QVERIFY(QMetaObject::invokeMethod(&device, "onDescriptorWritten",
                                      Q_ARG(QLowEnergyDescriptor, QLowEnergyDescriptor()),
                                      Q_ARG(QByteArray, QByteArray("\x01\x00", 2))));
    // Without a controller its error has no text; without a service its error is not told.
    QCOMPARE(m_log.entries(), QStringList({u"state Error"_s, u"error Controller error: "_s,
                                           u"state Connected"_s, u"connected"_s}));
}

void TestBleDevice::detailsOfNoService()
{
    BleDevice device;
    m_log.watch(&device);
    QVERIFY(QMetaObject::invokeMethod(
        &device, "onServiceStateChanged",
        Q_ARG(QLowEnergyService::ServiceState, QLowEnergyService::RemoteServiceDiscovered)));
    QCOMPARE(m_log.entries(), QStringList());
}

void TestBleDevice::secondSetup()
{
    LOAD(Simulator::loadKnown());
    BleDevice device;
    openUntilConnected(device);
    const QPointer<QLowEnergyService> first(device.findChild<QLowEnergyService *>());
    QVERIFY(device.setupCharacteristics(kService, kData, kData));
    QVERIFY(!first);
    QCOMPARE(device.findChildren<QLowEnergyService *>().size(), 1);
    // It can be used as before, and what comes is not told twice.
    QVERIFY(device.write("\x09", QLowEnergyService::WriteWithResponse));
    QVERIFY(m_log.await(u"writeCompleted"_s));
    Simulator::notify("\x01");
    Simulator::notify("\x02");
    QVERIFY(m_log.await(u"notification 02"_s));
    QCOMPARE(m_log.entries(),
             QStringList({u"writeCompleted"_s, u"notification 01"_s, u"notification 02"_s}));
}

void TestBleDevice::secondSetupAtOnce()
{
    LOAD(Simulator::loadKnown());
    BleDevice device;
    connect(&device, &BleDevice::servicesDiscovered, this,
            [&] { QVERIFY(device.setupCharacteristics(kService, kData, kData)); });
    open(device);
    QVERIFY(m_log.await(u"connected"_s));
    QCOMPARE(m_log.entries(), roadToServices({u"state Connected"_s, u"connected"_s}));
    QCOMPARE(Simulator::count(u"StartNotify"_s), 1);
}

void TestBleDevice::secondSetupOfAnotherService()
{
    LOAD(Simulator::loadKnown());
    BleDevice device;
    openUntilConnected(device);
    QVERIFY(device.setupCharacteristics(u"0000180a-0000-1000-8000-00805f9b34fb"_s, kData, kData));
    QVERIFY(m_log.await(kMissing));
    // The characteristics of before stay, though what they say is not heard any more.
    Simulator::notify("\x01");
    Simulator::drop();
    QVERIFY(m_log.await(u"disconnected"_s));
    QCOMPARE(m_log.entries(),
             QStringList({QString(kMissing), u"state Disconnected"_s, u"disconnected"_s}));
}

void TestBleDevice::write()
{
    LOAD(Simulator::loadKnown());
    BleDevice device;
    openUntilConnected(device);
    QVERIFY(device.write("\x01\x02\x03", QLowEnergyService::WriteWithoutResponse));
    QTRY_COMPARE(Simulator::record({u"write"_s}),
                 QStringList(u"write %1 command 010203"_s.arg(kData)));
}

void TestBleDevice::writeWithResponse()
{
    LOAD(Simulator::loadKnown());
    BleDevice device;
    openUntilConnected(device);
    QVERIFY(device.write("\x01", QLowEnergyService::WriteWithoutResponse));
    QVERIFY(device.write("\x02", QLowEnergyService::WriteWithResponse));
    QVERIFY(m_log.await(u"writeCompleted"_s));
    QCOMPARE(m_log.entries(), QStringList(u"writeCompleted"_s));
    QCOMPARE(Simulator::record({u"write"_s}), QStringList({u"write %1 command 01"_s.arg(kData),
                                                           u"write %1 request 02"_s.arg(kData)}));
}

void TestBleDevice::writeRefused()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"write","kind":"refuse"}])"));
    BleDevice device;
    openUntilConnected(device);
    QVERIFY(device.write("\x01", QLowEnergyService::WriteWithResponse));
    QVERIFY(m_log.await(u"error Service error: 2"_s));
    QCOMPARE(m_log.entries(), QStringList({u"state Error"_s, u"error Service error: 2"_s}));
}

void TestBleDevice::writeTooLong()
{
    LOAD(Simulator::loadKnown(R"("mtu":23)"));
    BleDevice device;
    openUntilConnected(device);
    QVERIFY(device.write(QByteArray(20, 'a'), QLowEnergyService::WriteWithoutResponse));
    QVERIFY(device.write(QByteArray(21, 'b'), QLowEnergyService::WriteWithoutResponse));
    QVERIFY(m_log.await(u"error Service error: 2"_s));
    QCOMPARE(Simulator::frames(), QStringList(u"61"_s.repeated(20)));
}

void TestBleDevice::writeRaw()
{
    LOAD(Simulator::loadKnown(R"("mode":"sps")"));
    BleDevice device;
    m_log.watch(&device);
    const auto fifo = u"2456e1b9-26e2-8f83-e744-f34f01e9d703"_s;
    const auto credits = u"2456e1b9-26e2-8f83-e744-f34f01e9d704"_s;
    connect(&device, &BleDevice::servicesDiscovered, this, [&] {
        device.setupCharacteristics(u"2456e1b9-26e2-8f83-e744-f34f01e9d701"_s, fifo, fifo);
    });
    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"connected"_s));
    m_log.take();

    QVERIFY(device.writeRaw(credits, "\x10", QLowEnergyService::WriteWithoutResponse));
    QVERIFY(!device.writeRaw(kData, "\x11", QLowEnergyService::WriteWithoutResponse));
    QVERIFY(!device.writeRaw(u"nonsense"_s, "\x12", QLowEnergyService::WriteWithoutResponse));
    QVERIFY(device.write("\x13", QLowEnergyService::WriteWithResponse));
    QVERIFY(m_log.await(u"writeCompleted"_s));
    QCOMPARE(m_log.entries(),
             QStringList({u"error writeRaw failed: characteristic not found — "_s + kData,
                          u"error writeRaw failed: characteristic not found — nonsense"_s,
                          u"writeCompleted"_s}));
    QCOMPARE(Simulator::record({u"write"_s}), QStringList({u"write %1 command 10"_s.arg(credits),
                                                           u"write %1 request 13"_s.arg(fifo)}));
}

void TestBleDevice::writeRawBeforeDetails()
{
    LOAD(Simulator::loadKnown());
    BleDevice device;
    m_log.watch(&device);
    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"servicesDiscovered"_s));
    m_log.take();
    QVERIFY(!device.writeRaw(kData, "1", QLowEnergyService::WriteWithoutResponse));
    QVERIFY(device.setupCharacteristics(kService, kData, kData));
    QVERIFY(!device.write("1", QLowEnergyService::WriteWithoutResponse));
    QCOMPARE(m_log.take(), QStringList({u"error writeRaw failed: no service"_s,
                                        u"error Write failed: characteristic not ready"_s}));
}

void TestBleDevice::notifications()
{
    LOAD(Simulator::loadKnown(R"("mtu":23)"));
    BleDevice device;
    openUntilConnected(device);
    Simulator::notify("\x01\x02");
    Simulator::notify("");
    Simulator::notify(QByteArray(40, 'a'));
    Simulator::notify("\x01\x02");
    QVERIFY(m_log.await(u"notification 0102"_s, 2));
    QCOMPARE(m_log.entries(),
             QStringList({u"notification 0102"_s, u"notification "_s + u"61"_s.repeated(20),
                          u"notification 0102"_s}));
}

void TestBleDevice::everyCharacteristicIsHeard()
{
    BleDevice device;
    m_log.watch(&device);
    for (const auto *bytes : {"\x01", "", "\x02"}) {
        QVERIFY(
            QMetaObject::invokeMethod(&device, "onCharacteristicChanged",
                                      Q_ARG(QLowEnergyCharacteristic, QLowEnergyCharacteristic()),
                                      Q_ARG(QByteArray, QByteArray(bytes))));
    }
    QCOMPARE(m_log.entries(), QStringList({u"notification 01"_s, u"notification 02"_s}));
}

void TestBleDevice::connectionRefused()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"connect","kind":"refuse"}])"));
    BleDevice device;
    open(device);
    QVERIFY(m_log.await(u"error Controller error: Unknown Error"_s));
    Simulator::settle();
    QCOMPARE(m_log.entries(),
             QStringList({u"deviceName Varda"_s, u"state Connecting"_s, u"state Error"_s,
                          u"error Controller error: Unknown Error"_s}));
}

void TestBleDevice::errorIsNotTheEnd()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"connect","kind":"refuse","nth":1}])"));
    BleDevice device;
    open(device);
    QVERIFY(m_log.await(u"state Error"_s));
    m_log.take();
    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"connected"_s));
    QCOMPARE(m_log.entries(),
             QStringList({u"state Disconnected"_s, u"deviceName Varda"_s, u"state Connecting"_s,
                          u"state DiscoveringServices"_s, u"servicesDiscovered"_s,
                          u"state Connected"_s, u"connected"_s}));
}

void TestBleDevice::unknownDevice()
{
    LOAD(Simulator::loadScenario("{}"));
    BleDevice device;
    open(device);
    QCOMPARE(m_log.entries(),
             QStringList({u"deviceName Varda"_s, u"state Connecting"_s, u"state Error"_s,
                          u"error Controller error: Remote device cannot be found"_s}));
    QCOMPARE(device.lastDevice().address(), QString::fromLatin1(kAddress));
}

void TestBleDevice::adapterOff()
{
    LOAD(Simulator::loadScenario(R"({"adapter":{"powered":false},"devices":[{"known":true}]})"));
    BleDevice device;
    open(device);
    QCOMPARE(m_log.entries(),
             QStringList({u"deviceName Varda"_s, u"state Connecting"_s, u"state Error"_s,
                          u"error Controller error: Error occurred trying to connect to remote "
                          "device."_s}));
}

void TestBleDevice::drop_data()
{
    QTest::addColumn<QByteArray>("step");
    QTest::addColumn<QStringList>("entries");
    QTest::newRow("connecting")
        << QByteArray("connect")
        << QStringList({u"deviceName Varda"_s, u"state Connecting"_s, u"state Error"_s,
                        u"error Controller error: Error occurred trying to connect to remote "
                        "device."_s});
    QTest::newRow("discovering") << QByteArray("discover")
                                 << roadToServices({u"state Disconnected"_s, u"disconnected"_s});
    QTest::newRow("details") << QByteArray("details")
                             << roadToServices({u"state Disconnected"_s, u"disconnected"_s});
    QTest::newRow("subscribing") << QByteArray("subscribe")
                                 << roadToServices({u"state Disconnected"_s, u"disconnected"_s});
}

void TestBleDevice::drop()
{
    QFETCH(const QByteArray, step);
    QFETCH(const QStringList, entries);

    LOAD(Simulator::loadKnown(R"("faults":[{"step":")" + step + R"(","kind":"drop","nth":1}])"));
    BleDevice device;
    open(device);
    QVERIFY(m_log.await(entries.last()));
    Simulator::settle();
    QCOMPARE(m_log.take(), entries);

    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"connected"_s));
}

void TestBleDevice::dropStopsTheWatchdog()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"subscribe","kind":"drop"}])"));
    BleDevice device;
    open(device);
    QVERIFY(m_log.await(u"disconnected"_s));
    m_log.take();
    // It was started before this one, which takes longer.
    QTimer later;
    later.setSingleShot(true);
    QSignalSpy spy(&later, &QTimer::timeout);
    later.start(BleDevice::kNotificationsWatchdogMs + 200);
    QVERIFY(spy.wait());
    QCOMPARE(m_log.entries(), QStringList());
}

void TestBleDevice::dropWhileConnected()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"write","kind":"drop"}])"));
    BleDevice device;
    openUntilConnected(device);
    QVERIFY(device.write("\x01", QLowEnergyService::WriteWithoutResponse));
    QVERIFY(m_log.await(u"disconnected"_s));
    QCOMPARE(m_log.entries(), QStringList({u"state Disconnected"_s, u"disconnected"_s}));
    // The objects of the old link are still there, and harmless.
    device.write("\x02", QLowEnergyService::WriteWithoutResponse);
    device.writeRaw(kData, "\x03", QLowEnergyService::WriteWithoutResponse);
    device.disconnect();
    Simulator::settle();
    QCOMPARE(device.state() == BleDeviceState::Connected, false);
    QCOMPARE(Simulator::count(u"write"_s), 1);
}

void TestBleDevice::disconnectWhileConnecting()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"connect","kind":"silent"}])"));
    BleDevice device;
    open(device);
    QTRY_COMPARE(Simulator::count(u"Connect"_s), 1);
    device.disconnect();
    QTRY_COMPARE(Simulator::count(u"Disconnect"_s), 1);
    Simulator::settle();
    QCOMPARE(m_log.entries().first(2), QStringList({u"deviceName Varda"_s, u"state Connecting"_s}));
    QVERIFY(device.state() != BleDeviceState::Connecting);
}

void TestBleDevice::deviceForgotten()
{
    LOAD(Simulator::loadKnown());
    BleDevice device;
    openUntilConnected(device);
    Simulator::removeAdapter();
    QVERIFY(m_log.await(u"disconnected"_s));
    QCOMPARE(m_log.entries().last(), u"disconnected"_s);
    QCOMPARE(device.state(), BleDeviceState::Disconnected);
}

void TestBleDevice::connectToAgain()
{
    LOAD(Simulator::loadKnown());
    BleDevice device;
    openUntilConnected(device);
    device.connectTo(knownDevice());
    QVERIFY(m_log.await(u"connected"_s));
    QCOMPARE(m_log.entries(),
             QStringList({u"state Disconnected"_s, u"deviceName Varda"_s, u"state Connecting"_s,
                          u"state DiscoveringServices"_s, u"servicesDiscovered"_s,
                          u"state Connected"_s, u"connected"_s}));
    QCOMPARE(Simulator::record({u"connected"_s, u"disconnected"_s}),
             QStringList({u"connected"_s, u"disconnected"_s, u"connected"_s}));
}

void TestBleDevice::connectToWhileConnecting()
{
    LOAD(Simulator::loadScenario(
        R"({"devices":[{"known":true},{"known":true,"model":"tidemar"}]})"));
    BleDevice device;
    open(device);
    device.connectTo(BleDeviceInfo::fromAddress(u"00:AA:01:01:00:02"_s, u"Tidemar"_s));
    QVERIFY(m_log.await(u"connected"_s));
    QCOMPARE(
        m_log.entries(),
        QStringList({u"deviceName Varda"_s, u"state Connecting"_s, u"state Disconnected"_s,
                     u"deviceName Tidemar"_s, u"state Connecting"_s, u"state DiscoveringServices"_s,
                     u"servicesDiscovered"_s, u"state Connected"_s, u"connected"_s}));
    QTRY_COMPARE(Simulator::state()["connected"_L1].toBool(), false);
    QCOMPARE(Simulator::state("00:AA:01:01:00:02")["connected"_L1].toBool(), true);
}

void TestBleDevice::destructionDisconnects()
{
    LOAD(Simulator::loadKnown());
    {
        BleDevice device;
        openUntilConnected(device);
    }
    QTRY_COMPARE(Simulator::state()["connected"_L1].toBool(), false);
    QCOMPARE(m_log.entries(), QStringList(u"state Disconnected"_s));
}

void TestBleDevice::whatStays()
{
    LOAD(Simulator::loadKnown());
    BleDevice device;
    openUntilConnected(device);
    device.disconnect();
    QVERIFY(m_log.await(u"disconnected"_s));
    QCOMPARE(device.deviceName(), u"Varda"_s);
    QCOMPARE(device.lastDevice().address(), QString::fromLatin1(kAddress));
    QCOMPARE(device.property("deviceName").toString(), u"Varda"_s);
    QCOMPARE(device.property("state").value<BleDeviceState::BleDeviceStateIn>(),
             BleDeviceState::Disconnected);
}

void TestBleDevice::inside_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("deed");
    for (const auto *deed : {"delete", "disconnect", "connectTo"}) {
        for (const auto *entry :
             {"deviceName Varda", "state Connecting", "state DiscoveringServices",
              "servicesDiscovered", "state Connected", "connected", "notification 01",
              "writeCompleted", "state Disconnected", "disconnected"})
            QTest::addRow("%s in %s", deed, entry)
                << QString::fromLatin1(entry) << QString::fromLatin1(deed);
    }
}

// An application may do anything from inside any signal.
void TestBleDevice::inside()
{
    QFETCH(const QString, entry);
    QFETCH(const QString, deed);

    LOAD(Simulator::loadKnown());
    auto device = std::make_unique<BleDevice>();
    QStringList rest;
    bool done = false;
    m_log.react = [&](const QString &each) {
        if (done)
            rest.append(each);
        if (each == entry && !done) {
            done = true;
            if (deed == u"delete"_s)
                device.reset();
            else if (deed == u"disconnect"_s)
                device->disconnect();
            else
                device->connectTo(knownDevice());
        } else if (!done && each == u"connected"_s) {
            device->write("\x01", QLowEnergyService::WriteWithResponse);
        } else if (!done && each == u"writeCompleted"_s) {
            Simulator::notify("\x01");
        } else if (!done && each == u"notification 01"_s) {
            Simulator::drop();
        }
    };
    open(*device);
    QTRY_VERIFY_WITH_TIMEOUT(done, 20'000);

    const bool isDown = entry == u"deviceName Varda"_s || entry.endsWith(u"isconnected"_s);
    const bool withController = entry != u"deviceName Varda"_s && entry != u"state Connecting"_s;
    if (deed == u"connectTo"_s || (deed == u"disconnect"_s && !withController)) {
        // The last attempt comes to its end as if nothing had been before it, and so does one
        // that there was nothing yet to disconnect of.
        QVERIFY(m_log.await(u"connected"_s));
        QTRY_VERIFY_WITH_TIMEOUT(device->isConnected(), 20'000);
    } else {
        QTRY_VERIFY_WITH_TIMEOUT(!Simulator::state()["connected"_L1].toBool(), 20'000);
        Simulator::settle();
        if (deed == u"delete"_s)
            QCOMPARE(rest, isDown ? QStringList() : QStringList(u"state Disconnected"_s));
        else if (entry == u"disconnected"_s)
            QCOMPARE(rest, QStringList());
        else
            QCOMPARE(rest.last(), u"disconnected"_s);
    }
    m_log.react = nullptr;
}

void TestBleDevice::deletionInsideAnError_data()
{
    QTest::addColumn<QByteArray>("step");
    QTest::addColumn<QByteArray>("kind");
    QTest::newRow("controller") << QByteArray("connect") << QByteArray("refuse");
    QTest::newRow("service") << QByteArray("subscribe") << QByteArray("refuse");
    QTest::newRow("watchdog") << QByteArray("subscribe") << QByteArray("silent");
}

void TestBleDevice::deletionInsideAnError()
{
    QFETCH(const QByteArray, step);
    QFETCH(const QByteArray, kind);

    LOAD(Simulator::loadKnown(R"("faults":[{"step":")" + step + R"(","kind":")" + kind + R"("}])"));
    auto device = std::make_unique<BleDevice>();
    m_log.react = [&](const QString &entry) {
        if (entry == u"state Error"_s)
            device.reset();
    };
    open(*device);
    QTRY_VERIFY_WITH_TIMEOUT(!device, 20'000);
    QTRY_VERIFY_WITH_TIMEOUT(!Simulator::state()["connected"_L1].toBool(), 20'000);
    Simulator::settle();
    // What the destruction itself tells comes last.
    QCOMPARE(m_log.entries().mid(m_log.entries().size() - 2),
             QStringList({u"state Error"_s, u"state Disconnected"_s}));
    m_log.react = nullptr;
}

// Qt's controller is no secret: an application may hear from it that the link is being closed.
void TestBleDevice::deletionInsideTheWatchdog()
{
    LOAD(Simulator::loadKnown(R"("faults":[{"step":"subscribe","kind":"silent"}])"));
    auto device = std::make_unique<BleDevice>();
    open(*device);
    connect(device->findChild<QLowEnergyController *>(), &QLowEnergyController::stateChanged, this,
            [&](QLowEnergyController::ControllerState state) {
                if (state == QLowEnergyController::ClosingState)
                    device.reset();
            });
    QTRY_VERIFY_WITH_TIMEOUT(!device, 20'000);
    QTRY_VERIFY_WITH_TIMEOUT(!Simulator::state()["connected"_L1].toBool(), 20'000);
    Simulator::settle();
    QCOMPARE(m_log.entries(), roadToServices({u"state Error"_s, u"state Disconnected"_s}));
}

void TestBleDevice::insideANewConnection_data()
{
    QTest::addColumn<bool>("deletes");
    QTest::newRow("deletion") << true;
    QTest::newRow("connection") << false;
}

// A new connection begins with the end of the old one, and somebody may hear of that.
void TestBleDevice::insideANewConnection()
{
    QFETCH(const bool, deletes);

    LOAD(Simulator::loadScenario(
        R"({"devices":[{"known":true},{"known":true,"model":"tidemar"}]})"));
    auto device = std::make_unique<BleDevice>();
    openUntilConnected(*device);
    bool done = false;
    m_log.react = [&](const QString &entry) {
        if (done || entry != u"state Disconnected"_s)
            return;
        done = true;
        if (deletes)
            device.reset();
        else
            device->connectTo(BleDeviceInfo::fromAddress(u"00:AA:01:01:00:02"_s, u"Tidemar"_s));
    };
    device->connectTo(knownDevice());
    if (deletes) {
        QCOMPARE(m_log.entries(), QStringList(u"state Disconnected"_s));
    } else {
        QVERIFY(m_log.await(u"connected"_s));
        QCOMPARE(device->deviceName(), u"Tidemar"_s);
        QCOMPARE(Simulator::state("00:AA:01:01:00:02")["connected"_L1].toBool(), true);
    }
    QTRY_COMPARE(Simulator::state()["connected"_L1].toBool(), false);
    QCOMPARE(Simulator::count(u"Connect"_s), deletes ? 1 : 2);
    m_log.react = nullptr;
}

QTEST_GUILESS_MAIN(TestBleDevice)
#include "tst_bledevice.moc"
