// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "line/arguments.h"
#include "line/choices/confirmation.h"
#include "output/documents.h"
#include "output/terminal.h"
#include "run/runner.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

// delete, erase

void printDeletion(const Runner &runner, const DeleteDivesResult &result, bool json,
                   const QString &done)
{
    const auto [resultA, resultB] = result;
    if (json) {
        print(documents::withDevice(runner.device(), documents::deletion(result)));
    } else {
        print(runner.heading()
              + u"%1 The computer's answer: %2, %3\n"_s.arg(done).arg(resultA).arg(resultB));
    }
}

/** Deletes the last dive, or all of them. */
class DiveDeletion : public Command
{
public:
    using Job = VardaReply<DeleteDivesResult> *(VardaComputer::*)();

    DiveDeletion(const char *name, const char *description, QString dives, Job job)
        : Command(name, description), m_dives(std::move(dives)), m_job(job)
    {
    }

    void declare(Arguments &arguments) override { m_confirmation.declare(arguments); }

    void run(const Options &options) const override
    {
        m_confirmation.require();
        Runner runner(options, Purpose::Writing);
        m_confirmation.ask(u"Delete %1 of %2?"_s.arg(m_dives, runner.computerName()));
        const auto result = runner.resultOf((runner.computer().*m_job)(),
                                            u"Deleting %1"_s.arg(m_dives));
        printDeletion(runner, result, options.json, u"Deleted %1."_s.arg(m_dives));
    }

private:
    QString m_dives;
    Job m_job;
    Confirmation m_confirmation;
};

// superuser

class SetSuperUserMode : public Command
{
public:
    SetSuperUserMode() : Command("superuser", "Turn super-user mode on or off") { }

    void declare(Arguments &arguments) override
    {
        arguments.argument("STATE", m_activate, "on or off");
        m_confirmation.declare(arguments);
    }

    void run(const Options &options) const override
    {
        if (m_activate)
            m_confirmation.require();
        Runner runner(options, Purpose::Writing);
        if (m_activate)
            m_confirmation.ask(u"Turn on the super-user mode of %1?"_s.arg(runner.computerName()));
        const bool answered = runner.resultOf(runner.computer().setSuperUserMode(m_activate),
                                              u"Switching super-user mode"_s);
        if (options.json) {
            print(documents::withDevice(runner.device(),
                                        documents::superUserMode(m_activate, answered)));
        } else {
            print(runner.heading()
                  + u"Sent%1. The computer does not report whether it obeys.\n"_s.arg(
                      answered ? u", and there was an answer"_s : u", without an answer"_s));
        }
    }

private:
    bool m_activate = false;
    Confirmation m_confirmation;
};

// reset

class Restart : public Command
{
public:
    Restart() : Command("reset", "Restart the computer") { }

    void declare(Arguments &arguments) override { m_confirmation.declare(arguments); }

    void run(const Options &options) const override
    {
        m_confirmation.require();
        Runner runner(options, Purpose::Writing);
        m_confirmation.ask(u"Restart %1?"_s.arg(runner.computerName()));
        runner.run(runner.computer().restart(), u"Restarting"_s);
        if (options.json)
            print(documents::withDevice(runner.device()));
        else
            print(runner.heading() + u"The computer is restarting.\n"_s);
    }

private:
    Confirmation m_confirmation;
};

} // namespace

void addControl(Commands &commands)
{
    commands.push_back(std::make_unique<DiveDeletion>(
        "delete", "Delete the last dive", u"the last dive"_s, &VardaComputer::deleteLastDive));
    commands.push_back(std::make_unique<DiveDeletion>("erase", "Delete all dives", u"all dives"_s,
                                                      &VardaComputer::eraseDives));
    commands.push_back(std::make_unique<SetSuperUserMode>());
    commands.push_back(std::make_unique<Restart>());
}
