// SPDX-License-Identifier: MIT
#include "jobs/jobengine_p.h"

#include <QtCore/qscopeguard.h>

#include "jobs/readings_p.h"
#include "logging_p.h"
#include "session/sessiondoor_p.h"

#include <varda/vardadata.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Reason = VardaJob::Reason;

namespace {

constexpr auto kTick = 100ms;
/** A pause of the clock itself: the machine slept, or the program was stopped. */
constexpr auto kGap = 3s;
/** For how long an answer that nobody wants may keep the line. */
constexpr auto kSettleTime = 5s;
/** The session gives up on the answer to its Close after 5 s. */
constexpr auto kCloseTime = 6s;
/** The session takes a second of silence for the end of an answer. */
constexpr auto kShortestSilence = 2s;

QString nameOf(const BleDeviceInfo &device)
{
    if (device.name().isEmpty())
        return device.address();
    return u"%1 (%2)"_s.arg(device.name(), device.address());
}

} // namespace

JobEngine::JobEngine(QObject *parent)
    : QObject(parent),
      m_link(new ComputerLink(this)),
      m_exchange(new Exchange(m_link)),
      m_tick(new QTimer(this)),
      m_settling(new QTimer(this)),
      m_lingering(new QTimer(this))
{
    connect(m_link, &ComputerLink::stateChanged, this, &JobEngine::updateState);
    connect(m_link, &ComputerLink::opened, this, &JobEngine::onLinkOpened);
    connect(m_link, &ComputerLink::failed, this, &JobEngine::onLinkFailed);
    connect(m_link, &ComputerLink::lost, this, &JobEngine::onLinkLost);
    connect(m_link, &ComputerLink::closed, this, &JobEngine::onLinkClosed);
    connect(m_exchange, &Exchange::ended, this, &JobEngine::onExchangeEnded);
    connect(m_exchange, &Exchange::alive, this, &JobEngine::onAlive);
    m_tick->setInterval(kTick);
    connect(m_tick, &QTimer::timeout, this, &JobEngine::onTick);
    for (QTimer *timer : {m_settling, m_lingering})
        timer->setSingleShot(true);
    connect(m_settling, &QTimer::timeout, this, [this] {
        m_exchange->abandon();
        if (m_phase == Phase::Cancelling)
            endCurrent({VardaJob::Cancelled, Reason::ByCaller});
        if (m_lossExpected)
            settled();
        else
            closeLink();
    });
    connect(m_lingering, &QTimer::timeout, this, [this] {
        if (!m_current && m_phase == Phase::Free)
            closeLink();
    });
}

JobEngine::~JobEngine()
{
    endAll({VardaJob::Cancelled, Reason::ComputerDeleted});
    for (VardaJob *job : std::as_const(m_closers))
        VardaJobPrivate::of(*job).end({VardaJob::Cancelled, Reason::ComputerDeleted});
}

// The queue

void JobEngine::add(VardaJob *job)
{
    m_queue.append(job);
    QMetaObject::invokeMethod(this, &JobEngine::goOn, Qt::QueuedConnection);
}

bool JobEngine::isRunning(const VardaJob *job) const
{
    return job && m_current == job && !current().isEnding();
}

void JobEngine::goOn()
{
    if (m_current || m_phase == Phase::Cancelling || m_phase == Phase::Settling
        || m_phase == Phase::Closing)
        return;
    if (m_phase == Phase::Opening
        && (m_queue.isEmpty() || !mayShareAttempt(*m_queue.constFirst()))) {
        closeLink();
        return;
    }
    if (!m_queue.isEmpty())
        run(m_queue.takeFirst());
    else if (m_link->state() == ComputerLink::State::Up && m_linger)
        m_lingering->start(*m_linger);
}

void JobEngine::run(VardaJob *job)
{
    m_lingering->stop();
    m_current = job;
    m_tries = 0;
    m_doubt.reset();
    m_cause.reset();
    m_unclear = false;
    m_connecting = m_silent = m_altogether = 0ms;
    m_sinceTick.start();
    m_tick->start();
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
    m_current = nullptr;
    m_tick->stop();
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
    m_tick->stop();
    m_closesForJob = false;
    if (m_phase == Phase::Asking || m_phase == Phase::Cancelling)
        settle();
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
        setPhase(Phase::Cancelling);
        m_exchange->stopSteps();
        m_settling->start(kSettleTime);
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

/** Whether the job that runs has sent something whose outcome it does not know. */
bool JobEngine::isUnclear() const
{
    const bool underWay = m_phase == Phase::Asking || m_phase == Phase::Cancelling;
    return m_unclear || (underWay && m_request.writes && m_exchange->hasSent());
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
    const bool same = device.address().compare(m_device.address(), Qt::CaseInsensitive) == 0;
    m_device = device;
    if (same)
        return;
    m_identified = m_bootloaderKnown = false;
    const QPointer<JobEngine> alive(this);
    disconnectLink(nullptr, Reason::ByOtherDevice);
    if (alive)
        Q_EMIT deviceChanged();
}

void JobEngine::setLinger(std::chrono::milliseconds time)
{
    m_lingering->stop();
    m_linger.reset();
    if (time >= 0ms)
        m_linger = time;
    if (!m_current && m_phase == Phase::Free)
        QMetaObject::invokeMethod(this, &JobEngine::goOn, Qt::QueuedConnection);
}

void JobEngine::wake(VardaJob *job)
{
    if (!isRunning(job))
        return;
    if (m_phase == Phase::Held && !current().work->isHeld()) {
        setPhase(Phase::Free);
        advance();
    }
}

// The job that runs

/** What comes next for it. */
void JobEngine::advance()
{
    VardaJob *const job = m_current;
    if (!isRunning(job))
        return;
    if (current().work->isHeld()) {
        setPhase(Phase::Held);
        current().setState(VardaJob::Paused);
        return;
    }
    if (current().work->isComplete()) {
        endCurrent({}, current().work->result());
        return;
    }
    if (m_link->state() != ComputerLink::State::Up) {
        openLink();
        return;
    }
    if (const Request *const request = nextRequest())
        ask(*request);
    else
        endCurrent({}, current().work->result());
}

const Request *JobEngine::nextRequest()
{
    static const Request kIdentification = Requests::identification();
    static const Request kBootloader = Requests::bootloaderVersion();
    const Work &work = *current().work;
    m_ownRequest = true;
    if ((work.needsIdentity || work.needsBootloader) && !m_identified)
        return &kIdentification;
    if (work.needsBootloader && !m_bootloaderKnown)
        return &kBootloader;
    m_ownRequest = false;
    return current().work->next();
}

void JobEngine::ask(const Request &request)
{
    m_request = request;
    m_silent = 0ms;
    m_hadGap = false;
    m_lossExpected = false;
    current().bytes = 0;
    setPhase(Phase::Asking);
    VardaJob *const job = m_current;
    current().setState(VardaJob::Running);
    if (isRunning(job) && m_phase == Phase::Asking)
        m_exchange->start(m_request);
}

void JobEngine::onExchangeEnded(const JobEnd &end)
{
    if (m_phase == Phase::Settling || m_phase == Phase::Cancelling) {
        if (m_phase == Phase::Cancelling)
            endCurrent({VardaJob::Cancelled, Reason::ByCaller});
        if (m_request.end == TidemarCommand::End_program)
            m_identified = m_bootloaderKnown = false;
        if (m_exchange->isNoisy())
            closeLink();
        else
            settled();
        return;
    }
    if (m_phase != Phase::Asking)
        return;
    if (!m_current || current().isEnding()) {
        setPhase(Phase::Free);
        goOn();
        return;
    }
    setPhase(Phase::Free);
    // Whether equal frames are sound or came twice, a second answer decides.
    const auto doubt = m_exchange->doubt();
    if (end.isGood() || (doubt && m_doubt == doubt)) {
        onAnswered();
    } else if (doubt && !m_doubt && m_request.repeatable) {
        m_doubt = doubt;
        advance();
    } else if (m_exchange->isNoisy()) {
        dropLinkAndFail(end);
    } else {
        onNotAnswered(end);
    }
}

void JobEngine::onAnswered()
{
    VardaJob *const job = m_current;
    m_tries = 0;
    m_doubt.reset();
    m_cause.reset();
    if (m_request.end == TidemarCommand::Identification)
        m_identified = true;
    if (m_ownRequest) {
        if (m_request.end == TidemarCommand::BootloaderVersion)
            m_bootloaderKnown = true;
        advance();
        return;
    }
    m_unclear = false;
    if (m_request.ending == Request::Ending::AnyFrame)
        m_lossExpected = !m_exchange->acknowledged(); // then the session drops the link
    const QPointer<JobEngine> alive(this);
    current().work->done(m_link->session(), *m_exchange);
    if (!alive || !isRunning(job))
        return;
    if (current().work->endsLink && m_link->state() == ComputerLink::State::Up) {
        m_identified = m_bootloaderKnown = false;
        m_lossExpected = true;
        if (m_exchange->isAwaiting()) {
            setPhase(Phase::Settling);
            m_settling->start(kCloseTime);
        }
        endCurrent({}, current().work->result());
        return;
    }
    advance();
}

bool JobEngine::mayAskAgain(const JobEnd &end) const
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
    const bool once = (end.reason == Reason::NoAnswer && m_exchange->bytes() == 0)
                      || end.reason == Reason::WriteFailed || end.reason == Reason::SmallMtu;
    return m_tries < std::min(current().retries, once ? 1 : current().retries);
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
        current().work->interrupted(end, *m_exchange);
    }
    if (mayAskAgain(end)) {
        ++m_tries;
        qCInfo(lcSession).noquote()
            << "asking again for" << m_request.what << "after" << end.reason;
        current().setState(VardaJob::Recovering);
        if (isRunning(job))
            advance();
        return;
    }
    m_tries = 0;
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
void JobEngine::settle()
{
    m_exchange->stopSteps();
    setPhase(Phase::Settling);
    m_settling->start(kSettleTime);
}

void JobEngine::settled()
{
    m_settling->stop();
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

// The link

void JobEngine::openLink()
{
    const bool again = m_cause.has_value();
    setPhase(Phase::Opening);
    m_connecting = 0ms;
    VardaJob *const job = m_current;
    current().setState(again ? VardaJob::Recovering : VardaJob::Connecting);
    if (!isRunning(job) || m_phase != Phase::Opening)
        return;
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
    if (m_current && !current().isEnding())
        advance();
    else
        goOn();
}

void JobEngine::onLinkFailed(const JobEnd &end)
{
    setPhase(Phase::Free);
    if (m_current && !current().isEnding()) {
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
    const bool asked = std::exchange(m_lossExpected, false)
                       || (m_exchange->isRunning()
                           && m_request.ending == Request::Ending::LinkDown);
    const QPointer<JobEngine> alive(this);
    if (m_phase == Phase::Settling || m_phase == Phase::Cancelling) {
        m_exchange->abandon();
        m_settling->stop();
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
    m_lingering->stop();
    m_settling->stop();
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
    if (std::exchange(m_closesForJob, false) && m_current && !current().isEnding())
        onNotAnswered(why);
    else
        goOn();
}

// Limits

void JobEngine::onTick()
{
    const std::chrono::milliseconds elapsed(m_sinceTick.elapsed());
    m_sinceTick.start();
    const bool gap = elapsed > kGap;
    m_hadGap = m_hadGap || gap;
    const auto tick = gap ? kTick : elapsed;
    const bool hasLimit = m_phase != Phase::Held && m_phase != Phase::Cancelling;
    if (!m_current || current().isEnding() || !hasLimit)
        return;
    m_altogether += tick;
    if (m_phase == Phase::Opening)
        m_connecting += tick;
    else if (m_phase == Phase::Asking)
        m_silent += tick;
    onLimit();
}

void JobEngine::onLimit()
{
    VardaJobPrivate &job = current();
    const auto total = job.totalLimitNow();
    if (total > 0ms && m_altogether >= total) {
        closeLink();
        endCurrent({VardaJob::TimedOut, Reason::TotalLimit});
    } else if (m_phase == Phase::Opening && m_connecting >= job.connectLimit) {
        const QString seconds = QString::number(
            std::chrono::ceil<std::chrono::seconds>(job.connectLimit).count());
        const bool found = m_link->state() == ComputerLink::State::Connecting;
        closeLink();
        onLinkFailed(found ? JobEnd{VardaJob::TimedOut, Reason::ConnectLimit, seconds}
                           : JobEnd{VardaJob::NotFound, Reason::Silent, seconds});
        setPhase(Phase::Closing);
    } else if (m_phase == Phase::Asking && m_silent >= silenceLimit()) {
        dropLinkAndFail(
            {VardaJob::TimedOut, m_exchange->bytes() > 0 ? Reason::NoEnd : Reason::NoAnswer});
    }
}

std::chrono::milliseconds JobEngine::silenceLimit() const
{
    const auto limit = current().idleLimit;
    return m_exchange->bytes() > 0 ? std::max<std::chrono::milliseconds>(limit, kShortestSilence)
                                   : limit;
}

// What is seen of it

void JobEngine::setPhase(Phase phase)
{
    m_phase = phase;
    updateState();
}

void JobEngine::updateState()
{
    VardaComputer::State state = VardaComputer::Unconnected;
    switch (m_link->state()) {
    case ComputerLink::State::Down:
        break;
    case ComputerLink::State::Searching:
        state = VardaComputer::Searching;
        break;
    case ComputerLink::State::Connecting:
        state = VardaComputer::Connecting;
        break;
    case ComputerLink::State::Up:
        state = m_phase == Phase::Settling || m_phase == Phase::Cancelling
                    ? VardaComputer::Settling
                    : VardaComputer::Connected;
        break;
    case ComputerLink::State::Closing:
        state = VardaComputer::Disconnecting;
        break;
    }
    if (m_state == state)
        return;
    m_state = state;
    // From the event loop: what slots do must not happen in the middle of a transition.
    QMetaObject::invokeMethod(this, &JobEngine::stateChanged, Qt::QueuedConnection);
}

QString JobEngine::computerName() const
{
    // A device that was set by its address alone has a name when it is found.
    const BleDeviceInfo &found = m_link->device();
    const bool other = m_device.isValid()
                       && m_device.address().compare(found.address(), Qt::CaseInsensitive) != 0;
    return nameOf(other ? m_device : found);
}

VardaIdentity JobEngine::identity() const
{
    if (!m_link->hasSession() || !m_identified)
        return {};
    return identityOf(m_link->session());
}
