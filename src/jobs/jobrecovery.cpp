// SPDX-License-Identifier: MIT
#include "jobs/jobengine_p.h"

#include "logging_p.h"

using namespace std::chrono_literals;
using Reason = VardaJob::Reason;

namespace {

/** For how long an answer that nobody wants may keep the line. */
constexpr auto kSettleTime = 5s;

} // namespace

/** The identification of another link is no progress of what was lost with the one before. */
int &JobEngine::tries()
{
    return m_ownRequest || m_request.isCheck ? m_checkTries : m_tries;
}

bool JobEngine::mayAskAgain(const JobEnd &end)
{
    if (end.error == VardaJob::Refused || end.error == VardaJob::Rejected)
        return false;
    // What comes twice may be the answer before: no fault of the optional part.
    if (m_request.optional && end.error != VardaJob::Repeated)
        return false;
    if (!m_request.repeatable && m_exchange->hasSent())
        return false;
    if (end.error == VardaJob::NoBluetooth && end.reason != Reason::ServiceGone)
        return false;
    // A firmware may not know the request, a write may always be too long.
    const bool once = end.reason == Reason::NoAnswer || end.reason == Reason::WriteFailed
                      || end.reason == Reason::SmallMtu;
    return tries() < std::min(current().retries, once ? 1 : current().retries);
}

void JobEngine::onNotAnswered(const JobEnd &end)
{
    VardaJob *const job = m_current;
    const bool notTaken = end.error == VardaJob::Refused || end.error == VardaJob::Rejected;
    if (m_request.writes && m_exchange->hasSent())
        m_unclear = !notTaken;
    const bool down = m_link->state() != ComputerLink::State::Up;
    if (down) {
        m_cause = end;
        if (current().work->interrupted(end))
            m_tries = 0;
    }
    if (mayAskAgain(end)) {
        ++tries();
        qCInfo(lcSession).noquote()
            << "asking again for" << m_request.what << "after" << end.reason;
        current().setState(VardaJob::Recovering);
        advance();
        return;
    }
    tries() = 0;
    m_doubt.reset();
    const QPointer<JobEngine> alive(this);
    // A service that has gone may come back before the next request.
    const bool mayComeBack = end.reason == Reason::ServiceGone && current().retries > 0;
    const bool without = !m_ownRequest && end.error != VardaJob::Repeated
                         && (end.error != VardaJob::NoBluetooth || mayComeBack)
                         && current().work->failed(end);
    if (!alive || !isRunning(job))
        return;
    if (without) {
        advance();
        return;
    }
    endCurrent(end);
}

/** An answer that nobody wants any more keeps the line for a while. */
void JobEngine::settle(Phase phase)
{
    m_exchange->stopSteps();
    setPhase(phase);
    m_settling.start(kSettleTime);
}

void JobEngine::settled()
{
    m_settling.stop();
    setPhase(Phase::Free);
    goOn();
}

void JobEngine::onAlive()
{
    m_silent = 0ms;
    m_hadGap = false;
    if (m_phase == Phase::Settling && m_lossExpected && !m_exchange->isRunning()) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_phase == Phase::Settling && m_lossExpected)
                    settled();
            },
            Qt::QueuedConnection);
        return;
    }
    if (m_phase == Phase::Asking && m_current)
        current().bytes = m_exchange->bytes();
}

void JobEngine::openLink()
{
    const bool again = m_cause.has_value();
    setPhase(Phase::Opening);
    m_connecting = 0ms;
    current().setState(again ? VardaJob::Recovering : VardaJob::Connecting);
    m_opensForWriter = current().work->writes;
    m_link->open({.device = m_device,
                  .onlyOne = m_opensForWriter,
                  .retries = current().retries,
                  .restores = again,
                  .serviceMayComeBack = again && m_cause->reason == Reason::ServiceGone});
}

void JobEngine::onLinkOpened()
{
    // What a reading knows of the computer stays true while its link is restored.
    const bool restored = m_cause && m_current && !current().work->writes;
    if (!restored)
        m_identified = m_bootloaderKnown = false;
    m_lossExpected = false;
    setPhase(Phase::Free);
    const QPointer<JobEngine> alive(this);
    if (m_device.name().isEmpty()) { // not set, or by its address alone
        m_device = m_link->device();
        Q_EMIT deviceChanged();
    }
    if (!alive || m_phase != Phase::Free || m_link->state() != ComputerLink::State::Up)
        return;
    if (isAtWork())
        advance();
    else
        goOn();
}

void JobEngine::onLinkFailed(const JobEnd &end)
{
    setPhase(Phase::Free);
    if (isAtWork()) {
        JobEnd own = end;
        if (end.error == VardaJob::NoBluetooth)
            own = end;
        else if (m_cause && m_cause->error == VardaJob::TimedOut)
            own = *m_cause;
        else if (m_cause)
            own = {VardaJob::LinkLost,
                   end.reason == Reason::Silent ? Reason::LinkFailed : end.reason, end.detail};
        // Others that wait may well have the first computer found.
        if (end.error == VardaJob::Ambiguous) {
            endCurrent(own);
            return;
        }
        endCurrent(own);
    }
    const QList<VardaJob *> waiting = std::exchange(m_queue, {});
    for (VardaJob *job : waiting) {
        VardaJobPrivate::of(*job).computerName = computerName();
        VardaJobPrivate::of(*job).end(end);
    }
    goOn();
}

void JobEngine::onLinkLost(const JobEnd &end)
{
    const bool asked = std::exchange(m_lossExpected, false) || m_exchange->awaitsLinkDown();
    const QPointer<JobEngine> alive(this);
    if (m_phase == Phase::Settling || m_phase == Phase::Cancelling) {
        m_exchange->abandon();
        m_settling.stop();
        const bool cancelling = m_phase == Phase::Cancelling;
        if (cancelling)
            endCurrent({VardaJob::Cancelled, Reason::ByCaller});
        setPhase(Phase::Free);
        if (!cancelling)
            QMetaObject::invokeMethod(this, &JobEngine::goOn, Qt::QueuedConnection);
    } else {
        // After a gap in time all time-outs are over at once; the link itself may have been sound.
        const bool slept = m_hadGap && end.error == VardaJob::TimedOut;
        m_exchange->onLinkLost(slept ? JobEnd{VardaJob::LinkLost, Reason::LinkFailed} : end);
        if (m_phase == Phase::Held)
            m_cause = end; // to be restored when it goes on
    }
    if (!asked)
        Q_EMIT linkLost();
    if (alive)
        updateState();
}

void JobEngine::closeLink(const JobEnd &why)
{
    m_lingering.stop();
    m_settling.stop();
    m_unclear = isUnclear();
    m_exchange->abandon();
    setPhase(Phase::Closing);
    m_link->close(why);
}

/** For an answer that is in no state to be waited for. */
void JobEngine::dropLinkAndFail(const JobEnd &end)
{
    m_closesForJob = true;
    closeLink(end);
}

void JobEngine::onLinkClosed(const JobEnd &why)
{
    setPhase(Phase::Free);
    const QList<VardaJob *> closers = std::exchange(m_closers, {});
    for (VardaJob *job : closers)
        VardaJobPrivate::of(*job).end({});
    if (std::exchange(m_closesForJob, false) && isAtWork())
        onNotAnswered(why);
    else
        goOn();
}
