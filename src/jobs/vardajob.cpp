// SPDX-License-Identifier: MIT
#include <varda/vardajob.h>

#include "jobs/jobengine_p.h"
#include "jobs/vardajob_p.h"

namespace {

constexpr int kProgressMs = 100;
constexpr std::chrono::minutes kTotalLimit{5};

} // namespace

VardaJobPrivate::VardaJobPrivate(JobEngine *jobEngine, QString jobName,
                                 std::unique_ptr<Work> jobWork)
    : engine(jobEngine), name(std::move(jobName)), work(std::move(jobWork))
{
}

VardaJobPrivate::~VardaJobPrivate() = default;

std::chrono::milliseconds VardaJobPrivate::totalLimitNow() const
{
    return totalLimit.value_or(work->isLong ? std::chrono::milliseconds(0)
                                            : std::chrono::milliseconds(kTotalLimit));
}

void VardaJobPrivate::setState(VardaJob::State state)
{
    if (m_state == state || isEnding())
        return;
    m_state = state;
    // From the event loop: what slots do must not happen in the middle of a transition.
    QMetaObject::invokeMethod(q, &VardaJob::stateChanged, Qt::QueuedConnection);
}

void VardaJobPrivate::setProgress(qint64 newDone, qint64 newTotal)
{
    done = qMax(done, newDone);
    total = newTotal;
    announceProgress(false);
}

void VardaJobPrivate::announceProgress(bool always)
{
    if (!always && m_sinceProgress.isValid() && m_sinceProgress.elapsed() < kProgressMs)
        return;
    m_sinceProgress.start();
    Q_EMIT q->progressed(done, total);
}

void VardaJobPrivate::end(const JobEnd &how, const QVariant &result)
{
    endWith(how, {}, result);
}

void VardaJobPrivate::endWith(const JobEnd &how, const QString &text, const QVariant &result)
{
    if (m_isEnding)
        return;
    m_isEnding = true;
    m_end = how;
    m_result = result;
    if (!how.isGood())
        m_text = text.isEmpty() ? textOf(how, name, computerName) : text;
    QMetaObject::invokeMethod(q, [this] { deliver(); }, Qt::QueuedConnection);
}

void VardaJobPrivate::deliver()
{
    // The line is free before anybody hears of the end.
    const QPointer<VardaJob> alive(q);
    const QPointer<JobEngine> line(engine);
    if (line)
        line->release(q);
    if (alive)
        report();
    if (line)
        line->goOn();
}

void VardaJobPrivate::report()
{
    const QPointer<VardaJob> alive(q);
    if (m_end.isGood())
        announceProgress(true);
    if (!alive)
        return;
    m_state = VardaJob::Finished;
    if (m_end.isGood())
        value = m_result;
    Q_EMIT alive->stateChanged();
    if (alive)
        Q_EMIT alive->finished(alive);
    if (alive && autoDelete)
        alive->deleteLater();
}

VardaJob::VardaJob(Unit unit) : VardaJob(std::make_unique<VardaJobPrivate>().release())
{
    d->unit = unit;
}

VardaJob::VardaJob(VardaJobPrivate *priv) : d(priv)
{
    d->q = this;
}

VardaJob::~VardaJob()
{
    if (d->engine)
        d->engine->forget(this);
}

VardaJob::State VardaJob::state() const
{
    return d->m_state;
}

VardaJob::Error VardaJob::error() const
{
    return d->m_state == Finished ? d->m_end.error : NoError;
}

VardaJob::Reason VardaJob::reason() const
{
    return d->m_state == Finished ? d->m_end.reason : Reason::None;
}

QString VardaJob::errorText() const
{
    return d->m_state == Finished ? d->m_text : QString();
}

QString VardaJob::remedy() const
{
    return d->m_state == Finished && !d->m_remedy.isEmpty() ? d->m_remedy : remedyOf(reason());
}

bool VardaJob::outcomeUnknown() const
{
    return d->m_state == Finished && d->outcomeUnknown;
}

QVariant VardaJob::value() const
{
    return d->value;
}

VardaJob::Unit VardaJob::unit() const
{
    return d->unit;
}

qint64 VardaJob::done() const
{
    return d->done;
}

qint64 VardaJob::total() const
{
    return d->total;
}

qint64 VardaJob::bytes() const
{
    return d->bytes;
}

void VardaJob::setIdleLimit(std::chrono::milliseconds limit)
{
    d->idleLimit = limit;
}

void VardaJob::setConnectLimit(std::chrono::milliseconds limit)
{
    d->connectLimit = limit;
}

void VardaJob::setTotalLimit(std::chrono::milliseconds limit)
{
    d->totalLimit = limit;
}

void VardaJob::setRetries(int count)
{
    d->retries = qMax(0, count);
}

void VardaJob::setAutoDelete(bool on)
{
    d->autoDelete = on;
}

void VardaJob::cancel()
{
    if (!d->isEnding())
        stop(false);
}

void VardaJob::abort()
{
    if (!d->isEnding())
        stop(true);
}

void VardaJob::stop(bool atOnce)
{
    if (d->engine)
        d->engine->stop(this, atOnce);
    else
        d->end({Cancelled, Reason::ByCaller});
}

void VardaJob::setState(State state)
{
    d->setState(state);
}

void VardaJob::setProgress(qint64 done, qint64 total)
{
    d->setProgress(done, total);
}

void VardaJob::finish(const QVariant &value)
{
    d->end({}, value);
}

void VardaJob::fail(Error error, Reason reason, const QString &text, const QString &remedy)
{
    if (!d->isEnding())
        d->m_remedy = remedy;
    d->endWith({error, reason}, text, {});
}
