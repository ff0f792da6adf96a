// SPDX-License-Identifier: MIT
#pragma once

#include "run/failure.h"

#include <QtCore/qstring.h>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

/** The command that was typed, as far as it is one: "varda layouts get". */
[[nodiscard]] const CLI::App *typedCommand(const CLI::App &app);
[[nodiscard]] QString commandText(const CLI::App &command);

/** What is wrong with what was typed, and where to read on. */
[[nodiscard]] Failure usageFailure(const CLI::App &app, const CLI::ParseError &error);

/** There is no command @p word in @p group. */
[[nodiscard]] Failure noSuchCommand(const CLI::App &group, const QString &word);
