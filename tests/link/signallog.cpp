// SPDX-License-Identifier: MIT
#include "signallog.h"

#include <QtCore/qmetaobject.h>
#include <QtCore/qtestsupport_core.h>

#include <utility>

#include <varda/bledevice.h>
#include <varda/blescanner.h>
#include <varda/vardableprotocol.h>
#include <varda/vardasession.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLongEnough = 40'000;

template <typename Enum> QString nameOf(Enum value)
{
    const char *name = QMetaEnum::fromType<Enum>().valueToKey(value);
    return name ? QString::fromLatin1(name) : QString::number(int(value));
}

QString hex(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

} // namespace

void SignalLog::watch(BleScanner *scanner)
{
    connect(scanner, &BleScanner::deviceFound, this, [this](const BleDeviceInfo &device) {
        add(u"found %1 %2 %3"_s.arg(device.name(), device.address()).arg(device.rssi()));
    });
    connect(scanner, &BleScanner::scanFinished, this, [this] { add(u"scanFinished"_s); });
    connect(scanner, &BleScanner::scanError, this,
            [this](const QString &text) { add(u"scanError "_s + text); });
    connect(scanner, &BleScanner::devicesChanged, this,
            [=, this] { add(u"devices %1"_s.arg(scanner->deviceCount())); });
    connect(scanner, &BleScanner::scanningChanged, this,
            [=, this] { add(scanner->isScanning() ? u"scanning true"_s : u"scanning false"_s); });
}

void SignalLog::watch(BleDevice *device)
{
    connect(device, &BleDevice::connected, this, [this] { add(u"connected"_s); });
    connect(device, &BleDevice::disconnected, this, [this] { add(u"disconnected"_s); });
    connect(device, &BleDevice::servicesDiscovered, this, [this] { add(u"servicesDiscovered"_s); });
    connect(device, &BleDevice::notificationReceived, this,
            [this](const QByteArray &bytes) { add(u"notification "_s + hex(bytes)); });
    connect(device, &BleDevice::writeCompleted, this, [this] { add(u"writeCompleted"_s); });
    connect(device, &BleDevice::error, this,
            [this](const QString &text) { add(u"error "_s + text); });
    connect(device, &BleDevice::stateChanged, this,
            [=, this] { add(u"state "_s + nameOf(device->state())); });
    connect(device, &BleDevice::deviceNameChanged, this,
            [=, this] { add(u"deviceName "_s + device->deviceName()); });
}

void SignalLog::watch(VardaBleProtocol *protocol)
{
    connect(protocol, &VardaBleProtocol::responseReceived, this,
            [this](TidemarCommand::TidemarCommandIn command, const QByteArray &payload,
                   unsigned short length) {
                add(u"response %1 %2 %3"_s.arg(nameOf(command), hex(payload)).arg(length));
            });
    connect(protocol, &VardaBleProtocol::protocolError, this,
            [this](TidemarCommand::TidemarCommandIn command, ExchangeError::ExchangeErrorIn error) {
                add(u"protocolError %1 %2"_s.arg(nameOf(command), nameOf(error)));
            });
    connect(protocol, &VardaBleProtocol::receiveTimeout, this,
            [this](TidemarCommand::TidemarCommandIn command) {
                add(u"receiveTimeout "_s + nameOf(command));
            });
    connect(protocol, &VardaBleProtocol::ready, this, [this] { add(u"ready"_s); });
}

void SignalLog::watch(VardaSession *session)
{
    connect(
        session, &VardaSession::createControllerStatus, this,
        [this](CreateControllerStatus::CreateControllerStatusIn status) { add(nameOf(status)); });
    connect(
        session, &VardaSession::connectControllerStatus, this,
        [this](ConnectControllerStatus::ConnectControllerStatusIn status) { add(nameOf(status)); });
    connect(session, &VardaSession::disconnectController, this,
            [this] { add(u"disconnectController"_s); });
    connect(session, &VardaSession::errorController, this,
            [this](QLowEnergyController::Error error) {
                add(u"errorController %1"_s.arg(int(error)));
            });
    connect(session, &VardaSession::serviceError, this,
            [this](QLowEnergyService::ServiceError error) {
                add(u"serviceError %1"_s.arg(int(error)));
            });
    connect(session, &VardaSession::endCommand, this,
            [this](TidemarCommand::TidemarCommandIn command) {
                add(u"endCommand "_s + nameOf(command));
            });
    connect(session, &VardaSession::exchangeError, this,
            [this](TidemarCommand::TidemarCommandIn command, ExchangeError::ExchangeErrorIn error) {
                add(u"exchangeError %1 %2"_s.arg(nameOf(command), nameOf(error)));
            });
    connect(session, &VardaSession::uploadFirmwareProgress, this, [this](int sent, int percent) {
        add(u"uploadFirmwareProgress %1 %2"_s.arg(sent).arg(percent));
    });
    connect(session, &VardaSession::messageChanged, this,
            [=, this] { add(u"message "_s + session->message()); });
}

QStringList SignalLog::take()
{
    return std::exchange(m_entries, {});
}

bool SignalLog::await(const QString &entry, int times)
{
    return QTest::qWaitFor([&] { return m_entries.count(entry) >= times; }, kLongEnough);
}

void SignalLog::add(const QString &entry)
{
    m_entries.append(entry);
    if (react)
        react(entry);
}
