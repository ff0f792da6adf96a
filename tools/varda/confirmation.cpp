// SPDX-License-Identifier: MIT
#include "confirmation.h"

#include "failure.h"
#include "step.h"
#include "terminal.h"

#include <QtCore/qsocketnotifier.h>

#include <unistd.h>

#include <array>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kPatience = 5min;

/** A line that is typed; empty at the end of the input, or when nobody types. */
QByteArray typedLine()
{
    QByteArray line;
    Step step;
    QSocketNotifier notifier(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &step, [&] {
        std::array<char, 256> buffer{};
        const auto size = ::read(STDIN_FILENO, buffer.data(), buffer.size());
        line += QByteArray(buffer.data(), qsizetype(size > 0 ? size : 0));
        if (size <= 0 || line.contains('\n'))
            step.end();
    });
    return step.wait(kPatience) ? line : QByteArray();
}

} // namespace

Confirmation::Confirmation(CLI::App *command)
{
    command->add_flag("--yes", *m_yes, "Do it without asking");
}

void Confirmation::require() const
{
    if (*m_yes || (::isatty(STDIN_FILENO) != 0 && ::isatty(STDERR_FILENO) != 0))
        return;
    throw Failure{ExitCode::UsageError, u"this cannot be undone, so it wants to be confirmed"_s,
                  u"Say --yes, or run it on a terminal."_s};
}

void Confirmation::ask(const QString &question) const
{
    if (*m_yes)
        return;
    printQuestion(question + u" [y/N] "_s);
    const QByteArray answer = typedLine().trimmed().toLower();
    if (answer != "y" && answer != "yes")
        throw Failure{ExitCode::JobFailed, u"not confirmed, nothing was done"_s, {}};
}
