// SPDX-License-Identifier: MIT
#pragma once

#include "device/dives/diveheader.h"
#include "device/dives/diveplan.h"
#include "device/dives/divesample.h"

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>

#include <array>
#include <optional>
#include <utility>

namespace simulator {

/** What is known of a dive before anybody asks for it. */
struct DiveRecipe {
    quint16 number = 1;
    quint64 seed = 1;
    std::optional<DiveKind> kind; ///< by the number, if not given
    int samples = 0;              ///< 0: as many as the dive takes
    int interval = 5;
    std::optional<QList<Sample>> profile;
    /** What its header says instead of what suits the dive. */
    QList<std::pair<HeaderField, quint64>> fields;
    std::optional<std::array<quint16, 16>> tissueN2;
    std::optional<std::array<quint16, 16>> tissueHe;
    std::optional<std::array<quint8, 12>> gasO2;
    std::optional<std::array<quint8, 12>> gasHe;
    /** Exactly these instead of all of the above. */
    std::optional<QByteArray> headerBytes;
    std::optional<QByteArray> sampleBytes;
};

struct GeneratedDive {
    DiveHeader header;
    QList<Sample> samples;
};

/** The same recipe gives the same dive, for ever and on every machine. */
GeneratedDive generateDive(const DiveRecipe &recipe, Model model);

} // namespace simulator
