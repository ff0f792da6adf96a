// SPDX-License-Identifier: MIT
#pragma once

#include "bluez/objecttree.h"
#include "device/faults.h"
#include "device/recorder.h"
#include "device/scenario.h"
#include "device/seriallink.h"

#include <QtCore/qjsonobject.h>
#include <QtCore/qmap.h>
#include <QtCore/qobject.h>
#include <QtCore/qtimer.h>
#include <QtDBus/qdbusmessage.h>

#include <functional>

namespace simulator {

// One peripheral as the daemon sees it: a Device1 with its GATT objects, and the link to the
// computer behind them.
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
        // Does what happens to more than one device.
        std::function<void(const Fault &, const QString &address)> strike;
    };

    RemoteDevice(const DeviceScenario &scenario, const Surroundings &around,
                 QObject *parent = nullptr);

    const QString &path() const { return m_path; }
    const QString &address() const { return m_scenario.address; }
    bool isConnected() const { return m_connected; }

    void discoveryStarted(const QString &transport);
    void discoveryStopped();
    void advertise(int rssi, const std::optional<QString> &name = std::nullopt);

    // A method call to this device or one of its GATT objects; false if there is no such method.
    bool handle(const QDBusMessage &call);
    void clientGone(const QString &client);
    // As when the peripheral ends the link, or it is lost.
    void linkDown();
    // Off the bus, as after RemoveDevice.
    void removeFromTree();
    // The adapter has no power any more.
    void powerLost();
    // The daemon is gone and forgets what it was doing; back again, it remembers what it knew.
    void daemonGone();
    void daemonBack();
    bool notifyNow(const QByteArray &bytes);
    QJsonObject state() const;
    QByteArray firmwareImage() const { return m_serial.computer().firmwareImage(); }

private:
    struct Characteristic {
        CharacteristicSpec spec;
        QString path;
        QStringList clients; // those that the daemon notifies
        bool cccd = false;   // as the peripheral has it
    };
    struct Descriptor {
        DescriptorSpec spec;
        QString characteristic;
    };
    // A call that nobody answered yet.
    struct Waiting {
        quint64 id;
        QDBusMessage call;
    };

    bool handleDevice(const QDBusMessage &call);
    bool handleCharacteristic(Characteristic &characteristic, const QDBusMessage &call);
    bool handleDescriptor(Descriptor &descriptor, const QDBusMessage &call);

    void connectCalled(const QDBusMessage &call);
    void disconnectCalled(const QDBusMessage &call);
    bool isConnecting() const;
    void linkUp();
    void discoverServices();
    void servicesResolved(bool withServices);
    void addGattObjects();
    void addCharacteristic(const CharacteristicSpec &spec, const QString &servicePath, int &handle);

    void readCharacteristic(Characteristic &characteristic, const QDBusMessage &call);
    void writeCharacteristic(Characteristic &characteristic, const QDBusMessage &call);
    void written(Characteristic &characteristic, const QByteArray &bytes);
    void startNotify(Characteristic &characteristic, const QDBusMessage &call);
    void subscribe(Characteristic &characteristic, const QDBusMessage &call);
    void unsubscribe(Characteristic &characteristic, const QString &client);
    void setCccd(Characteristic &characteristic, bool on);
    void sendNotification(const QByteArray &bytes);

    // Runs the rest of a step as the fault wants it: now, later, or never.
    void withFault(const std::optional<Fault> &fault, const QDBusMessage &call,
                   const std::function<void()> &rest);
    bool strikes(const std::optional<Fault> &fault);
    void later(int ms, const std::function<void()> &what);

    void addToTree();
    QVariantMap deviceProperties() const;
    void changeDevice(const QVariantMap &changes, const QStringList &invalidated = {});
    void reply(const QDBusMessage &call, const QVariant &value = {});
    void refuse(const QDBusMessage &call, const QString &error, const QString &message);
    quint64 hold(const QDBusMessage &call);
    bool release(quint64 id);
    void failWaiting(const QString &message,
                     const QString &error = QStringLiteral("org.bluez.Error.Failed"));
    void record(const QString &event, QJsonObject details = {});

    const DeviceScenario m_scenario;
    Surroundings m_around;
    const QString m_path;
    QString m_name;
    FaultPlan m_faults;
    SerialLink m_serial;

    bool m_inTree = false;
    bool m_temporary = true;
    bool m_discovering = false;
    int m_lastRssi = 0;
    QTimer m_temporaryTimer;

    bool m_connected = false;
    bool m_resolved = false;
    bool m_gattKnown = false;
    quint64 m_generation = 0; // of the link; what was planned for an older one is forgotten
    quint64 m_discovery = 0;
    QList<Waiting> m_waiting;
    quint64 m_lastWaiting = 0;
    QMap<QString, Characteristic> m_characteristics;
    QMap<QString, Descriptor> m_descriptors;
    QString m_serialPath;
};

} // namespace simulator
