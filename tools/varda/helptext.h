// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/CLI.hpp>

/** The help of a command; CLI11's own looks different from one version to the next. */
class HelpText : public CLI::FormatterBase
{
public:
    std::string make_help(const CLI::App *app, std::string name,
                          CLI::AppFormatMode mode) const override;
};
