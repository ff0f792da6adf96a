// SPDX-License-Identifier: MIT
#pragma once

#include "bluez/deviceobject.h"
#include "bluez/gattserver.h"
#include "bluez/objecttree.h"
#include "bluez/pendingcalls.h"
#include "device/scenario/faults.h"
#include "device/scenario/recorder.h"
#include "device/scenario/scenario.h"
#include "device/wire/seriallink.h"

#include <QtCore/qjsonobject.h>
#include <QtCore/qobject.h>
#include <QtCore/qstring.h>
#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbusmessage.h>

#include <functional>
#include <optional>

namespace simulator {

/**
 * One peripheral as the daemon sees it: a Device1 with its GATT objects, and the link to the
 * computer behind them, which is made and ended here.
 */
class RemoteDevice : public QObject
{
    Q_OBJECT

public:
    struct Surroundings {
        QDBusConnection bus;
        ObjectTree &tree;
        Recorder &recorder;
        QString adapterPath;
        int disconnectDelay;
        int temporaryTimeout;
        /** Does what happens to more than one device. */
        std::function<void(const Fault &, const QString &address)> strike;
    };

    RemoteDevice(const DeviceScenario &scenario, const Surroundings &around,
                 QObject *parent = nullptr);

    const QString &path() const { return m_object.path(); }
    const QString &address() const { return m_scenario.address; }
    bool isConnected() const { return m_object.isConnected(); }

    void discoveryStarted(const QString &transport) { m_object.discoveryStarted(transport); }
    void discoveryStopped() { m_object.discoveryStopped(); }
    void advertise(int rssi) { m_object.advertise(rssi); }

    /**
     * A method call to this device or one of its GATT objects; false if there is no such method.
     */
    bool handle(const QDBusMessage &call);
    void clientGone(const QString &client) { m_gatt.clientGone(client); }
    /** As when the peripheral ends the link, or it is lost. */
    void linkDown();
    /** Off the bus, as after RemoveDevice. */
    void removeFromTree();
    /** The adapter has no power any more. */
    void powerLost();
    /** The daemon is gone and forgets what it was doing; back again, it remembers what it knew. */
    void daemonGone();
    void daemonBack();
    bool notifyNow(const QByteArray &bytes) { return m_gatt.notifyNow(bytes); }
    QJsonObject state() const;
    QByteArray firmwareImage() const { return m_serial.computer().firmwareImage(); }

private:
    void connectCalled(const QDBusMessage &call);
    void disconnectCalled(const QDBusMessage &call);
    bool isConnecting() const;
    void linkUp();
    void discoverServices();
    void servicesResolved(bool withServices);
    void record(const QString &event, QJsonObject details = {});

    const DeviceScenario m_scenario;
    const Surroundings m_around;
    FaultPlan m_faults;
    SerialLink m_serial;
    PendingCalls m_calls;
    DeviceObject m_object;
    GattServer m_gatt;
};

} // namespace simulator
