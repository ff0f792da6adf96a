// SPDX-License-Identifier: MIT
#pragma once

#include "device/scenario/scenario.h"

#include <QtCore/qstring.h>
#include <QtCore/qstringlist.h>

#include <optional>

namespace simulator {

/** What the arguments ask for. */
struct Options {
    QString scenarioFile;
    QString recordFile;
    Scenario::Overrides overrides;
    QStringList command;
    bool exitWithStdin = false;
    QString replayFile; ///< a trace, instead of a scenario
    double speed = 1;
    bool strict = false;          ///< a difference to the trace is an error
    std::optional<QString> radio; ///< the adapter's address; empty for the first one
};

/** Nothing if the arguments ask for no more than a text; @p status is then that of the program. */
[[nodiscard]] std::optional<Options> parseArguments(int *status);
/** The scenario that the options name, or that of one healthy computer. */
[[nodiscard]] std::optional<Scenario> readScenario(const Options &options, QString *error);

} // namespace simulator
