// SPDX-License-Identifier: MIT
#pragma once

#include "line/options.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <optional>
#include <string>
#include <vector>

/** What the process is asked to do. */
class CommandLine
{
public:
    using Action = std::function<void(const Options &)>;

    CommandLine();

    /** Adds a command; its own options are added to what is returned. */
    CLI::App *add(const std::string &name, const std::string &description, const Action &action);
    /** Adds a command of a command. */
    CLI::App *addTo(CLI::App *parent, const std::string &name, const std::string &description,
                    const Action &action);

    /**
     * Reads the arguments; prints help and errors.
     *
     * @return the status to end with, if there is nothing more to do
     */
    [[nodiscard]] std::optional<int> parse(int argc, const char *const *argv);
    /** Does it; there is a QCoreApplication. @return the status to end with */
    [[nodiscard]] int run() const;

    [[nodiscard]] const Options &options() const { return m_options; }

private:
    void addGlobalOptions();
    void takeGlobalOptions();
    void addOwnCommands();
    [[nodiscard]] const CLI::App &commandOf(const std::vector<std::string> &names) const;
    void tellWhatIsWrong(const CLI::ParseError &error) const;

    CLI::App m_app;
    Options m_options;
    Action m_action;
    // As written
    std::string m_device;
    std::string m_mode;
    std::string m_units;
    std::string m_scenario;
    int m_timeout = 0;
    int m_retries = 0;
    bool m_noRetry = false;
    std::vector<std::string> m_helpOn;
};
