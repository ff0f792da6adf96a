// SPDX-License-Identifier: MIT
#include "program/ending.h"

#include <QtCore/qcoreapplication.h>

#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>

namespace simulator {

namespace {

sigset_t stopping()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    return signals;
}

} // namespace

StopSignals::StopSignals()
{
    const sigset_t signals = stopping();
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    m_fd = ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

StopSignals::~StopSignals()
{
    ::close(m_fd);
}

int StopSignals::take() const
{
    signalfd_siginfo info{};
    return ::read(m_fd, &info, sizeof info) == ssize_t(sizeof info) ? int(info.ssi_signo) : 0;
}

void StopSignals::unblock()
{
    const sigset_t signals = stopping();
    ::pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

std::unique_ptr<QSocketNotifier> endWithStdin()
{
    auto input = std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(input.get(), &QSocketNotifier::activated, qApp, [] {
        char ignored[256];
        if (::read(STDIN_FILENO, ignored, sizeof ignored) <= 0)
            QCoreApplication::exit(0);
    });
    return input;
}

} // namespace simulator
