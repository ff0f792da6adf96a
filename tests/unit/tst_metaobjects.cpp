// SPDX-License-Identifier: MIT
#include <QtCore/qmetaobject.h>
#include <QtTest/qtest.h>

#include <varda/bledevice.h>
#include <varda/blescanner.h>
#include <varda/vardableprotocol.h>
#include <varda/vardasession.h>

class TestMetaObjects : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void registeredTypes_data();
    void registeredTypes();
    void methods_data();
    void methods();
    void properties_data();
    void properties();
    void readOnlyProperties();
    void constructors();
    void enumeratorsInVariants();
};

// Runs first: nothing else of this program may have registered the types.
void TestMetaObjects::registeredTypes_data()
{
    const BleDevice device;
    const BleScanner scanner;
    const VardaSession session;
    QTest::addColumn<QByteArray>("name");
    for (const char *name :
         {"QLowEnergyController::Error", "QLowEnergyService::ServiceState",
          "QLowEnergyService::ServiceError", "QLowEnergyCharacteristic", "QLowEnergyDescriptor",
          "QBluetoothUuid", "BleDeviceInfo", "BleDeviceState::BleDeviceStateIn",
          "QList<BleDeviceInfo>", "TidemarCommand::TidemarCommandIn",
          "ExchangeError::ExchangeErrorIn", "CurrentMode::CurrentModeIn",
          "ComputerModel::ComputerModelIn", "CreateControllerStatus::CreateControllerStatusIn",
          "ConnectControllerStatus::ConnectControllerStatusIn", "BleMode", "MarloSettings"})
        QTest::newRow(name) << QByteArray(name);
}

void TestMetaObjects::registeredTypes()
{
    QFETCH(const QByteArray, name);
    QVERIFY(QMetaType::fromName(name).isValid());
}

/** "access kind type name(type name, ...)", "default" for one that a default argument gives. */
static QString textOf(const QMetaMethod &method)
{
    static constexpr const char *kAccess[] = {"private", "protected", "public"};
    static constexpr const char *kKinds[] = {"method", "signal", "slot", "constructor"};
    QStringList parameters;
    for (int i = 0; i < method.parameterCount(); ++i)
        parameters << QLatin1String(method.parameterTypes().at(i) + ' '
                                    + method.parameterNames().at(i));
    QString text = QStringLiteral("%1 %2 %3 %4(%5)")
                       .arg(QLatin1String(kAccess[method.access()]),
                            QLatin1String(kKinds[method.methodType()]),
                            QLatin1String(method.typeName()), QLatin1String(method.name()),
                            parameters.join(QStringLiteral(", ")));
    if (method.attributes() & QMetaMethod::Cloned)
        text += QStringLiteral(" default");
    return text;
}

static QStringList linesOf(const char *text)
{
    QStringList lines = QString::fromLatin1(text).split(QLatin1Char('\n'));
    for (QString &line : lines)
        line = line.trimmed();
    lines.removeAll(QString());
    return lines;
}

// All methods of a class, in the order of their indices.
void TestMetaObjects::methods_data()
{
    QTest::addColumn<const QMetaObject *>("metaObject");
    QTest::addColumn<QStringList>("methods");

    const auto row = [](const QMetaObject &metaObject, const char *methods) {
        QTest::newRow(metaObject.className()) << &metaObject << linesOf(methods);
    };
    row(BleScanner::staticMetaObject, R"(
        public signal void deviceFound(BleDeviceInfo device)
        public signal void scanFinished()
        public signal void scanError(QString message)
        public signal void devicesChanged()
        public signal void scanningChanged()
        private slot void onDeviceDiscovered(QBluetoothDeviceInfo info)
        private slot void onScanFinished()
        private slot void onScanCanceled()
        private slot void onScanError(QBluetoothDeviceDiscoveryAgent::Error error)
        public method void startScan(int timeoutSeconds)
        public method void startScan() default
        public method void stopScan()
        public method void clearDevices()
        public method BleDeviceInfo deviceAt(int index)
    )");
    row(BleDevice::staticMetaObject, R"(
        public signal void connected()
        public signal void disconnected()
        public signal void servicesDiscovered()
        public signal void notificationReceived(QByteArray data)
        public signal void writeCompleted()
        public signal void error(QString message)
        public signal void stateChanged()
        public signal void deviceNameChanged()
        private slot void onControllerConnected()
        private slot void onControllerDisconnected()
        private slot void onControllerError(QLowEnergyController::Error error)
        private slot void onServiceDiscovered(QBluetoothUuid uuid)
        private slot void onServiceDiscoveryFinished()
        private slot void onServiceStateChanged(QLowEnergyService::ServiceState state)
        private slot void onCharacteristicChanged(QLowEnergyCharacteristic info, QByteArray value)
        private slot void onCharacteristicWritten(QLowEnergyCharacteristic info, QByteArray value)
        private slot void onDescriptorWritten(QLowEnergyDescriptor info, QByteArray value)
        private slot void onServiceError(QLowEnergyService::ServiceError error)
        private slot void onNotificationsWatchdogTimeout()
        public method void connectTo(BleDeviceInfo device)
        public method void disconnect()
    )");
    row(VardaBleProtocol::staticMetaObject, R"(
        public signal void responseReceived(TidemarCommand::TidemarCommandIn command, QByteArray payload, ushort payloadLength)
        public signal void protocolError(TidemarCommand::TidemarCommandIn command, ExchangeError::ExchangeErrorIn error)
        public signal void receiveTimeout(TidemarCommand::TidemarCommandIn command)
        public signal void ready()
        private slot void onNotificationReceived(QByteArray chunk)
        private slot void onTimerReceiveTimeout()
        private slot void onCommandTimeout()
        private slot void onBleConnected()
    )");
    row(VardaSession::staticMetaObject, R"(
        public signal void createControllerStatus(CreateControllerStatus::CreateControllerStatusIn status)
        public signal void connectControllerStatus(ConnectControllerStatus::ConnectControllerStatusIn status)
        public signal void disconnectController()
        public signal void errorController(QLowEnergyController::Error error)
        public signal void serviceError(QLowEnergyService::ServiceError error)
        public signal void endCommand(TidemarCommand::TidemarCommandIn command)
        public signal void exchangeError(TidemarCommand::TidemarCommandIn command, ExchangeError::ExchangeErrorIn error)
        public signal void uploadFirmwareProgress(int bytesSent, int percentDone)
        public signal void messageChanged()
        private slot void onDeviceFound(BleDeviceInfo device)
        private slot void onScanFinished()
        private slot void onScanError(QString message)
        private slot void onBleConnected()
        private slot void onBleDisconnected()
        private slot void onBleServicesDiscovered()
        private slot void onBleError(QString message)
        private slot void onResponseReceived(TidemarCommand::TidemarCommandIn command, QByteArray payload, uint16_t payloadLength)
        private slot void onProtocolError(TidemarCommand::TidemarCommandIn command, ExchangeError::ExchangeErrorIn error)
        private slot void onReceiveTimeout(TidemarCommand::TidemarCommandIn command)
        public method void autoConnect(BleMode mode)
        public method void autoConnect() default
        public method void createController()
        public method void connectTo(BleDeviceInfo device, BleMode mode)
        public method void connectTo(BleDeviceInfo device) default
        public method void controllerConnect()
        public method void controllerDisConnect()
        public method void startCommand(TidemarCommand::TidemarCommandIn command)
        public method void startGetLogbook(QList<uint16_t> existingDiveIds)
        public method void startGetDiveSamples(uint16_t diveName)
        public method bool startSetPressure(uint32_t pressure)
        public method void startSetTime()
        public method void setOwner(QString owner)
        public method void startGetGases(uint8_t gasType)
        public method void startMarloSettings(MarloSettings settings)
        public method void startSuperUserMode(bool activate)
        public method void stopJob()
        public method void startLayoutList()
        public method void startLayoutGet(uint8_t index)
        public method void startLayoutAdd(QByteArray blob)
        public method void startLayoutRemove(uint8_t index)
        public method void startLayoutRemoveAll()
        public method void startLayoutActiveGet()
        public method void startLayoutActiveSet(uint8_t diveMode, int8_t index)
        public method bool qmlConnected()
        public method QString qmlCurrentMode()
        public method QString qmlComputerModel()
        public method QString qmlGetSerialNumber()
        public method QString qmlGetFirmwareVersionStr()
        public method QString qmlGetOwner()
        public method QString qmlGetMessage()
        public method QString qmlControllerError(QLowEnergyController::Error error)
        public method void qmlStartGetLogbook(QList<int> existingDiveIds)
    )");
}

void TestMetaObjects::methods()
{
    QFETCH(const QMetaObject *, metaObject);
    QStringList methods;
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        methods << textOf(method);
        // Queued calls and QML need to make copies of arguments.
        for (int at = 0; at < method.parameterCount(); ++at)
            QVERIFY2(method.parameterMetaType(at).isValid(), method.methodSignature().constData());
    }
    QTEST(methods, "methods");
    QCOMPARE(metaObject->superClass(), &QObject::staticMetaObject);
}

void TestMetaObjects::properties_data()
{
    QTest::addColumn<const QMetaObject *>("metaObject");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("notify");

    const auto row = [](const QMetaObject &metaObject, const char *name, const char *type,
                        const char *notify) {
        QTest::addRow("%s %s", metaObject.className(), name)
            << &metaObject << QString::fromLatin1(name) << QString::fromLatin1(type)
            << QString::fromLatin1(notify);
    };
    row(BleScanner::staticMetaObject, "devices", "QList<BleDeviceInfo>", "devicesChanged");
    row(BleScanner::staticMetaObject, "scanning", "bool", "scanningChanged");
    row(BleScanner::staticMetaObject, "deviceCount", "int", "devicesChanged");
    row(BleDevice::staticMetaObject, "state", "BleDeviceState::BleDeviceStateIn", "stateChanged");
    row(BleDevice::staticMetaObject, "deviceName", "QString", "deviceNameChanged");
}

void TestMetaObjects::properties()
{
    QFETCH(const QMetaObject *, metaObject);
    QFETCH(const QString, name);
    const QMetaProperty property = metaObject->property(
        metaObject->indexOfProperty(name.toLatin1().constData()));
    QVERIFY(property.isValid());
    QVERIFY(property.isReadable());
    QVERIFY(!property.isWritable());
    QVERIFY(!property.isResettable());
    QTEST(QString::fromLatin1(property.typeName()), "type");
    QTEST(QString::fromLatin1(property.notifySignal().name()), "notify");
}

void TestMetaObjects::readOnlyProperties()
{
    const BleDevice device;
    QCOMPARE(device.property("state").toInt(), 0);
    QCOMPARE(device.property("deviceName").toString(), QString());
    const BleScanner scanner;
    QCOMPARE(scanner.property("scanning").toBool(), false);
    QCOMPARE(scanner.property("deviceCount").toInt(), 0);
    QVERIFY(scanner.property("devices").value<QList<BleDeviceInfo>>().isEmpty());
    QCOMPARE(BleDevice::kNotificationsWatchdogMs, 2000);
}

void TestMetaObjects::constructors()
{
    QObject parent;
    auto *const device = new BleDevice(&parent);
    QCOMPARE(device->parent(), &parent);
    QCOMPARE((new BleScanner(&parent))->parent(), &parent);
    QCOMPARE((new VardaBleProtocol(device, BleMode::Sps, &parent))->parent(), &parent);
    QCOMPARE((new VardaSession(&parent))->parent(), &parent);
    static_assert(!std::is_convertible_v<QObject *, BleDevice>);
    static_assert(!std::is_convertible_v<QObject *, BleScanner>);
    static_assert(!std::is_convertible_v<QObject *, VardaSession>);
    static_assert(std::is_constructible_v<VardaBleProtocol, BleDevice *, BleMode>);
}

void TestMetaObjects::enumeratorsInVariants()
{
    const BleDevice device;
    QCOMPARE(device.property("state").toString(), QStringLiteral("Disconnected"));
    QCOMPARE(QVariant::fromValue(TidemarCommand::Computer_new).toString(),
             QStringLiteral("Computer_new"));
}

QTEST_GUILESS_MAIN(TestMetaObjects)
#include "tst_metaobjects.moc"
