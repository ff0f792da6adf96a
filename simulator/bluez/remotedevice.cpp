// SPDX-License-Identifier: MIT
#include "bluez/remotedevice.h"

#include "device/gatttable.h"

#include <QtDBus/qdbusargument.h>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

const QString kDevice = u"org.bluez.Device1"_s;
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

QString devicePath(const QString &adapterPath, const QString &address)
{
    return adapterPath + u"/dev_"_s + QString(address).replace(u':', u'_');
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

RemoteDevice::RemoteDevice(const DeviceScenario &scenario, const Surroundings &around,
                           QObject *parent)
    : QObject(parent),
      m_scenario(scenario),
      m_around(around),
      m_path(devicePath(around.adapterPath, scenario.address)),
      m_name(scenario.name.value_or(QString())),
      m_faults(scenario.faults),
      m_serial(scenario, m_faults)
{
    connect(&m_serial, &SerialLink::notification, this, &RemoteDevice::sendNotification);
    connect(&m_serial, &SerialLink::linkDropped, this, &RemoteDevice::linkDown);
    connect(&m_serial, &SerialLink::calamity, this,
            [this](const Fault &fault) { m_around.strike(fault, m_scenario.address); });
    connect(&m_serial, &SerialLink::credits, this,
            [this](const QString &event, int granted, qsizetype waiting) {
                record(event, {{u"granted"_s, granted}, {u"waiting"_s, waiting}});
            });

    m_temporaryTimer.setSingleShot(true);
    m_temporaryTimer.setInterval(around.temporaryTimeout);
    connect(&m_temporaryTimer, &QTimer::timeout, this, &RemoteDevice::removeFromTree);

    if (scenario.known) {
        m_temporary = false;
        addToTree();
    }
}

// ---- On the air

void RemoteDevice::discoveryStarted(const QString &transport)
{
    if (m_scenario.radio == Radio::Classic && transport == "le"_L1)
        return;
    m_discovering = true;
    m_temporaryTimer.stop();
    const quint64 discovery = ++m_discovery;
    for (const Advertisement &each : m_scenario.advertise) {
        QTimer::singleShot(each.after, this, [this, discovery, each] {
            if (m_discovering && discovery == m_discovery)
                advertise(each.rssi, each.name);
        });
    }
}

void RemoteDevice::discoveryStopped()
{
    m_discovering = false;
    if (!m_inTree)
        return;
    if (m_around.tree.property(m_path, kDevice, u"RSSI"_s).isValid())
        changeDevice({}, {u"RSSI"_s});
    if (m_temporary)
        m_temporaryTimer.start();
}

void RemoteDevice::advertise(int rssi, const std::optional<QString> &name)
{
    if (!m_discovering || m_connected)
        return;
    m_lastRssi = rssi;
    const bool renamed = name && *name != m_name;
    if (name)
        m_name = *name;

    QVariantMap changes{{u"RSSI"_s, QVariant::fromValue(short(rssi))}};
    if (!m_inTree) {
        addToTree();
        return;
    }
    if (renamed) {
        changes.insert(u"Name"_s, m_name);
        changes.insert(u"Alias"_s, m_name);
    }
    changeDevice(changes);
}

QVariantMap RemoteDevice::deviceProperties() const
{
    // A peripheral without a name goes by its address.
    const QString nameless = QString(m_scenario.address).replace(u':', u'-');
    QVariantMap properties{
        {u"Address"_s, m_scenario.address},
        {u"AddressType"_s, m_scenario.addressType},
        {u"Alias"_s, m_scenario.alias.value_or(m_name.isEmpty() ? nameless : m_name)},
        {u"Paired"_s, m_scenario.radio == Radio::Classic},
        {u"Bonded"_s, m_scenario.radio == Radio::Classic},
        {u"Trusted"_s, false},
        {u"Blocked"_s, false},
        {u"LegacyPairing"_s, false},
        {u"Connected"_s, m_connected},
        {u"UUIDs"_s, QStringList()},
        {u"Adapter"_s, QVariant::fromValue(QDBusObjectPath(m_around.adapterPath))},
        {u"ServicesResolved"_s, false},
    };
    if (!m_name.isEmpty())
        properties.insert(u"Name"_s, m_name);
    if (m_scenario.deviceClass)
        properties.insert(u"Class"_s, m_scenario.deviceClass);
    if (m_scenario.radio == Radio::LowEnergy)
        properties.insert(u"AdvertisingFlags"_s, QByteArray(1, '\x06'));
    if (m_scenario.radio == Radio::Dual)
        properties.insert(u"UUIDs"_s, QStringList(u"00001800-0000-1000-8000-00805f9b34fb"_s));
    if (m_discovering && !m_connected)
        properties.insert(u"RSSI"_s, QVariant::fromValue(short(m_lastRssi)));
    return properties;
}

void RemoteDevice::addToTree()
{
    m_inTree = true;
    m_around.tree.add(m_path, kDevice, deviceProperties());
}

void RemoteDevice::removeFromTree()
{
    if (!m_inTree)
        return;
    linkDown();
    m_temporaryTimer.stop();
    failWaiting(u"Operation failed with ATT error: 0x0e"_s);
    m_around.tree.removeAll(m_path);
    m_characteristics.clear();
    m_descriptors.clear();
    m_gattKnown = false;
    m_inTree = false;
    m_temporary = true;
}

void RemoteDevice::powerLost()
{
    linkDown();
    ++m_generation;
    failWaiting(u"le-connection-abort-by-local"_s);
}

void RemoteDevice::daemonGone()
{
    failWaiting(u"Message recipient disconnected from message bus without replying"_s,
                u"org.freedesktop.DBus.Error.NoReply"_s);
    ++m_generation;
    removeFromTree();
}

void RemoteDevice::daemonBack()
{
    if (!m_scenario.known)
        return;
    m_temporary = false;
    addToTree();
}

// ---- Calls

bool RemoteDevice::handle(const QDBusMessage &call)
{
    if (call.path() == m_path)
        return handleDevice(call);
    if (const auto found = m_characteristics.find(call.path()); found != m_characteristics.end())
        return handleCharacteristic(*found, call);
    if (const auto found = m_descriptors.find(call.path()); found != m_descriptors.end())
        return handleDescriptor(*found, call);
    return false;
}

bool RemoteDevice::handleDevice(const QDBusMessage &call)
{
    if (call.interface() != kDevice)
        return false;
    if (call.member() == "Connect"_L1)
        connectCalled(call);
    else if (call.member() == "Disconnect"_L1)
        disconnectCalled(call);
    else
        return false;
    return true;
}

bool RemoteDevice::handleCharacteristic(Characteristic &characteristic, const QDBusMessage &call)
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
            refuse(call, kFailed, u"No notify session started"_s);
        } else {
            unsubscribe(characteristic, call.service());
            reply(call);
        }
    } else {
        return false;
    }
    return true;
}

bool RemoteDevice::handleDescriptor(Descriptor &descriptor, const QDBusMessage &call)
{
    if (call.interface() != kDescriptor)
        return false;
    const bool isCccd = descriptor.spec.uuid == kCccd;
    if (call.member() == "WriteValue"_L1) {
        if (isCccd) {
            refuse(call, kNotPermitted, u"Write not permitted"_s);
        } else {
            descriptor.spec.value = call.arguments().value(0).toByteArray();
            reply(call);
        }
        return true;
    }
    if (call.member() != "ReadValue"_L1)
        return false;

    record(u"ReadValue"_s, {{u"path"_s, call.path()}});
    if (!m_resolved) {
        refuse(call, kFailed, u"Not connected"_s);
        return true;
    }
    withFault(m_faults.next(Step::Details), call, [this, call, isCccd, &descriptor] {
        QByteArray value = descriptor.spec.value;
        if (isCccd) {
            const Characteristic &owner = m_characteristics[descriptor.characteristic];
            const bool notify = owner.spec.flags.contains(u"notify"_s);
            value = QByteArray::fromHex(!owner.cccd ? "0000" : notify ? "0100" : "0200");
        }
        m_around.tree.change(call.path(), kDescriptor, {{u"Value"_s, value}});
        reply(call, value);
    });
    return true;
}

void RemoteDevice::withFault(const std::optional<Fault> &fault, const QDBusMessage &call,
                             const std::function<void()> &rest)
{
    if (!fault || fault->kind == FaultKind::Freeze) {
        strikes(fault);
        rest();
        return;
    }
    const quint64 id = hold(call);
    if (strikes(fault))
        return;
    switch (fault->kind) {
    case FaultKind::Silent:
        break;
    case FaultKind::Drop:
        later(fault->ms, [this] { linkDown(); });
        break;
    case FaultKind::Refuse:
        later(fault->ms, [this, id, call, fault] {
            if (release(id))
                refuse(call, fault->errorName, fault->errorMessage);
        });
        break;
    default:
        later(fault->ms, [this, id, rest] {
            if (release(id))
                rest();
        });
        break;
    }
}

// Whether that was the end of the step.
bool RemoteDevice::strikes(const std::optional<Fault> &fault)
{
    if (!fault || !isCalamity(fault->kind))
        return false;
    m_around.strike(*fault, m_scenario.address);
    return fault->kind != FaultKind::Freeze;
}

void RemoteDevice::later(int ms, const std::function<void()> &what)
{
    if (ms == 0) {
        what();
        return;
    }
    QTimer::singleShot(ms, this, [this, generation = m_generation, what] {
        if (generation == m_generation)
            what();
    });
}

quint64 RemoteDevice::hold(const QDBusMessage &call)
{
    m_waiting.append({++m_lastWaiting, call});
    return m_lastWaiting;
}

bool RemoteDevice::release(quint64 id)
{
    return m_waiting.removeIf([id](const Waiting &each) { return each.id == id; }) > 0;
}

void RemoteDevice::failWaiting(const QString &message, const QString &error)
{
    const QList<Waiting> waiting = std::exchange(m_waiting, {});
    for (const Waiting &each : waiting)
        refuse(each.call, error, message);
}

// ---- The connection

void RemoteDevice::connectCalled(const QDBusMessage &call)
{
    record(u"Connect"_s);
    if (m_connected) {
        reply(call);
        return;
    }
    if (isConnecting()) {
        refuse(call, u"org.bluez.Error.InProgress"_s, u"In Progress"_s);
        return;
    }
    const std::optional<Fault> fault = m_faults.next(Step::Connect);
    if (fault && fault->kind == FaultKind::Drop) {
        linkUp();
        reply(call);
        later(fault->ms, [this] { linkDown(); });
        return;
    }
    withFault(fault, call, [this, call] {
        linkUp();
        reply(call);
        discoverServices();
    });
}

bool RemoteDevice::isConnecting() const
{
    return std::ranges::any_of(
        m_waiting, [](const Waiting &each) { return each.call.member() == "Connect"_L1; });
}

void RemoteDevice::linkUp()
{
    m_connected = true;
    m_temporary = false;
    m_temporaryTimer.stop();
    ++m_generation;
    m_serial.reset();
    record(u"connected"_s);
    changeDevice({{u"Connected"_s, true}});
}

void RemoteDevice::discoverServices()
{
    const std::optional<Fault> fault = m_faults.next(Step::Discover);
    if (strikes(fault))
        return;
    if (!fault) {
        servicesResolved(true);
        return;
    }
    switch (fault->kind) {
    case FaultKind::Silent:
        break;
    case FaultKind::Drop:
        servicesResolved(true);
        later(fault->ms, [this] { linkDown(); });
        break;
    case FaultKind::Empty:
        later(fault->ms, [this] { servicesResolved(false); });
        break;
    default:
        later(fault->ms, [this] { servicesResolved(true); });
        break;
    }
}

void RemoteDevice::servicesResolved(bool withServices)
{
    m_resolved = true;
    if (!withServices || m_gattKnown) {
        // A subscription outlives the link: the daemon renews it before anybody asks.
        for (Characteristic &each : m_characteristics) {
            if (!each.clients.isEmpty())
                setCccd(each, true);
        }
        changeDevice({{u"ServicesResolved"_s, true}});
        return;
    }
    m_gattKnown = true;
    addGattObjects();
    QStringList uuids;
    const QList<ServiceSpec> table = gattTable(m_scenario);
    for (const ServiceSpec &service : table)
        uuids.append(service.uuid);
    changeDevice({{u"UUIDs"_s, uuids}, {u"ServicesResolved"_s, true}});
}

void RemoteDevice::addGattObjects()
{
    int handle = 1;
    const QList<ServiceSpec> table = gattTable(m_scenario);
    for (const ServiceSpec &service : table) {
        const QString path = numbered(m_path, "service", handle);
        m_around.tree.add(path, kService,
                          {
                              {u"Handle"_s, QVariant::fromValue(ushort(handle))},
                              {u"UUID"_s, service.uuid},
                              {u"Device"_s, QVariant::fromValue(QDBusObjectPath(m_path))},
                              {u"Primary"_s, service.primary},
                              {u"Includes"_s, QVariant::fromValue(QList<QDBusObjectPath>())},
                          });
        ++handle;
        for (const CharacteristicSpec &spec : service.characteristics)
            addCharacteristic(spec, path, handle);
    }
}

void RemoteDevice::addCharacteristic(const CharacteristicSpec &spec, const QString &servicePath,
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

void RemoteDevice::disconnectCalled(const QDBusMessage &call)
{
    record(u"Disconnect"_s);
    if (isConnecting()) {
        ++m_generation;
        failWaiting(u"le-connection-abort-by-local"_s);
        reply(call);
        return;
    }
    if (!m_connected) {
        refuse(call, u"org.bluez.Error.NotConnected"_s, u"Not Connected"_s);
        return;
    }
    const auto end = [this, call] {
        // The call itself is answered as done, whatever else was waiting for the link.
        linkDown();
        reply(call);
    };
    const std::optional<Fault> fault = m_faults.next(Step::Disconnect);
    if (fault) {
        withFault(fault, call, end);
        return;
    }
    const quint64 generation = m_generation;
    if (m_around.disconnectDelay == 0) {
        end();
        return;
    }
    QTimer::singleShot(m_around.disconnectDelay, this, [this, call, generation, end] {
        if (generation == m_generation)
            end();
        else
            reply(call);
    });
}

void RemoteDevice::linkDown()
{
    if (!m_connected)
        return;
    ++m_generation;
    m_connected = false;
    m_serial.reset();
    m_serialPath.clear();
    for (Characteristic &each : m_characteristics)
        each.cccd = false;
    record(u"disconnected"_s);

    QVariantMap changes{{u"Connected"_s, false}};
    if (m_resolved)
        changes.insert(u"ServicesResolved"_s, false);
    m_resolved = false;
    changeDevice(changes);
    failWaiting(u"Operation failed with ATT error: 0x0e"_s);
    if (m_discovering)
        discoveryStarted({});
}

// ---- Characteristics

void RemoteDevice::readCharacteristic(Characteristic &characteristic, const QDBusMessage &call)
{
    record(u"ReadValue"_s, {{u"path"_s, call.path()}});
    if (!m_resolved) {
        refuse(call, kFailed, u"Not connected"_s);
        return;
    }
    withFault(m_faults.next(Step::Details), call, [this, call, &characteristic] {
        if (!characteristic.spec.flags.contains(u"read"_s)) {
            refuse(call, kNotPermitted, u"Read not permitted"_s);
            return;
        }
        const QByteArray value = characteristic.spec.value;
        m_around.tree.change(call.path(), kCharacteristic, {{u"Value"_s, value}});
        reply(call, value);
    });
}

void RemoteDevice::writeCharacteristic(Characteristic &characteristic, const QDBusMessage &call)
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
        refuse(call, kFailed, u"Not connected"_s);
    } else if (isCommand ? !canCommand : !canRequest) {
        refuse(call, kNotSupported, u"Operation is not supported"_s);
    } else if (bytes.size() > kLongestValue) {
        refuse(call, u"org.bluez.Error.InvalidValueLength"_s, u"Invalid Length"_s);
    } else if (isCommand && bytes.size() > m_scenario.mtu - 3) {
        refuse(call, kFailed, u"Failed to initiate write"_s);
    } else {
        const std::optional<Fault> fault = m_faults.next(Step::Write, commandOf(bytes));
        if (fault && fault->kind == FaultKind::Drop) {
            reply(call);
            later(fault->ms, [this] { linkDown(); });
            return;
        }
        if (fault && isCalamity(fault->kind) && fault->kind != FaultKind::Freeze) {
            reply(call);
            strikes(fault);
            return;
        }
        withFault(fault, call, [this, call, bytes, fault, &characteristic] {
            reply(call);
            if (!fault || fault->kind != FaultKind::Lost)
                written(characteristic, bytes);
        });
    }
}

void RemoteDevice::written(Characteristic &characteristic, const QByteArray &bytes)
{
    switch (characteristic.spec.role) {
    case Role::Data:
        m_serialPath = characteristic.path;
        record(u"frame"_s, {{u"hex"_s, toHex(bytes)}});
        m_serial.written(bytes);
        break;
    case Role::Credits:
        m_serial.creditsGranted(bytes);
        break;
    case Role::None:
        characteristic.spec.value = bytes;
        break;
    }
}

void RemoteDevice::startNotify(Characteristic &characteristic, const QDBusMessage &call)
{
    record(u"StartNotify"_s,
           {{u"path"_s, characteristic.path}, {u"characteristic"_s, characteristic.spec.uuid}});
    const QStringList &flags = characteristic.spec.flags;
    if (!m_resolved) {
        refuse(call, kFailed, u"Not connected"_s);
    } else if (!flags.contains(u"notify"_s) && !flags.contains(u"indicate"_s)) {
        refuse(call, kNotSupported, u"Operation is not supported"_s);
    } else if (characteristic.clients.contains(call.service())) {
        reply(call);
    } else {
        withFault(m_faults.next(Step::Subscribe), call,
                  [this, call, &characteristic] { subscribe(characteristic, call); });
    }
}

void RemoteDevice::subscribe(Characteristic &characteristic, const QDBusMessage &call)
{
    const bool first = characteristic.clients.isEmpty();
    characteristic.clients.append(call.service());
    if (first) {
        setCccd(characteristic, true);
        m_around.tree.change(characteristic.path, kCharacteristic, {{u"Notifying"_s, true}});
    }
    reply(call);
}

void RemoteDevice::unsubscribe(Characteristic &characteristic, const QString &client)
{
    if (characteristic.clients.removeAll(client) == 0 || !characteristic.clients.isEmpty())
        return;
    setCccd(characteristic, false);
    m_around.tree.change(characteristic.path, kCharacteristic, {{u"Notifying"_s, false}});
}

void RemoteDevice::setCccd(Characteristic &characteristic, bool on)
{
    if (!m_resolved || characteristic.cccd == on)
        return;
    characteristic.cccd = on;
    const bool notify = characteristic.spec.flags.contains(u"notify"_s);
    const QString value = !on ? u"0000"_s : notify ? u"0100"_s : u"0200"_s;
    record(u"cccd"_s, {{u"characteristic"_s, characteristic.spec.uuid}, {u"value"_s, value}});
}

void RemoteDevice::clientGone(const QString &client)
{
    for (Characteristic &each : m_characteristics)
        unsubscribe(each, client);
}

void RemoteDevice::sendNotification(const QByteArray &bytes)
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

bool RemoteDevice::notifyNow(const QByteArray &bytes)
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

// ---- Helpers

void RemoteDevice::changeDevice(const QVariantMap &changes, const QStringList &invalidated)
{
    m_around.tree.change(m_path, kDevice, changes, invalidated);
}

void RemoteDevice::reply(const QDBusMessage &call, const QVariant &value)
{
    if (call.isReplyRequired())
        m_around.bus.send(value.isValid() ? call.createReply(value) : call.createReply());
}

void RemoteDevice::refuse(const QDBusMessage &call, const QString &error, const QString &message)
{
    if (call.isReplyRequired())
        m_around.bus.send(call.createErrorReply(error, message));
}

void RemoteDevice::record(const QString &event, QJsonObject details)
{
    details.insert(u"address"_s, m_scenario.address);
    m_around.recorder.add(event, details);
}

QJsonObject RemoteDevice::state() const
{
    QJsonObject object = m_serial.computer().state();
    object.insert(u"address"_s, m_scenario.address);
    object.insert(u"connected"_s, m_connected);
    bool subscribed = false;
    for (const Characteristic &each : m_characteristics)
        subscribed = subscribed || (each.spec.role == Role::Data && each.cccd);
    object.insert(u"subscribed"_s, subscribed);
    return object;
}

} // namespace simulator
