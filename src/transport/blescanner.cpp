// SPDX-License-Identifier: MIT
#include <varda/blescanner.h>

#include <QtCore/qcoreapplication.h>
#include <QtCore/qpointer.h>

#include <algorithm>
#include <limits>

#include "logging_p.h"
#include "transport/deletelater_p.h"

#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
#    if QT_CONFIG(permissions)
#        define VARDA_HAS_PERMISSIONS
#        include <QtCore/qpermissions.h>
#    endif
#endif

using namespace Qt::StringLiterals;

namespace {

constexpr int kDefaultTimeoutMs = 10000;

int milliseconds(int seconds)
{
    constexpr qint64 lowest = std::numeric_limits<int>::min();
    constexpr qint64 highest = std::numeric_limits<int>::max();
    return int(std::clamp(qint64(seconds) * 1000, lowest, highest));
}

} // namespace

class BleScanner::Private
{
public:
    explicit Private(BleScanner *q) : agent(new QBluetoothDeviceDiscoveryAgent(q)) { }

    /** A child, so that it goes to another thread with its owner. */
    std::unique_ptr<QBluetoothDeviceDiscoveryAgent, DeleteLater> agent;
    QList<BleDeviceInfo> devices;
    bool scanning = false;
};

BleScanner::BleScanner(QObject *parent) : QObject(parent), d(std::make_unique<Private>(this))
{
    qRegisterMetaType<BleDeviceInfo>("BleDeviceInfo");
    qRegisterMetaType<QList<BleDeviceInfo>>("QList<BleDeviceInfo>");

    auto *const agent = d->agent.get();
    agent->setLowEnergyDiscoveryTimeout(kDefaultTimeoutMs);
    connect(agent, &QBluetoothDeviceDiscoveryAgent::deviceDiscovered, this,
            &BleScanner::onDeviceDiscovered);
    connect(agent, &QBluetoothDeviceDiscoveryAgent::finished, this, &BleScanner::onScanFinished);
    connect(agent, &QBluetoothDeviceDiscoveryAgent::canceled, this, &BleScanner::onScanCanceled);
    connect(agent, &QBluetoothDeviceDiscoveryAgent::errorOccurred, this, &BleScanner::onScanError);
}

BleScanner::~BleScanner()
{
    d->agent->disconnect(this);
    if (d->agent->isActive())
        d->agent->stop();
}

QList<BleDeviceInfo> BleScanner::devices() const
{
    return d->devices;
}

bool BleScanner::isScanning() const
{
    return d->scanning;
}

int BleScanner::deviceCount() const
{
    return int(d->devices.size());
}

BleDeviceInfo BleScanner::deviceAt(int index)
{
    return d->devices.value(index);
}

void BleScanner::clearDevices()
{
    d->devices.clear();
    Q_EMIT devicesChanged();
}

void BleScanner::stopScan()
{
    if (d->agent->isActive())
        d->agent->stop();
}

void BleScanner::startScan(int timeoutSeconds)
{
    // Whoever hears of the stop or of the empty list may delete the scanner.
    const QPointer<BleScanner> alive(this);
    stopScan();
    if (alive)
        clearDevices();
    if (!alive)
        return;

#ifdef VARDA_HAS_PERMISSIONS
    QBluetoothPermission permission;
    permission.setCommunicationModes(QBluetoothPermission::Access);
    switch (qApp->checkPermission(permission)) {
    case Qt::PermissionStatus::Granted:
        break;
    case Qt::PermissionStatus::Undetermined:
        qApp->requestPermission(permission, this,
                                [this, timeoutSeconds](const QPermission &answer) {
                                    if (answer.status() == Qt::PermissionStatus::Granted)
                                        beginDiscovery(timeoutSeconds);
                                    else
                                        Q_EMIT scanError(tr("Autorisation Bluetooth refusée."));
                                });
        return;
    case Qt::PermissionStatus::Denied:
        Q_EMIT scanError(tr("Autorisation Bluetooth refusée. Activez-la dans Réglages Système › "
                            "Confidentialité et sécurité › Bluetooth."));
        return;
    }
#endif
    beginDiscovery(timeoutSeconds);
}

void BleScanner::beginDiscovery(int timeoutSeconds)
{
    const QPointer<BleScanner> alive(this);
    d->agent->setLowEnergyDiscoveryTimeout(milliseconds(timeoutSeconds));
    d->agent->start(QBluetoothDeviceDiscoveryAgent::LowEnergyMethod);
    // The agent may fail, or even finish, inside start().
    if (alive && d->agent->isActive())
        setScanning(true);
}

void BleScanner::setScanning(bool scanning)
{
    if (d->scanning == scanning)
        return;
    d->scanning = scanning;
    Q_EMIT scanningChanged();
}

void BleScanner::onDeviceDiscovered(const QBluetoothDeviceInfo &info)
{
    if (!(info.coreConfigurations() & QBluetoothDeviceInfo::LowEnergyCoreConfiguration))
        return;
    if (info.name().isEmpty())
        return;
    const BleDeviceInfo found(info);
    const auto known = [&found](const BleDeviceInfo &entry) {
        return entry.address() == found.address();
    };
    if (std::any_of(d->devices.cbegin(), d->devices.cend(), known))
        return;

    const QPointer<BleScanner> alive(this);
    d->devices.append(found);
    Q_EMIT deviceFound(found);
    if (alive)
        Q_EMIT devicesChanged();
}

void BleScanner::onScanFinished()
{
    const QPointer<BleScanner> alive(this);
    setScanning(false);
    if (alive)
        Q_EMIT scanFinished();
}

void BleScanner::onScanCanceled()
{
    onScanFinished();
}

void BleScanner::onScanError(QBluetoothDeviceDiscoveryAgent::Error error)
{
    const QString text = d->agent->errorString();
    qCWarning(lcTransport) << "BleScanner:" << error << text;
    const QPointer<BleScanner> alive(this);
    setScanning(false);
    if (alive)
        Q_EMIT scanError(text);
}
