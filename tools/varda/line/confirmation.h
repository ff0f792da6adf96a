// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <CLI/CLI.hpp>

#include <memory>

/** What could do harm is done only with --yes, or when the user says so on a terminal. */
class Confirmation
{
public:
    /** Adds --yes to a command. */
    explicit Confirmation(CLI::App *command);

    /** Whether there can be one at all; asked before a computer is looked for. @throws Failure */
    void require() const;
    /** Asks where --yes was not given. @throws Failure  unless the answer is yes */
    void ask(const QString &question) const;

private:
    std::shared_ptr<bool> m_yes = std::make_shared<bool>(false);
};
