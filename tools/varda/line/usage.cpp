// SPDX-License-Identifier: MIT
#include "line/usage.h"

#include "line/suggestions.h"

#include <CLI/CLI.hpp>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString textOf(const std::string &text)
{
    return QString::fromLocal8Bit(text.c_str());
}

QStringList commandsOf(const CLI::App &group)
{
    QStringList names;
    for (const CLI::App *command : group.get_subcommands({}))
        names.append(textOf(command->get_name()));
    return names;
}

/** Without their dashes. */
QStringList optionsOf(const CLI::App &command)
{
    QStringList names;
    for (const CLI::App *app = &command; app; app = app->get_parent()) {
        for (const CLI::Option *option : app->get_options()) {
            for (const std::string &name : option->get_lnames())
                names.append(textOf(name));
        }
    }
    return names;
}

/** "Did you mean …? See …" */
QString advice(const CLI::App &command, const QStringList &meant)
{
    const QString see = u"See \"%1 --help\"."_s.arg(commandText(command));
    return meant.isEmpty() ? see : u"Did you mean %1? "_s.arg(meant.join(u" or "_s)) + see;
}

Failure noSuchOption(const CLI::App &command, const QString &typed)
{
    const QString option = typed.section(u'=', 0, 0);
    QString word = option;
    while (word.startsWith(u'-'))
        word.remove(0, 1);
    QStringList meant = nearest(word.toLower(), optionsOf(command));
    for (QString &each : meant)
        each.prepend("--"_L1);
    return {ExitCode::UsageError, u"there is no option \"%1\""_s.arg(option),
            advice(command, meant)};
}

bool isOption(const std::string &word)
{
    return word.size() > 1 && word.front() == '-' && word != "--";
}

} // namespace

const CLI::App *typedCommand(const CLI::App &app)
{
    const CLI::App *command = &app;
    while (!command->get_subcommands().empty())
        command = command->get_subcommands().front();
    return command;
}

QString commandText(const CLI::App &command)
{
    const QString name = textOf(command.get_name());
    const CLI::App *const parent = command.get_parent();
    return parent ? commandText(*parent) + u' ' + name : name;
}

Failure noSuchCommand(const CLI::App &group, const QString &word)
{
    QStringList meant = nearest(word.toLower(), commandsOf(group));
    for (QString &each : meant)
        each = u"\"%1 %2\""_s.arg(commandText(group), each);
    return {ExitCode::UsageError, u"there is no command \"%1 %2\""_s.arg(commandText(group), word),
            advice(group, meant)};
}

Failure usageFailure(const CLI::App &app, const CLI::ParseError &error)
{
    const CLI::App &command = *typedCommand(app);
    // CLI11 misses something before it looks at what is there instead.
    const std::vector<std::string> rest = app.remaining(true);
    const auto option = std::ranges::find_if(rest, isOption);
    if (option != rest.end())
        return noSuchOption(command, textOf(*option));
    const bool isGroup = !command.get_subcommands({}).empty();
    if (isGroup && !rest.empty())
        return noSuchCommand(command, textOf(rest.front()));
    if (isGroup && dynamic_cast<const CLI::RequiredError *>(&error) != nullptr) {
        return {ExitCode::UsageError, u"\"%1\" needs a command"_s.arg(commandText(command)),
                advice(command, {})};
    }
    if (!rest.empty()) {
        return {ExitCode::UsageError, u"unexpected argument \"%1\""_s.arg(textOf(rest.front())),
                advice(command, {})};
    }
    return {ExitCode::UsageError, textOf(error.what()), advice(command, {})};
}
