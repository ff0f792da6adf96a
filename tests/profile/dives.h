// SPDX-License-Identifier: MIT
#pragma once

#include <varda/dive.h>

/** A dive to 44 m with two changes of gas, as a computer records it. */
[[nodiscard]] Dive deepDive();
/** To 12 m, with one gas and no temperature. */
[[nodiscard]] Dive shallowDive();
/** Thirty hours in a habitat at 14 m. */
[[nodiscard]] Dive longDive();
/** 20 000 samples that jump between 5 m and 35 m. */
[[nodiscard]] Dive manySamples();
/** Twelve gases in as many stretches, half of them within four minutes. */
[[nodiscard]] Dive twelveGases();
[[nodiscard]] Dive oneSample();
/** 20 000 samples at 10 m, but for one at 30 m and the next at 2 m. */
[[nodiscard]] Dive spikes();
/** What no sound computer sends. */
[[nodiscard]] QList<Dive> hostileDives();
