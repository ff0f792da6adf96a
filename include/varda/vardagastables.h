// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include <varda/bleconfig.h>

/** The computer's two gas tables; an entry of 0 and 0 is empty. */
struct VardaGasTables {
    std::array<BleConfig::Gas, 12> table1{};
    std::array<BleConfig::Gas, 12> table2{};
};
