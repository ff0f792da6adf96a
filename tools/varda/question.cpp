// SPDX-License-Identifier: MIT
#include "question.h"

#include "step.h"
#include "terminal.h"

#include <QtCore/qsocketnotifier.h>

#include <unistd.h>

#include <array>

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

bool canAsk()
{
    return ::isatty(STDIN_FILENO) != 0 && ::isatty(STDERR_FILENO) != 0;
}

QByteArray ask(const QString &question, const QStringList &choices)
{
    printQuestion(question, choices);
    return typedLine().trimmed();
}
