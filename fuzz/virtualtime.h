// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qabstracteventdispatcher.h>

#include <vector>

/** An event loop whose clock stands still until it is told to go on. */
class VirtualTime : public QAbstractEventDispatcher
{
    Q_OBJECT

public:
    /** That of this thread, and an application around it. */
    static VirtualTime &instance();

    /**
     * Goes on to the timer that is due next and fires it.
     *
     * @return its interval in milliseconds, 1 at least; 0 where none runs
     */
    qint64 advance();
    /** Milliseconds since its beginning. */
    [[nodiscard]] qint64 now() const { return m_now; }
    /** Does what was put off to the next turn of the event loop, deletions included. */
    static void turn();

    bool processEvents(QEventLoop::ProcessEventsFlags flags) override;
    void registerSocketNotifier(QSocketNotifier * /*notifier*/) override { }
    void unregisterSocketNotifier(QSocketNotifier * /*notifier*/) override { }
    void registerTimer(int id, qint64 interval, Qt::TimerType type, QObject *object) override;
    bool unregisterTimer(int id) override;
    bool unregisterTimers(QObject *object) override;
    [[nodiscard]] QList<TimerInfo> registeredTimers(QObject *object) const override;
    int remainingTime(int id) override;
    void wakeUp() override { }
    void interrupt() override { }

private:
    struct Timer {
        int id;
        qint64 interval;
        Qt::TimerType type;
        QObject *object;
        qint64 due;
    };

    std::vector<Timer> m_timers;
    qint64 m_now = 0;
};
