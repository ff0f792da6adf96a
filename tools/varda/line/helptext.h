// SPDX-License-Identifier: MIT
#pragma once

#include "output/tables.h"

#include <memory>
#include <string>

namespace CLI {
class App;
class FormatterBase;
} // namespace CLI

/** The help of a command; CLI11's own looks different from one version to the next. */
[[nodiscard]] std::string helpText(const CLI::App &command);
/** What makes CLI11 print helpText(). */
[[nodiscard]] std::shared_ptr<CLI::FormatterBase> helpFormatter();

/** The commands of a command with what they do, below a heading; empty if it has none. */
[[nodiscard]] std::string commandList(const CLI::App &command, const TextStyle &style);
