// SPDX-License-Identifier: MIT
#pragma once

#include <varda/bleconfig.h>

#include <QtCore/qstring.h>

/** A line for each gas that there is. */
[[nodiscard]] QString gasesText(const std::array<BleConfig::Gas, 12> &table);
