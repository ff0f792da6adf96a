// SPDX-License-Identifier: MIT
#include "line/grammar/manpage.h"

#include "line/exitstatuses.h"
#include "line/grammar/grammar.h"

using namespace Qt::StringLiterals;

namespace {

/** As roff prints it unchanged. */
QString plain(QString text)
{
    text.replace(u'\\', u"\\e"_s).replace(u'-', u"\\-"_s);
    return text.startsWith(u'.') || text.startsWith(u'\'') ? u"\\&"_s + text : text;
}

QString bold(const QString &text)
{
    return u"\\fB"_s + plain(text) + u"\\fR"_s;
}

QString italic(const QString &text)
{
    return u"\\fI"_s + plain(text) + u"\\fR"_s;
}

/** "[SCENARIO]" and "on|off" are no names throughout. */
QString valueText(const Grammar::Value &value)
{
    if (value.name.contains(u'|'))
        return bold(value.name);
    if (!value.name.startsWith(u'['))
        return italic(value.name);
    return u'[' + italic(value.name.mid(1, value.name.size() - 2)) + u']';
}

QString sentence(const QString &text)
{
    return plain(text) + (text.endsWith(u'.') ? u"\n"_s : u".\n"_s);
}

QString paragraph(const QString &head, const QString &text)
{
    return u".TP\n"_s + head + u'\n' + sentence(text);
}

QString optionTexts(const Grammar &command)
{
    QString text;
    for (const Grammar::Option &option : command.options) {
        QStringList names;
        for (const QString &name : option.names)
            names.append(bold(name));
        const QString value = option.value ? u' ' + valueText(*option.value) : QString();
        text += paragraph(names.join(u", "_s) + value, option.description);
    }
    return text;
}

QString argumentTexts(const Grammar &command)
{
    QString text;
    for (const Grammar::Argument &argument : command.arguments)
        text += paragraph(valueText(argument.value), argument.description);
    return text;
}

QString commandText(const Grammar &command)
{
    QString head = bold(command.path);
    for (const Grammar::Argument &argument : command.arguments) {
        head += u' ' + valueText(argument.value);
        if (argument.value.isRepeated)
            head += u"..."_s;
    }
    const QString inner = argumentTexts(command) + optionTexts(command);
    return paragraph(head, command.description)
           + (inner.isEmpty() ? QString() : u".RS\n"_s + inner + u".RE\n"_s);
}

QString commandTexts(const Grammar &grammar)
{
    QString text;
    for (const Grammar &each : grammar.commands) {
        forEachCommand(each, [&text](const Grammar &command) {
            // Those of a group that does nothing itself say all.
            if (!command.needsCommand)
                text += commandText(command);
        });
    }
    return text;
}

QString exitStatusTexts()
{
    QString text;
    for (const ExitStatus &status : kExitStatuses) {
        text += u".TP\n%1\n%2.\n"_s.arg(bold(QString::number(int(status.code))),
                                        plain(QString::fromLatin1(status.meaning)));
    }
    return text;
}

} // namespace

QString manPage(const Grammar &grammar, QString page)
{
    return page.replace("@VERSION@"_L1, plain(u"" VARDA_VERSION ""_s))
        .replace("@COMMANDS@\n"_L1, commandTexts(grammar))
        .replace("@OPTIONS@\n"_L1, optionTexts(grammar))
        .replace("@EXIT_STATUS@\n"_L1, exitStatusTexts());
}
