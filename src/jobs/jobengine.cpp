// SPDX-License-Identifier: MIT
#include "jobs/jobengine_p.h"

#include "logging_p.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Reason = VardaJob::Reason;

namespace {

constexpr auto kTick = 100ms;
/** A pause of the clock itself: the machine slept, or the program was stopped. */
constexpr auto kGap = 3s;
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
      m_tick(this),
      m_settling(this),
      m_lingering(this)
{
    connect(m_link, &ComputerLink::stateChanged, this, &JobEngine::updateState);
    connect(m_link, &ComputerLink::opened, this, &JobEngine::onLinkOpened);
    connect(m_link, &ComputerLink::failed, this, &JobEngine::onLinkFailed);
    connect(m_link, &ComputerLink::lost, this, &JobEngine::onLinkLost);
    connect(m_link, &ComputerLink::closed, this, &JobEngine::onLinkClosed);
    connect(m_exchange, &Exchange::ended, this, &JobEngine::onExchangeEnded);
    connect(m_exchange, &Exchange::alive, this, &JobEngine::onAlive);
    m_tick.setInterval(kTick);
    connect(&m_tick, &QTimer::timeout, this, &JobEngine::onTick);
    for (QTimer *timer : {&m_settling, &m_lingering})
        timer->setSingleShot(true);
    connect(&m_settling, &QTimer::timeout, this, [this] {
        m_exchange->abandon();
        if (m_phase == Phase::Cancelling)
            endCurrent({VardaJob::Cancelled, Reason::ByCaller});
        closeLink();
    });
    connect(&m_lingering, &QTimer::timeout, this, [this] { closeLink(); });
}

JobEngine::~JobEngine()
{
    endAll({VardaJob::Cancelled, Reason::ComputerDeleted});
    for (VardaJob *job : std::as_const(m_closers))
        VardaJobPrivate::of(*job).end({VardaJob::Cancelled, Reason::ComputerDeleted});
    setTrace(nullptr, true);
}

void JobEngine::setTrace(QIODevice *device, bool redacted)
{
    m_link->setTap(nullptr);
    m_trace.reset();
    delete m_writer;
    m_writer = nullptr;
    if (!device)
        return;
    m_writer = new TraceWriter(device, redacted, this);
    connect(m_writer, &TraceWriter::failed, this, &JobEngine::traceFailed);
    m_trace = std::make_unique<LinkTrace>(*m_writer);
    m_link->setTap(m_trace.get());
}

/** Whether the job that runs has sent something whose outcome it does not know. */
bool JobEngine::isUnclear() const
{
    const bool underWay = m_phase == Phase::Asking || m_phase == Phase::Cancelling;
    return m_unclear || (underWay && m_request.writes && m_exchange->hasSent());
}

/** What comes next for it. */
void JobEngine::advance()
{
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
    const Work &work = *current().work;
    m_ownRequest = true;
    if (work.needsIdentity && !m_identified)
        return &m_identification;
    if (work.needsBootloader && !m_bootloaderKnown)
        return &m_bootloaderVersion;
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
    current().setState(VardaJob::Running);
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
    setPhase(Phase::Free);
    if (!isAtWork()) {
        goOn();
        return;
    }
    // Whether equal frames are sound or came twice, a second answer decides.
    const auto doubt = m_exchange->doubt();
    if (end.isGood() || (doubt && m_doubt == doubt)) {
        onAnswered();
    } else if (doubt && !m_doubt) {
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
    tries() = 0;
    m_doubt.reset();
    m_cause.reset();
    if (m_request.end == TidemarCommand::Identification) {
        m_identified = true;
        if (m_trace)
            m_trace->computerKnown(identity());
    }
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
            m_settling.start(kCloseTime);
        }
        endCurrent({}, current().work->result());
        return;
    }
    advance();
}

void JobEngine::onTick()
{
    const std::chrono::milliseconds elapsed(m_sinceTick.elapsed());
    m_sinceTick.start();
    const bool gap = elapsed > kGap;
    m_hadGap = m_hadGap || gap;
    const auto tick = gap ? kTick : elapsed;
    const bool hasLimit = m_phase != Phase::Held && m_phase != Phase::Cancelling;
    if (current().isEnding() || !hasLimit)
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
    const bool other = m_device.isValid() && !sameAddress(m_device, found);
    return nameOf(other ? m_device : found);
}

VardaIdentity JobEngine::identity() const
{
    if (!m_identified)
        return {};
    return identityOf(m_link->session());
}
