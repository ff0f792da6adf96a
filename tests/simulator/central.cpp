// SPDX-License-Identifier: MIT
#include "central.h"

#include <QtTest/qtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

Central::Central()
{
    connect(&agent, &QBluetoothDeviceDiscoveryAgent::deviceDiscovered, this,
            [this](const QBluetoothDeviceInfo &info) { found.append(info); });
    connect(&agent, &QBluetoothDeviceDiscoveryAgent::errorOccurred, this,
            [this](auto error) { log << u"scanError %1"_s.arg(int(error)); });
    connect(&agent, &QBluetoothDeviceDiscoveryAgent::deviceUpdated, this,
            [this](const QBluetoothDeviceInfo &info) {
                log << u"updated %1 %2"_s.arg(info.address().toString()).arg(info.rssi());
            });
}

bool Central::scanFor(const QString &address)
{
    const auto seen = [&] {
        return std::ranges::any_of(found, [&](const QBluetoothDeviceInfo &info) {
            return info.address().toString() == address;
        });
    };
    found.clear();
    agent.setLowEnergyDiscoveryTimeout(0);
    agent.start(QBluetoothDeviceDiscoveryAgent::LowEnergyMethod);
    const bool came = QTest::qWaitFor(seen);
    agent.stop();
    return came;
}

void Central::connectTo(const QString &address)
{
    service.reset();
    controller.reset(QLowEnergyController::createCentral(
        QBluetoothDeviceInfo(QBluetoothAddress(address), u"x"_s, 0)));
    connect(controller.get(), &QLowEnergyController::connected, this,
            [this] { log << u"connected"_s; });
    connect(controller.get(), &QLowEnergyController::disconnected, this,
            [this] { log << u"disconnected"_s; });
    connect(controller.get(), &QLowEnergyController::errorOccurred, this,
            [this](auto error) { log << u"error %1"_s.arg(int(error)); });
    connect(controller.get(), &QLowEnergyController::discoveryFinished, this,
            [this] { log << u"discovered"_s; });
    controller->connectToDevice();
}

bool Central::waitFor(const QString &entry)
{
    return QTest::qWaitFor([&] { return log.contains(entry); });
}

bool Central::discover(const QString &serviceUuid, const QString &characteristic)
{
    controller->discoverServices();
    if (!waitFor(u"discovered"_s))
        return false;
    service.reset(controller->createServiceObject(QBluetoothUuid(serviceUuid)));
    if (!service)
        return false;
    connect(service.get(), &QLowEnergyService::errorOccurred, this,
            [this](auto error) { log << u"serviceError %1"_s.arg(int(error)); });
    connect(service.get(), &QLowEnergyService::descriptorWritten, this,
            [this](const auto &, const QByteArray &value) {
                log << u"descriptorWritten "_s + QString::fromLatin1(value.toHex());
            });
    connect(service.get(), &QLowEnergyService::characteristicWritten, this,
            [this] { log << u"characteristicWritten"_s; });
    connect(service.get(), &QLowEnergyService::characteristicChanged, this,
            [this](const auto &, const QByteArray &value) { received << value; });
    service->discoverDetails();
    if (!QTest::qWaitFor(
            [&] { return service->state() == QLowEnergyService::RemoteServiceDiscovered; }))
        return false;
    data = service->characteristic(QBluetoothUuid(characteristic));
    return data.isValid();
}

void Central::subscribe()
{
    service->writeDescriptor(data.clientCharacteristicConfiguration(), QByteArray::fromHex("0100"));
}

bool Central::reach(const QString &address)
{
    if (!scanFor(address))
        return false;
    connectTo(address);
    if (!waitFor(u"connected"_s)
        || !discover(u"49535343-fe7d-4ae5-8fa9-9fafd205e455"_s,
                     u"49535343-1e4d-4bd9-ba61-23c647249616"_s))
        return false;
    subscribe();
    return waitFor(u"descriptorWritten 0100"_s);
}

void Central::write(const QByteArray &bytes)
{
    service->writeCharacteristic(data, bytes, QLowEnergyService::WriteWithoutResponse);
}

bool Central::waitForReceived(qsizetype count)
{
    return QTest::qWaitFor([&] { return received.size() >= count; });
}
