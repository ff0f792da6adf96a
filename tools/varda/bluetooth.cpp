// SPDX-License-Identifier: MIT
#include "bluetooth.h"

#include "step.h"

#include <varda/blescanner.h>

#include <QtBluetooth/qbluetoothlocaldevice.h>
#include <QtCore/qtimer.h>

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kOthersTime = 3s;

} // namespace

bool isComputerName(const QString &name)
{
    return name == "Tidemar"_L1 || name == "Varda"_L1 || name.startsWith("VSK-"_L1)
           || name.startsWith("RN4871"_L1);
}

Failure scanFailure(const QString &libraryText)
{
    const QBluetoothLocalDevice adapter;
    if (!adapter.isValid()) {
        return {
            ExitCode::NoBluetooth, u"no Bluetooth adapter found"_s,
            u"Is there one, and does the Bluetooth service run? (systemctl status bluetooth)"_s};
    }
    if (adapter.hostMode() == QBluetoothLocalDevice::HostPoweredOff) {
        return {ExitCode::NoBluetooth, u"Bluetooth is switched off"_s,
                u"Switch it on. (bluetoothctl power on)"_s};
    }
    return {ExitCode::NoBluetooth, u"the scan failed: "_s + libraryText,
            u"May this program use Bluetooth?"_s};
}

QString signalText(const BleDeviceInfo &device)
{
    return device.rssi() == 0 ? u"-"_s : u"%1 dBm"_s.arg(device.rssi());
}

void scanFor(std::chrono::seconds duration,
             const std::function<ScanGoes(const BleDeviceInfo &)> &onDevice)
{
    Step step;
    QTimer end; // a daemon that has stopped reports none
    end.setSingleShot(true);
    QObject::connect(&end, &QTimer::timeout, &step, &Step::end);
    bool forOthers = false;
    BleScanner scanner;
    QObject::connect(&scanner, &BleScanner::deviceFound, &step, [&](const BleDeviceInfo &device) {
        try { // the event loop lets no exception through
            const ScanGoes how = onDevice(device);
            if (how == ScanGoes::NoFurther)
                step.end();
            else if (how == ScanGoes::OnForOthers && !std::exchange(forOthers, true))
                end.start(kOthersTime);
        } catch (const Failure &failure) {
            step.fail(failure);
        }
    });
    QObject::connect(&scanner, &BleScanner::scanFinished, &step, &Step::end);
    QObject::connect(&scanner, &BleScanner::scanError, &step,
                     [&](const QString &text) { step.fail(scanFailure(text)); });
    scanner.startScan(int((duration + kOthersTime).count()));
    end.start(duration);
    std::ignore = step.wait(duration + 2 * kOthersTime);
}
