// SPDX-License-Identifier: MIT
#pragma once

#include "output/tables.h"

#include <CLI/CLI.hpp>

#include <string>

/** The help of a command; CLI11's own looks different from one version to the next. */
class HelpText : public CLI::FormatterBase
{
public:
    std::string make_help(const CLI::App *app, std::string name,
                          CLI::AppFormatMode mode) const override;
};

/** The commands of a command with what they do, below a heading; empty if it has none. */
[[nodiscard]] std::string commandList(const CLI::App &app, const TextStyle &style);
