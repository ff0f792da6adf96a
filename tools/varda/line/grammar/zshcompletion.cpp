// SPDX-License-Identifier: MIT
#include "line/grammar/completion.h"
#include "line/grammar/grammar.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kBegin = R"sh(#compdef varda
# Completion of varda for zsh, as "varda completion zsh" prints it.
)sh"_L1;

/** From a folder of functions it is called at once; from a file that is read, it is kept. */
constexpr auto kEnd = R"sh(
if [[ $funcstack[1] == _varda ]]; then
    _varda "$@"
else
    compdef _varda varda
fi
)sh"_L1;

QString quoted(QString text)
{
    return u'\'' + text.replace(u"'"_s, u"'\\''"_s) + u'\'';
}

/** Without what separates the parts of a description for zsh. */
QString escaped(QString text)
{
    for (const auto sign : {u'\\', u':', u'[', u']'})
        text.replace(sign, QString(u'\\') + sign);
    return text;
}

QString functionOf(const Grammar &command)
{
    return u'_' + QString(command.path).replace(u' ', u'_');
}

/** ":MODE:(gatt sps)" */
QString valueText(const Grammar::Value &value)
{
    QString action;
    if (!value.words.isEmpty())
        action = u'(' + value.words.join(u' ') + u')';
    else if (value.isFile)
        action = u"_files"_s;
    return (value.isOptional ? u"::"_s : u":"_s) + escaped(value.name) + u':' + action;
}

QStringList optionsOf(const Grammar &command)
{
    QStringList lines;
    for (const Grammar::Option &option : command.options) {
        const QString excluded = u'(' + option.names.join(u' ') + u')';
        for (const QString &name : option.names) {
            const bool isLong = name.startsWith("--"_L1);
            const QString value = option.value ? valueText(*option.value) : QString();
            lines.append(quoted(excluded + name + (option.value && isLong ? u"="_s : QString())
                                + u'[' + escaped(option.description) + u']' + value));
        }
    }
    return lines;
}

QString groupText(const Grammar &command)
{
    QString text = u"    case $state in\n        command)\n            local -a commands=(\n"_s;
    for (const Grammar &each : command.commands) {
        text += u"                %1\n"_s.arg(quoted(each.name + u':' + escaped(each.description)));
    }
    text += u"            )\n            _describe -t commands command commands\n"
            "            ;;\n        argument)\n            case $line[1] in\n"_s;
    for (const Grammar &each : command.commands)
        text += u"                %1) %2 ;;\n"_s.arg(each.name, functionOf(each));
    return text + u"            esac\n            ;;\n    esac\n"_s;
}

/** The first command's options may stand behind all others, whose functions it calls. */
QString argumentsText(const Grammar &command)
{
    const bool isFirst = !command.path.contains(u' ');
    QStringList lines = isFirst ? QStringList() : optionsOf(command);
    if (!command.commands.empty())
        lines += {u"'1:command:->command'"_s, u"'*::argument:->argument'"_s};
    for (qsizetype i = 0; i < command.arguments.size(); ++i) {
        const Grammar::Value &value = command.arguments[i].value;
        const QString position = value.isRepeated ? u"*"_s : QString::number(i + 1);
        lines.append(quoted(position + valueText(value)));
    }
    QString text;
    if (isFirst) {
        text += u"    local -a shared=(\n"_s;
        for (const QString &option : optionsOf(command))
            text += u"        %1\n"_s.arg(option);
        text += u"    )\n"_s;
    }
    text += u"    _arguments -C $shared"_s;
    for (const QString &line : lines)
        text += u" \\\n        "_s + line;
    return text + u'\n';
}

QString functionText(const Grammar &command)
{
    return u'\n' + functionOf(command) + u"() {\n    local curcontext=$curcontext state line\n"_s
           + argumentsText(command) + (command.commands.empty() ? QString() : groupText(command))
           + u"}\n"_s;
}

/** What follows "help" is a command, and perhaps one of its own. */
QString helpText(const Grammar &grammar)
{
    QString text = u"\n_varda_help() {\n    local -a commands\n"
                   "    case ${(j: :)words[2,CURRENT-1]} in\n"_s;
    forEachCommand(grammar, [&text](const Grammar &each) {
        QStringList names;
        for (const Grammar &command : each.commands)
            names.append(command.name);
        if (!names.isEmpty()) {
            text += u"        '%1') commands=(%2) ;;\n"_s.arg(each.path.section(u' ', 1),
                                                              names.join(u' '));
        }
    });
    return text + u"    esac\n    compadd -a commands\n}\n"_s;
}

} // namespace

QString zshCompletion(const Grammar &grammar)
{
    QString text = kBegin;
    forEachCommand(grammar, [&](const Grammar &each) {
        text += each.path == "varda help"_L1 ? helpText(grammar) : functionText(each);
    });
    return text + kEnd;
}
