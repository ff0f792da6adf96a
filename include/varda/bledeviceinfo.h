// SPDX-License-Identifier: MIT
#pragma once

#include <QtBluetooth/qbluetoothdeviceinfo.h>
#include <QtCore/qmetatype.h>
#include <QtCore/qobjectdefs.h>
#include <QtCore/qstring.h>

#include <varda/vardaexport.h>

/**
 * One Bluetooth Low Energy device as it was discovered: a value that can be copied freely.
 *
 * The address text identifies it. It is registered with the meta-object system as "BleDeviceInfo",
 * and its list as "QList<BleDeviceInfo>".
 */
class VARDA_EXPORT BleDeviceInfo
{
    Q_GADGET
    Q_PROPERTY(QString address READ address CONSTANT)
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(int rssi READ rssi CONSTANT)
    Q_PROPERTY(bool valid READ isValid CONSTANT)

public:
    BleDeviceInfo() = default;
    explicit BleDeviceInfo(const QBluetoothDeviceInfo &info);

    /**
     * A device that the application remembers, to connect to it without a scan.
     *
     * @param address  "XX:XX:XX:XX:XX:XX"; stored as the platform writes it, so a text that is not
     *                 an address becomes "00:00:00:00:00:00"
     * @param name     the name to show for it
     */
    [[nodiscard]] static BleDeviceInfo fromAddress(const QString &address, const QString &name);

    /** The address as QBluetoothAddress::toString() writes it. */
    [[nodiscard]] QString address() const { return m_address; }
    /** The advertised name. */
    [[nodiscard]] QString name() const { return m_name; }
    /** Signal strength at discovery in dBm; 0 if it is not known. */
    [[nodiscard]] int rssi() const { return m_rssi; }
    /** The platform's own description, for creating a controller. */
    [[nodiscard]] const QBluetoothDeviceInfo &deviceInfo() const { return m_deviceInfo; }
    /** Whether it has an address; nothing else is checked. */
    [[nodiscard]] bool isValid() const { return !m_address.isEmpty(); }

private:
    QString m_address;
    QString m_name;
    qint32 m_rssi = 0;
    QBluetoothDeviceInfo m_deviceInfo;
};

Q_DECLARE_METATYPE(BleDeviceInfo)
