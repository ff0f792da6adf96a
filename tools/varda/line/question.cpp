// SPDX-License-Identifier: MIT
#include "line/question.h"

#include "output/terminal.h"
#include "run/interrupt.h"

#include <QtCore/qeventloop.h>
#include <QtCore/qsocketnotifier.h>
#include <QtCore/qtimer.h>

#include <unistd.h>

#include <array>

using namespace std::chrono_literals;

namespace {

constexpr auto kAnswerTime = 5min;

/** A line that is typed; empty at the end of the input, or when nobody types. */
QByteArray typedLine()
{
    QByteArray line;
    bool typed = false;
    QEventLoop loop;
    QSocketNotifier notifier(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &loop, [&] {
        std::array<char, 256> buffer{};
        const auto size = ::read(STDIN_FILENO, buffer.data(), buffer.size());
        line += QByteArray(buffer.data(), qsizetype(size > 0 ? size : 0));
        typed = size <= 0 || line.contains('\n');
        if (typed)
            loop.quit();
    });
    QTimer::singleShot(kAnswerTime, &loop, &QEventLoop::quit);
    if (const Interrupt *interrupt = Interrupt::instance())
        QObject::connect(interrupt, &Interrupt::interrupted, &loop, &QEventLoop::quit);
    if (Interrupt::number() == 0)
        loop.exec();
    if (Interrupt::number() != 0)
        throw Interrupt::failure();
    return typed ? line : QByteArray();
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
