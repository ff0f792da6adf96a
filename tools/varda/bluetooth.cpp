// SPDX-License-Identifier: MIT
#include "bluetooth.h"

#include "step.h"

#include <varda/blescanner.h>

#include <QtBluetooth/qbluetoothlocaldevice.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

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

BleDeviceInfo scanFor(std::chrono::seconds duration,
                      const std::function<bool(const BleDeviceInfo &)> &wanted)
{
    BleDeviceInfo found;
    Step step;
    BleScanner scanner;
    QObject::connect(&scanner, &BleScanner::deviceFound, &step, [&](const BleDeviceInfo &device) {
        if (found.isValid() || !wanted(device))
            return;
        found = device;
        step.end();
    });
    QObject::connect(&scanner, &BleScanner::scanFinished, &step, &Step::end);
    QObject::connect(&scanner, &BleScanner::scanError, &step,
                     [&](const QString &text) { step.fail(scanFailure(text)); });
    scanner.startScan(int(duration.count()));
    // A daemon that has stopped tells of no end.
    std::ignore = step.wait(duration + 1s);
    return found;
}
