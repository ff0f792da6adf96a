// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/** A reference to the previous dive: three numbers of unknown meaning. No answer fills it. */
struct PreviousDive {
    std::uint64_t value64 = 0;
    std::uint16_t value16 = 0;
    std::uint8_t value8 = 0;
};
