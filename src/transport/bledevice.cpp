// SPDX-License-Identifier: MIT
#include <varda/bledevice.h>

#include <QtCore/qpointer.h>
#include <QtCore/qtimer.h>

#include "logging_p.h"
#include "transport/closinglink_p.h"
#include "transport/linkobserver_p.h"

using namespace Qt::StringLiterals;

namespace {

void registerMetaTypes()
{
    qRegisterMetaType<QLowEnergyController::Error>();
    qRegisterMetaType<QLowEnergyService::ServiceState>();
    qRegisterMetaType<QLowEnergyService::ServiceError>();
    qRegisterMetaType<QLowEnergyCharacteristic>();
    qRegisterMetaType<QLowEnergyDescriptor>();
    qRegisterMetaType<QBluetoothUuid>();
    qRegisterMetaType<BleDeviceInfo>("BleDeviceInfo");
    qRegisterMetaType<BleDeviceState::BleDeviceStateIn>("BleDeviceState::BleDeviceStateIn");
}

/** The 36 characters without braces, in lower case: the form in which UUIDs are compared. */
QString plainText(const QUuid &uuid)
{
    return uuid.toString(QUuid::WithoutBraces).toLower();
}

} // namespace

class BleDevice::Private
{
public:
    explicit Private(BleDevice *q) : notificationsWatchdog(q) { }

    QLowEnergyController *controller = nullptr;
    QLowEnergyService *service = nullptr;
    QLowEnergyCharacteristic notifyCharacteristic;
    QLowEnergyCharacteristic writeCharacteristic;
    BleDeviceState::BleDeviceStateIn state = BleDeviceState::Disconnected;
    QString deviceName;
    BleDeviceInfo lastDevice;
    QString notifyUuid;
    QString writeUuid;
    QTimer notificationsWatchdog; ///< a child, so that it goes to another thread with its owner
    /** Connects the controller when the old link to the same computer has ended. */
    QMetaObject::Connection waiting;
    /** Counts connectTo(), so that one called from a slot of another is noticed. */
    quint64 attempt = 0;
    LinkObserver *observer = LinkObserver::nobody();

    void dropService(BleDevice *q)
    {
        if (!service)
            return;
        service->disconnect(q);
        delete service;
        service = nullptr;
    }

    void dropController(BleDevice *q)
    {
        if (!controller)
            return;
        controller->disconnect(q);
        QObject::disconnect(waiting);
        ClosingLink::close(controller);
        controller = nullptr;
    }
};

LinkObserver *LinkObserver::nobody()
{
    static LinkObserver nobody;
    return &nobody;
}

BleDevice::BleDevice(QObject *parent) : QObject(parent), d(std::make_unique<Private>(this))
{
    registerMetaTypes();
    d->notificationsWatchdog.setSingleShot(true);
    d->notificationsWatchdog.setTimerType(Qt::PreciseTimer);
    d->notificationsWatchdog.setInterval(kNotificationsWatchdogMs);
    connect(&d->notificationsWatchdog, &QTimer::timeout, this,
            &BleDevice::onNotificationsWatchdogTimeout);
}

BleDevice::~BleDevice()
{
    cleanup();
}

BleDeviceState::BleDeviceStateIn BleDevice::state() const
{
    return d->state;
}

QString BleDevice::deviceName() const
{
    return d->deviceName;
}

bool BleDevice::isConnected() const
{
    return d->state == BleDeviceState::Connected;
}

BleDeviceInfo BleDevice::lastDevice() const
{
    return d->lastDevice;
}

int BleDevice::mtu() const
{
    return d->controller ? d->controller->mtu() : 0;
}

void BleDevice::setObserver(LinkObserver *observer)
{
    d->observer = observer;
}

void BleDevice::setState(BleDeviceState::BleDeviceStateIn state)
{
    if (d->state == state)
        return;
    d->state = state;
    Q_EMIT stateChanged();
}

void BleDevice::cleanup()
{
    d->notificationsWatchdog.stop();
    d->dropService(this);
    d->dropController(this);
    d->notifyCharacteristic = {};
    d->writeCharacteristic = {};
    d->notifyUuid.clear();
    d->writeUuid.clear();
    setState(BleDeviceState::Disconnected);
}

void BleDevice::connectTo(BleDeviceInfo device)
{
    const QPointer<BleDevice> alive(this);
    const quint64 attempt = ++d->attempt;
    const auto superseded = [&] { return !alive || d->attempt != attempt; };

    cleanup();
    if (superseded())
        return;
    d->lastDevice = device;
    d->deviceName = device.name();
    d->observer->connecting(device);
    Q_EMIT deviceNameChanged();
    if (superseded())
        return;
    setState(BleDeviceState::Connecting);
    if (superseded())
        return;

    auto *const controller = QLowEnergyController::createCentral(device.deviceInfo(), this);
    d->controller = controller;
    connect(controller, &QLowEnergyController::connected, this, &BleDevice::onControllerConnected);
    connect(controller, &QLowEnergyController::disconnected, this,
            &BleDevice::onControllerDisconnected);
    connect(controller, &QLowEnergyController::errorOccurred, this, &BleDevice::onControllerError);
    connect(controller, &QLowEnergyController::serviceDiscovered, this,
            &BleDevice::onServiceDiscovered);
    connect(controller, &QLowEnergyController::discoveryFinished, this,
            &BleDevice::onServiceDiscoveryFinished);
    if (const ClosingLink *const closing = ClosingLink::sameComputer(controller)) {
        d->waiting = connect(closing, &ClosingLink::closed, controller,
                             &QLowEnergyController::connectToDevice, Qt::SingleShotConnection);
        return;
    }
    controller->connectToDevice();
}

void BleDevice::disconnect()
{
    // It outlives this object where a slot deletes that.
    auto *const controller = d->controller;
    if (!controller)
        return;
    if (QObject::disconnect(d->waiting)) {
        onControllerDisconnected();
        return;
    }
    d->observer->disconnecting();
    controller->disconnectFromDevice();
    // A session connects anew before the old device is deleted.
    if (controller->state() == QLowEnergyController::ClosingState)
        ClosingLink::watch(controller);
}

QList<QBluetoothUuid> BleDevice::availableServices() const
{
    return d->controller ? d->controller->services() : QList<QBluetoothUuid>();
}

QList<QLowEnergyCharacteristic> BleDevice::characteristicsForService(const QBluetoothUuid &uuid)
{
    if (!d->controller)
        return {};
    auto *const service = d->controller->createServiceObject(uuid);
    if (!service)
        return {};
    service->deleteLater();
    if (service->state() != QLowEnergyService::RemoteServiceDiscovered)
        return {};
    return service->characteristics();
}

bool BleDevice::setupCharacteristics(const QString &serviceUuid, const QString &notifyUuid,
                                     const QString &writeUuid)
{
    if (!d->controller)
        return false;
    d->notifyUuid = notifyUuid.toLower();
    d->writeUuid = writeUuid.toLower();

    auto *service = d->controller->createServiceObject(QBluetoothUuid(serviceUuid), this);
    // Modules in the field offer their serial service under other UUIDs too.
    const auto offered = d->controller->services();
    for (auto it = offered.cbegin(); !service && it != offered.cend(); ++it)
        service = d->controller->createServiceObject(*it, this);
    if (!service) {
        d->observer->noUsableService();
        Q_EMIT error(u"No service found"_s);
        return false;
    }

    d->notificationsWatchdog.stop();
    d->dropService(this);
    d->service = service;
    connect(service, &QLowEnergyService::stateChanged, this, &BleDevice::onServiceStateChanged);
    connect(service, &QLowEnergyService::characteristicChanged, this,
            &BleDevice::onCharacteristicChanged);
    connect(service, &QLowEnergyService::characteristicWritten, this,
            &BleDevice::onCharacteristicWritten);
    connect(service, &QLowEnergyService::descriptorWritten, this, &BleDevice::onDescriptorWritten);
    connect(service, &QLowEnergyService::errorOccurred, this, &BleDevice::onServiceError);
    service->discoverDetails();
    return true;
}

bool BleDevice::enableNotifications()
{
    const auto cccd = d->notifyCharacteristic.descriptor(
        QBluetoothUuid::DescriptorType::ClientCharacteristicConfiguration);
    if (!cccd.isValid()) {
        Q_EMIT error(u"CCCD descriptor not found"_s);
        return false;
    }
    const auto properties = d->notifyCharacteristic.properties();
    QByteArray value;
    if (properties & QLowEnergyCharacteristic::Notify) {
        value = QByteArray::fromHex("0100");
    } else if (properties & QLowEnergyCharacteristic::Indicate) {
        value = QByteArray::fromHex("0200");
    } else {
        Q_EMIT error(u"Characteristic supports neither Notify nor Indicate"_s);
        return false;
    }
    d->notificationsWatchdog.start();
    d->observer->subscribing(d->notifyCharacteristic.uuid(), value);
    d->service->writeDescriptor(cccd, value);
    return true;
}

bool BleDevice::write(const QByteArray &data, QLowEnergyService::WriteMode mode)
{
    if (!d->service || !d->writeCharacteristic.isValid()) {
        Q_EMIT error(u"Write failed: characteristic not ready"_s);
        return false;
    }
    d->observer->written(data);
    d->service->writeCharacteristic(d->writeCharacteristic, data, mode);
    return true;
}

bool BleDevice::writeRaw(const QString &characteristicUuid, const QByteArray &data,
                         QLowEnergyService::WriteMode mode)
{
    if (!d->service) {
        Q_EMIT error(u"writeRaw failed: no service"_s);
        return false;
    }
    const auto characteristic = d->service->characteristic(QBluetoothUuid(characteristicUuid));
    if (!characteristic.isValid()) {
        Q_EMIT error(u"writeRaw failed: characteristic not found — "_s + characteristicUuid);
        return false;
    }
    d->observer->writtenBeside(characteristic.uuid(), data);
    d->service->writeCharacteristic(characteristic, data, mode);
    return true;
}

void BleDevice::onControllerConnected()
{
    d->observer->linkUp();
    const QPointer<QLowEnergyController> controller(d->controller);
    setState(BleDeviceState::DiscoveringServices);
    // A slot may have dropped the link meanwhile; the controller then waits for its deletion.
    if (controller && controller->parent() == this)
        controller->discoverServices();
}

void BleDevice::onControllerDisconnected()
{
    const QPointer<BleDevice> alive(this);
    d->observer->linkDown();
    d->notificationsWatchdog.stop();
    setState(BleDeviceState::Disconnected);
    if (alive)
        Q_EMIT disconnected();
}

void BleDevice::onControllerError(QLowEnergyController::Error /*error*/)
{
    d->observer->controllerFailed(d->controller ? d->controller->error()
                                                : QLowEnergyController::UnknownError);
    const QString text = d->controller ? d->controller->errorString() : QString();
    const QPointer<BleDevice> alive(this);
    setState(BleDeviceState::Error);
    if (alive)
        Q_EMIT error(u"Controller error: "_s + text);
}

void BleDevice::onServiceDiscovered(const QBluetoothUuid & /*uuid*/) { }

void BleDevice::onServiceDiscoveryFinished()
{
    d->observer->servicesKnown(availableServices());
    Q_EMIT servicesDiscovered();
}

void BleDevice::onServiceStateChanged(QLowEnergyService::ServiceState state)
{
    if (state != QLowEnergyService::RemoteServiceDiscovered || !d->service)
        return;
    QLowEnergyCharacteristic notify;
    QLowEnergyCharacteristic write;
    const auto characteristics = d->service->characteristics();
    for (const auto &characteristic : characteristics) {
        const QString uuid = plainText(characteristic.uuid());
        if (uuid == d->notifyUuid)
            notify = characteristic;
        if (uuid == d->writeUuid)
            write = characteristic;
    }
    d->observer->characteristicsKnown(d->service->serviceUuid(), characteristics);
    if (!notify.isValid() || !write.isValid()) {
        d->observer->characteristicsMissing();
        Q_EMIT error(u"Characteristics not found in service"_s);
        return;
    }
    d->notifyCharacteristic = notify;
    d->writeCharacteristic = write;
    enableNotifications();
}

void BleDevice::onCharacteristicChanged(const QLowEnergyCharacteristic & /*info*/,
                                        const QByteArray &value)
{
    if (value.isEmpty())
        return;
    d->observer->notified(value);
    Q_EMIT notificationReceived(value);
}

void BleDevice::onCharacteristicWritten(const QLowEnergyCharacteristic & /*info*/,
                                        const QByteArray & /*value*/)
{
    Q_EMIT writeCompleted();
}

void BleDevice::onDescriptorWritten(const QLowEnergyDescriptor &info, const QByteArray &value)
{
    qCDebug(lcTransport) << "BleDevice::onDescriptorWritten uuid=" << info.uuid().toString()
                         << "data=" << value.toHex(' ');
    d->notificationsWatchdog.stop();
    if (d->state == BleDeviceState::Connected)
        return;
    d->observer->subscribed(mtu());
    const QPointer<BleDevice> alive(this);
    setState(BleDeviceState::Connected);
    if (alive && d->state == BleDeviceState::Connected)
        Q_EMIT connected();
}

void BleDevice::onServiceError(QLowEnergyService::ServiceError serviceError)
{
    qCWarning(lcTransport) << "BleDevice::onServiceError err=" << serviceError;
    d->observer->serviceFailed(serviceError);
    const QPointer<BleDevice> alive(this);
    setState(BleDeviceState::Error);
    if (alive && d->service)
        Q_EMIT error(u"Service error: %1"_s.arg(int(serviceError)));
}

void BleDevice::onNotificationsWatchdogTimeout()
{
    qCWarning(lcTransport) << "BleDevice: CCCD ack not received within" << kNotificationsWatchdogMs
                           << "ms — disconnecting cleanly";
    d->observer->subscriptionTimedOut();
    const QPointer<BleDevice> alive(this);
    const quint64 attempt = d->attempt;
    setState(BleDeviceState::Error);
    if (!alive || d->attempt != attempt)
        return;
    // Queued, so that nobody hears of the error before the disconnection is on its way; and before
    // that, whose end would otherwise come first on a busy machine.
    QMetaObject::invokeMethod(
        this,
        [this, attempt] {
            if (d->attempt == attempt)
                Q_EMIT error(u"Notifications activation timed out — peripheral not responding"_s);
        },
        Qt::QueuedConnection);
    disconnect();
}
