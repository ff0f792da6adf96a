// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/**
 * One entry of the battery history. Fields that do not belong to the record's kind are 0.
 *
 * Only the layout is known: names give the width in bits or the place, flags are 0 or 1. The
 * meaning and the units of the numbers are not known.
 */
struct BatteryInfoRecord {
    std::int32_t kind = 0; ///< 0 or 1; selects the fields below

    // Kind 1
    std::uint32_t value20 = 0; ///< 20 bits
    std::uint8_t code2 = 0;    ///< 2 bits
    std::uint8_t flag28 = 0;
    std::uint8_t flag29 = 0;

    // Kind 0
    std::uint16_t value12 = 0; ///< 12 bits
    std::uint8_t code4 = 0;    ///< 4 bits
    std::uint8_t flag16 = 0;
    std::uint8_t flag17 = 0;
    std::uint8_t flag18 = 0;
    std::int32_t offsetValue = 0;  ///< -10 to 53
    std::uint16_t scaledValue = 0; ///< 0 to 12600, in steps of 200

    // Either kind, when hasExtra is 1
    std::uint8_t hasExtra = 0;
    std::uint16_t extra15 = 0;   ///< 15 bits
    std::uint16_t extra12 = 0;   ///< 12 bits
    std::uint8_t extraCode2 = 0; ///< 2 bits
    std::uint8_t extraFlag29 = 0;
    std::uint8_t extraFlag30 = 0;
};
