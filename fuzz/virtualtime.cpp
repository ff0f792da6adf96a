// SPDX-License-Identifier: MIT
#include "virtualtime.h"

#include <QtCore/qcoreapplication.h>
#include <QtCore/qcoreevent.h>

#include <algorithm>

VirtualTime &VirtualTime::instance()
{
    static auto *const kInstance = [] {
        auto *const created = new VirtualTime;
        QCoreApplication::setEventDispatcher(created);
        static int argc = 1;
        static char name[] = "fuzz";
        static char *argv[] = {name, nullptr};
        static auto *const kApplication = new QCoreApplication(argc, argv);
        Q_UNUSED(kApplication);
        return created;
    }();
    return *kInstance;
}

qint64 VirtualTime::advance()
{
    const auto next = std::ranges::min_element(m_timers, {}, &Timer::due);
    if (next == m_timers.end())
        return 0;
    m_now = std::max(m_now, next->due);
    const qint64 interval = std::max<qint64>(next->interval, 1);
    next->due = m_now + interval;
    QTimerEvent event(next->id);
    QCoreApplication::sendEvent(next->object, &event);
    return interval;
}

void VirtualTime::turn()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

bool VirtualTime::processEvents(QEventLoop::ProcessEventsFlags /*flags*/)
{
    QCoreApplication::sendPostedEvents();
    return true;
}

void VirtualTime::registerTimer(int id, qint64 interval, Qt::TimerType type, QObject *object)
{
    m_timers.push_back({id, interval, type, object, m_now + interval});
}

bool VirtualTime::unregisterTimer(int id)
{
    return std::erase_if(m_timers, [id](const Timer &each) { return each.id == id; }) > 0;
}

bool VirtualTime::unregisterTimers(QObject *object)
{
    return std::erase_if(m_timers, [object](const Timer &each) { return each.object == object; })
           > 0;
}

QList<QAbstractEventDispatcher::TimerInfo> VirtualTime::registeredTimers(QObject *object) const
{
    QList<TimerInfo> timers;
    for (const Timer &each : m_timers) {
        if (each.object == object)
            timers.append({each.id, int(each.interval), each.type});
    }
    return timers;
}

int VirtualTime::remainingTime(int id)
{
    const auto timer = std::ranges::find(m_timers, id, &Timer::id);
    return timer == m_timers.end() ? -1 : int(std::max<qint64>(timer->due - m_now, 0));
}
