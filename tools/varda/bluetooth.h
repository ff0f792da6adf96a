// SPDX-License-Identifier: MIT
#pragma once

#include "failure.h"

#include <varda/bledeviceinfo.h>

#include <chrono>
#include <functional>

/** Whether a computer advertises under such a name. */
[[nodiscard]] bool isComputerName(const QString &name);

/** What a failed scan means to its user, who can often do something about it. */
[[nodiscard]] Failure scanFailure(const QString &libraryText);

/** "-60 dBm", or "-" for a device that the system remembers, but has not heard in this scan. */
[[nodiscard]] QString signalText(const BleDeviceInfo &device);

/** How a scan goes on after a device. */
enum class ScanGoes {
    On,
    OnForOthers, ///< for 3 s after the first of these
    NoFurther,
};

/**
 * Scans, and asks about each device.
 *
 * @throws Failure  when the scan fails
 */
void scanFor(std::chrono::seconds duration,
             const std::function<ScanGoes(const BleDeviceInfo &)> &onDevice);
