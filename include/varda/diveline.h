// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/**
 * One point of a generic dive's profile. A field without a comment has the value of the field of
 * DiveSample with the same name. Fields named "value" and a number, and flag25, have no meaning yet
 * and stay 0.
 */
struct DiveLine {
    double time = 0;  ///< seconds since the first sample
    double depth = 0; ///< metres
    double value3 = 0;
    double value4 = 0;
    double aux1Value = 0;   ///< water temperature, as far as is known: degrees Celsius, -128 to 127
    double valueTenths = 0; ///< DiveSample::value12 divided by ten; 0 if it is below 0
    std::int16_t valueNegated = 0; ///< -value12, 1 to 2048, if that is below 0; else 0
    std::int64_t value8 = 0;
    std::int64_t value9 = 0;
    std::int64_t value10 = 0;
    std::int64_t value11 = 0;
    std::int32_t gasIndex = -1; ///< index in Dive::gases
    std::uint8_t mode = 0;
    std::uint8_t flag = 0;
    std::uint8_t aux3 = 0;
    std::uint8_t aux4 = 0;
    std::uint8_t aux5 = 0;
    std::uint8_t aux6 = 0;
    std::uint8_t aux7 = 0;
    std::uint16_t aux2 = 0;
    std::uint16_t aux8 = 0;
    std::uint8_t aux11 = 0;
    std::uint8_t aux9 = 0;
    std::uint8_t aux10 = 0;
    std::int32_t value24 = 0;
    std::uint8_t flag25 = 0;
};
