// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "line/commandline.h"
#include "line/confirmation.h"
#include "output/records.h"
#include "output/terminal.h"
#include "run/runner.h"

using namespace Qt::StringLiterals;

namespace {

// delete, erase

struct Deletion {
    VardaReply<DeleteDivesResult> *(VardaComputer::*job)();
    QString status;
    QString question;
    QString done;
};

void deleteDives(const Options &options, const Confirmation &confirmation, const Deletion &what)
{
    confirmation.require();
    Runner runner(options, Purpose::Writing);
    confirmation.ask(what.question.arg(runner.computerName()));
    const auto [resultA, resultB] = runner.resultOf((runner.computer().*what.job)(), what.status);
    if (options.json) {
        print({{"device"_L1, fieldsOf(runner.device())},
               {"deleteResult"_L1, Fields{{"resultA"_L1, resultA}, {"resultB"_L1, resultB}}}});
    } else {
        print(runner.heading()
              + u"%1 The computer's answer: %2, %3\n"_s.arg(what.done).arg(resultA).arg(resultB));
    }
}

void addDeletion(CommandLine &line, const std::string &name, const std::string &description,
                 const Deletion &what)
{
    const auto confirmation = std::make_shared<std::optional<Confirmation>>();
    CLI::App *const command = line.add(name, description,
                                       [confirmation, what](const Options &options) {
                                           deleteDives(options, **confirmation, what);
                                       });
    confirmation->emplace(command);
}

// superuser

void superUser(const Options &options, const Confirmation &confirmation, bool activate)
{
    if (activate)
        confirmation.require();
    Runner runner(options, Purpose::Writing);
    if (activate)
        confirmation.ask(u"Enter super-user mode of %1?"_s.arg(runner.computerName()));
    const bool answered = runner.resultOf(runner.computer().setSuperUserMode(activate),
                                          u"Switching the super-user mode"_s);
    if (options.json) {
        print({{"device"_L1, fieldsOf(runner.device())},
               {"superUserMode"_L1, activate},
               {"answered"_L1, answered}});
    } else {
        print(runner.heading()
              + u"Sent%1. Whether it is obeyed the computer does not tell.\n"_s.arg(
                  answered ? u", and there was an answer"_s : u", without an answer"_s));
    }
}

void addSuperUser(CommandLine &line)
{
    const auto state = std::make_shared<std::string>();
    const auto confirmation = std::make_shared<std::optional<Confirmation>>();
    CLI::App *const command = line.add("superuser", "Enter or leave super-user mode",
                                       [state, confirmation](const Options &options) {
                                           superUser(options, **confirmation, *state == "on");
                                       });
    command->add_option("STATE", *state, "on or off")
        ->type_name("on|off")
        ->required()
        ->check(CLI::IsMember({"on", "off"}).description(""));
    confirmation->emplace(command);
}

// reset

void reset(const Options &options, const Confirmation &confirmation)
{
    confirmation.require();
    Runner runner(options, Purpose::Writing);
    confirmation.ask(u"Restart %1?"_s.arg(runner.computerName()));
    runner.run(runner.computer().restart(), u"Asking for a restart"_s);
    if (options.json)
        print({{"device"_L1, fieldsOf(runner.device())}});
    else
        print(runner.heading() + u"The computer restarts.\n"_s);
}

} // namespace

void addControl(CommandLine &line)
{
    addDeletion(line, "delete", "Delete the last dive",
                {&VardaComputer::deleteLastDive, u"Deleting the last dive"_s,
                 u"Delete the last dive of %1?"_s, u"The last dive is deleted."_s});
    addDeletion(line, "erase", "Delete all dives",
                {&VardaComputer::eraseDives, u"Erasing the dives"_s, u"Delete all dives of %1?"_s,
                 u"All dives are deleted."_s});
    addSuperUser(line);
    const auto confirmation = std::make_shared<std::optional<Confirmation>>();
    CLI::App *const command = line.add(
        "reset", "Restart the computer",
        [confirmation](const Options &options) { reset(options, **confirmation); });
    confirmation->emplace(command);
}
