// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtCore/qsocketnotifier.h>

#include <memory>

/**
 * Ctrl-C and its like as an event: a process that just dies leaves the link to the computer up,
 * and the computer out of reach for everybody else. The second one kills as usual.
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
    /** The signal that came, 0 for none. */
    [[nodiscard]] int number() const { return m_number; }

Q_SIGNALS:
    void came();

private:
    void onReadable();

    std::unique_ptr<QSocketNotifier> m_notifier;
    int m_number = 0;
};
