// SPDX-License-Identifier: MIT
#include "line/grammar/grammar.h"

#include "line/usage.h"

#include <CLI/CLI.hpp>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kWords = "one of ";

/** What these stand for is a file, or may be one. */
const QStringList kFiles{u"FILE"_s, u"TO"_s, u"FOLDER"_s, u"[SCENARIO]"_s, u"NUMBERS"_s};

QString textOf(const std::string &text)
{
    return QString::fromStdString(text);
}

QStringList wordsOf(CLI::Option &option)
{
    try {
        const QString name = textOf(option.get_validator(0)->get_name());
        const QLatin1StringView begin(kWords);
        return name.startsWith(begin) ? name.mid(begin.size()).split(u' ') : QStringList();
    } catch (const CLI::OptionNotFound &) {
        return {};
    }
}

Grammar::Value valueOf(CLI::Option &option)
{
    const QString name = textOf(option.get_type_name());
    return {.name = name,
            .words = wordsOf(option),
            .isFile = kFiles.contains(name),
            .isOptional = name.startsWith(u'['),
            .isRepeated = option.get_positional() && option.get_items_expected_max() > 1};
}

QStringList namesOf(const CLI::Option &option)
{
    QStringList names;
    for (const std::string &name : option.get_snames())
        names.append(u'-' + textOf(name));
    for (const std::string &name : option.get_lnames())
        names.append(u"--"_s + textOf(name));
    return names;
}

} // namespace

std::string nameOfWords(const std::vector<std::string> &words)
{
    std::string name = kWords;
    for (std::size_t i = 0; i < words.size(); ++i)
        name += (i > 0 ? " " : "") + words[i];
    return name;
}

Grammar grammarOf(CLI::App &command)
{
    Grammar grammar;
    grammar.path = commandText(command);
    grammar.name = textOf(command.get_name());
    grammar.description = textOf(command.get_description());
    grammar.needsCommand = command.get_require_subcommand_min() > 0;
    for (CLI::Option *option : command.get_options()) {
        // Each command has it, and the first one says so.
        if (command.get_parent() && option == command.get_help_ptr())
            continue;
        const QString description = textOf(option->get_description());
        if (option->get_positional()) {
            grammar.arguments.append({valueOf(*option), description});
            continue;
        }
        const bool hasValue = !option->get_type_name().empty();
        grammar.options.append({namesOf(*option), description,
                                hasValue ? std::optional(valueOf(*option)) : std::nullopt});
    }
    for (CLI::App *each : command.get_subcommands({}))
        grammar.commands.push_back(grammarOf(*each));
    return grammar;
}
