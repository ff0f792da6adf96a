// SPDX-License-Identifier: MIT
#include "session/vardasession_p.h"

#include <QtCore/qmetaobject.h>
#include <QtCore/qtimer.h>

#include <array>

#include "logging_p.h"
#include "session/computername_p.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kScanSeconds = 30;
constexpr int kConnectedDelay = 500; // the computers drop commands that come sooner

void registerMetaTypes()
{
    qRegisterMetaType<CreateControllerStatus::CreateControllerStatusIn>();
    qRegisterMetaType<ConnectControllerStatus::ConnectControllerStatusIn>();
    qRegisterMetaType<CurrentMode::CurrentModeIn>();
    qRegisterMetaType<ComputerModel::ComputerModelIn>();
    qRegisterMetaType<TidemarCommand::TidemarCommandIn>();
    qRegisterMetaType<ExchangeError::ExchangeErrorIn>();
    qRegisterMetaType<BleMode>("BleMode");
    qRegisterMetaType<BleDeviceInfo>("BleDeviceInfo");
    qRegisterMetaType<MarloSettings>("MarloSettings");
}

template <typename Enum> QString nameOf(Enum value)
{
    return QString::fromLatin1(QMetaEnum::fromType<Enum>().valueToKey(value));
}

} // namespace

VardaSession::VardaSession(QObject *parent) : QObject(parent), d(std::make_unique<Private>(this))
{
    registerMetaTypes();
}

VardaSession::~VardaSession()
{
    d->cleanup();
}

void VardaSession::Private::createBleObjects(BleMode linkMode)
{
    mode = linkMode;
    scanner = new BleScanner(q);
    connect(scanner, &BleScanner::deviceFound, q, &VardaSession::onDeviceFound);
    connect(scanner, &BleScanner::scanFinished, q, &VardaSession::onScanFinished);
    connect(scanner, &BleScanner::scanError, q, &VardaSession::onScanError);

    device = new BleDevice(q);
    device->setObserver(linkObserver());
    connect(device, &BleDevice::connected, q, &VardaSession::onBleConnected);
    connect(device, &BleDevice::disconnected, q, &VardaSession::onBleDisconnected);
    connect(device, &BleDevice::servicesDiscovered, q, &VardaSession::onBleServicesDiscovered);
    connect(device, &BleDevice::error, q, &VardaSession::onBleError);

    createProtocol();
}

void VardaSession::Private::createProtocol()
{
    auto *const created = new VardaBleProtocol(device, mode, q);
    protocol = created;
    created->setObserver(linkObserver());
    if (unlimited)
        created->setUnlimited();
    connect(created, &VardaBleProtocol::responseReceived, q, &VardaSession::onResponseReceived);
    connect(created, &VardaBleProtocol::protocolError, q, &VardaSession::onProtocolError);
    connect(created, &VardaBleProtocol::receiveTimeout, q, &VardaSession::onReceiveTimeout);
    connect(created, &VardaBleProtocol::ready, q, [this, created] {
        QTimer::singleShot(kConnectedDelay, created, [this, created] {
            // After a drop the protocol lives on until the event loop deletes it.
            if (protocol == created)
                Q_EMIT q->connectControllerStatus(ConnectControllerStatus::Connected);
        });
    });
}

void VardaSession::Private::dropProtocol()
{
    if (!protocol)
        return;
    protocol->disconnect(q);
    protocol->setObserver(LinkObserver::nobody());
    if (device)
        device->QObject::disconnect(protocol);
    protocol->deleteLater();
    protocol = nullptr;
}

void VardaSession::Private::setObserver(LinkObserver *newObserver)
{
    observer = newObserver;
    observeLink();
}

void VardaSession::Private::setTap(LinkTap *newTap)
{
    tap = newTap;
    observeLink();
}

LinkObserver *VardaSession::Private::linkObserver() const
{
    return tap ? tap : observer;
}

void VardaSession::Private::observeLink()
{
    if (tap)
        tap->setNext(observer);
    if (device)
        device->setObserver(linkObserver());
    if (protocol)
        protocol->setObserver(linkObserver());
}

BleMode VardaSession::Private::modeOf(const QList<QBluetoothUuid> &services)
{
    return VardaBleProtocol::modeOf(services);
}

bool VardaSession::Private::collectsAnswers(TidemarCommand::TidemarCommandIn command)
{
    return VardaBleProtocol::collectsAnswers(command);
}

void VardaSession::Private::leaveLink()
{
    ++attempt;
    dropProtocol();
    pressurePending = false;
    connected = false;
}

void VardaSession::Private::cleanup()
{
    if (scanner) {
        scanner->disconnect(q);
        scanner->stopScan();
        scanner->deleteLater();
        scanner = nullptr;
    }
    leaveLink();
    if (device) {
        device->QObject::disconnect(q);
        if (device->state() != BleDeviceState::Disconnected)
            linkObserver()->disconnecting();
        device->setObserver(LinkObserver::nobody());
        device->disconnect();
        device->deleteLater();
        device = nullptr;
    }
}

void VardaSession::Private::connectLink(const BleDeviceInfo &info)
{
    lastDevice = info;
    device->connectTo(info);
}

bool VardaSession::Private::say(const QString &text)
{
    qCDebug(lcSession).noquote() << text;
    const QPointer<VardaSession> alive(q);
    const quint64 before = attempt;
    message = text;
    Q_EMIT q->messageChanged();
    return alive && attempt == before;
}

void VardaSession::autoConnect(BleMode mode)
{
    d->cleanup();
    d->autoConnecting = true;
    d->found = false;
    d->createBleObjects(mode);
    if (d->say(u"Scan Devices"_s))
        d->scanner->startScan(kScanSeconds);
}

void VardaSession::createController()
{
    autoConnect(BleMode::Gatt);
}

void VardaSession::connectTo(BleDeviceInfo device, BleMode mode)
{
    d->cleanup();
    d->autoConnecting = false;
    d->found = true;
    d->createBleObjects(mode);
    if (d->say(u"Connect to %1"_s.arg(device.name())))
        d->connectLink(device);
}

void VardaSession::controllerConnect()
{
    if (!d->device) {
        Q_EMIT connectControllerStatus(ConnectControllerStatus::NoController);
        return;
    }
    const BleDeviceInfo known = d->device->lastDevice();
    if (!known.isValid()) {
        if (d->say(u"No device known, please scan first"_s))
            Q_EMIT connectControllerStatus(ConnectControllerStatus::NoController);
        return;
    }
    // The next protocol is made when the services of the new link are known.
    d->leaveLink();
    if (d->say(u"Reconnecting to %1"_s.arg(known.name())))
        d->connectLink(known);
}

void VardaSession::controllerDisConnect()
{
    controllerDisconnect();
}

void VardaSession::controllerDisconnect()
{
    if (!d->device)
        return;
    const bool wasConnected = d->connected;
    if (!d->say(u"Disconnect from device"_s))
        return;
    d->cleanup();
    if (wasConnected)
        Q_EMIT disconnectController();
}

void VardaSession::onDeviceFound(BleDeviceInfo device)
{
    if (!d->autoConnecting || d->found)
        return;
    if (!d->say(u"Name: "_s + device.name() + u" - Address: "_s + device.address()))
        return;
    if (!isComputerName(device.name()))
        return;
    d->found = true;
    d->scanner->stopScan();
    if (!d->say(u"%1 found"_s.arg(device.name())))
        return;
    const QPointer<VardaSession> alive(this);
    const quint64 attempt = d->attempt;
    Q_EMIT createControllerStatus(CreateControllerStatus::Created);
    if (alive && d->attempt == attempt)
        d->connectLink(device);
}

void VardaSession::onScanFinished()
{
    if (!d->autoConnecting || d->found)
        return;
    if (d->say(u"End of scan, device not found"_s))
        Q_EMIT createControllerStatus(CreateControllerStatus::NotFound);
}

void VardaSession::onScanError(QString message)
{
    if (d->say(u"Scan error: "_s + message))
        Q_EMIT createControllerStatus(CreateControllerStatus::Error);
}

void VardaSession::onBleConnected()
{
    d->connected = true;
    d->pressurePending = false;
    // Nothing follows, so it does not matter what a slot did.
    std::ignore = d->say(u"Device connected"_s);
}

void VardaSession::onBleServicesDiscovered()
{
    if (!d->protocol)
        d->createProtocol();
    const QPointer<VardaSession> alive(this);
    const BleDevice *const link = d->device;
    if (d->findsMode)
        d->protocol->setMode(VardaBleProtocol::modeOf(d->device->availableServices()));
    if (d->protocol->setupCharacteristics() || !alive)
        return;

    // The link has told of the same failure by its own error, which lets everything go.
    if (!d->say(u"Service not found"_s))
        return;
    Q_EMIT connectControllerStatus(ConnectControllerStatus::NoService);
    if (alive && d->device && d->device == link)
        d->device->disconnect();
}

void VardaSession::onBleDisconnected()
{
    const QPointer<VardaSession> alive(this);
    const VardaBleProtocol *const dropped = d->protocol;
    d->connected = false;
    // A connection after a drop is one to a transparent UART, whatever the last one was.
    d->mode = BleMode::Gatt;
    // Whatever a slot of the message does, the link has gone down and that is told.
    std::ignore = d->say(u"Device disconnected"_s);
    if (!alive)
        return;
    if (d->protocol == dropped)
        d->dropProtocol();
    Q_EMIT disconnectController();
}

void VardaSession::onBleError(QString message)
{
    if (!d->say(u"BLE error: "_s + message))
        return;
    const bool wasConnected = d->connected;
    d->cleanup();
    if (wasConnected)
        Q_EMIT disconnectController();
    else
        Q_EMIT createControllerStatus(CreateControllerStatus::NotCreated);
}

void VardaSession::onResponseReceived(TidemarCommand::TidemarCommandIn command, QByteArray payload,
                                      uint16_t payloadLength)
{
    d->dispatchResponse(command, payload, payloadLength);
}

void VardaSession::onProtocolError(TidemarCommand::TidemarCommandIn command,
                                   ExchangeError::ExchangeErrorIn error)
{
    Q_EMIT exchangeError(command, error);
}

void VardaSession::onReceiveTimeout(TidemarCommand::TidemarCommandIn /*command*/)
{
    // A computer that has fallen silent is in no known state; only a new link mends that.
    if (d->say(u"Receive timeout"_s) && d->device)
        d->device->disconnect();
}

bool VardaSession::isConnected() const
{
    return d->connected;
}

QString VardaSession::message() const
{
    return d->message;
}

BleDeviceInfo VardaSession::lastDevice() const
{
    return d->lastDevice;
}

QString VardaSession::computerModelStr() const
{
    return nameOf(d->data.computerModel);
}

bool VardaSession::qmlConnected() const
{
    return isConnected();
}

QString VardaSession::qmlCurrentMode() const
{
    return nameOf(d->data.currentMode);
}

QString VardaSession::qmlComputerModel() const
{
    return nameOf(d->data.computerModel);
}

QString VardaSession::qmlGetSerialNumber() const
{
    return d->data.serialNumber;
}

QString VardaSession::qmlGetFirmwareVersionStr() const
{
    return d->data.firmwareVersionStr;
}

QString VardaSession::qmlGetOwner() const
{
    return d->data.owner;
}

QString VardaSession::qmlGetMessage() const
{
    return d->message;
}

QString VardaSession::qmlControllerError(QLowEnergyController::Error error) const
{
    return VardaBleProtocol::controllerErrorString(error);
}

uint8_t VardaSession::recordVersion() const
{
    return d->data.recordVersion;
}

const QString &VardaSession::serialNumber() const
{
    return d->data.serialNumber;
}

uint32_t VardaSession::bootloaderVersion() const
{
    return d->data.bootloaderVersion;
}

const QString &VardaSession::bootloaderVersionStr() const
{
    return d->data.bootloaderVersionStr;
}

uint32_t VardaSession::firmwareVersion() const
{
    return d->data.firmwareVersion;
}

const QString &VardaSession::firmwareVersionStr() const
{
    return d->data.firmwareVersionStr;
}

CurrentMode::CurrentModeIn VardaSession::currentMode() const
{
    return d->data.currentMode;
}

ComputerModel::ComputerModelIn VardaSession::computerModel() const
{
    return d->data.computerModel;
}

const BleConfig &VardaSession::config() const
{
    return d->data.config;
}

const BleComputer &VardaSession::computer() const
{
    return d->data.computer;
}

const QList<TidemarDiveHeader> &VardaSession::diveHeaders() const
{
    return d->data.diveHeaders;
}

const TidemarDiveHeader *VardaSession::diveHeader(uint16_t diveNumber) const
{
    // The list may have been emptied since.
    const auto &headers = d->data.diveHeaders;
    const qsizetype row = d->headerRows.value(diveNumber, headers.size());
    return row < headers.size() ? &headers[row] : nullptr;
}

const QList<DiveSample> &VardaSession::diveSamples() const
{
    return d->data.diveSamples;
}

const QString &VardaSession::syslog() const
{
    return d->data.syslog;
}

const QList<SyslogBinRecord> &VardaSession::syslogBin() const
{
    return d->data.syslogBin;
}

const QList<BatteryInfoRecord> &VardaSession::batteryInfo() const
{
    return d->data.batteryInfo;
}

int64_t VardaSession::computerTime() const
{
    return d->data.computerTime;
}

const std::array<float, 16> &VardaSession::diverN2() const
{
    return d->data.diverN2;
}

const std::array<float, 16> &VardaSession::diverHe() const
{
    return d->data.diverHe;
}

float VardaSession::diverCns() const
{
    return d->data.diverCns;
}

uint32_t VardaSession::psurf() const
{
    return d->data.psurf;
}

uint32_t VardaSession::pamb() const
{
    return d->data.pamb;
}

uint16_t VardaSession::density() const
{
    return d->data.density;
}

uint16_t VardaSession::dstop() const
{
    return d->data.dstop;
}

const QString &VardaSession::owner() const
{
    return d->data.owner;
}

const DeleteDivesResult &VardaSession::deleteResult() const
{
    return d->deleteResult;
}

bool VardaSession::lastEraseFlashSuccess() const
{
    return d->data.lastEraseFlashSuccess();
}

const QList<LayoutEntry> &VardaSession::layouts() const
{
    return d->layouts;
}

const std::array<int8_t, 5> &VardaSession::activeLayouts() const
{
    return d->activeLayouts;
}

const QByteArray &VardaSession::layoutBlob() const
{
    return d->layoutBlob;
}

bool VardaSession::layoutCommandSuccess() const
{
    return d->layoutSuccess;
}

VardaSession::Ticks VardaSession::uploadElapsed() const
{
    return d->firmwareElapsed;
}
