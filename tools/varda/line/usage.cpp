// SPDX-License-Identifier: MIT
#include "line/usage.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

QString textOf(const std::string &text)
{
    return QString::fromLocal8Bit(text.c_str());
}

/** Letters to add, to leave out, to replace or to exchange with the next one. */
qsizetype distance(const QString &one, const QString &other)
{
    QList<qsizetype> beforeLast;
    QList<qsizetype> last(other.size() + 1);
    std::iota(last.begin(), last.end(), 0);
    for (qsizetype i = 1; i <= one.size(); ++i) {
        QList<qsizetype> row{i};
        for (qsizetype j = 1; j <= other.size(); ++j) {
            const bool isSame = one[i - 1] == other[j - 1];
            qsizetype least = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + !isSame});
            if (i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1])
                least = std::min(least, beforeLast[j - 2] + 1);
            row.append(least);
        }
        beforeLast = std::exchange(last, row);
    }
    return last.back();
}

/** By how much they differ; nothing if by too much for a slip. */
std::optional<qsizetype> slip(const QString &word, const QString &name)
{
    constexpr qsizetype kShort = 4;
    if (word.size() > 2 && name.startsWith(word))
        return 1;
    const qsizetype most = name.size() <= kShort ? 1 : 2;
    if (std::abs(word.size() - name.size()) > most)
        return std::nullopt;
    const qsizetype by = distance(word, name);
    return by <= most ? std::optional(by) : std::nullopt;
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

QStringList nearest(const QString &word, const QStringList &names)
{
    QStringList result;
    qsizetype least = word.size() + 1;
    for (const QString &name : names) {
        const auto by = slip(word, name);
        if (!by || *by > least || result.contains(name))
            continue;
        if (*by < least)
            result.clear();
        least = *by;
        result.append(name);
    }
    return result;
}

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
        return {ExitCode::UsageError,
                u"\"%1\" is one argument too many"_s.arg(textOf(rest.front())),
                advice(command, {})};
    }
    return {ExitCode::UsageError, textOf(error.what()), advice(command, {})};
}
