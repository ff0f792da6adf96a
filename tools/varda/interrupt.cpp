// SPDX-License-Identifier: MIT
#include "interrupt.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace {

Interrupt *currentInterrupt = nullptr;
std::array<int, 2> signalPipe{-1, -1}; // a handler may write, and may do little else

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

void onSignal(int number)
{
    const auto byte = static_cast<unsigned char>(number);
    // The pipe is empty, or it is full of such bytes.
    [[maybe_unused]] const auto written = ::write(signalPipe[1], &byte, 1);
}

} // namespace

Interrupt::Interrupt()
{
    currentInterrupt = this;
    if (::pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &Interrupt::onReadable);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int number : kSignals)
        ::sigaction(number, &action, nullptr);
    // Who reads the result may have enough of it; that is found out when all is written.
    std::signal(SIGPIPE, SIG_IGN);
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

void Interrupt::onReadable()
{
    unsigned char number = 0;
    if (::read(signalPipe[0], &number, 1) != 1)
        return;
    m_number = number;
    Q_EMIT came();
}
