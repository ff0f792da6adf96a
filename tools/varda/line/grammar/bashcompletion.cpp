// SPDX-License-Identifier: MIT
#include "line/grammar/completion.h"
#include "line/grammar/grammar.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kBegin = R"sh(# Completion of varda for bash, as "varda completion bash" prints it.

)sh"_L1;

/** Needs nothing of the package bash-completion, which finds and loads it. */
constexpr auto kEnd = R"sh(
_varda() {
    local cur=${COMP_WORDS[COMP_CWORD]} path=varda value='' words='' file='' help='' ended='' word i
    local -i position=0
    local IFS=$' \t\n'
    for ((i = 1; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        # bash makes three words of --mode=gatt.
        if [[ $word == = ]]; then
            value=${value#\?}
            continue
        fi
        if [[ -n $value ]]; then
            # A value that may be missing is none if a command or an option stands there.
            if [[ $value != \?* ]] ||
                [[ $word != -* && " $(_varda_commands "$path") " != *" $word "* ]]; then
                value=''
                continue
            fi
            value=''
        fi
        if [[ -z $ended && $word == -- ]]; then
            ended=yes
        elif [[ -z $ended && $word == -[!0-9]* ]]; then
            value=$(_varda_value "$path $word")
        elif [[ $path == varda && $word == help ]]; then
            help=yes
        elif [[ $position == 0 && " $(_varda_commands "$path") " == *" $word "* ]]; then
            path+=" $word"
        else
            position+=1
        fi
    done
    if [[ $cur == = ]]; then
        cur=''
        value=${value#\?}
    fi

    if [[ -n $value && ($value != \?* || $cur != -*) ]]; then
        words=${value#\?}
        if [[ $value == \?* ]]; then
            words+=" $(_varda_commands "$path")"
        fi
    elif [[ -z $ended && $cur == -* ]]; then
        words=$(_varda_options "$path")
    else
        words=$(_varda_commands "$path")
        if [[ -z $help ]]; then
            words+=" $(_varda_argument "$path $position")"
        fi
    fi
    words=" $words "
    case $words in *' FILE '*) file=yes ;; esac
    words=${words// FILE / }
    words=${words// - / }
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$cur")
    if [[ -n $file ]]; then
        # Where no shell completes, as in a script, there is nothing to set.
        compopt -o filenames 2>/dev/null
        mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -f -- "$cur")
    fi
}

complete -F _varda varda
)sh"_L1;

/** What a value may be, as _varda reads it: words, FILE, or - for what nobody knows. */
QString textOf(const Grammar::Value &value)
{
    QStringList words = value.words;
    if (value.isFile)
        words.append(u"FILE"_s);
    if (words.isEmpty())
        words.append(u"-"_s);
    return (value.isOptional ? u"?"_s : QString()) + words.join(u' ');
}

/** A function that prints a text for what matches its patterns. */
class Cases
{
public:
    explicit Cases(const QString &name) : m_text(name + u"() {\n    case $1 in\n"_s) { }

    /** Further patterns are looked at too if @p end is ";;&". */
    void add(const QString &patterns, const QString &text, QLatin1StringView end = ";;"_L1)
    {
        if (!text.isEmpty())
            m_text += u"        %1) echo '%2' %3\n"_s.arg(patterns, text, end);
    }
    [[nodiscard]] QString text() const { return m_text + u"    esac\n}\n"_s; }

private:
    QString m_text;
};

QString namesOf(const std::vector<Grammar> &commands)
{
    QStringList names;
    for (const Grammar &each : commands)
        names.append(each.name);
    return names.join(u' ');
}

QString commands(const Grammar &grammar)
{
    Cases cases(u"_varda_commands"_s);
    forEachCommand(grammar, [&](const Grammar &each) {
        cases.add(u"'%1'"_s.arg(each.path), namesOf(each.commands));
    });
    return cases.text();
}

QString options(const Grammar &grammar)
{
    Cases cases(u"_varda_options"_s);
    forEachCommand(grammar, [&](const Grammar &each) {
        QStringList names;
        for (const Grammar::Option &option : each.options)
            names += option.names;
        cases.add(u"'%1' | '%1 '*"_s.arg(each.path), names.join(u' '), ";;&"_L1);
    });
    return cases.text();
}

/** Those of the commands below come first: an option means what the nearest one says. */
void addValues(Cases &cases, const Grammar &grammar)
{
    for (const Grammar &each : grammar.commands)
        addValues(cases, each);
    for (const Grammar::Option &option : grammar.options) {
        if (!option.value)
            continue;
        QStringList patterns;
        for (const QString &name : option.names)
            patterns.append(u"'%1'*' %2'"_s.arg(grammar.path, name));
        cases.add(patterns.join(u" | "_s), textOf(*option.value));
    }
}

QString values(const Grammar &grammar)
{
    Cases cases(u"_varda_value"_s);
    addValues(cases, grammar);
    return cases.text();
}

QString arguments(const Grammar &grammar)
{
    Cases cases(u"_varda_argument"_s);
    forEachCommand(grammar, [&](const Grammar &each) {
        for (qsizetype i = 0; i < each.arguments.size(); ++i) {
            const Grammar::Value &value = each.arguments[i].value;
            if (value.words.isEmpty() && !value.isFile)
                continue;
            const QString position = value.isRepeated ? u"'*"_s : QString::number(i) + u'\'';
            cases.add(u"'%1 %2"_s.arg(each.path, position), textOf(value));
        }
    });
    return cases.text();
}

} // namespace

QString bashCompletion(const Grammar &grammar)
{
    return kBegin + commands(grammar) + options(grammar) + values(grammar) + arguments(grammar)
           + kEnd;
}
