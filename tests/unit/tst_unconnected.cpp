// SPDX-License-Identifier: MIT
#include <QtTest/qsignalspy.h>
#include <QtTest/qtest.h>

#include <memory>

#include <varda/bledevice.h>
#include <varda/blescanner.h>
#include <varda/vardableprotocol.h>
#include <varda/vardasession.h>

using namespace Qt::StringLiterals;

// What the objects are and do before there is any link.
class TestUnconnected : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void deviceInfo();
    void deviceInfoFromAddress_data();
    void deviceInfoFromAddress();
    void scanner();
    void device();
    void deviceWrites();
    void protocol();
    void protocolReady_data();
    void protocolReady();
    void protocolGoneInsideCredits();
    void session();
    void sessionConnects();
    void sessionJobs();
    void sessionServices();
    void sessionTimeout();
    void sessionUpload();
};

void TestUnconnected::deviceInfo()
{
    const BleDeviceInfo none;
    QVERIFY(!none.isValid());
    QCOMPARE(none.address(), QString());
    QCOMPARE(none.name(), QString());
    QCOMPARE(none.rssi(), 0);
    QVERIFY(!none.deviceInfo().isValid());

    QBluetoothDeviceInfo found(QBluetoothAddress(u"00:1a:7d:da:71:0f"_s), u"Tidemar"_s, 0);
    found.setRssi(-67);
    const BleDeviceInfo info(found);
    QVERIFY(info.isValid());
    QCOMPARE(info.address(), u"00:1A:7D:DA:71:0F"_s);
    QCOMPARE(info.name(), u"Tidemar"_s);
    QCOMPARE(info.rssi(), -67);
    QCOMPARE(info.deviceInfo(), found);

    BleDeviceInfo copy(info);
    copy = BleDeviceInfo();
    QVERIFY(!copy.isValid());
    QVERIFY(info.isValid());
}

void TestUnconnected::deviceInfoFromAddress_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("address");

    QTest::newRow("normal") << u"00:1A:7D:DA:71:0F"_s << u"VSK-1"_s << u"00:1A:7D:DA:71:0F"_s;
    QTest::newRow("lower case") << u"00:1a:7d:da:71:0f"_s << u"VSK-1"_s << u"00:1A:7D:DA:71:0F"_s;
    QTest::newRow("no name") << u"00:1A:7D:DA:71:0F"_s << QString() << u"00:1A:7D:DA:71:0F"_s;
    QTest::newRow("no address") << u"somewhere"_s << u"VSK-1"_s << u"00:00:00:00:00:00"_s;
}

void TestUnconnected::deviceInfoFromAddress()
{
    QFETCH(const QString, text);
    QFETCH(const QString, name);
    const BleDeviceInfo info = BleDeviceInfo::fromAddress(text, name);
    QTEST(info.address(), "address");
    QTEST(info.deviceInfo().address().toString(), "address");
    QCOMPARE(info.name(), name);
    QCOMPARE(info.deviceInfo().name(), name);
    QCOMPARE(info.rssi(), 0);
    QVERIFY(info.isValid());
    QCOMPARE(int(info.deviceInfo().majorDeviceClass()), 0);
}

void TestUnconnected::scanner()
{
    BleScanner scanner;
    QVERIFY(!scanner.isScanning());
    QCOMPARE(scanner.deviceCount(), 0);
    QVERIFY(scanner.devices().isEmpty());
    for (const int index : {-1, 0, 1, 1000})
        QVERIFY(!scanner.deviceAt(index).isValid());

    const QSignalSpy finished(&scanner, &BleScanner::scanFinished);
    const QSignalSpy changed(&scanner, &BleScanner::devicesChanged);
    scanner.stopScan();
    QCOMPARE(finished.count(), 0);
    scanner.clearDevices();
    scanner.clearDevices();
    QCOMPARE(changed.count(), 2);
}

void TestUnconnected::device()
{
    BleDevice device;
    const QSignalSpy error(&device, &BleDevice::error);
    const QSignalSpy stateChanged(&device, &BleDevice::stateChanged);
    const QSignalSpy disconnected(&device, &BleDevice::disconnected);
    QCOMPARE(device.state(), BleDeviceState::Disconnected);
    QCOMPARE(device.deviceName(), QString());
    QVERIFY(!device.isConnected());
    QVERIFY(!device.lastDevice().isValid());
    QCOMPARE(device.mtu(), 0);
    QVERIFY(device.availableServices().isEmpty());
    QVERIFY(device.characteristicsForService(QBluetoothUuid(quint16(0x180A))).isEmpty());
    QVERIFY(!device.setupCharacteristics(u"180a"_s, u"a"_s, u"b"_s));
    device.disconnect();
    QCOMPARE(error.count() + stateChanged.count() + disconnected.count(), 0);
}

void TestUnconnected::deviceWrites()
{
    BleDevice device;
    QSignalSpy error(&device, &BleDevice::error);
    QVERIFY(!device.write("x", QLowEnergyService::WriteWithoutResponse));
    QCOMPARE(error.takeFirst().at(0).toString(), u"Write failed: characteristic not ready"_s);
    QVERIFY(!device.writeRaw(u"2456e1b9-26e2-8f83-e744-f34f01e9d704"_s, "x",
                             QLowEnergyService::WriteWithoutResponse));
    QCOMPARE(error.takeFirst().at(0).toString(), u"writeRaw failed: no service"_s);
    QVERIFY(error.isEmpty());
    QCOMPARE(device.state(), BleDeviceState::Disconnected);
}

void TestUnconnected::protocol()
{
    BleDevice device;
    const QSignalSpy error(&device, &BleDevice::error);
    for (const BleMode mode : {BleMode::Gatt, BleMode::Sps}) {
        VardaBleProtocol protocol(&device, mode);
        QCOMPARE(protocol.frameSize(), 128);
        QVERIFY(!protocol.setupCharacteristics());
        QCOMPARE(error.count(), int(mode));
        QVERIFY(!protocol.sendCommand(BleCommand(TidemarCommand::Identification)));
        QCOMPARE(error.count(), int(mode) + 1);
    }
}

void TestUnconnected::protocolReady_data()
{
    QTest::addColumn<bool>("link");
    QTest::addColumn<BleMode>("mode");
    QTest::addColumn<QStringList>("errors");
    QTest::newRow("no link, Gatt") << false << BleMode::Gatt << QStringList();
    QTest::newRow("no link, Sps") << false << BleMode::Sps << QStringList();
    QTest::newRow("Gatt") << true << BleMode::Gatt << QStringList();
    QTest::newRow("Sps") << true << BleMode::Sps << QStringList(u"writeRaw failed: no service"_s);
}

// It asks a link for nothing that has to be there.
void TestUnconnected::protocolReady()
{
    QFETCH(const bool, link);
    QFETCH(const BleMode, mode);
    QFETCH(const QStringList, errors);

    BleDevice device;
    QStringList told;
    connect(&device, &BleDevice::error, this, [&](const QString &text) { told.append(text); });
    VardaBleProtocol protocol(link ? &device : nullptr, mode);
    QSignalSpy ready(&protocol, &VardaBleProtocol::ready);
    QVERIFY(QMetaObject::invokeMethod(&protocol, "onBleConnected"));
    QCOMPARE(told, errors);
    QCOMPARE(ready.count(), 0);
    QVERIFY(ready.wait());
    QCOMPARE(protocol.frameSize(), 128);
}

void TestUnconnected::protocolGoneInsideCredits()
{
    BleDevice device;
    auto protocol = std::make_unique<VardaBleProtocol>(&device, BleMode::Sps);
    connect(&device, &BleDevice::error, this, [&] { protocol.reset(); });
    Q_EMIT device.connected();
    QVERIFY(!protocol);
}

void TestUnconnected::session()
{
    const VardaSession session;
    QVERIFY(!session.isConnected());
    QVERIFY(!session.qmlConnected());
    QCOMPARE(session.message(), QString());
    QCOMPARE(session.qmlGetMessage(), QString());
    QVERIFY(!session.lastDevice().isValid());
    QCOMPARE(session.computerModelStr(), u"Unknown"_s);
    QCOMPARE(session.qmlComputerModel(), u"Unknown"_s);
    QCOMPARE(session.qmlCurrentMode(), u"Unknown"_s);
    QCOMPARE(session.computerModel(), ComputerModel::Unknown);
    QCOMPARE(session.currentMode(), CurrentMode::Unknown);
    QCOMPARE(session.qmlGetSerialNumber(), QString());
    QCOMPARE(session.qmlGetFirmwareVersionStr(), QString());
    QCOMPARE(session.qmlGetOwner(), QString());
    QCOMPARE(session.qmlControllerError(QLowEnergyController::NetworkError), u"Network Error"_s);
    QVERIFY(!session.diveHeader(0));
    QVERIFY(session.diveHeaders().isEmpty());
    QVERIFY(session.layouts().isEmpty());
    QCOMPARE(session.activeLayouts(), (std::array<int8_t, 5>{-1, -1, -1, -1, -1}));
    QVERIFY(session.layoutBlob().isEmpty());
    QVERIFY(!session.layoutCommandSuccess());
    QVERIFY(!session.lastEraseFlashSuccess());
    QCOMPARE(session.deleteResult().resultA, 0U);
    QCOMPARE(session.deleteResult().resultB, 0U);
    QCOMPARE(qint64(session.uploadElapsed().count()), qint64(0));
}

void TestUnconnected::sessionConnects()
{
    VardaSession session;
    QSignalSpy status(&session, &VardaSession::connectControllerStatus);
    const QSignalSpy messages(&session, &VardaSession::messageChanged);
    const QSignalSpy disconnected(&session, &VardaSession::disconnectController);
    session.controllerConnect();
    QCOMPARE(status.count(), 1);
    QCOMPARE(status.at(0).at(0).toInt(), int(ConnectControllerStatus::NoController));
    session.controllerDisconnect();
    session.controllerDisConnect();
    QCOMPARE(messages.count(), 0);
    QCOMPARE(disconnected.count(), 0);
}

void TestUnconnected::sessionJobs()
{
    VardaSession session;
    const QSignalSpy ended(&session, &VardaSession::endCommand);
    const QSignalSpy failed(&session, &VardaSession::exchangeError);
    const QSignalSpy messages(&session, &VardaSession::messageChanged);
    session.startCommand(TidemarCommand::Identification);
    session.startGetLogbook({1, 2});
    session.qmlStartGetLogbook({1, 2});
    session.startGetDiveSamples(1);
    QVERIFY(!session.startSetPressure(1013));
    QVERIFY(!session.startSetPressure(1013));
    session.startSetTime();
    session.setOwner(u"Jean"_s);
    session.startGetGases(0);
    session.startMarloSettings({});
    session.startSuperUserMode(true);
    session.startLayoutList();
    session.startLayoutGet(0);
    session.startLayoutAdd("layout");
    session.startLayoutRemove(0);
    session.startLayoutRemoveAll();
    session.startLayoutActiveGet();
    session.startLayoutActiveSet(0, -1);
    session.startGetBatteryInformation();
    session.stopJob();
    QCoreApplication::processEvents();
    QCOMPARE(ended.count() + failed.count() + messages.count(), 0);
    QCOMPARE(session.owner(), QString());
}

// What a link tells that nobody knows of.
void TestUnconnected::sessionServices()
{
    VardaSession session;
    QSignalSpy status(&session, &VardaSession::connectControllerStatus);
    QVERIFY(QMetaObject::invokeMethod(&session, "onBleServicesDiscovered"));
    QCOMPARE(session.message(), u"Service not found"_s);
    QCOMPARE(status.count(), 1);
    QCOMPARE(status.at(0).at(0).toInt(), int(ConnectControllerStatus::NoService));
    QVERIFY(!session.isConnected());
    session.controllerConnect();
    QCOMPARE(status.count(), 2);
    QCOMPARE(status.at(1).at(0).toInt(), int(ConnectControllerStatus::NoController));
}

void TestUnconnected::sessionTimeout()
{
    VardaSession session;
    const QSignalSpy messages(&session, &VardaSession::messageChanged);
    const QSignalSpy disconnected(&session, &VardaSession::disconnectController);
    QVERIFY(QMetaObject::invokeMethod(
        &session, "onReceiveTimeout",
        Q_ARG(TidemarCommand::TidemarCommandIn, TidemarCommand::Identification)));
    QCOMPARE(session.message(), u"Receive timeout"_s);
    QCOMPARE(messages.count(), 1);
    QCOMPARE(disconnected.count(), 0);
}

// An answer may still come in when the link is gone; the next step then is one of the smallest.
void TestUnconnected::sessionUpload()
{
    VardaSession session;
    QSignalSpy progress(&session, &VardaSession::uploadFirmwareProgress);
    const auto accept = [&session](TidemarCommand::TidemarCommandIn command) {
        return QMetaObject::invokeMethod(&session, "onResponseReceived",
                                         Q_ARG(TidemarCommand::TidemarCommandIn, command),
                                         Q_ARG(QByteArray, "\x01"), Q_ARG(uint16_t, 2));
    };
    QCOMPARE(session.uploadFirmware(QByteArray(800, '\0'), u"image.1.2.3.a.bin"_s, false), 800);
    QVERIFY(accept(TidemarCommand::Begin_program));
    QVERIFY(accept(TidemarCommand::Program));
    QCOMPARE(progress.count(), 2);
    QCOMPARE(progress.at(0), (QVariantList{8, 1}));
    QCOMPARE(progress.at(1), (QVariantList{16, 2}));
}

QTEST_GUILESS_MAIN(TestUnconnected)
#include "tst_unconnected.moc"
