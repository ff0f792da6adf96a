// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qglobal.h>

#include <memory>
#include <vector>

class Arguments;
class Command;
struct Options;

using Commands = std::vector<std::unique_ptr<Command>>;

/** A command, or a command of a command: its own options, and what it does. */
class Command
{
public:
    Command(const char *name, const char *description)
        : m_name(name), m_description(description) { }
    virtual ~Command() = default;
    Q_DISABLE_COPY_MOVE(Command)

    [[nodiscard]] const char *name() const { return m_name; }
    [[nodiscard]] const char *description() const { return m_description; }
    /** Its own commands, in the order of the help. */
    [[nodiscard]] const Commands &subcommands() const { return m_subcommands; }
    /** Whether it does nothing without one of them. */
    [[nodiscard]] virtual bool needsSubcommand() const { return false; }

    /** Whether it needs a computer, by the values in its members; there is a simulated one only then. */
    [[nodiscard]] virtual bool usesComputer() const { return true; }

    /** Whether it draws pictures, by the values in its members. */
    [[nodiscard]] virtual bool drawsPictures() const { return false; }

    /** Declares what it takes; by the time it runs, the values are in its members. */
    virtual void declare(Arguments & /*arguments*/) { }
    /** @throws Failure */
    virtual void run(const Options &options) const = 0;

protected:
    template <typename Subcommand> void add()
    {
        m_subcommands.push_back(std::make_unique<Subcommand>());
    }

private:
    const char *m_name;
    const char *m_description;
    Commands m_subcommands;
};
