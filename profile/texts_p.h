// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <varda/dive.h>
#include <varda/pictureoptions.h>

/** A depth in metres as a number in these units. */
[[nodiscard]] double depthIn(PictureOptions::Units units, double metres);
/** Degrees Celsius as a number in these units. */
[[nodiscard]] double temperatureIn(PictureOptions::Units units, double celsius);
/** "m" or "ft". */
[[nodiscard]] QString depthUnit(PictureOptions::Units units);
/** "°C" or "°F". */
[[nodiscard]] QString temperatureUnit(PictureOptions::Units units);
/** "18.3 m" or "60.0 ft". */
[[nodiscard]] QString depthText(PictureOptions::Units units, double metres);
/** "6 to 10 °C", or "8 °C". */
[[nodiscard]] QString temperatureText(PictureOptions::Units units, double lowest, double highest);
/** "41:55", or "1:02:03" from an hour on. */
[[nodiscard]] QString durationText(double seconds);
/** "2024-03-02 10:15", or "begin unknown" unless it is a time in this century. */
[[nodiscard]] QString beginText(const Dive &dive);
/** Of a dive among others: the name that it is given, else "#3, 2024-03-02", or "#3". */
[[nodiscard]] QString nameOf(const Dive &dive, const QString &given);
[[nodiscard]] QString modelText(const Dive &dive);
/** A stranger's text on one line, with an end. */
[[nodiscard]] QString shown(const QString &text);
/** About how wide a text is, in any font: pictures are the same with each. */
[[nodiscard]] double widthOf(const QString &text, int size);
