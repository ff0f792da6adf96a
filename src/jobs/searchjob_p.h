// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <chrono>
#include <memory>

#include <varda/bledeviceinfo.h>
#include <varda/searchjob.h>

#include "jobs/link/bluetoothwatch_p.h"
#include "jobs/vardajob_p.h"
#include "transport/devicesearch_p.h"

class SearchJobPrivate final : public VardaJobPrivate
{
public:
    SearchJobPrivate(std::chrono::seconds searchTime, bool everything);

    void start();
    void finish(const JobEnd &how);

    const std::chrono::seconds time;
    const bool allDevices;
    QList<BleDeviceInfo> devices;

private:
    void onSeen(const BleDeviceInfo &device);

    std::unique_ptr<DeviceSearch> m_search;
    std::unique_ptr<BluetoothWatch> m_watch;
};
