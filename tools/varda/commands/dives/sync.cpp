// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "line/choices/logbookfile.h"
#include "output/documents.h"
#include "output/progressbar.h"
#include "output/terminal.h"
#include "output/text.h"
#include "run/jobfailure.h"
#include "run/runner.h"
#include "run/store.h"

#include <varda/syncjob.h>

#include <QtCore/qelapsedtimer.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/** How much is done, how fast it goes, and how long the rest will take. */
class SyncStatus
{
public:
    void begin(qsizetype dives)
    {
        m_dives = dives;
        m_bytesBefore = -m_bytes; // the headers do not count
        m_time.start();
    }
    /** @param bytes  of the dive that is read */
    void setBytes(qint64 bytes)
    {
        if (bytes < m_bytes) // another dive
            m_bytesBefore += m_bytes;
        m_bytes = bytes;
    }
    void diveEnded()
    {
        ++m_done;
        m_lastEnd = seconds();
    }
    [[nodiscard]] QString text() const;

private:
    [[nodiscard]] double seconds() const { return double(m_time.elapsed()) / 1000; }

    qsizetype m_dives = 0;
    qsizetype m_done = 0;
    qint64 m_bytes = 0;
    qint64 m_bytesBefore = 0;
    double m_lastEnd = 0;
    QElapsedTimer m_time;
};

QString SyncStatus::text() const
{
    constexpr int kWidestBar = 30;
    constexpr int kNarrowestBar = 6;
    const auto bytes = double(m_bytesBefore + m_bytes);
    if (m_dives == 0 || m_done == m_dives)
        return u"Reading the logbook, "_s + bytesText(bytes);
    QString text = u"%1 of %2"_s.arg(m_done + 1).arg(m_dives);
    if (const double spent = seconds(); spent > 0)
        text += u", %1/s"_s.arg(bytesText(bytes / spent));
    if (m_done > 0) {
        const double left = secondsLeft(m_lastEnd, m_done, m_dives - m_done, seconds() - m_lastEnd);
        text += u", %1 left"_s.arg(durationText(left));
    }
    const int room = std::min(statusWidth() - int(text.size()) - 1, kWidestBar);
    if (room < kNarrowestBar)
        return text;
    return progressBar(double(m_done) / double(m_dives), room) + u' ' + text;
}

/** Reads what is new and saves it. */
class Synchronisation
{
public:
    Synchronisation(Runner &runner, Store &store);

    /** @throws Failure */
    void run();
    void printResult(bool json) const;

private:
    void begin(const QList<TidemarDiveHeader> &wanted);
    void countBytes();

    Runner &m_runner;
    Store &m_store;
    SyncJob *m_job;
    JobRun m_run;
    SyncStatus m_status;
    std::vector<Json> m_saved;
    bool m_began = false; ///< it is known what there is to do
};

Synchronisation::Synchronisation(Runner &runner, Store &store)
    : m_runner(runner),
      m_store(store),
      m_job(syncLogbook(runner.computer(), store.logbook())),
      m_run(m_job)
{
    QObject::connect(m_job, &SyncJob::headersRead, &m_run,
                     [this](const auto &wanted) { begin(wanted); });
    QObject::connect(m_job, &SyncJob::diveStored, &m_run, [this](qint64 id, const Dive &dive) {
        m_status.diveEnded();
        m_saved.emplace_back(documents::storedDive(id, dive));
    });
    QObject::connect(m_job, &SyncJob::diveDamaged, &m_run,
                     [this](std::uint16_t, VardaJob::Error error, const QString &text) {
                         m_status.diveEnded();
                         printError({exitCodeOf(error), text, {}});
                     });
}

void Synchronisation::begin(const QList<TidemarDiveHeader> &wanted)
{
    m_began = true;
    countBytes();
    m_status.begin(wanted.size());
    if (m_runner.identity().serialNumber.isEmpty())
        printWarning(u"the serial number could not be read"_s);
}

void Synchronisation::countBytes()
{
    if (const DownloadJob *const download = m_job->download())
        m_status.setBytes(download->diveBytes());
}

void Synchronisation::run()
{
    m_runner.prepare(*m_job->download());
    m_runner.setStatus(u"Reading the logbook"_s);
    m_run.wait([this] {
        countBytes();
        showStatus(m_status.text());
    });
    if (const auto damaged = m_job->damaged().size(); damaged > 0) {
        throw Failure{
            ExitCode::JobFailed,
            u"%1 of %2 dives could not be read"_s.arg(damaged).arg(damaged + m_job->added()),
            u"Try again, nearer to the computer."_s};
    }
}

void Synchronisation::printResult(bool json) const
{
    if (!m_began)
        return;
    if (!json)
        return print(u"%1 new, %2 known\n"_s.arg(m_job->added()).arg(m_job->known()));
    const documents::Synchronised done{.file = m_store.file(),
                                       .computer = m_job->computerId(),
                                       .added = m_job->added(),
                                       .known = m_job->known(),
                                       .damaged = m_job->damaged(),
                                       .dives = m_saved};
    print(documents::withDevice(m_runner.device(),
                                documents::synchronised(m_runner.identity(), done)));
}

class Sync : public Command
{
public:
    Sync() : Command("sync", "Save the dives that are new in the computer") { }

    void declare(Arguments &arguments) override { m_file.declare(arguments); }

    void run(const Options &options) const override
    {
        Store store(m_file.name(options), Store::Use::Write);
        Runner runner(options);
        Synchronisation sync(runner, store);
        try {
            sync.run();
        } catch (const Failure &) {
            sync.printResult(options.json); // what is saved stays saved
            throw;
        }
        sync.printResult(options.json);
    }

private:
    LogbookFile m_file;
};

} // namespace

void addSync(Commands &commands)
{
    commands.push_back(std::make_unique<Sync>());
}
