// SPDX-License-Identifier: MIT
#pragma once

#include <QtBluetooth/qbluetoothdevicediscoveryagent.h>
#include <QtCore/qobject.h>

#include <chrono>
#include <memory>

#include <varda/bledeviceinfo.h>

#include "transport/deletelater_p.h"

/**
 * A search whose failures are values. Unlike the scanner it reports what changes: a name that comes
 * late, a signal strength.
 */
class DeviceSearch : public QObject
{
    Q_OBJECT

public:
    enum class Failure { NoAdapter, AdapterOff, PermissionDenied, NotSupported, Other };

    explicit DeviceSearch(QObject *parent = nullptr);
    ~DeviceSearch() override;

    void start(std::chrono::milliseconds time);
    void stop();

Q_SIGNALS:
    /** A device of Low Energy, named or not; again whenever its name or strength changes. */
    void seen(const BleDeviceInfo &device);
    /** The time is up. */
    void finished();
    void failed(DeviceSearch::Failure failure, const QString &text);

private:
    void begin(std::chrono::milliseconds time);
    void onSeen(const QBluetoothDeviceInfo &info);
    void onError(QBluetoothDeviceDiscoveryAgent::Error error);

    std::unique_ptr<QBluetoothDeviceDiscoveryAgent, DeleteLater> m_agent;
};
