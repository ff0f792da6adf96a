// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/** What a computer measures in its surroundings. */
struct VardaSensors {
    std::uint32_t psurf = 0;   ///< surface pressure, millibar
    std::uint32_t pamb = 0;    ///< ambient pressure, millibar
    std::uint16_t dstop = 0;   ///< the computer's own unit
    std::uint16_t density = 0; ///< the computer's own unit
};
