// SPDX-License-Identifier: MIT
#pragma once

#include "run/failure.h"

#include <QtCore/qobject.h>
#include <QtCore/qsocketnotifier.h>

#include <memory>

/**
 * Ctrl-C and its like as an event: a process that just dies leaves the link to the computer up,
 * and the computer out of reach for everybody else. Another one ends the process at once, but not
 * within a moment of the first: some programs send two where they mean one.
 */
class Interrupt : public QObject
{
    Q_OBJECT

public:
    Interrupt();
    ~Interrupt() override;
    Q_DISABLE_COPY_MOVE(Interrupt)

    /** The one there is while a command runs, or null. */
    static Interrupt *instance();
    /** The signal that came first, 0 for none; it is known before the event comes. */
    [[nodiscard]] static int number();
    /** What a command ends with that was interrupted. */
    [[nodiscard]] static Failure failure();

Q_SIGNALS:
    void interrupted();

private:
    void onReadable();

    std::unique_ptr<QSocketNotifier> m_notifier;
};
