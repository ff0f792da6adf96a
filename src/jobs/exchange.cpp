// SPDX-License-Identifier: MIT
#include "jobs/exchange_p.h"

#include <chrono>

using namespace std::chrono_literals;
using Reason = VardaJob::Reason;

namespace {

/** As long as the session waits for more of an answer. */
constexpr auto kQuiet = 1s;
constexpr auto kLongestNoise = 5s;
/** Less than what the session waits, which then drops the link. */
constexpr auto kAcknowledgement = 2s;

} // namespace

Exchange::Exchange(ComputerLink *link) : QObject(link), m_link(link), m_quiet(this), m_longest(this)
{
    for (QTimer *timer : {&m_quiet, &m_longest}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    connect(&m_quiet, &QTimer::timeout, this, [this] {
        if (m_whenQuiet)
            onQuiet(*m_whenQuiet);
        else // nothing has acknowledged it
            finish({});
    });
    connect(&m_longest, &QTimer::timeout, this, [this] {
        m_isNoisy = true;
        finish(m_whenQuiet.value_or(JobEnd{VardaJob::Damaged, Reason::Undecodable}));
    });
    m_link->setObserver(this);
}

// The link, whose child this is, has let go of the session by now and reports nothing any more.
Exchange::~Exchange() = default;

void Exchange::watch(VardaSession &session)
{
    if (m_watched == &session)
        return;
    m_watched = &session;
    m_check.reset();
    connect(&session, &VardaSession::endCommand, this,
            [this](TidemarCommand::TidemarCommandIn command) {
                if (command != m_request.end)
                    return;
                m_ended = true;
                judgeLater();
            });
    connect(&session, &VardaSession::exchangeError, this,
            [this](TidemarCommand::TidemarCommandIn, ExchangeError::ExchangeErrorIn error) {
                onRefused(error);
            });
}

void Exchange::start(const Request &request)
{
    ++m_serial;
    watch(m_link->session());
    m_request = request;
    const auto answer = request.answer.value_or(request.end);
    m_check = m_check ? std::make_unique<AnswerCheck>(answer, *m_check)
                      : std::make_unique<AnswerCheck>(answer);
    m_check->setUnlimited();
    m_collected = SessionDoor::collectsAnswers(answer);
    m_running = true;
    m_sent = m_ended = m_stopped = m_awaiting = m_acknowledged = m_tooMany = m_isNoisy = false;
    m_refusal.reset();
    m_whenQuiet.reset();
    m_doubt.reset();
    m_bytes = 0;
    m_quiet.stop();
    m_longest.stop();
    // To a service that is frozen Qt would wait for half a minute, in the middle of a write.
    m_link->ping([this, serial = m_serial](Reason reason) {
        if (serial != m_serial)
            return;
        judge(); // what came meanwhile belongs to the request before
        if (!m_running || m_whenQuiet)
            return;
        if (reason != Reason::None)
            finish({VardaJob::NoBluetooth, reason});
        else if (m_stopped)
            finish({VardaJob::Cancelled, Reason::ByCaller});
        else
            send();
    });
}

void Exchange::send()
{
    if (m_request.ending == Request::Ending::AnyFrame)
        m_quiet.start(kAcknowledgement);
    SessionDoor door(m_link->session());
    const Reason rejected = m_request.send(m_link->session(), door);
    if (rejected != Reason::None)
        finish({VardaJob::Rejected, rejected});
}

void Exchange::abandon()
{
    ++m_serial;
    m_running = false;
    m_quiet.stop();
    m_longest.stop();
}

void Exchange::stopSteps()
{
    if (!m_running)
        return;
    m_stopped = true;
    SessionDoor(m_link->session()).stopSteps();
}

void Exchange::onLinkLost(const JobEnd &end)
{
    m_check.reset();
    if (!m_running)
        return;
    if (awaitsLinkDown() && end.error == VardaJob::LinkLost && end.reason != Reason::WriteFailed)
        finish({});
    else if (m_whenQuiet)
        finish(*m_whenQuiet);
    else if (end.reason == Reason::NoAnswer && m_bytes > 0)
        finish({VardaJob::TimedOut, Reason::NoEnd});
    else
        finish(end);
}

void Exchange::judgeLater()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_running)
                judge();
        },
        Qt::QueuedConnection);
}

void Exchange::judge()
{
    if (m_whenQuiet)
        return;
    if (const auto end = damage()) {
        finishWhenQuiet(*end);
    } else if (!m_sent && (m_ended || m_refusal)) {
        finishWhenQuiet({VardaJob::Repeated, Reason::OtherSubscriber});
    } else if (m_refusal) {
        finish({VardaJob::Refused, *m_refusal});
    } else if (m_ended && m_check->finding() == AnswerCheck::Finding::Doubtful) {
        m_doubt = m_check->digest();
        finish({VardaJob::Repeated, Reason::OtherSubscriber});
    } else if (m_ended || (m_stopped && isStep() && !m_awaiting && m_check->isOver())) {
        finish({});
    }
}

/** Whether its answer is one of several steps, none of which has to be the last. */
bool Exchange::isStep() const
{
    return !m_check->hasEnd();
}

std::optional<JobEnd> Exchange::damage() const
{
    if (m_tooMany)
        return JobEnd{VardaJob::Damaged, Reason::TooManyNotifications};
    switch (m_check->finding()) {
    case AnswerCheck::Finding::Repeated:
        return JobEnd{VardaJob::Repeated, Reason::OtherSubscriber};
    case AnswerCheck::Finding::Incomplete:
        return JobEnd{VardaJob::Damaged, Reason::IncompleteFrame};
    case AnswerCheck::Finding::InPieces:
        return JobEnd{VardaJob::Damaged, Reason::SmallMtu};
    case AnswerCheck::Finding::LeftOver:
        return JobEnd{VardaJob::Damaged, Reason::Undecodable};
    case AnswerCheck::Finding::WrongChecksum:
        return JobEnd{VardaJob::Damaged, Reason::WrongChecksum};
    case AnswerCheck::Finding::BeginningLost: // the session of a job has no such limit
    case AnswerCheck::Finding::Doubtful:
    case AnswerCheck::Finding::Sound:
        break;
    }
    return {};
}

void Exchange::finishWhenQuiet(const JobEnd &end)
{
    m_whenQuiet = end;
    if (m_sent)
        stopSteps();
    m_quiet.start(kQuiet);
    m_longest.start(kLongestNoise);
}

void Exchange::onQuiet(const JobEnd &why)
{
    // The rest may have shown what it was.
    const JobEnd end = damage().value_or(why);
    // What came before it was sent is no fault of this request.
    if (end.error == VardaJob::Damaged && !m_sent && !m_stopped)
        start(Request(m_request));
    else
        finish(end);
}

void Exchange::finish(const JobEnd &end)
{
    abandon();
    QMetaObject::invokeMethod(
        this,
        [this, end, serial = m_serial] {
            if (serial == m_serial)
                Q_EMIT ended(end);
        },
        Qt::QueuedConnection);
}

void Exchange::onRefused(ExchangeError::ExchangeErrorIn error)
{
    switch (error) {
    case ExchangeError::InvalidCrc: // known already
        return;
    case ExchangeError::BeginProgramError:
        m_refusal = Reason::BeginRefused;
        break;
    case ExchangeError::ProgramError:
        m_refusal = Reason::BlockRefused;
        break;
    case ExchangeError::EndProgramError:
        m_refusal = Reason::EndRefused;
        break;
    default:
        m_refusal = Reason::ComputerRefused;
        break;
    }
    judgeLater();
}

void Exchange::written(QByteArrayView /*bytes*/)
{
    m_sent = m_awaiting = true;
}

void Exchange::notified(QByteArrayView bytes)
{
    m_awaiting = false;
    if (m_running) {
        m_bytes += bytes.size();
        m_check->add(bytes.toByteArray());
        if (m_whenQuiet)
            m_quiet.start(kQuiet);
        else if (m_collected && m_check->isHopeless() && !m_longest.isActive())
            m_longest.start(kLongestNoise); // the line may never be quiet
    }
    Q_EMIT alive();
}

void Exchange::frameReceived(quint8 code, QByteArrayView /*frame*/)
{
    if (!m_running || m_request.ending != Request::Ending::AnyFrame || code != m_request.end)
        return;
    m_acknowledged = m_ended = true;
    judgeLater();
}

void Exchange::tooManyNotifications()
{
    m_tooMany = true;
    judgeLater();
}

void Exchange::answerProcessed()
{
    if (!m_running)
        return;
    if (m_collected)
        m_check->onQuiet();
    judgeLater();
}
