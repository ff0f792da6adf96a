// SPDX-License-Identifier: MIT
#pragma once

#include "output/units.h"

#include <varda/dive.h>

#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <utility>

/** A label and a value. */
using Labelled = std::pair<QString, QString>;
/** What there is to say of a dive in a few lines; @p more stands below. */
[[nodiscard]] QString diveSummary(const Dive &dive, Units units, const QList<Labelled> &more = {});
/** A row for each sample; empty without any. */
[[nodiscard]] QString samplesTable(const Dive &dive, Units units);

/** "EAN32"; "-" for an index that the list of gases does not have. */
[[nodiscard]] QString gasNameOf(const Dive &dive, int gasIndex);
/** All of them, "Air, EAN50"; "-" without any. */
[[nodiscard]] QString gasNames(const QList<DiveGas> &gases);
/** "2024-05-17 08:30:00"; empty if the header's stamp is no time. */
[[nodiscard]] QString beginText(const DiveHeaderBlock &header);
[[nodiscard]] QString beginText(std::uint64_t stamp);
[[nodiscard]] QString circuitText(const DiveHeaderBlock &header);

/** Columns for the names of gases where there are not more. */
constexpr int kEnoughGases = 11;

/** What stands for an empty list of dives. */
[[nodiscard]] QString noDivesText(bool someAreKnown);

/** A table of dives that is printed while they come in. */
[[nodiscard]] QString divesHeading(Units units);
[[nodiscard]] QString divesRow(const Dive &dive, Units units);
