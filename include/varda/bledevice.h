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
 * Use: connectTo(), wait for servicesDiscovered(), setupCharacteristics(), wait for connected(),
 * then write() and receive notificationReceived(), at last disconnect(). It knows nothing of
 * frames. Every failure is reported once through error().
 */
class VARDA_EXPORT BleDevice : public QObject
{
    Q_OBJECT
    Q_PROPERTY(BleDeviceState::BleDeviceStateIn state READ state NOTIFY stateChanged)
    Q_PROPERTY(QString deviceName READ deviceName NOTIFY deviceNameChanged)

public:
    /** How long the peer may take to acknowledge that notifications are on, in milliseconds. */
    static constexpr int kNotificationsWatchdogMs = 2000;

    explicit BleDevice(QObject *parent = nullptr);
    ~BleDevice() override;

    [[nodiscard]] BleDeviceState::BleDeviceStateIn state() const;
    /** Name of the device last passed to connectTo(). */
    [[nodiscard]] QString deviceName() const;
    [[nodiscard]] bool isConnected() const;
    /** The record last passed to connectTo(). */
    [[nodiscard]] BleDeviceInfo lastDevice() const;

    /** Drops the present connection, if any, and connects to @p device. */
    Q_INVOKABLE void connectTo(BleDeviceInfo device);
    /** Asks the controller to disconnect; disconnected() tells when it has. */
    Q_INVOKABLE void disconnect();

    /** UUIDs of the services found; empty without a connection. */
    [[nodiscard]] QList<QBluetoothUuid> availableServices() const;
    /** Characteristics of a service whose details are known already; empty otherwise. */
    [[nodiscard]] QList<QLowEnergyCharacteristic>
    characteristicsForService(const QBluetoothUuid &uuid);

    /**
     * Chooses the service and the characteristics to talk through and switches notifications on.
     *
     * A service that the peer does not have is replaced by its first usable one. The characteristic
     * UUIDs are 36-character texts without braces, in any letter case.
     *
     * @return false, with error("No service found"), when no service can be used; false and silent
     *         without a connection
     */
    bool setupCharacteristics(const QString &serviceUuid, const QString &notifyUuid,
                              const QString &writeUuid);

    /** Writes to the chosen characteristic; false, with error(), when there is none yet. */
    bool write(const QByteArray &data, QLowEnergyService::WriteMode mode);
    /** Writes to any characteristic of the chosen service; false, with error(), without it. */
    bool writeRaw(const QString &characteristicUuid, const QByteArray &data,
                  QLowEnergyService::WriteMode mode);

    /** The controller's MTU in bytes; 0 without a controller, below 0 where it is not known. */
    [[nodiscard]] int mtu() const;

Q_SIGNALS:
    /** Notifications are on: the link can be used. */
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
