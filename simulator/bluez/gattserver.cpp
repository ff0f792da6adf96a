// SPDX-License-Identifier: MIT
#include "bluez/gattserver.h"

#include "device/scenario/gatttable.h"

#include <QtDBus/qdbusargument.h>
#include <QtDBus/qdbusextratypes.h>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

const QString kService = u"org.bluez.GattService1"_s;
const QString kCharacteristic = u"org.bluez.GattCharacteristic1"_s;
const QString kDescriptor = u"org.bluez.GattDescriptor1"_s;
const QString kCccd = u"00002902-0000-1000-8000-00805f9b34fb"_s;

const QString kFailed = u"org.bluez.Error.Failed"_s;
const QString kNotSupported = u"org.bluez.Error.NotSupported"_s;
const QString kNotPermitted = u"org.bluez.Error.NotPermitted"_s;

constexpr qsizetype kLongestValue = 512;

// The daemon numbers objects by their handles, always with four digits; Qt tells them apart by
// the beginning of their paths and relies on that.
QString numbered(const QString &parent, const char *kind, int handle)
{
    return u"%1/%2%3"_s.arg(parent, QLatin1String(kind)).arg(handle, 4, 16, QLatin1Char('0'));
}

QString toHex(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

std::optional<quint8> commandOf(const QByteArray &bytes)
{
    constexpr qsizetype kCommandAt = 8;
    if (bytes.size() <= kCommandAt || !bytes.startsWith("\xDC\xDC"))
        return std::nullopt;
    return quint8(bytes[kCommandAt]);
}

} // namespace

GattServer::GattServer(const DeviceScenario &scenario, const Surroundings &around)
    : m_scenario(scenario), m_around(around)
{
    connect(&around.serial, &SerialLink::notification, this, &GattServer::sendNotification);
}

std::optional<QStringList> GattServer::resolve(bool withServices)
{
    m_resolved = true;
    if (!withServices || m_known) {
        // A subscription outlives the link: the daemon renews it before anybody asks.
        for (Characteristic &each : m_characteristics) {
            if (!each.clients.isEmpty())
                setCccd(each, true);
        }
        return std::nullopt;
    }
    m_known = true;
    addObjects();
    QStringList uuids;
    const QList<ServiceSpec> table = gattTable(m_scenario);
    for (const ServiceSpec &service : table)
        uuids.append(service.uuid);
    return uuids;
}

bool GattServer::isSubscribed() const
{
    return std::ranges::any_of(m_characteristics, [](const Characteristic &each) {
        return each.spec.role == Role::Data && each.cccd;
    });
}

void GattServer::linkDown()
{
    m_resolved = false;
    m_serialPath.clear();
    for (Characteristic &each : m_characteristics)
        each.cccd = false;
}

void GattServer::clear()
{
    m_characteristics.clear();
    m_descriptors.clear();
    m_known = false;
}

void GattServer::addObjects()
{
    int handle = 1;
    const QList<ServiceSpec> table = gattTable(m_scenario);
    for (const ServiceSpec &service : table) {
        const QString path = numbered(m_around.devicePath, "service", handle);
        m_around.tree.add(
            path, kService,
            {
                {u"Handle"_s, QVariant::fromValue(ushort(handle))},
                {u"UUID"_s, service.uuid},
                {u"Device"_s, QVariant::fromValue(QDBusObjectPath(m_around.devicePath))},
                {u"Primary"_s, service.primary},
                {u"Includes"_s, QVariant::fromValue(QList<QDBusObjectPath>())},
            });
        ++handle;
        for (const CharacteristicSpec &spec : service.characteristics)
            addCharacteristic(spec, path, handle);
    }
}

void GattServer::addCharacteristic(const CharacteristicSpec &spec, const QString &servicePath,
                                   int &handle)
{
    const QString path = numbered(servicePath, "char", handle);
    QVariantMap properties{
        {u"Handle"_s, QVariant::fromValue(ushort(handle))},
        {u"UUID"_s, spec.uuid},
        {u"Service"_s, QVariant::fromValue(QDBusObjectPath(servicePath))},
        {u"Value"_s, QByteArray()},
        {u"Flags"_s, spec.flags},
        {u"MTU"_s, QVariant::fromValue(ushort(m_scenario.mtu))},
    };
    if (spec.flags.contains(u"write-without-response"_s))
        properties.insert(u"WriteAcquired"_s, false);
    if (spec.flags.contains(u"notify"_s) || spec.flags.contains(u"indicate"_s)) {
        properties.insert(u"Notifying"_s, false);
        properties.insert(u"NotifyAcquired"_s, false);
    }
    m_characteristics.insert(path, {spec, path, {}, false});
    m_around.tree.add(path, kCharacteristic, properties);
    handle += 2; // a declaration and a value

    for (const DescriptorSpec &descriptor : spec.descriptors) {
        const QString descriptorPath = numbered(path, "desc", handle);
        m_descriptors.insert(descriptorPath, {descriptor, path});
        m_around.tree.add(descriptorPath, kDescriptor,
                          {
                              {u"Handle"_s, QVariant::fromValue(ushort(handle))},
                              {u"UUID"_s, descriptor.uuid},
                              {u"Characteristic"_s, QVariant::fromValue(QDBusObjectPath(path))},
                              {u"Value"_s, QByteArray()},
                          });
        ++handle;
    }
}

bool GattServer::handle(const QDBusMessage &call)
{
    if (const auto found = m_characteristics.find(call.path()); found != m_characteristics.end())
        return handleCharacteristic(*found, call);
    if (const auto found = m_descriptors.find(call.path()); found != m_descriptors.end())
        return handleDescriptor(*found, call);
    return false;
}

bool GattServer::handleCharacteristic(Characteristic &characteristic, const QDBusMessage &call)
{
    if (call.interface() != kCharacteristic)
        return false;
    if (call.member() == "ReadValue"_L1)
        readCharacteristic(characteristic, call);
    else if (call.member() == "WriteValue"_L1)
        writeCharacteristic(characteristic, call);
    else if (call.member() == "StartNotify"_L1)
        startNotify(characteristic, call);
    else if (call.member() == "StopNotify"_L1) {
        record(u"StopNotify"_s, {{u"path"_s, characteristic.path}});
        if (!characteristic.clients.contains(call.service())) {
            m_around.calls.refuse(call, kFailed, u"No notify session started"_s);
        } else {
            unsubscribe(characteristic, call.service());
            m_around.calls.reply(call);
        }
    } else {
        return false;
    }
    return true;
}

bool GattServer::handleDescriptor(Descriptor &descriptor, const QDBusMessage &call)
{
    if (call.interface() != kDescriptor)
        return false;
    const bool isCccd = descriptor.spec.uuid == kCccd;
    if (call.member() == "WriteValue"_L1) {
        if (isCccd) {
            m_around.calls.refuse(call, kNotPermitted, u"Write not permitted"_s);
        } else {
            descriptor.spec.value = call.arguments().value(0).toByteArray();
            m_around.calls.reply(call);
        }
        return true;
    }
    if (call.member() != "ReadValue"_L1)
        return false;

    record(u"ReadValue"_s, {{u"path"_s, call.path()}});
    if (!m_resolved) {
        m_around.calls.refuse(call, kFailed, u"Not connected"_s);
        return true;
    }
    m_around.calls.withFault(
        m_around.faults.next(Step::Details), call, [this, call, isCccd, &descriptor] {
            QByteArray value = descriptor.spec.value;
            if (isCccd) {
                const Characteristic &owner = m_characteristics[descriptor.characteristic];
                const bool notify = owner.spec.flags.contains(u"notify"_s);
                value = QByteArray::fromHex(!owner.cccd ? "0000" : notify ? "0100" : "0200");
            }
            m_around.tree.change(call.path(), kDescriptor, {{u"Value"_s, value}});
            m_around.calls.reply(call, value);
        });
    return true;
}

void GattServer::readCharacteristic(Characteristic &characteristic, const QDBusMessage &call)
{
    record(u"ReadValue"_s, {{u"path"_s, call.path()}});
    if (!m_resolved) {
        m_around.calls.refuse(call, kFailed, u"Not connected"_s);
        return;
    }
    m_around.calls.withFault(
        m_around.faults.next(Step::Details), call, [this, call, &characteristic] {
            if (!characteristic.spec.flags.contains(u"read"_s)) {
                m_around.calls.refuse(call, kNotPermitted, u"Read not permitted"_s);
                return;
            }
            const QByteArray value = characteristic.spec.value;
            m_around.tree.change(call.path(), kCharacteristic, {{u"Value"_s, value}});
            m_around.calls.reply(call, value);
        });
}

void GattServer::writeCharacteristic(Characteristic &characteristic, const QDBusMessage &call)
{
    const QByteArray bytes = call.arguments().value(0).toByteArray();
    const auto options = qdbus_cast<QVariantMap>(call.arguments().value(1));
    const QStringList &flags = characteristic.spec.flags;
    const bool canCommand = flags.contains(u"write-without-response"_s);
    const bool canRequest = flags.contains(u"write"_s);
    const QString type =
        options.value(u"type"_s, canRequest ? u"request"_s : u"command"_s).toString();
    const bool isCommand = type == "command"_L1;

    record(u"write"_s, {{u"characteristic"_s, characteristic.spec.uuid},
                        {u"type"_s, type},
                        {u"hex"_s, toHex(bytes)}});

    if (!m_resolved) {
        m_around.calls.refuse(call, kFailed, u"Not connected"_s);
    } else if (isCommand ? !canCommand : !canRequest) {
        m_around.calls.refuse(call, kNotSupported, u"Operation is not supported"_s);
    } else if (bytes.size() > kLongestValue) {
        m_around.calls.refuse(call, u"org.bluez.Error.InvalidValueLength"_s, u"Invalid Length"_s);
    } else if (isCommand && bytes.size() > m_scenario.mtu - 3) {
        m_around.calls.refuse(call, kFailed, u"Failed to initiate write"_s);
    } else {
        const std::optional<Fault> fault = m_around.faults.next(Step::Write, commandOf(bytes));
        if (fault && fault->kind == FaultKind::Drop) {
            m_around.calls.reply(call);
            m_around.calls.dropLater(fault->ms);
            return;
        }
        if (fault && isCalamity(fault->kind) && fault->kind != FaultKind::Freeze) {
            m_around.calls.reply(call);
            m_around.calls.strikes(fault);
            return;
        }
        m_around.calls.withFault(fault, call, [this, call, bytes, fault, &characteristic] {
            m_around.calls.reply(call);
            if (!fault || fault->kind != FaultKind::Lost)
                written(characteristic, bytes);
        });
    }
}

void GattServer::written(Characteristic &characteristic, const QByteArray &bytes)
{
    switch (characteristic.spec.role) {
    case Role::Data:
        m_serialPath = characteristic.path;
        record(u"frame"_s, {{u"hex"_s, toHex(bytes)}});
        m_around.serial.written(bytes);
        break;
    case Role::Credits:
        m_around.serial.creditsGranted(bytes);
        break;
    case Role::None:
        characteristic.spec.value = bytes;
        break;
    }
}

void GattServer::startNotify(Characteristic &characteristic, const QDBusMessage &call)
{
    record(u"StartNotify"_s,
           {{u"path"_s, characteristic.path}, {u"characteristic"_s, characteristic.spec.uuid}});
    const QStringList &flags = characteristic.spec.flags;
    if (!m_resolved) {
        m_around.calls.refuse(call, kFailed, u"Not connected"_s);
    } else if (!flags.contains(u"notify"_s) && !flags.contains(u"indicate"_s)) {
        m_around.calls.refuse(call, kNotSupported, u"Operation is not supported"_s);
    } else if (characteristic.clients.contains(call.service())) {
        m_around.calls.reply(call);
    } else {
        m_around.calls.withFault(
            m_around.faults.next(Step::Subscribe), call,
            [this, call, &characteristic] { subscribe(characteristic, call); });
    }
}

void GattServer::subscribe(Characteristic &characteristic, const QDBusMessage &call)
{
    const bool first = characteristic.clients.isEmpty();
    characteristic.clients.append(call.service());
    if (first) {
        setCccd(characteristic, true);
        m_around.tree.change(characteristic.path, kCharacteristic, {{u"Notifying"_s, true}});
    }
    m_around.calls.reply(call);
}

void GattServer::unsubscribe(Characteristic &characteristic, const QString &client)
{
    if (characteristic.clients.removeAll(client) == 0 || !characteristic.clients.isEmpty())
        return;
    setCccd(characteristic, false);
    m_around.tree.change(characteristic.path, kCharacteristic, {{u"Notifying"_s, false}});
}

void GattServer::setCccd(Characteristic &characteristic, bool on)
{
    if (!m_resolved || characteristic.cccd == on)
        return;
    characteristic.cccd = on;
    const bool notify = characteristic.spec.flags.contains(u"notify"_s);
    const QString value = !on ? u"0000"_s : notify ? u"0100"_s : u"0200"_s;
    record(u"cccd"_s, {{u"characteristic"_s, characteristic.spec.uuid}, {u"value"_s, value}});
}

void GattServer::clientGone(const QString &client)
{
    for (Characteristic &each : m_characteristics)
        unsubscribe(each, client);
}

void GattServer::sendNotification(const QByteArray &bytes)
{
    const auto characteristic = m_characteristics.find(m_serialPath);
    if (characteristic == m_characteristics.end() || !characteristic->cccd) {
        record(u"notSubscribed"_s, {{u"hex"_s, toHex(bytes)}});
        return;
    }
    // What does not fit is cut off without a word, as a peripheral's stack does it.
    const QByteArray sent = bytes.left(m_scenario.mtu - 3);
    record(u"notification"_s,
           {{u"characteristic"_s, characteristic->spec.uuid}, {u"hex"_s, toHex(sent)}});
    // The daemon keeps a subscription for each client, and tells all of them for each.
    for (qsizetype i = 0; i < characteristic->clients.size(); ++i)
        m_around.tree.change(m_serialPath, kCharacteristic, {{u"Value"_s, sent}});
}

bool GattServer::notifyNow(const QByteArray &bytes)
{
    if (m_serialPath.isEmpty()) {
        for (const Characteristic &each : std::as_const(m_characteristics)) {
            if (each.spec.role == Role::Data && each.cccd)
                m_serialPath = each.path;
        }
    }
    const auto characteristic = m_characteristics.constFind(m_serialPath);
    if (characteristic == m_characteristics.constEnd() || !characteristic->cccd)
        return false;
    sendNotification(bytes);
    return true;
}

void GattServer::record(const QString &event, const QJsonObject &details)
{
    m_around.record(event, details);
}

} // namespace simulator
