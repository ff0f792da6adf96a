// SPDX-License-Identifier: MIT
#pragma once

#include "bluez/objecttree.h"
#include "bluez/pendingcalls.h"
#include "device/scenario/faults.h"
#include "device/scenario/scenario.h"
#include "device/wire/seriallink.h"

#include <QtCore/qjsonobject.h>
#include <QtCore/qmap.h>
#include <QtCore/qobject.h>
#include <QtDBus/qdbusmessage.h>

#include <functional>
#include <optional>

namespace simulator {

/** The services of one peripheral as the daemon shows them, and the bytes that go through them. */
class GattServer : public QObject
{
    Q_OBJECT

public:
    struct Surroundings {
        ObjectTree &tree;
        PendingCalls &calls;
        FaultPlan &faults;
        SerialLink &serial;
        QString devicePath;
        std::function<void(const QString &event, const QJsonObject &details)> record;
    };

    GattServer(const DeviceScenario &scenario, const Surroundings &around);

    /**
     * The services can be used from now on.
     *
     * @return their UUIDs if they are new
     */
    std::optional<QStringList> resolve(bool withServices);
    bool isResolved() const { return m_resolved; }
    /** Whether the computer's notifications are on. */
    bool isSubscribed() const;
    void linkDown();
    /** The device's objects are gone. */
    void clear();

    /** A call to one of its objects; false if there is no such method. */
    bool handle(const QDBusMessage &call);
    void clientGone(const QString &client);
    /** A notification of these bytes; false if nobody has subscribed. */
    bool notifyNow(const QByteArray &bytes);

private:
    struct Characteristic {
        CharacteristicSpec spec;
        QString path;
        QStringList clients; ///< those that the daemon notifies
        bool cccd = false;   ///< as the peripheral has it
    };
    struct Descriptor {
        DescriptorSpec spec;
        QString characteristic;
    };

    void addObjects();
    void addCharacteristic(const CharacteristicSpec &spec, const QString &servicePath, int &handle);

    bool handleCharacteristic(Characteristic &characteristic, const QDBusMessage &call);
    bool handleDescriptor(Descriptor &descriptor, const QDBusMessage &call);
    void readCharacteristic(Characteristic &characteristic, const QDBusMessage &call);
    void writeCharacteristic(Characteristic &characteristic, const QDBusMessage &call);
    void written(Characteristic &characteristic, const QByteArray &bytes);
    void startNotify(Characteristic &characteristic, const QDBusMessage &call);
    void subscribe(Characteristic &characteristic, const QDBusMessage &call);
    void unsubscribe(Characteristic &characteristic, const QString &client);
    void setCccd(Characteristic &characteristic, bool on);
    void sendNotification(const QByteArray &bytes);
    void record(const QString &event, const QJsonObject &details);

    const DeviceScenario m_scenario;
    const Surroundings m_around;
    bool m_resolved = false;
    bool m_known = false;
    QMap<QString, Characteristic> m_characteristics;
    QMap<QString, Descriptor> m_descriptors;
    QString m_serialPath;
};

} // namespace simulator
