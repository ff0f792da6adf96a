// SPDX-License-Identifier: MIT
#include "bluez/deviceobject.h"

#include <QtDBus/qdbusextratypes.h>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

const QString kInterface = u"org.bluez.Device1"_s;

QString devicePath(const QString &adapterPath, const QString &address)
{
    return adapterPath + u"/dev_"_s + QString(address).replace(u':', u'_');
}

} // namespace

DeviceObject::DeviceObject(const DeviceScenario &scenario, ObjectTree &tree,
                           const QString &adapterPath, int temporaryTimeout)
    : m_scenario(scenario),
      m_tree(tree),
      m_adapterPath(adapterPath),
      m_path(devicePath(adapterPath, scenario.address)),
      m_name(scenario.name.value_or(QString()))
{
    m_temporaryTimer.setSingleShot(true);
    m_temporaryTimer.setInterval(temporaryTimeout);
    connect(&m_temporaryTimer, &QTimer::timeout, this, &DeviceObject::forgotten);
    addIfKnown();
}

void DeviceObject::discoveryStarted(const QString &transport)
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

void DeviceObject::discoveryStopped()
{
    m_discovering = false;
    if (!m_inTree)
        return;
    if (m_tree.property(m_path, kInterface, u"RSSI"_s).isValid())
        change({}, {u"RSSI"_s});
    if (m_temporary)
        m_temporaryTimer.start();
}

void DeviceObject::advertiseAgain()
{
    if (m_discovering)
        discoveryStarted({});
}

void DeviceObject::advertise(int rssi, const std::optional<QString> &name)
{
    if (!m_discovering || m_connected)
        return;
    m_lastRssi = rssi;
    const bool renamed = name && *name != m_name;
    if (name)
        m_name = *name;

    QVariantMap changes{{u"RSSI"_s, QVariant::fromValue(short(rssi))}};
    if (!m_inTree) {
        add();
        return;
    }
    if (renamed) {
        changes.insert(u"Name"_s, m_name);
        changes.insert(u"Alias"_s, m_name);
    }
    change(changes);
}

void DeviceObject::connected()
{
    m_connected = true;
    m_temporary = false;
    m_temporaryTimer.stop();
    change({{u"Connected"_s, true}});
}

void DeviceObject::disconnected(bool wasResolved)
{
    m_connected = false;
    QVariantMap changes{{u"Connected"_s, false}};
    if (wasResolved)
        changes.insert(u"ServicesResolved"_s, false);
    change(changes);
}

void DeviceObject::change(const QVariantMap &changes, const QStringList &invalidated)
{
    m_tree.change(m_path, kInterface, changes, invalidated);
}

void DeviceObject::addIfKnown()
{
    if (!m_scenario.known)
        return;
    m_temporary = false;
    add();
}

void DeviceObject::add()
{
    m_inTree = true;
    m_tree.add(m_path, kInterface, properties());
}

void DeviceObject::remove()
{
    m_temporaryTimer.stop();
    m_tree.removeAll(m_path);
    m_inTree = false;
    m_temporary = true;
}

QVariantMap DeviceObject::properties() const
{
    // A peripheral without a name goes by its address.
    const QString nameless = QString(m_scenario.address).replace(u':', u'-');
    QVariantMap all{
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
        {u"Adapter"_s, QVariant::fromValue(QDBusObjectPath(m_adapterPath))},
        {u"ServicesResolved"_s, false},
    };
    if (!m_name.isEmpty())
        all.insert(u"Name"_s, m_name);
    if (m_scenario.deviceClass)
        all.insert(u"Class"_s, m_scenario.deviceClass);
    if (m_scenario.radio == Radio::LowEnergy)
        all.insert(u"AdvertisingFlags"_s, QByteArray(1, '\x06'));
    if (m_scenario.radio == Radio::Dual)
        all.insert(u"UUIDs"_s, QStringList(u"00001800-0000-1000-8000-00805f9b34fb"_s));
    if (m_discovering && !m_connected)
        all.insert(u"RSSI"_s, QVariant::fromValue(short(m_lastRssi)));
    return all;
}

} // namespace simulator
