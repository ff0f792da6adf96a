// SPDX-License-Identifier: MIT
#include "commands/dives/download.h"

#include "line/choices/divenumbers.h"
#include "output/terminal.h"
#include "output/text.h"
#include "run/failure.h"
#include "run/jobfailure.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString advice()
{
    return u"Try again, nearer to the computer."_s;
}

/** @throws Failure  if one of them is not in the logbook */
void requireAll(const QList<std::uint16_t> &numbers, const QList<TidemarDiveHeader> &headers)
{
    for (const std::uint16_t number : numbers) {
        if (std::ranges::find(headers, number, &TidemarDiveHeader::diveNumber) == headers.end()) {
            throw Failure{ExitCode::JobFailed, u"there is no dive %1 in the logbook"_s.arg(number),
                          u"\"varda logbook\" lists the dives."_s};
        }
    }
}

} // namespace

QList<std::uint16_t> numbersToRead(const QStringList &names)
{
    const DiveNames dives = diveNamesIn(names);
    if (!dives.ids.isEmpty()) {
        throw Failure{ExitCode::UsageError,
                      u"@%1 is a saved dive, not one in the computer"_s.arg(dives.ids.first()),
                      u"Dives in the computer have numbers."_s};
    }
    return dives.numbers;
}

Download::Download(Runner &runner, const QList<std::uint16_t> &known)
    : m_runner(runner), m_job(runner.computer().downloadDives(known)), m_run(m_job)
{
    QObject::connect(m_job, &DownloadJob::headersRead, &m_run,
                     [this](const QList<TidemarDiveHeader> &wanted) {
                         m_wanted = wanted;
                         m_time.start();
                         m_run.attempt([&] { begin(wanted); });
                     });
    QObject::connect(m_job, &DownloadJob::diveRead, &m_run, [this](const Dive &dive) {
        next();
        m_run.attempt([&] { onDive(dive); });
    });
    QObject::connect(m_job, &DownloadJob::diveDamaged, &m_run,
                     [this](std::uint16_t, VardaJob::Error error, const QString &text) {
                         next();
                         onDamaged({exitCodeOf(error), text, advice()});
                     });
}

void Download::run()
{
    m_runner.prepare(*m_job);
    m_runner.setStatus(u"Reading the logbook"_s);
    m_run.wait([this] { showProgress(); });
    if (m_damaged > 0) {
        throw Failure{ExitCode::JobFailed,
                      u"%1 of %2 dives could not be read"_s.arg(m_damaged).arg(m_wanted.size()),
                      advice()};
    }
}

void Download::want(const QList<std::uint16_t> &numbers)
{
    m_numbers = numbers;
    m_job->setWanted([numbers](const TidemarDiveHeader &header) {
        return std::ranges::binary_search(numbers, header.diveNumber);
    });
}

void Download::begin(const QList<TidemarDiveHeader> &wanted)
{
    requireAll(m_numbers, wanted);
    if (m_runner.identity().serialNumber.isEmpty())
        printWarning(u"the serial number could not be read"_s);
    onBegin(wanted);
}

void Download::onDamaged(const Failure &failure)
{
    ++m_damaged;
    if (m_wanted.size() == 1)
        m_run.attempt([&] { throw Failure(failure); });
    else
        printError(failure);
}

void Download::next()
{
    ++m_at;
    m_begin = seconds();
}

double Download::seconds() const
{
    return double(m_time.elapsed()) / 1000;
}

void Download::showProgress() const
{
    const QString bytes = bytesText(double(m_job->bytes()));
    if (m_wanted.isEmpty()) {
        showStatus(u"Reading the logbook, "_s + bytes);
    } else if (m_at < m_wanted.size()) {
        showStatus(u"Reading dive %1, %2, %3"_s.arg(m_wanted[m_at].diveNumber).arg(place(), bytes));
    }
}

QString Download::place() const
{
    const qsizetype count = m_wanted.size();
    QString text = u"%1 of %2"_s.arg(m_at + 1).arg(count);
    if (m_at > 0) {
        const double left = secondsLeft(m_begin, m_at, count - m_at, seconds() - m_begin);
        text += u", %1 left"_s.arg(durationText(left));
    }
    return text;
}
