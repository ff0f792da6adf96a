// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "commands.h"
#include "confirmation.h"
#include "connection.h"
#include "records.h"
#include "terminal.h"
#include "text.h"

using namespace Qt::StringLiterals;

namespace {

// delete, erase

struct Deletion {
    TidemarCommand::TidemarCommandIn command;
    QString name;
    QString verb;
    QString question;
    QString done;
};

void deleteDives(const Options &options, const Confirmation &confirmation, const Deletion &what)
{
    confirmation.require();
    Connection connection(options, Purpose::Writing);
    confirmation.ask(what.question.arg(connection.computerName()));
    connection.run({.name = what.name,
                    // Either is reported as this one.
                    .end = TidemarCommand::DeleteLastDive,
                    .start = [&what](VardaSession &session) { session.startCommand(what.command); },
                    .verb = what.verb});
    const auto [resultA, resultB] = connection.session().deleteResult();
    if (options.json) {
        print({{"device"_L1, fieldsOf(connection.device())},
               {"deleteResult"_L1, Fields{{"resultA"_L1, resultA}, {"resultB"_L1, resultB}}}});
    } else {
        print(connection.heading()
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
    Connection connection(options, Purpose::Writing);
    if (activate)
        confirmation.ask(u"Enter super-user mode of %1?"_s.arg(connection.computerName()));
    const bool answered = connection.tell(
        {.name = u"super-user mode"_s,
         .end = TidemarCommand::SuperUserMode,
         .start = [activate](VardaSession &session) { session.startSuperUserMode(activate); },
         .verb = u"Switching the"_s});
    if (options.json) {
        print({{"device"_L1, fieldsOf(connection.device())},
               {"superUserMode"_L1, activate},
               {"answered"_L1, answered}});
    } else {
        print(connection.heading()
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
    Connection connection(options, Purpose::Writing);
    confirmation.ask(u"Restart %1?"_s.arg(connection.computerName()));
    connection.runLast(
        {.name = u"restart"_s,
         .end = TidemarCommand::Reset,
         .start = [](VardaSession &session) { session.startCommand(TidemarCommand::Reset); },
         .verb = u"Asking for a"_s});
    if (options.json)
        print({{"device"_L1, fieldsOf(connection.device())}});
    else
        print(connection.heading() + u"The computer restarts.\n"_s);
}

} // namespace

void addControl(CommandLine &line)
{
    addDeletion(line, "delete", "Delete the last dive",
                {TidemarCommand::DeleteLastDive, u"last dive"_s, u"Deleting the"_s,
                 u"Delete the last dive of %1?"_s, u"The last dive is deleted."_s});
    addDeletion(line, "erase", "Delete all dives",
                {TidemarCommand::EraseDives, u"dives"_s, u"Erasing the"_s,
                 u"Delete all dives of %1?"_s, u"All dives are deleted."_s});
    addSuperUser(line);
    const auto confirmation = std::make_shared<std::optional<Confirmation>>();
    CLI::App *const command = line.add(
        "reset", "Restart the computer",
        [confirmation](const Options &options) { reset(options, **confirmation); });
    confirmation->emplace(command);
}
