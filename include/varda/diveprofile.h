// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <optional>

#include <varda/dive.h>
#include <varda/vardaexport.h>

/**
 * A summary of a dive's profile, calculated from Dive::lines. Nothing comes from the dive's header,
 * so the figures that the computer itself shows may differ by their rounding.
 */
struct VARDA_EXPORT DiveProfile {
    struct TemperatureRange {
        double lowest = 0;  ///< degrees Celsius
        double highest = 0; ///< degrees Celsius
    };
    struct GasSwitch {
        double time = 0;   ///< seconds since the first sample
        int gasIndex = -1; ///< index in Dive::gases
    };

    /** Time of the last sample, in seconds since the first one; 0 without samples. */
    double duration = 0;
    /** The deepest sample, in metres; 0 without samples. */
    double maximumDepth = 0;
    /**
     * The mean depth of all samples, in metres; 0 without samples. The time between samples is
     * always the same, so this is also the mean over time.
     */
    double meanDepth = 0;
    /**
     * The lowest and the highest DiveLine::aux1Value. Empty without samples, or if all of them are
     * 0, since then the computer has recorded no temperature.
     */
    std::optional<TemperatureRange> temperature;
    /** The gas at the beginning, then each change of gas; empty without gases. */
    QList<GasSwitch> switches;

    [[nodiscard]] static DiveProfile fromDive(const Dive &dive);

    /**
     * The usual name of a mix: "Air" for 21 % oxygen, "EAN32" for 32 %, "Oxygen" for 100 %, and
     * "18/45" for a mix with 18 % oxygen and 45 % helium.
     *
     * @param oxygen, helium  whole percent
     */
    [[nodiscard]] static QString gasName(int oxygen, int helium);
    /** The name of a gas, with its fractions rounded to whole percent. */
    [[nodiscard]] static QString gasName(const DiveGas &gas);
};
