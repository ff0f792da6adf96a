// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

/** What depths and temperatures are shown in; JSON is always metric. */
enum class Units { Metric, Imperial };

/** A depth in metres as a number in these units. */
[[nodiscard]] double depthIn(Units units, double metres);
/** "m" or "ft". */
[[nodiscard]] QString depthUnit(Units units);
/** "18.3 m" or "60.0 ft". */
[[nodiscard]] QString depthText(double metres, Units units);
/** Degrees Celsius as a number in these units: computers count whole degrees Celsius. */
[[nodiscard]] double temperatureIn(Units units, double celsius);
