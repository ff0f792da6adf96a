// SPDX-License-Identifier: MIT
#include <varda/bledeviceinfo.h>

#include <QtBluetooth/qbluetoothaddress.h>

BleDeviceInfo::BleDeviceInfo(const QBluetoothDeviceInfo &info)
    : m_address(info.address().toString()),
      m_name(info.name()),
      m_rssi(info.rssi()),
      m_deviceInfo(info)
{
}

BleDeviceInfo BleDeviceInfo::fromAddress(const QString &address, const QString &name)
{
    return BleDeviceInfo(QBluetoothDeviceInfo(QBluetoothAddress(address), name, 0));
}
