// SPDX-License-Identifier: MIT
#include "run/interrupt.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdint>
#include <ctime>

using namespace Qt::StringLiterals;

namespace {

constexpr std::int64_t kOneMoment = 500; // milliseconds

Interrupt *currentInterrupt = nullptr;
std::array<int, 2> signalPipe{-1, -1}; // a handler may write, and may do little else
std::atomic<int> firstNumber = 0;
std::atomic<std::int64_t> firstTime = 0;
static_assert(std::atomic<int>::is_always_lock_free
              && std::atomic<std::int64_t>::is_always_lock_free);

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

std::int64_t milliseconds()
{
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t(now.tv_sec) * 1000 + now.tv_nsec / 1'000'000;
}

void onSignal(int number)
{
    if (firstNumber != 0) {
        if (milliseconds() - firstTime < kOneMoment)
            return;
        std::signal(number, SIG_DFL);
        std::ignore = std::raise(number);
        return;
    }
    firstTime = milliseconds();
    firstNumber = number;
    const char byte = 0;
    // The pipe is empty.
    [[maybe_unused]] const auto written = ::write(signalPipe[1], &byte, 1);
}

} // namespace

Interrupt::Interrupt()
{
    currentInterrupt = this;
    // What a write meets is found out by the write.
    for (const int number : {SIGPIPE, SIGXFSZ})
        std::signal(number, SIG_IGN);
    if (::pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &Interrupt::onReadable);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    // One at a time; and no SA_RESTART, so that a write that nobody reads ends.
    for (const int number : kSignals)
        ::sigaddset(&action.sa_mask, number);
    for (const int number : kSignals)
        ::sigaction(number, &action, nullptr);
}

Interrupt::~Interrupt()
{
    for (const int number : kSignals)
        std::signal(number, SIG_DFL);
    m_notifier.reset();
    for (int &end : signalPipe)
        ::close(std::exchange(end, -1));
    currentInterrupt = nullptr;
}

Interrupt *Interrupt::instance()
{
    return currentInterrupt;
}

int Interrupt::number()
{
    return firstNumber;
}

Failure Interrupt::failure()
{
    return {ExitCode(int(ExitCode::Signal) + number()), u"interrupted"_s, {}};
}

void Interrupt::onReadable()
{
    char byte = 0;
    if (::read(signalPipe[0], &byte, 1) == 1)
        Q_EMIT interrupted();
}
