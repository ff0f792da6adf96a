// SPDX-License-Identifier: MIT
#include "line/choices/confirmation.h"

#include "line/arguments.h"
#include "line/question.h"
#include "run/failure.h"

using namespace Qt::StringLiterals;

void Confirmation::declare(Arguments &arguments)
{
    arguments.flag("--yes", m_yes, "Do it without asking");
}

void Confirmation::require() const
{
    if (m_yes || canAsk())
        return;
    throw Failure{ExitCode::UsageError, u"this needs confirmation"_s,
                  u"Use --yes, or run it on a terminal."_s};
}

void Confirmation::ask(const QString &question) const
{
    if (m_yes)
        return;
    const QByteArray answer = ::ask(question + u" [y/N] "_s).toLower();
    if (answer != "y" && answer != "yes")
        throw Failure{ExitCode::JobFailed, u"not confirmed, nothing was changed"_s, {}};
}
