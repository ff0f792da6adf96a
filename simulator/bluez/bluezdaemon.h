// SPDX-License-Identifier: MIT
#pragma once

#include "bluez/objecttree.h"
#include "bluez/remotedevice.h"
#include "device/scenario/recorder.h"
#include "device/scenario/scenario.h"

#include <QtCore/qhash.h>
#include <QtCore/qobject.h>
#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbusservicewatcher.h>
#include <QtDBus/qdbusvirtualobject.h>

#include <memory>
#include <vector>

namespace simulator {

/**
 * BlueZ's daemon on a bus of ours: one adapter and the devices of a scenario, behaving as
 * bluetoothd does towards Qt.
 */
class BluezDaemon : public QDBusVirtualObject
{
    Q_OBJECT

public:
    explicit BluezDaemon(const QDBusConnection &bus, QObject *parent = nullptr);
    ~BluezDaemon() override;

    bool start(QString *error);
    /** Everything that was there goes; what this scenario says comes. */
    void load(const Scenario &scenario);

    RemoteDevice *device(const QString &address) const;
    void setPowered(bool powered);
    void removeAdapter();
    /** As when the daemon's process ends, and when it is started again. */
    void end();
    void startAgain();
    Recorder &recorder() { return m_recorder; }

    bool handleMessage(const QDBusMessage &call, const QDBusConnection &connection) override;
    QString introspect(const QString &path) const override;

private:
    bool handleObjectManager(const QDBusMessage &call);
    bool handleProperties(const QDBusMessage &call);
    bool handleAdapter(const QDBusMessage &call);
    bool handleDevice(const QDBusMessage &call);

    void strike(const Fault &fault, const QString &address);
    void takeName();
    void loadAdapter();
    void setDiscoveryFilter(const QDBusMessage &call);
    void startDiscovery(const QDBusMessage &call);
    void stopDiscovery(const QDBusMessage &call);
    void endDiscovery();
    void removeDevice(const QDBusMessage &call);
    void clientGone(const QString &client);

    void reply(const QDBusMessage &call, const QVariant &value = {});
    void refuse(const QDBusMessage &call, const QString &error, const QString &message);

    QDBusConnection m_bus;
    ObjectTree m_tree;
    Recorder m_recorder;
    QDBusServiceWatcher m_clients;
    Scenario m_scenario;
    quint64 m_generation = 0; ///< of the scenario
    bool m_ended = false;
    std::vector<std::unique_ptr<RemoteDevice>> m_devices;
    QHash<QString, QString> m_filters; ///< of each client: the transport it wants
    QStringList m_discoverers;
};

} // namespace simulator
