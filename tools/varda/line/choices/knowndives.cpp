// SPDX-License-Identifier: MIT
#include "line/choices/knowndives.h"

#include "line/arguments.h"
#include "line/choices/divenumbers.h"
#include "run/failure.h"
#include "run/files.h"

#include <QtCore/qfileinfo.h>
#include <QtCore/qregularexpression.h>

using namespace Qt::StringLiterals;

namespace {

/** They may be in a file, or come from standard input; both are read only when it is their turn. */
QString checkKnown(const QString &text)
{
    const QFileInfo file(text);
    if (text.isEmpty() || text == "-"_L1 || numbersIn(text) || (file.exists() && !file.isDir()))
        return {};
    return u"\"%1\" is neither a list of dive numbers such as 1,2,5-9 nor a file"_s.arg(text);
}

/** @throws Failure */
QString listIn(const QString &file)
{
    const QString name = file == "-"_L1 ? u"/dev/stdin"_s : file;
    const QString text = QString::fromUtf8(readFile(name)).simplified();
    static const QRegularExpression kBetween(u"[ ,]+"_s);
    const QString list = text.split(kBetween, Qt::SkipEmptyParts).join(u',');
    if (!list.isEmpty() && !numbersIn(list)) {
        throw Failure{
            ExitCode::UsageError,
            u"--known: \"%1\" does not contain a list of dive numbers such as 1,2,5-9"_s.arg(file),
            {}};
    }
    return list;
}

} // namespace

void KnownDives::declare(Arguments &arguments)
{
    arguments.option("--known", "NUMBERS", m_texts,
                     "Skip these dives: numbers such as 1,2,5-9, a file, or -", checkKnown);
}

void KnownDives::requireNone(const QString &advice) const
{
    if (!m_texts.isEmpty())
        throw Failure{ExitCode::UsageError, u"--known is for dives in a computer"_s, advice};
}

QList<std::uint16_t> KnownDives::numbers() const
{
    QStringList lists = m_texts;
    for (QString &text : lists) {
        if (!text.isEmpty() && !numbersIn(text))
            text = listIn(text);
    }
    return numbersIn(lists);
}
