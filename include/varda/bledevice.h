// SPDX-License-Identifier: MIT
#pragma once

#include <QtBluetooth/qbluetoothuuid.h>
#include <QtBluetooth/qlowenergycharacteristic.h>
#include <QtBluetooth/qlowenergycontroller.h>
#include <QtBluetooth/qlowenergydescriptor.h>
#include <QtBluetooth/qlowenergyservice.h>
#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>
#include <QtCore/qobject.h>

#include <memory>

#include <varda/bledeviceinfo.h>
#include <varda/bledevicestate.h>
#include <varda/vardaexport.h>

class LinkObserver;

/**
 * The GATT connection to one computer: bytes out, notifications in.
 *
 * To use it, call connectTo(), wait for servicesDiscovered(), call setupCharacteristics() and wait
 * for connected(). Then write() and receive notificationReceived(); at the end call disconnect().
 * This class does not know frames. It reports every failure once, by error().
 */
class VARDA_EXPORT BleDevice : public QObject
{
    Q_OBJECT
    Q_PROPERTY(BleDeviceState::BleDeviceStateIn state READ state NOTIFY stateChanged)
    Q_PROPERTY(QString deviceName READ deviceName NOTIFY deviceNameChanged)

public:
    /** How long the peer may take to acknowledge the subscription, in milliseconds. */
    static constexpr int kNotificationsWatchdogMs = 2000;

    explicit BleDevice(QObject *parent = nullptr);
    ~BleDevice() override;

    [[nodiscard]] BleDeviceState::BleDeviceStateIn state() const;
    /** Name of the device last passed to connectTo(). */
    [[nodiscard]] QString deviceName() const;
    [[nodiscard]] bool isConnected() const;
    /** The record last passed to connectTo(). */
    [[nodiscard]] BleDeviceInfo lastDevice() const;

    /** Drops the current connection, if there is one, and connects to @p device. */
    Q_INVOKABLE void connectTo(BleDeviceInfo device);
    /** Asks the controller to disconnect; disconnected() reports when it has. */
    Q_INVOKABLE void disconnect();

    /** UUIDs of the services found; empty without a connection. */
    [[nodiscard]] QList<QBluetoothUuid> availableServices() const;
    /** Characteristics of a service if its details are already known; otherwise empty. */
    [[nodiscard]] QList<QLowEnergyCharacteristic>
    characteristicsForService(const QBluetoothUuid &uuid);

    /**
     * Chooses the service and the characteristics to use, and switches notifications on.
     *
     * If the peer does not have the service, its first usable one is taken. The characteristic
     * UUIDs are 36-character texts without braces, in upper or lower case.
     *
     * @return false, with error("No service found"), if no service can be used; false without an
     *         error if there is no connection
     */
    bool setupCharacteristics(const QString &serviceUuid, const QString &notifyUuid,
                              const QString &writeUuid);

    /** Writes to the chosen characteristic; false, with error(), if none is chosen yet. */
    bool write(const QByteArray &data, QLowEnergyService::WriteMode mode);
    /** Writes to any characteristic of the chosen service; false, with error(), if it has none. */
    bool writeRaw(const QString &characteristicUuid, const QByteArray &data,
                  QLowEnergyService::WriteMode mode);

    /** The controller's MTU in bytes; 0 without a controller, negative if it is not known. */
    [[nodiscard]] int mtu() const;

Q_SIGNALS:
    /** Notifications are on, so the link can be used. */
    void connected();
    void disconnected();
    /** The services of the peer are known. */
    void servicesDiscovered();
    /** One notification or indication, never empty. */
    void notificationReceived(QByteArray data);
    /** The peer acknowledged a write with response. */
    void writeCompleted();
    void error(QString message);
    void stateChanged();
    /** Another connectTo(), also to a device of the same name. */
    void deviceNameChanged();

private Q_SLOTS:
    void onControllerConnected();
    void onControllerDisconnected();
    void onControllerError(QLowEnergyController::Error error);
    void onServiceDiscovered(const QBluetoothUuid &uuid);
    void onServiceDiscoveryFinished();
    void onServiceStateChanged(QLowEnergyService::ServiceState state);
    void onCharacteristicChanged(const QLowEnergyCharacteristic &info, const QByteArray &value);
    void onCharacteristicWritten(const QLowEnergyCharacteristic &info, const QByteArray &value);
    void onDescriptorWritten(const QLowEnergyDescriptor &info, const QByteArray &value);
    void onServiceError(QLowEnergyService::ServiceError error);
    void onNotificationsWatchdogTimeout();

private:
    friend class VardaSession;
    void setObserver(LinkObserver *observer);
    bool enableNotifications();
    void setState(BleDeviceState::BleDeviceStateIn state);
    void cleanup();

    class Private;
    std::unique_ptr<Private> d;
};
