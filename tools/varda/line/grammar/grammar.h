// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qstringlist.h>

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

/** What may stand on the command line, for what describes it to shells and people. */
struct Grammar {
    struct Value {
        QString name;
        QStringList words;   ///< what it may be; empty if there is no such list
        bool isFile = false; ///< or may be one
        bool isOptional = false;
        bool isRepeated = false;
    };
    struct Option {
        QStringList names; ///< with their dashes
        QString description;
        std::optional<Value> value;
    };
    struct Argument {
        Value value;
        QString description;
    };

    QString path; ///< "varda layouts get"
    QString name;
    QString description;
    bool needsCommand = false;
    QList<Option> options; ///< its own; those of what it belongs to may stand behind it as well
    QList<Argument> arguments;
    std::vector<Grammar> commands;
};

[[nodiscard]] Grammar grammarOf(CLI::App &command);

/** How a validator is called that accepts these words only: the parser keeps nothing else of them. */
[[nodiscard]] std::string nameOfWords(const std::vector<std::string> &words);

/** Calls @p visit for @p grammar and all commands below it, each before its own commands. */
template <typename Visit> void forEachCommand(const Grammar &grammar, const Visit &visit)
{
    visit(grammar);
    for (const Grammar &each : grammar.commands)
        forEachCommand(each, visit);
}
