// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <array>

namespace simulator {

class Random;

enum class DiveKind { Recreational, Decompression, Trimix, ClosedCircuit };

struct Mix {
    int oxygen = 0;
    int helium = 0;
};

/** A part of a dive in which nothing but the depth changes, and that evenly. */
struct Leg {
    int seconds = 0;
    int from = 0; ///< tenths of a metre, as all depths
    int to = 0;
    int ceiling = 0; ///< 0: none
    int gas = 0;
    bool closedCircuit = false;
    bool safetyStop = false;
};

struct DivePlan {
    DiveKind kind = DiveKind::Recreational;
    std::array<Mix, 12> gases{}; ///< by slot; without oxygen there is none
    QList<Leg> legs;
    int seconds = 0;
    int warm = 24; ///< degrees at the surface and below the thermocline
    int cold = 12;
    int density = 1030;
    int surfacePressure = 1013;
};

/** Down, levels, stops, switches of gas, up: what a diver does on a dive of this kind. */
DivePlan planDive(DiveKind kind, Random &random);

} // namespace simulator
