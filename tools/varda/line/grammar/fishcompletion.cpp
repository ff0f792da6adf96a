// SPDX-License-Identifier: MIT
#include "line/grammar/completion.h"
#include "line/grammar/grammar.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kBegin = R"sh(# Completion of varda for fish, as "varda completion fish" prints it.

)sh"_L1;

constexpr auto kFunctions = R"sh(
# Prints the command that has been typed, then how many arguments follow it.
function __varda_typed
    set -l path varda
    set -l position 0
    set -l value ''
    set -l ended no
    for word in (commandline -opc)[2..]
        if test -n "$value"
            if test $value = needed
                set value ''
                continue
            end
            # A value that may be missing is none if a command or an option stands there.
            set value ''
            if not string match -q -- '-*' $word
                and not contains -- $word (__varda_commands $path)
                continue
            end
        end
        if test $ended = no -a "$word" = --
            set ended yes
        else if test $ended = no; and string match -qr -- '^-[^0-9]' $word
            set value (__varda_value "$path $word")
        else if test $position = 0; and contains -- $word (__varda_commands $path)
            set path (test "$path $word" = 'varda help'; and echo help; or echo "$path $word")
        else
            set position (math $position + 1)
        end
    end
    echo $path
    echo $position
end

# __varda_at COMMAND [POSITION]: whether the word to complete comes right behind it.
function __varda_at
    set -l typed (__varda_typed)
    test "$typed[1]" = $argv[1]
    and test (count $argv) = 1 -a $typed[2] = 0 -o "$typed[2]" = "$argv[2]" -o "$argv[2]" = any
end

# __varda_in COMMAND: whether it has been typed.
function __varda_in
    set -l typed (__varda_typed)
    string match -q -- "$argv[1] *" "$typed[1] "
end

complete -c varda -f
)sh"_L1;

QString quoted(QString text)
{
    text.replace(u'\\', u"\\\\"_s);
    return u'\'' + text.replace(u'\'', u"\\'"_s) + u'\'';
}

QStringList namesOf(const std::vector<Grammar> &commands)
{
    QStringList names;
    for (const Grammar &each : commands)
        names.append(each.name);
    return names;
}

/** Where the commands of @p path may follow "help". */
QString helpPath(const QString &path)
{
    return u"help"_s + path.mid(path.section(u' ', 0, 0).size());
}

QString commandsFunction(const Grammar &grammar)
{
    QString text = u"function __varda_commands\n    switch $argv[1]\n"_s;
    forEachCommand(grammar, [&text](const Grammar &each) {
        if (each.commands.empty())
            return;
        text += u"        case %1 %2\n            printf '%s\\n' %3\n"_s.arg(
            quoted(each.path), quoted(helpPath(each.path)), namesOf(each.commands).join(u' '));
    });
    return text + u"    end\nend\n\n"_s;
}

void addValues(QString &text, const Grammar &grammar)
{
    for (const Grammar &each : grammar.commands)
        addValues(text, each);
    for (const Grammar::Option &option : grammar.options) {
        if (!option.value)
            continue;
        text += u"        case"_s;
        for (const QString &name : option.names)
            text += u" '%1* %2'"_s.arg(grammar.path, name);
        text += u"\n            echo %1\n"_s.arg(option.value->isOptional ? "optional"_L1
                                                                          : "needed"_L1);
    }
}

QString valueFunction(const Grammar &grammar)
{
    QString text = u"# Whether the next word is the value of an option.\n"
                   "function __varda_value\n    switch $argv[1]\n"_s;
    addValues(text, grammar);
    return text + u"    end\nend\n"_s;
}

QString complete(const QString &condition)
{
    return u"complete -c varda"_s
           + (condition.isEmpty() ? QString() : u" -n \""_s + condition + u'"');
}

QString optionLine(const Grammar &command, const Grammar::Option &option)
{
    const bool isShared = !command.path.contains(u' ');
    QString line = complete(isShared ? QString() : u"__varda_in '%1'"_s.arg(command.path));
    for (const QString &name : option.names) {
        line += name.startsWith("--"_L1) ? u" -l "_s + name.mid(2) : u" -s "_s + name.mid(1);
    }
    if (option.value) {
        if (option.value->isFile)
            line += option.value->isOptional ? u" -F"_s : u" -r -F"_s;
        else
            line += u" -x"_s;
        if (!option.value->words.isEmpty())
            line += u" -a "_s + quoted(option.value->words.join(u' '));
    }
    return line + u" -d "_s + quoted(option.description) + u'\n';
}

QString linesOf(const Grammar &command)
{
    QString lines;
    for (const Grammar &each : command.commands) {
        for (const QString &path : {command.path, helpPath(command.path)}) {
            lines += complete(u"__varda_at '%1'"_s.arg(path)) + u" -a "_s + each.name + u" -d "_s
                     + quoted(each.description) + u'\n';
        }
    }
    for (const Grammar::Option &option : command.options)
        lines += optionLine(command, option);
    for (qsizetype i = 0; i < command.arguments.size(); ++i) {
        const Grammar::Value &value = command.arguments[i].value;
        if (value.words.isEmpty() && !value.isFile)
            continue;
        const QString position = value.isRepeated ? u"any"_s : QString::number(i);
        lines += complete(u"__varda_at '%1' %2"_s.arg(command.path, position))
                 + (value.isFile ? u" -F\n"_s : u" -a "_s + quoted(value.words.join(u' ')) + u'\n');
    }
    return lines;
}

} // namespace

QString fishCompletion(const Grammar &grammar)
{
    QString text = kBegin + commandsFunction(grammar) + valueFunction(grammar) + kFunctions;
    forEachCommand(grammar, [&text](const Grammar &each) { text += linesOf(each); });
    return text;
}
