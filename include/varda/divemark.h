// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/** A mark in a dive: three numbers of unknown meaning. No converter fills it yet. */
struct DiveMark {
    std::uint32_t first = 0;
    std::uint32_t second = 0;
    std::uint32_t third = 0;
};
