// SPDX-License-Identifier: MIT
#include "jobs/jobengine_p.h"

using namespace std::chrono_literals;
using Reason = VardaJob::Reason;

void JobEngine::add(VardaJob *job)
{
    m_queue.append(job);
    QMetaObject::invokeMethod(this, &JobEngine::goOn, Qt::QueuedConnection);
}

bool JobEngine::isRunning(const VardaJob *job) const
{
    return m_current == job && isAtWork();
}

void JobEngine::goOn()
{
    if (m_current || m_phase == Phase::Settling || m_phase == Phase::Closing)
        return;
    if (m_phase == Phase::Opening
        && (m_queue.isEmpty() || !mayShareAttempt(*m_queue.constFirst()))) {
        closeLink();
        return;
    }
    if (!m_queue.isEmpty())
        run(m_queue.takeFirst());
    else if (m_link->state() == ComputerLink::State::Up && m_linger)
        m_lingering.start(*m_linger);
}

void JobEngine::run(VardaJob *job)
{
    m_lingering.stop();
    m_current = job;
    m_tries = m_checkTries = 0;
    m_doubt.reset();
    m_cause.reset();
    m_unclear = false;
    m_connecting = m_silent = m_altogether = 0ms;
    m_sinceTick.start();
    m_tick.start();
    if (m_trace)
        m_trace->jobBegins(current().name);
    const QPointer<JobEngine> alive(this);
    Q_EMIT currentJobChanged();
    if (!alive || !isRunning(job))
        return;
    if (const JobEnd end = current().work->check(); !end.isGood())
        endCurrent(end);
    else if (m_phase == Phase::Free)
        advance();
    else
        current().setState(VardaJob::Connecting); // an attempt is under way already
}

void JobEngine::release(VardaJob *job)
{
    m_closers.removeOne(job);
    if (m_current != job)
        return;
    if (m_trace)
        m_trace->jobEnds(current().ending().error, current().ending().reason);
    m_current = nullptr;
    m_tick.stop();
    Q_EMIT currentJobChanged();
}

void JobEngine::forget(VardaJob *job)
{
    m_queue.removeOne(job);
    m_closers.removeOne(job);
    // It may be what led here.
    std::shared_ptr<Work> work(std::move(VardaJobPrivate::of(*job).work));
    QMetaObject::invokeMethod(this, [work] { }, Qt::QueuedConnection);
    if (m_current != job)
        return;
    m_current = nullptr;
    m_tick.stop();
    m_closesForJob = false;
    if (m_phase == Phase::Asking || m_phase == Phase::Cancelling)
        settle(Phase::Settling);
    else if (m_phase == Phase::Held)
        setPhase(Phase::Free);
    QMetaObject::invokeMethod(this, &JobEngine::goOn, Qt::QueuedConnection);
    // Not from inside a destructor.
    QMetaObject::invokeMethod(this, &JobEngine::currentJobChanged, Qt::QueuedConnection);
}

void JobEngine::stop(VardaJob *job, bool atOnce)
{
    const JobEnd cancelled{VardaJob::Cancelled, Reason::ByCaller};
    if (job != m_current) {
        m_queue.removeOne(job);
        VardaJobPrivate::of(*job).end(cancelled);
        return;
    }
    switch (m_phase) {
    case Phase::Asking:
        if (atOnce)
            break;
        settle(Phase::Cancelling);
        current().setState(VardaJob::Cancelling);
        return;
    case Phase::Cancelling:
        if (!atOnce)
            return;
        break;
    case Phase::Held:
        setPhase(Phase::Free);
        break;
    case Phase::Closing:
        m_closesForJob = false;
        break;
    case Phase::Opening: // goes on for the next job
    case Phase::Free:
    case Phase::Settling:
        break;
    }
    if (atOnce && m_link->state() == ComputerLink::State::Up)
        closeLink();
    endCurrent(cancelled);
}

/** Whether an attempt that was begun for another job finds the computer that this one may have. */
bool JobEngine::mayShareAttempt(VardaJob &job) const
{
    return m_device.isValid() || VardaJobPrivate::of(job).work->writes == m_opensForWriter;
}

void JobEngine::endCurrent(const JobEnd &end, const QVariant &value)
{
    current().computerName = computerName();
    current().outcomeUnknown = !end.isGood() && isUnclear();
    current().end(end, value);
}

void JobEngine::endAll(const JobEnd &end)
{
    const QList<VardaJob *> waiting = std::exchange(m_queue, {});
    if (m_current)
        endCurrent(end);
    for (VardaJob *job : waiting) {
        VardaJobPrivate::of(*job).computerName = computerName();
        VardaJobPrivate::of(*job).end(end);
    }
}

void JobEngine::disconnectLink(VardaJob *job, Reason reason)
{
    endAll({VardaJob::Cancelled, reason});
    if (job)
        m_closers.append(job);
    closeLink();
}

void JobEngine::setDevice(const BleDeviceInfo &device)
{
    const bool same = sameAddress(device, m_device);
    m_device = device;
    if (same)
        return;
    m_identified = m_bootloaderKnown = false;
    disconnectLink(nullptr, Reason::ByOtherDevice);
    Q_EMIT deviceChanged();
}

void JobEngine::setLinger(std::chrono::milliseconds time)
{
    m_lingering.stop();
    m_linger.reset();
    if (time >= 0ms)
        m_linger = time;
    QMetaObject::invokeMethod(this, &JobEngine::goOn, Qt::QueuedConnection);
}

void JobEngine::wake(VardaJob *job)
{
    if (isRunning(job) && m_phase == Phase::Held) {
        setPhase(Phase::Free);
        advance();
    }
}
