// SPDX-License-Identifier: MIT
#include "bluez/bluezdaemon.h"

#include <QtCore/qthread.h>
#include <QtCore/qtimer.h>
#include <QtDBus/qdbusargument.h>
#include <QtDBus/qdbuserror.h>
#include <QtDBus/qdbusextratypes.h>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

const QString kName = u"org.bluez"_s;
const QString kRoot = u"/"_s;
const QString kBluez = u"/org/bluez"_s;
const QString kAdapterPath = u"/org/bluez/hci0"_s;
const QString kAdapter = u"org.bluez.Adapter1"_s;
const QString kAgentManager = u"org.bluez.AgentManager1"_s;

const QString kNotReady = u"org.bluez.Error.NotReady"_s;

} // namespace

BluezDaemon::BluezDaemon(const QDBusConnection &bus, QObject *parent)
    : QDBusVirtualObject(parent), m_bus(bus), m_tree(bus)
{
    m_clients.setConnection(m_bus);
    m_clients.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&m_clients, &QDBusServiceWatcher::serviceUnregistered, this, &BluezDaemon::clientGone);
    m_tree.add(kBluez, kAgentManager, {});
}

BluezDaemon::~BluezDaemon() = default;

bool BluezDaemon::start(QString *error)
{
    // The object manager alone stands at the root; below it there is room for others.
    if (m_bus.registerVirtualObject(kRoot, this, QDBusConnection::SingleNode)
        && m_bus.registerVirtualObject(kBluez, this, QDBusConnection::SubPath)
        && m_bus.registerService(kName))
        return true;
    *error = u"cannot take the name org.bluez: "_s + m_bus.lastError().message();
    return false;
}

void BluezDaemon::load(const Scenario &scenario)
{
    for (const auto &each : m_devices)
        each->removeFromTree();
    m_devices.clear();
    endDiscovery();
    m_filters.clear();
    m_recorder.restart();
    m_recorder.setWithTraffic(scenario.recordTraffic);

    ++m_generation;
    m_scenario = scenario;
    if (m_ended)
        takeName();
    loadAdapter();
    const RemoteDevice::Surroundings around{
        m_bus,
        m_tree,
        m_recorder,
        kAdapterPath,
        scenario.disconnectDelay,
        scenario.temporaryTimeout,
        [this](const Fault &fault, const QString &address) { strike(fault, address); }};
    for (const DeviceScenario &device : scenario.devices)
        m_devices.push_back(std::make_unique<RemoteDevice>(device, around));
}

RemoteDevice *BluezDaemon::device(const QString &address) const
{
    for (const auto &each : m_devices) {
        if (each->address() == address)
            return each.get();
    }
    return nullptr;
}

void BluezDaemon::loadAdapter()
{
    if (!m_scenario.adapter.present) {
        m_tree.remove(kAdapterPath);
        return;
    }
    if (m_tree.contains(kAdapterPath)) {
        // Qt gives up a scan when it hears that the adapter went, and it may hear that only after
        // it started the next one; so an adapter that stays is never removed.
        m_tree.change(kAdapterPath, kAdapter,
                      {{u"Address"_s, m_scenario.adapter.address},
                       {u"Powered"_s, m_scenario.adapter.powered}});
        return;
    }
    m_tree.add(kAdapterPath, kAdapter,
               {
                   {u"Address"_s, m_scenario.adapter.address},
                   {u"AddressType"_s, u"public"_s},
                   {u"Name"_s, u"simulator"_s},
                   {u"Alias"_s, u"simulator"_s},
                   {u"Class"_s, 0U},
                   {u"Powered"_s, m_scenario.adapter.powered},
                   {u"Discoverable"_s, false},
                   {u"DiscoverableTimeout"_s, 180U},
                   {u"Pairable"_s, false},
                   {u"PairableTimeout"_s, 0U},
                   {u"Discovering"_s, false},
                   {u"Modalias"_s,
                    m_scenario.isReplay ? u"varda:replay"_s : u"usb:v1D6Bp0246d0552"_s}, // 5.82
                   {u"UUIDs"_s, QStringList()},
                   {u"Roles"_s, QStringList(u"central"_s)},
               });
}

void BluezDaemon::setPowered(bool powered)
{
    if (!m_tree.contains(kAdapterPath)
        || m_tree.property(kAdapterPath, kAdapter, u"Powered"_s).toBool() == powered)
        return;
    if (!powered) {
        for (const auto &each : m_devices)
            each->powerLost();
        endDiscovery();
    }
    m_tree.change(kAdapterPath, kAdapter, {{u"Powered"_s, powered}});
}

void BluezDaemon::removeAdapter()
{
    for (const auto &each : m_devices)
        each->linkDown();
    endDiscovery();
    for (const auto &each : m_devices)
        each->removeFromTree();
    m_tree.remove(kAdapterPath);
}

void BluezDaemon::end()
{
    if (m_ended)
        return;
    m_ended = true;
    m_recorder.add(u"daemonGone"_s);
    m_tree.setSilent(true);
    m_bus.unregisterService(kName);
    for (const auto &each : m_devices)
        each->daemonGone();
    endDiscovery();
    m_filters.clear();
    m_tree.remove(kAdapterPath);
}

void BluezDaemon::startAgain()
{
    if (!m_ended)
        return;
    takeName();
    loadAdapter();
    for (const auto &each : m_devices)
        each->daemonBack();
}

void BluezDaemon::takeName()
{
    m_ended = false;
    m_tree.setSilent(false);
    m_bus.registerService(kName);
}

void BluezDaemon::strike(const Fault &fault, const QString &address)
{
    if (fault.kind == FaultKind::Freeze) {
        QThread::msleep(ulong(fault.ms));
        return;
    }
    // Later at the earliest: whoever asks for it is in the middle of something.
    const auto happen = [this, kind = fault.kind, address, generation = m_generation] {
        if (generation != m_generation)
            return;
        if (kind == FaultKind::Vanish)
            device(address)->removeFromTree();
        else if (kind == FaultKind::AdapterGone)
            removeAdapter();
        else if (kind == FaultKind::PowerOff)
            setPowered(false);
        else
            end();
    };
    QTimer::singleShot(fault.ms, this, happen);
}

bool BluezDaemon::handleMessage(const QDBusMessage &call, const QDBusConnection &)
{
    if (m_ended) {
        refuse(call, QDBusError::errorString(QDBusError::ServiceUnknown),
               u"The name org.bluez was not provided by any .service files"_s);
        return true;
    }
    const QString interface = call.interface();
    // Qt itself answers these, with the help of introspect().
    if (interface == "org.freedesktop.DBus.Introspectable"_L1
        || interface == "org.freedesktop.DBus.Peer"_L1)
        return false;

    bool handled = false;
    if (interface == "org.freedesktop.DBus.ObjectManager"_L1)
        handled = handleObjectManager(call);
    else if (interface == "org.freedesktop.DBus.Properties"_L1)
        handled = handleProperties(call);
    else if (interface == kAdapter && call.path() == kAdapterPath)
        handled = handleAdapter(call);
    else if (interface == kAgentManager && call.path() == kBluez)
        handled = (reply(call), true);
    else
        handled = handleDevice(call);

    if (!handled) {
        const bool exists = m_tree.contains(call.path());
        refuse(
            call,
            QDBusError::errorString(exists ? QDBusError::UnknownMethod : QDBusError::UnknownObject),
            u"Method \"%1\" with signature \"%2\" on interface \"%3\" doesn't exist"_s.arg(
                call.member(), call.signature(), interface));
    }
    return true;
}

QString BluezDaemon::introspect(const QString &path) const
{
    return m_tree.introspect(path);
}

bool BluezDaemon::handleObjectManager(const QDBusMessage &call)
{
    if (call.path() != kRoot || call.member() != "GetManagedObjects"_L1)
        return false;
    reply(call, QVariant::fromValue(m_tree.all()));
    return true;
}

bool BluezDaemon::handleProperties(const QDBusMessage &call)
{
    if (!m_tree.contains(call.path()))
        return false;
    if (call.member() == "Get"_L1 || call.member() == "GetAll"_L1) {
        m_bus.send(m_tree.answerProperties(call));
        return true;
    }
    if (call.member() != "Set"_L1)
        return false;

    const QString interface = call.arguments().value(0).toString();
    const QString name = call.arguments().value(1).toString();
    const QVariant value = qvariant_cast<QDBusVariant>(call.arguments().value(2)).variant();
    if (interface == kAdapter && name == "Powered"_L1)
        setPowered(value.toBool());
    else
        m_tree.change(call.path(), interface, {{name, value}});
    reply(call);
    return true;
}

bool BluezDaemon::handleAdapter(const QDBusMessage &call)
{
    if (!m_tree.contains(kAdapterPath))
        return false;
    if (call.member() == "SetDiscoveryFilter"_L1)
        setDiscoveryFilter(call);
    else if (call.member() == "StartDiscovery"_L1)
        startDiscovery(call);
    else if (call.member() == "StopDiscovery"_L1)
        stopDiscovery(call);
    else if (call.member() == "RemoveDevice"_L1)
        removeDevice(call);
    else
        return false;
    return true;
}

bool BluezDaemon::handleDevice(const QDBusMessage &call)
{
    if (!m_tree.contains(call.path()))
        return false;
    for (const auto &each : m_devices) {
        if (!call.path().startsWith(each->path()))
            continue;
        const bool connects = call.member() == "Connect"_L1;
        if (connects && !m_tree.property(kAdapterPath, kAdapter, u"Powered"_s).toBool()) {
            refuse(call, kNotReady, u"Resource Not Ready"_s);
            return true;
        }
        // What a client subscribed to is given up when the client ends.
        m_clients.addWatchedService(call.service());
        return each->handle(call);
    }
    return false;
}

void BluezDaemon::setDiscoveryFilter(const QDBusMessage &call)
{
    const auto filter = qdbus_cast<QVariantMap>(call.arguments().value(0));
    const QString transport = filter.value(u"Transport"_s).toString();
    m_recorder.add(u"SetDiscoveryFilter"_s,
                   {{u"path"_s, call.path()}, {u"transport"_s, transport}});
    m_filters.insert(call.service(), transport);
    reply(call);
}

void BluezDaemon::startDiscovery(const QDBusMessage &call)
{
    m_recorder.add(u"StartDiscovery"_s, {{u"path"_s, call.path()}});
    if (!m_tree.property(kAdapterPath, kAdapter, u"Powered"_s).toBool()) {
        refuse(call, kNotReady, u"Resource Not Ready"_s);
        return;
    }
    if (m_discoverers.contains(call.service())) {
        refuse(call, u"org.bluez.Error.InProgress"_s, u"Operation already in progress"_s);
        return;
    }
    m_clients.addWatchedService(call.service());
    m_discoverers.append(call.service());
    reply(call);
    if (m_discoverers.size() == 1)
        m_tree.change(kAdapterPath, kAdapter, {{u"Discovering"_s, true}});
    const QString transport = m_filters.value(call.service());
    for (const auto &each : m_devices)
        each->discoveryStarted(transport);
}

void BluezDaemon::stopDiscovery(const QDBusMessage &call)
{
    m_recorder.add(u"StopDiscovery"_s, {{u"path"_s, call.path()}});
    if (!m_discoverers.removeOne(call.service())) {
        refuse(call, u"org.bluez.Error.Failed"_s, u"No discovery started"_s);
        return;
    }
    reply(call);
    if (m_discoverers.isEmpty())
        endDiscovery();
}

void BluezDaemon::endDiscovery()
{
    m_discoverers.clear();
    for (const auto &each : m_devices)
        each->discoveryStopped();
    if (m_tree.property(kAdapterPath, kAdapter, u"Discovering"_s).toBool())
        m_tree.change(kAdapterPath, kAdapter, {{u"Discovering"_s, false}});
}

void BluezDaemon::removeDevice(const QDBusMessage &call)
{
    const QString path = qvariant_cast<QDBusObjectPath>(call.arguments().value(0)).path();
    m_recorder.add(u"RemoveDevice"_s, {{u"path"_s, path}});
    for (const auto &each : m_devices) {
        if (each->path() == path && m_tree.contains(path)) {
            each->removeFromTree();
            reply(call);
            return;
        }
    }
    refuse(call, u"org.bluez.Error.DoesNotExist"_s, u"Does Not Exist"_s);
}

void BluezDaemon::clientGone(const QString &client)
{
    m_clients.removeWatchedService(client);
    m_filters.remove(client);
    for (const auto &each : m_devices)
        each->clientGone(client);
    if (m_discoverers.removeOne(client) && m_discoverers.isEmpty())
        endDiscovery();
}

void BluezDaemon::reply(const QDBusMessage &call, const QVariant &value)
{
    if (call.isReplyRequired())
        m_bus.send(value.isValid() ? call.createReply(value) : call.createReply());
}

void BluezDaemon::refuse(const QDBusMessage &call, const QString &error, const QString &message)
{
    if (call.isReplyRequired())
        m_bus.send(call.createErrorReply(error, message));
}

} // namespace simulator
