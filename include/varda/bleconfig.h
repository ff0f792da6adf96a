// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

#include <varda/vardaexport.h>

/**
 * A computer's environment and gas settings, from its configuration answer. The model and the
 * answer's version decide which fields are filled; the others keep their values.
 *
 * The meaning of fields without a comment is not known.
 */
struct VARDA_EXPORT BleConfig {
    /** One entry of a gas table, in whole percent. */
    struct Gas {
        std::uint8_t oxygen = 0;
        std::uint8_t helium = 0;
    };
    struct Triple {
        std::uint16_t first = 0;
        std::uint16_t second = 0;
        std::uint8_t third = 0;
    };

    std::uint16_t configWord = 0;
    std::uint8_t cfgA = 0;
    std::uint8_t cfgB = 0;
    std::uint8_t cfgC = 0;
    std::uint8_t cfgD = 0;
    std::uint16_t cfgE = 0;
    std::uint8_t waterType = 0; ///< 0 sea, 1 fresh, 2 in between; other values count as fresh
    std::uint16_t surfacePressure = 0; ///< millibar
    std::uint8_t cfgF = 0;
    std::uint8_t cfgG = 0;
    std::array<std::uint8_t, 6> cfgBytes{};
    std::array<Gas, 12> gasTable1{}; ///< 0/0 is an empty entry
    std::array<Gas, 12> gasTable2{}; ///< 0/0 is an empty entry
    std::uint16_t cfgH = 0;
    std::array<Triple, 3> cfgTriple{};
    std::array<std::uint8_t, 6> tailBytes{};

    /** Density of the water in kg/l: 1.03 sea, 1.02 in between, otherwise 1.0. */
    [[nodiscard]] float getDensity() const;
    /**
     * Absolute pressure in bar at @p depthMetres: density x 9.80665 m/s2 x depth / 100 plus the
     * surface pressure.
     */
    [[nodiscard]] float pressureAtDepth(float depthMetres) const;
    /**
     * Depth in metres at an absolute pressure in bar, the inverse of pressureAtDepth().
     *
     * 0 unless @p pressureBar is greater than the surface pressure in millibar (the bare numbers
     * are compared), so the result is 0 for ordinary pressures.
     */
    [[nodiscard]] float depthAtPressure(float pressureBar) const;
};
