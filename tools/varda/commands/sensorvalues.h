// SPDX-License-Identifier: MIT
#pragma once

#include <varda/bledeviceinfo.h>
#include <varda/vardasensors.h>

#include <QtCore/qstring.h>

/** @param heading  above the table; nothing in JSON */
void printSensors(const BleDeviceInfo &device, const VardaSensors &sensors, bool json,
                  const QString &heading = {});
