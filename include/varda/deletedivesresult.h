// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/** What the computer answered to the deletion of dives: two numbers, in received order. */
struct DeleteDivesResult {
    std::uint32_t resultA = 0;
    std::uint32_t resultB = 0;
};
