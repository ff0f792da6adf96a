// SPDX-License-Identifier: MIT
#pragma once

#include <array>

/** The load of the diver's tissues as the computer calculates it, in the computer's own units. */
struct VardaTissues {
    std::array<float, 16> n2{};
    std::array<float, 16> he{};
    float cns = 0;
};
