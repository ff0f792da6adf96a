// SPDX-License-Identifier: MIT
#pragma once

#include <QtBluetooth/qbluetoothdevicediscoveryagent.h>
#include <QtCore/qlist.h>
#include <QtCore/qobject.h>

#include <memory>

#include <varda/bledeviceinfo.h>
#include <varda/vardaexport.h>

/**
 * Finds Bluetooth Low Energy devices, and lists each of the current scan that has a name once.
 *
 * It asks for the Bluetooth permission first if the platform has one (Qt 6.5 and later). It does
 * not filter by name; the session does that.
 */
class VARDA_EXPORT BleScanner : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QList<BleDeviceInfo> devices READ devices NOTIFY devicesChanged)
    Q_PROPERTY(bool scanning READ isScanning NOTIFY scanningChanged)
    Q_PROPERTY(int deviceCount READ deviceCount NOTIFY devicesChanged)

public:
    explicit BleScanner(QObject *parent = nullptr);
    ~BleScanner() override;

    /**
     * Empties the list and scans; a running scan is stopped first.
     *
     * @param timeoutSeconds  how long to scan; 0: until it is stopped, if the platform can
     */
    Q_INVOKABLE void startScan(int timeoutSeconds = 10);
    /** Stops a running scan; scanFinished() reports when it has ended. */
    Q_INVOKABLE void stopScan();
    /** Empties the list; announces it even if the list was empty. */
    Q_INVOKABLE void clearDevices();
    /** The entry at @p index, or an invalid one if the index is outside the list. */
    Q_INVOKABLE BleDeviceInfo deviceAt(int index);

    /** The devices of the current or last scan, in order of first discovery. */
    [[nodiscard]] QList<BleDeviceInfo> devices() const;
    [[nodiscard]] bool isScanning() const;
    [[nodiscard]] int deviceCount() const;

Q_SIGNALS:
    /** A device was appended to the list. */
    void deviceFound(BleDeviceInfo device);
    /** The scan ended by itself or was stopped. */
    void scanFinished();
    /** The scan failed, or the Bluetooth permission is refused. */
    void scanError(QString message);
    void devicesChanged();
    void scanningChanged();

private Q_SLOTS:
    void onDeviceDiscovered(const QBluetoothDeviceInfo &info);
    void onScanFinished();
    void onScanCanceled();
    void onScanError(QBluetoothDeviceDiscoveryAgent::Error error);

private:
    void beginDiscovery(int timeoutSeconds);
    void setScanning(bool scanning);

    class Private;
    std::unique_ptr<Private> d;
};
