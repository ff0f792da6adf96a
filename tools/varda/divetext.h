// SPDX-License-Identifier: MIT
#pragma once

#include <varda/dive.h>

#include <QtCore/qstring.h>

/** What there is to say of a dive in a few lines. */
[[nodiscard]] QString diveSummary(const Dive &dive);
/** A row for each sample; empty without any. */
[[nodiscard]] QString samplesTable(const Dive &dive);

/** A table of dives that is printed while they come in. */
[[nodiscard]] QString divesHeading();
[[nodiscard]] QString divesRow(const Dive &dive);
