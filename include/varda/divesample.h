// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/**
 * One point of a dive's profile, as the computer stores it. Which fields a stream fills depends on
 * the model and the stream's version.
 */
struct DiveSample {
    std::uint8_t version = 0; ///< version of the sample stream
    std::uint16_t depth : 12; ///< 0.1 m, 0 to 4095
    std::uint8_t : 0;         // each group in a unit of its own
    std::uint8_t flag : 1;
    std::uint8_t code : 4;     ///< gas slot of the dive's header in use
    std::int16_t value12 : 12; ///< tenths when not negative, otherwise a number by its magnitude
    std::uint8_t : 0;
    std::uint8_t mode : 2;
    std::uint8_t modeFlag : 1;
    std::uint8_t aux1 = 0;
    std::uint16_t aux2 = 0;
    std::uint8_t aux3 = 0;
    std::uint8_t aux4 = 0;
    std::uint8_t aux5 = 0; ///< groups of two bits
    std::uint8_t aux6 = 0;
    std::uint8_t aux7 = 0;
    std::uint16_t aux8 = 0;
    std::uint8_t aux9 = 0;
    std::uint8_t aux10 = 0;
    std::uint8_t aux11 = 255;
    bool aux12 = false;

    // Bit-fields take no initializer of their own before C++20.
    DiveSample() : depth(0), flag(0), code(0), value12(0), mode(0), modeFlag(0) { }
};
