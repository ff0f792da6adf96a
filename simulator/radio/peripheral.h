// SPDX-License-Identifier: MIT
#pragma once

#include "device/scenario/faults.h"
#include "device/scenario/recorder.h"
#include "device/scenario/scenario.h"
#include "device/wire/seriallink.h"
#include "radio/adaptername.h"

#include <QtBluetooth/qbluetoothaddress.h>
#include <QtBluetooth/qlowenergycharacteristic.h>
#include <QtBluetooth/qlowenergycontroller.h>
#include <QtBluetooth/qlowenergyservice.h>
#include <QtCore/qobject.h>

#include <memory>
#include <vector>

namespace simulator {

/** The computer on the air: a peripheral on one of this machine's Bluetooth adapters. */
class Peripheral : public QObject
{
    Q_OBJECT

public:
    Peripheral(const DeviceScenario &scenario, Recorder &recorder, QObject *parent = nullptr);
    ~Peripheral() override;

    /** What of a scenario no adapter can do, with its place; nothing if it can do all. */
    static QString problemWith(const Scenario &scenario);
    /** What the user should know of this way of being on the air. */
    static QStringList limits(const DeviceScenario &scenario);

    /**
     * Goes on the air; onAir() tells that it has worked, failed() that it has not or does not any
     * more. Without an address on the system's first adapter.
     */
    void start(const QString &adapterAddress);

Q_SIGNALS:
    void onAir(const QString &adapterAddress);
    void failed(const QString &text);

private:
    void advertise();
    void addServices();
    void wrote(const QLowEnergyCharacteristic &characteristic, const QByteArray &bytes);
    void notify(const QByteArray &bytes);
    void linkUp();
    void linkDown();
    void fail();
    Role roleOf(const QLowEnergyCharacteristic &characteristic) const;
    void record(const QString &event, QJsonObject details = {});

    const DeviceScenario m_scenario;
    Recorder &m_recorder;
    FaultPlan m_faults;
    SerialLink m_serial;
    QBluetoothAddress m_adapter;
    std::unique_ptr<AdapterName> m_adapterName;
    std::unique_ptr<QLowEnergyController> m_controller;
    std::vector<std::unique_ptr<QLowEnergyService>> m_services;
    /** Through what the host last wrote, or the first one before it has. */
    QLowEnergyService *m_dataService = nullptr;
    QLowEnergyCharacteristic m_data;
};

} // namespace simulator
