// SPDX-License-Identifier: MIT
#include "step.h"

#include "interrupt.h"
#include "servicewatch.h"

using namespace Qt::StringLiterals;

Step::Step()
{
    for (QTimer *timer : {&m_quiet, &m_limit}) {
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, [this] { settle(State::Late); });
    }
    if (const Interrupt *interrupt = Interrupt::instance()) {
        const auto onInterrupt = [this] { fail(Interrupt::failure()); };
        connect(interrupt, &Interrupt::came, this, onInterrupt);
        if (Interrupt::number() != 0)
            onInterrupt();
    }
    if (const ServiceWatch *watch = ServiceWatch::instance()) {
        const auto onEnd = [this] {
            fail({ExitCode::NoBluetooth, u"the system's Bluetooth service has ended"_s,
                  u"Does it run again? (systemctl status bluetooth)"_s});
        };
        connect(watch, &ServiceWatch::ended, this, onEnd);
        if (watch->hasEnded())
            onEnd();
    }
}

void Step::end()
{
    settle(State::Ended);
}

void Step::fail(const Failure &failure)
{
    if (m_state == State::Open)
        m_failure = failure;
    settle(State::Failed);
}

void Step::goOn()
{
    if (m_quiet.isActive())
        m_quiet.start();
}

bool Step::wait(std::chrono::milliseconds quiet, std::chrono::milliseconds limit)
{
    m_quiet.start(quiet);
    m_limit.start(limit);
    if (m_state == State::Open)
        m_loop.exec();
    m_quiet.stop();
    m_limit.stop();
    if (m_state == State::Failed)
        throw m_failure;
    return m_state == State::Ended;
}

void Step::settle(State state)
{
    if (m_state != State::Open)
        return;
    m_state = state;
    m_loop.quit();
}
