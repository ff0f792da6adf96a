// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/**
 * One point of a dive's profile, as the computer stores it. The model and the stream's version
 * decide which fields are filled; the others keep their defaults.
 *
 * The meaning of fields without a comment is not known.
 */
struct DiveSample {
    std::uint8_t version = 0;  ///< version of the sample stream
    std::uint16_t depth : 12;  ///< in 0.1 m, 0 to 4095
    std::uint8_t : 0;          // each group has its own unit
    std::uint8_t flag : 1;     ///< a status bit
    std::uint8_t code : 4;     ///< the gas slot in use, an index in DiveHeaderBlock::gasO2
    std::int16_t value12 : 12; ///< from 0 on, tenths; below 0, the magnitude of another number
    std::uint8_t : 0;
    std::uint8_t mode : 2;
    std::uint8_t modeFlag : 1;
    std::uint8_t aux1 = 0; ///< water temperature, as far as is known: whole degrees Celsius, signed
    std::uint16_t aux2 = 0;
    std::uint8_t aux3 = 0;
    std::uint8_t aux4 = 0;
    std::uint8_t aux5 = 0; ///< status, two bits each
    std::uint8_t aux6 = 0;
    std::uint8_t aux7 = 0;
    std::uint16_t aux8 = 0;
    std::uint8_t aux9 = 0;
    std::uint8_t aux10 = 0;
    std::uint8_t aux11 = 255;
    bool aux12 = false;

    // Before C++20 a bit-field cannot have an initializer.
    DiveSample() : depth(0), flag(0), code(0), value12(0), mode(0), modeFlag(0) { }
};
