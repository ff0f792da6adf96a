// SPDX-License-Identifier: MIT
#pragma once

#include <varda/bledeviceinfo.h>
#include <varda/vardacomputer.h>

#include <QtCore/qstring.h>

#include <chrono>
#include <optional>

/** "Varda (00:AA:01:01:00:01)". */
[[nodiscard]] QString nameOf(const BleDeviceInfo &device);

/** "-60 dBm", or "-" for a device that the system remembers, but has not heard in this scan. */
[[nodiscard]] QString signalText(const BleDeviceInfo &device);

/** The address in any usual spelling, as the library writes it; nothing if it is none. */
[[nodiscard]] std::optional<QString> addressIn(const QString &text);

/**
 * Looks for the devices that a name means: the computers whose names begin like that, unless there
 * are devices of exactly that name. Without a name, all computers.
 *
 * @param time  until the first is found; others have a moment more
 * @throws Failure  if there is none
 */
[[nodiscard]] QList<BleDeviceInfo> devicesNamed(VardaComputer &computer, const QString &name,
                                                std::chrono::seconds time);

/** The only one, or the one that the user chooses. @throws Failure  where nobody can be asked */
[[nodiscard]] BleDeviceInfo chosen(const QList<BleDeviceInfo> &devices, const QString &name);
