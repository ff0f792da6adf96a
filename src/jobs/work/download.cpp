// SPDX-License-Identifier: MIT
#include "jobs/work/download_p.h"

#include <varda/tidemardiveconverter.h>
#include <varda/vardadata.h>

#include "jobs/exchange_p.h"
#include "jobs/jobengine_p.h"

using namespace Qt::StringLiterals;
using Reason = VardaJob::Reason;

namespace {

/** One dive may be beyond what a computer can send; a computer that has fallen silent is another
 *  matter. */
constexpr int kMostSilentDives = 2;

} // namespace

DownloadWork::DownloadWork(const QList<std::uint16_t> &known) : m_known(known)
{
    needsIdentity = true;
    isLong = true;
    m_request = Requests::serialNumber();
}

void DownloadWork::done(VardaSession &session, Exchange & /*exchange*/)
{
    switch (m_stage) {
    case Stage::SerialNumber:
    case Stage::Configuration:
        goOnAfterComputer();
        break;
    case Stage::Logbook:
        onHeaders(session);
        break;
    case Stage::Dives:
        onDive(session);
        break;
    }
}

/** What a dive says of its computer is there, or cannot be had. */
void DownloadWork::goOnAfterComputer()
{
    if (m_stage == Stage::SerialNumber) {
        m_stage = Stage::Configuration;
        m_request = Requests::configuration(true);
        m_request.optional = true;
    } else {
        m_stage = Stage::Logbook;
        m_request = Requests::logbook(m_known);
        Q_EMIT job->computerRead(VardaJobPrivate::of(*job).engine->identity());
    }
}

bool DownloadWork::isHeld() const
{
    return held && (m_stage == Stage::Logbook || (m_stage == Stage::Dives && !m_left.isEmpty()));
}

void DownloadWork::onHeaders(const VardaSession &session)
{
    headers = oldestFirst(session.diveHeaders());
    if (const auto check = std::exchange(trusted, {}); check && !check(headers)) {
        m_known.replace({});
        return;
    }
    m_stage = Stage::Dives;
    for (const TidemarDiveHeader &header : std::as_const(headers)) {
        if (wanted ? wanted(header) : !m_known.contains(header.diveNumber))
            m_left.append(header);
    }
    m_all = m_left.size();
    if (!m_left.isEmpty())
        m_request = Requests::samples(m_left.constFirst().diveNumber);
    const QPointer<DownloadJob> alive(job);
    if (!alive)
        return;
    const QList<TidemarDiveHeader> toRead = m_left;
    VardaJobPrivate::of(*job).setProgress(0, m_all);
    if (alive)
        Q_EMIT alive->headersRead(toRead);
}

void DownloadWork::onDive(const VardaSession &session)
{
    const TidemarDiveHeader header = m_left.takeFirst();
    // A slot may end the session. NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const QList<DiveSample> samples = session.diveSamples();
    const Dive dive = TidemarDiveConverter::toDive(header, samples, session);
    ++m_read;
    m_silentDives = 0;
    if (!m_left.isEmpty())
        m_request = Requests::samples(m_left.constFirst().diveNumber);
    const QPointer<DownloadJob> alive(job);
    VardaJobPrivate::of(*job).setProgress(m_all - m_left.size(), m_all);
    if (alive)
        Q_EMIT alive->diveRead(dive, header, samples);
}

bool DownloadWork::failed(const JobEnd &end)
{
    if (m_stage == Stage::SerialNumber || m_stage == Stage::Configuration) {
        goOnAfterComputer();
        return true;
    }
    if (m_stage != Stage::Dives)
        return false;
    const bool silent = end.error == VardaJob::TimedOut;
    if (silent && ++m_silentDives >= kMostSilentDives)
        return false;
    if (!silent && end.error != VardaJob::Damaged && end.error != VardaJob::Refused)
        return false;
    giveUpDive(end);
    return true;
}

void DownloadWork::giveUpDive(const JobEnd &end)
{
    const std::uint16_t number = m_left.takeFirst().diveNumber;
    damaged.append(number);
    if (!m_left.isEmpty())
        m_request = Requests::samples(m_left.constFirst().diveNumber);
    const QPointer<DownloadJob> alive(job);
    VardaJobPrivate &own = VardaJobPrivate::of(*job);
    const QString why = textOf(end, u"dive %1"_s.arg(number), own.engine->computerName());
    own.setProgress(m_all - m_left.size(), m_all);
    if (alive)
        Q_EMIT alive->diveDamaged(number, end.error, why);
}

bool DownloadWork::interrupted(const JobEnd &end)
{
    if (m_stage == Stage::Logbook && end.reason == Reason::WriteFailed)
        m_known.expectSmallestMtu();
    return false;
}

// The job

namespace {

DownloadWork *workOf(VardaJobPrivate &d)
{
    return static_cast<DownloadWork *>(d.work.get());
}

} // namespace

DownloadJob::DownloadJob(VardaJobPrivate *job) : VardaJob(job)
{
    workOf(*job)->job = this;
    job->unit = Unit::Dives;
}

void DownloadJob::setWanted(std::function<bool(const TidemarDiveHeader &)> wanted)
{
    workOf(VardaJobPrivate::of(*this))->wanted = std::move(wanted);
}

void DownloadJob::setKnown(const QList<std::uint16_t> &known)
{
    workOf(VardaJobPrivate::of(*this))->setKnown(known);
}

void DownloadJob::setTrusted(std::function<bool(const QList<TidemarDiveHeader> &)> trusted)
{
    workOf(VardaJobPrivate::of(*this))->trusted = std::move(trusted);
}

QList<std::uint16_t> DownloadJob::damaged() const
{
    return workOf(VardaJobPrivate::of(*this))->damaged;
}

QList<TidemarDiveHeader> DownloadJob::headers() const
{
    return workOf(VardaJobPrivate::of(*this))->headers;
}

qint64 DownloadJob::diveBytes() const
{
    return bytes();
}

void DownloadJob::pause()
{
    workOf(VardaJobPrivate::of(*this))->held = true;
}

void DownloadJob::resume()
{
    VardaJobPrivate &own = VardaJobPrivate::of(*this);
    workOf(own)->held = false;
    if (own.engine)
        own.engine->wake(this);
}
