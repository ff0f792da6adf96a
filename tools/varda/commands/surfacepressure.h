// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

// What there is from the highest lakes down to the Dead Sea, in millibar
constexpr std::uint32_t kLowestPressure = 500;
constexpr std::uint32_t kHighestPressure = 1100;

constexpr bool isSurfacePressure(std::uint32_t mbar)
{
    return mbar >= kLowestPressure && mbar <= kHighestPressure;
}
