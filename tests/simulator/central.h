// SPDX-License-Identifier: MIT
#pragma once

#include <QtBluetooth/qbluetoothdevicediscoveryagent.h>
#include <QtBluetooth/qlowenergycontroller.h>
#include <QtBluetooth/qlowenergyservice.h>
#include <QtCore/qstringlist.h>

#include <memory>

/**
 * A plain Qt Bluetooth application, as an application developer would write it, that notes what
 * Qt tells it.
 */
class Central : public QObject
{
    Q_OBJECT

public:
    Central();

    QBluetoothDeviceDiscoveryAgent agent;
    std::unique_ptr<QLowEnergyController> controller;
    std::unique_ptr<QLowEnergyService> service;
    QLowEnergyCharacteristic data;
    QList<QBluetoothDeviceInfo> found;
    QStringList log;
    QList<QByteArray> received;

    /** Each step waits for its end and tells whether it came; false after a while without one. */
    bool scanFor(const QString &address);
    void connectTo(const QString &address);
    bool waitFor(const QString &entry);
    bool discover(const QString &service, const QString &characteristic);
    void subscribe();
    bool reach(const QString &address); ///< all of the above for the usual service
    void write(const QByteArray &bytes);
    bool waitForReceived(qsizetype count);
};
