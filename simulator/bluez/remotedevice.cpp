// SPDX-License-Identifier: MIT
#include "bluez/remotedevice.h"

#include <QtCore/qtimer.h>

using namespace Qt::StringLiterals;

namespace simulator {

RemoteDevice::RemoteDevice(const DeviceScenario &scenario, const Surroundings &around,
                           QObject *parent)
    : QObject(parent),
      m_scenario(scenario),
      m_around(around),
      m_faults(scenario.faults),
      m_serial(scenario, m_faults),
      m_calls(around.bus,
              [this](const Fault &fault) { m_around.strike(fault, m_scenario.address); }),
      m_object(scenario, around.tree, around.adapterPath, around.temporaryTimeout),
      m_gatt(scenario,
             {around.tree, m_calls, m_faults, m_serial, m_object.path(),
              [this](const QString &event, const QJsonObject &details) { record(event, details); }})
{
    connect(&m_calls, &PendingCalls::linkDropped, this, &RemoteDevice::linkDown);
    connect(&m_object, &DeviceObject::forgotten, this, &RemoteDevice::removeFromTree);
    connect(&m_serial, &SerialLink::linkDropped, this, &RemoteDevice::linkDown);
    connect(&m_serial, &SerialLink::calamity, this,
            [this](const Fault &fault) { m_around.strike(fault, m_scenario.address); });
    connect(&m_serial, &SerialLink::credits, this,
            [this](const QString &event, int granted, qsizetype waiting) {
                record(event, {{u"granted"_s, granted}, {u"waiting"_s, waiting}});
            });
}

bool RemoteDevice::handle(const QDBusMessage &call)
{
    if (call.path() != path())
        return m_gatt.handle(call);
    if (call.interface() != "org.bluez.Device1"_L1)
        return false;
    if (call.member() == "Connect"_L1)
        connectCalled(call);
    else if (call.member() == "Disconnect"_L1)
        disconnectCalled(call);
    else
        return false;
    return true;
}

void RemoteDevice::connectCalled(const QDBusMessage &call)
{
    record(u"Connect"_s);
    if (m_object.isConnected()) {
        m_calls.reply(call);
        return;
    }
    if (isConnecting()) {
        m_calls.refuse(call, u"org.bluez.Error.InProgress"_s, u"In Progress"_s);
        return;
    }
    const std::optional<Fault> fault = m_faults.next(Step::Connect);
    if (fault && fault->kind == FaultKind::Drop) {
        linkUp();
        m_calls.reply(call);
        m_calls.dropLater(fault->ms);
        return;
    }
    m_calls.withFault(fault, call, [this, call] {
        linkUp();
        m_calls.reply(call);
        discoverServices();
    });
}

bool RemoteDevice::isConnecting() const
{
    return m_calls.isWaiting(u"Connect"_s);
}

void RemoteDevice::linkUp()
{
    m_calls.linkChanged();
    m_serial.reset();
    record(u"connected"_s);
    m_object.connected();
}

void RemoteDevice::discoverServices()
{
    const std::optional<Fault> fault = m_faults.next(Step::Discover);
    if (m_calls.strikes(fault))
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
        m_calls.dropLater(fault->ms);
        break;
    case FaultKind::Empty:
        m_calls.later(fault->ms, [this] { servicesResolved(false); });
        break;
    default:
        m_calls.later(fault->ms, [this] { servicesResolved(true); });
        break;
    }
}

void RemoteDevice::servicesResolved(bool withServices)
{
    QVariantMap changes{{u"ServicesResolved"_s, true}};
    if (const std::optional<QStringList> uuids = m_gatt.resolve(withServices))
        changes.insert(u"UUIDs"_s, *uuids);
    m_object.change(changes);
}

void RemoteDevice::disconnectCalled(const QDBusMessage &call)
{
    record(u"Disconnect"_s);
    if (isConnecting()) {
        m_calls.linkChanged();
        m_calls.failAll(u"le-connection-abort-by-local"_s);
        m_calls.reply(call);
        return;
    }
    if (!m_object.isConnected()) {
        m_calls.refuse(call, u"org.bluez.Error.NotConnected"_s, u"Not Connected"_s);
        return;
    }
    const auto end = [this, call] {
        // The call itself is answered as done, whatever else was waiting for the link.
        linkDown();
        m_calls.reply(call);
    };
    const std::optional<Fault> fault = m_faults.next(Step::Disconnect);
    if (fault) {
        m_calls.withFault(fault, call, end);
        return;
    }
    const quint64 generation = m_calls.generation();
    if (m_around.disconnectDelay == 0) {
        end();
        return;
    }
    QTimer::singleShot(m_around.disconnectDelay, this, [this, call, generation, end] {
        if (generation == m_calls.generation())
            end();
        else
            m_calls.reply(call);
    });
}

void RemoteDevice::linkDown()
{
    if (!isConnected())
        return;
    m_calls.linkChanged();
    m_serial.reset();
    const bool wasResolved = m_gatt.isResolved();
    m_gatt.linkDown();
    record(u"disconnected"_s);
    m_object.disconnected(wasResolved);
    m_calls.failAll(u"Operation failed with ATT error: 0x0e"_s);
    m_object.advertiseAgain();
}

void RemoteDevice::removeFromTree()
{
    if (!m_object.isThere())
        return;
    linkDown();
    m_calls.failAll(u"Operation failed with ATT error: 0x0e"_s);
    m_object.remove();
    m_gatt.clear();
}

void RemoteDevice::powerLost()
{
    linkDown();
    m_calls.linkChanged();
    m_calls.failAll(u"le-connection-abort-by-local"_s);
}

void RemoteDevice::daemonGone()
{
    m_calls.failAll(u"Message recipient disconnected from message bus without replying"_s,
                    u"org.freedesktop.DBus.Error.NoReply"_s);
    m_calls.linkChanged();
    removeFromTree();
}

void RemoteDevice::daemonBack()
{
    m_object.addIfKnown();
}

QJsonObject RemoteDevice::state() const
{
    QJsonObject object = m_serial.computer().state();
    object.insert(u"address"_s, m_scenario.address);
    object.insert(u"connected"_s, isConnected());
    object.insert(u"subscribed"_s, m_gatt.isSubscribed());
    return object;
}

void RemoteDevice::record(const QString &event, QJsonObject details)
{
    details.insert(u"address"_s, m_scenario.address);
    m_around.recorder.add(event, details);
}

} // namespace simulator
