// SPDX-License-Identifier: MIT
#pragma once

#include "failure.h"

#include <QtCore/qeventloop.h>
#include <QtCore/qobject.h>
#include <QtCore/qtimer.h>

#include <chrono>
#include <optional>

/**
 * One step of a command: the event loop runs until the step has ended or its time is up.
 *
 * So a command reads from top to bottom, and the next step starts only when the slots of the one
 * before have returned.
 */
class Step : public QObject
{
    Q_OBJECT

public:
    Step();

    void end();
    void fail(const Failure &failure);
    /** There is a sign of life: the quiet time starts anew. */
    void goOn();

    /**
     * Waits for end(), also when it has been called already.
     *
     * @param quiet  how long there may be no sign of life
     * @param limit  how long all of it may take
     * @return false when the time is up
     * @throws Failure  that of fail(), or after an interruption
     */
    [[nodiscard]] bool wait(std::chrono::milliseconds quiet, std::chrono::milliseconds limit);
    [[nodiscard]] bool wait(std::chrono::milliseconds limit) { return wait(limit, limit); }

private:
    enum class State { Open, Ended, Failed, Late };
    void settle(State state);

    State m_state = State::Open;
    Failure m_failure;
    QEventLoop m_loop;
    QTimer m_quiet;
    QTimer m_limit;
};
