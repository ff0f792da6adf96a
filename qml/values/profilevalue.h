// SPDX-License-Identifier: MIT
#pragma once

#include <varda/diveprofile.h>

#include "field.h"

struct GasSwitchValue : DiveProfile::GasSwitch {
    VARDA_VALUE_TYPE(DiveProfile::GasSwitch, GasSwitchValue, gasSwitch)

    VARDA_FIELD(double, time)
    VARDA_FIELD(int, gasIndex)
};

/** What a dive's profile says; see DiveProfile. */
struct DiveProfileValue : DiveProfile {
    VARDA_VALUE_TYPE(DiveProfile, DiveProfileValue, diveProfile)

    VARDA_FIELD(double, duration)
    VARDA_FIELD(double, maximumDepth)
    VARDA_FIELD(double, meanDepth)
    VARDA_RECORDS(switches)
    /** Degrees Celsius; undefined if the computer has recorded none. */
    Q_PROPERTY(QVariant lowestTemperature READ lowestTemperature CONSTANT)
    Q_PROPERTY(QVariant highestTemperature READ highestTemperature CONSTANT)

public:
    QVariant lowestTemperature() const { return temperature ? temperature->lowest : QVariant(); }
    QVariant highestTemperature() const { return temperature ? temperature->highest : QVariant(); }
};
