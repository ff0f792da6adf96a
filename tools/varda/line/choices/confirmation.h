// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

class Arguments;

/** What could do harm is done only with --yes, or if the user says so on a terminal. */
class Confirmation
{
public:
    /** Adds --yes to a command. */
    void declare(Arguments &arguments);

    /** Whether there can be one at all; asked before a computer is looked for. @throws Failure */
    void require() const;
    /** Asks unless --yes was given. @throws Failure  unless the answer is yes */
    void ask(const QString &question) const;

private:
    bool m_yes = false;
};
