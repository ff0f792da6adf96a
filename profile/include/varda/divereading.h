// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

/** A sample of a dive, as a DivePicture shows it. */
struct DiveReading {
    double time = 0;  ///< seconds since the first sample
    double depth = 0; ///< metres, never below 0
    /** Degrees Celsius. Empty if there is none in this sample or, other than 0, in the dive. */
    // NOLINTNEXTLINE(readability-redundant-member-init): GCC asks applications for it
    std::optional<double> temperature = {};
    int gasIndex = -1; ///< index in Dive::gases; -1 if there is no such gas
};
