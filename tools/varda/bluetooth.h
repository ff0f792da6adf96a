// SPDX-License-Identifier: MIT
#pragma once

#include "failure.h"

#include <varda/bledeviceinfo.h>

#include <QtCore/qlist.h>

#include <chrono>
#include <functional>

/** Whether a computer advertises under such a name. */
[[nodiscard]] bool isComputerName(const QString &name);

/** What a failed scan means to its user, who can often do something about it. */
[[nodiscard]] Failure scanFailure(const QString &libraryText);

/**
 * Scans until @p wanted is true for a device.
 *
 * @return the device, or an invalid one when there was none
 * @throws Failure  when the scan fails
 */
BleDeviceInfo scanFor(std::chrono::seconds duration,
                      const std::function<bool(const BleDeviceInfo &)> &wanted);
