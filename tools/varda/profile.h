// SPDX-License-Identifier: MIT
#pragma once

#include <varda/dive.h>

#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <optional>

// What a dive's profile amounts to; 0 without one.
[[nodiscard]] double diveDuration(const Dive &dive); ///< seconds
[[nodiscard]] double maximumDepth(const Dive &dive);
[[nodiscard]] double averageDepth(const Dive &dive);

struct TemperatureRange {
    double lowest;
    double highest;
};
/** Nothing where the profile has none: then all of it is 0. */
[[nodiscard]] std::optional<TemperatureRange> temperatures(const Dive &dive);

struct GasSwitch {
    double time; ///< seconds since the first sample
    int gasIndex;
};
/** The first gas and every change to another one; empty for a dive without gases. */
[[nodiscard]] QList<GasSwitch> gasSwitches(const Dive &dive);
/** The character that stands for a gas in a plot, 1 for the first one. */
[[nodiscard]] QChar gasMark(int gasIndex);

/** "EAN32"; what the list of gases does not have is "-". */
[[nodiscard]] QString gasNameOf(const Dive &dive, int gasIndex);
/** All of them, "Air, EAN50". */
[[nodiscard]] QString gasNames(const QList<DiveGas> &gases);
/** "2024-05-17 08:30:00", or nothing where the header's stamp is no time. */
[[nodiscard]] QString beginText(const DiveHeaderBlock &header);
[[nodiscard]] QString circuitText(const DiveHeaderBlock &header);
