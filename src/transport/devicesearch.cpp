// SPDX-License-Identifier: MIT
#include "transport/devicesearch_p.h"

#include <algorithm>
#include <limits>

#include "logging_p.h"
#include "transport/permission_p.h"

namespace {

int clamped(std::chrono::milliseconds time)
{
    constexpr std::int64_t most = std::numeric_limits<int>::max();
    return int(std::clamp<std::int64_t>(time.count(), 1, most));
}

DeviceSearch::Failure failureOf(QBluetoothDeviceDiscoveryAgent::Error error)
{
    using Failure = DeviceSearch::Failure;
    switch (error) {
    case QBluetoothDeviceDiscoveryAgent::PoweredOffError:
        return Failure::AdapterOff;
    case QBluetoothDeviceDiscoveryAgent::InputOutputError: // Linux, without an adapter
    case QBluetoothDeviceDiscoveryAgent::InvalidBluetoothAdapterError:
        return Failure::NoAdapter;
    case QBluetoothDeviceDiscoveryAgent::UnsupportedPlatformError:
    case QBluetoothDeviceDiscoveryAgent::UnsupportedDiscoveryMethod:
        return Failure::NotSupported;
#if QT_VERSION >= QT_VERSION_CHECK(6, 4, 0)
    case QBluetoothDeviceDiscoveryAgent::MissingPermissionsError:
        return Failure::PermissionDenied;
#endif
    default:
        return Failure::Other;
    }
}

} // namespace

DeviceSearch::DeviceSearch(QObject *parent) : QObject(parent) { }

DeviceSearch::~DeviceSearch()
{
    stop();
}

void DeviceSearch::start(std::chrono::milliseconds time)
{
    stop();
    askBluetoothPermission(this, [this, time](bool granted) {
        if (granted)
            begin(time);
        else
            Q_EMIT failed(Failure::PermissionDenied, {});
    });
}

void DeviceSearch::begin(std::chrono::milliseconds time)
{
    m_agent.reset(new QBluetoothDeviceDiscoveryAgent);
    auto *const agent = m_agent.get();
    agent->setLowEnergyDiscoveryTimeout(clamped(time));
    connect(agent, &QBluetoothDeviceDiscoveryAgent::deviceDiscovered, this, &DeviceSearch::onSeen);
    connect(agent, &QBluetoothDeviceDiscoveryAgent::deviceUpdated, this,
            [this](const QBluetoothDeviceInfo &info) { onSeen(info); });
    connect(agent, &QBluetoothDeviceDiscoveryAgent::finished, this, &DeviceSearch::finished);
    connect(agent, &QBluetoothDeviceDiscoveryAgent::errorOccurred, this, &DeviceSearch::onError);
    agent->start(QBluetoothDeviceDiscoveryAgent::LowEnergyMethod);
}

void DeviceSearch::stop()
{
    if (!m_agent)
        return;
    m_agent->disconnect(this);
    if (m_agent->isActive())
        m_agent->stop();
    m_agent.reset();
}

void DeviceSearch::onSeen(const QBluetoothDeviceInfo &info)
{
    if (info.coreConfigurations() & QBluetoothDeviceInfo::LowEnergyCoreConfiguration)
        Q_EMIT seen(BleDeviceInfo(info));
}

void DeviceSearch::onError(QBluetoothDeviceDiscoveryAgent::Error error)
{
    const QString text = m_agent->errorString();
    qCWarning(lcTransport) << "search:" << error << text;
    Q_EMIT failed(failureOf(error), text);
}
