// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <cstdint>

#include <varda/gasusage.h>
#include <varda/vardaexport.h>

/**
 * One gas of a dive; fractions are 0 to 1. The converter sets the fractions, the usage and
 * closedCircuit; the other fields are for applications to use.
 */
struct VARDA_EXPORT DiveGas {
    float oxygen = 0.21F;
    float helium = 0.0F;
    float nitrogen = 0.79F;    ///< the rest beside oxygen and helium; never below 0
    float limit = -1.0F;       ///< -1: not set
    std::int64_t reserved = 0; ///< not used yet
    GasUsage::GasUsageIn usage = GasUsage::None;
    bool enabled = true; ///< whether the gas may be used
    QString label;
    QString label2;
    std::uint32_t color = 0xFFFFFF; ///< 0xRRGGBB
    bool closedCircuit = false;     ///< a closed-circuit diluent

    /**
     * Sets the oxygen fraction, 0.05 to 1.0, and nitrogen to the rest. Does nothing outside this
     * range, or if oxygen and helium together would exceed 1.001.
     */
    void setO2(double fraction);
    /** Sets the helium fraction, 0.0 to 0.99, in the same way. */
    void setHe(double fraction);
};
