// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/** A computer's answer to the deletion of dives: two numbers of unknown meaning. */
struct DeleteDivesResult {
    std::uint32_t resultA = 0;
    std::uint32_t resultB = 0;
};
