// SPDX-License-Identifier: MIT
#pragma once

#include "output/json.h"

#include <varda/batteryinforecord.h>
#include <varda/blecomputer.h>
#include <varda/bleconfig.h>
#include <varda/bledeviceinfo.h>
#include <varda/dive.h>
#include <varda/syslogbinrecord.h>
#include <varda/tidemardiveheader.h>
#include <varda/vardaidentity.h>

#include <QtCore/qstring.h>

[[nodiscard]] Fields fieldsOf(const BleDeviceInfo &device);
[[nodiscard]] Fields fieldsOf(const BleConfig &config);
[[nodiscard]] Fields fieldsOf(const BleComputer &computer);
[[nodiscard]] Fields fieldsOf(const BatteryInfoRecord &record);
[[nodiscard]] Fields fieldsOf(const TidemarDiveHeader &header);
[[nodiscard]] Fields fieldsOf(const DiveLine &line);
[[nodiscard]] Fields fieldsOf(const Dive &dive);

[[nodiscard]] Json gasesOf(const std::array<BleConfig::Gas, 12> &table);

/** Its enumerator's name: "Varda". */
[[nodiscard]] QString modelText(const VardaIdentity &identity);

/** The text in front of BleComputer::rawBlock. */
[[nodiscard]] QString textOf(const BleComputer &computer);
