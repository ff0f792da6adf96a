// SPDX-License-Identifier: MIT
#include <varda/syncjob.h>

#include <QtCore/qpointer.h>
#include <QtCore/qset.h>

#include <algorithm>
#include <optional>

#include "logbookstore_p.h"
#include "synchronisation_p.h"

using namespace Qt::StringLiterals;
using Synchronisation::DiveKey;

namespace {

/** As many dives may wait for the disk. */
constexpr int kMostWaiting = 4;

DiveKey keyOf(const TidemarDiveHeader &header)
{
    return {header.diveNumber, header.stamp};
}

QList<DiveKey> keysOf(const QList<TidemarDiveHeader> &headers)
{
    QList<DiveKey> keys;
    for (const TidemarDiveHeader &header : headers)
        keys.append(keyOf(header));
    return keys;
}

} // namespace

class SyncJobPrivate
{
public:
    /** What the download asks about each header; it may outlive the job. */
    struct Knowledge {
        QSet<DiveKey> stored;
        std::optional<DiveKey> newest; ///< of the generation; the computer is not told of it
        bool toldAny = false;
        bool startedAgain = false; ///< the numbers, or there is no generation yet

        [[nodiscard]] bool isTrusted(const QList<TidemarDiveHeader> &headers);
    };

    SyncJobPrivate(SyncJob &job, VardaComputer &vardaComputer, LogbookStore &logbook);

    void onComputer(const VardaIdentity &identity);
    void onStart(const LogbookResult<Synchronisation::Start> &start);
    void onHeaders(const QList<TidemarDiveHeader> &wanted);
    void onDive(const Dive &dive, const TidemarDiveHeader &header,
                const QList<DiveSample> &samples);
    void onStored(const Dive &dive, const LogbookResult<LogbookStore::Added> &result);
    void onDownloaded();
    void stop(bool atOnce);

    SyncJob &q;
    QPointer<VardaComputer> computer;
    QPointer<LogbookStore> store;
    QPointer<DownloadJob> download;
    std::shared_ptr<Knowledge> knowledge = std::make_shared<Knowledge>();

    qint64 computerId = 0;
    int added = 0;
    int known = 0;
    QList<std::uint16_t> damaged;
    LogbookError storeError;

private:
    struct End {
        VardaJob::Error error = VardaJob::NoError;
        VardaJob::Reason reason = VardaJob::Reason::None;
        QString text;
        QString remedy;
    };

    template <typename T>
    void ask(std::function<T(Database &)> work,
             std::function<void(const LogbookResult<T> &)> callback);
    /** The store has failed: the download ends, then the job. */
    void failWith(const LogbookError &error);
    void count();
    /** Ends the job when neither the download nor the store has anything left to do. */
    void endIfDone();

    /**
     * What waits behind a call that has failed fails with it, instead of waiting for the file too.
     * Used on the store's thread only.
     */
    std::shared_ptr<LogbookError> m_firstFailure = std::make_shared<LogbookError>();
    int m_asked = 0;   ///< of the store, and not answered
    int m_waiting = 0; ///< dives for the disk
    qint64 m_total = -1;
    std::optional<End> m_downloaded;
    bool m_finishing = false;
};

/** Whether the numbers still mean the dives that they meant at the last synchronisation. */
bool SyncJobPrivate::Knowledge::isTrusted(const QList<TidemarDiveHeader> &headers)
{
    startedAgain = !newest
                   || std::none_of(headers.cbegin(), headers.cend(),
                                   [this](const auto &each) { return keyOf(each) == *newest; });
    return !startedAgain || !toldAny;
}

SyncJobPrivate::SyncJobPrivate(SyncJob &job, VardaComputer &vardaComputer, LogbookStore &logbook)
    : q(job), computer(&vardaComputer), store(&logbook), download(vardaComputer.downloadDives())
{
    download->setTrusted([known = knowledge](const QList<TidemarDiveHeader> &headers) {
        return known->isTrusted(headers);
    });
    download->setWanted([known = knowledge](const TidemarDiveHeader &header) {
        return !known->stored.contains(keyOf(header));
    });
    QObject::connect(download, &DownloadJob::computerRead, &q,
                     [this](const VardaIdentity &identity) { onComputer(identity); });
    QObject::connect(download, &DownloadJob::headersRead, &q,
                     [this](const QList<TidemarDiveHeader> &wanted) { onHeaders(wanted); });
    QObject::connect(download, &DownloadJob::diveRead, &q,
                     [this](const Dive &dive, const TidemarDiveHeader &header,
                            const QList<DiveSample> &samples) { onDive(dive, header, samples); });
    QObject::connect(download, &DownloadJob::diveDamaged, &q,
                     [this](std::uint16_t number, VardaJob::Error error, const QString &text) {
                         damaged.append(number);
                         const QPointer<SyncJob> alive(&q);
                         count();
                         if (alive)
                             Q_EMIT q.diveDamaged(number, error, text);
                     });
    QObject::connect(download, &VardaJob::stateChanged, &q, [this] {
        if (download && download->state() != VardaJob::Finished)
            q.setState(download->state());
    });
    QObject::connect(download, &VardaJob::finished, &q, [this] { onDownloaded(); });
}

template <typename T>
void SyncJobPrivate::ask(std::function<T(Database &)> work,
                         std::function<void(const LogbookResult<T> &)> callback)
{
    if (!store) {
        failWith(logbookError(LogbookError::Closed));
        return;
    }
    ++m_asked;
    LogbookStorePrivate::of(*store).thread.post<T>(
        [work = std::move(work), first = m_firstFailure](Database &database) {
            if (*first)
                throw LogbookError(*first);
            try {
                return work(database);
            } catch (const LogbookError &error) {
                *first = error;
                throw;
            }
        },
        &q,
        [this, callback = std::move(callback)](const LogbookResult<T> &result) {
            --m_asked;
            const QPointer<SyncJob> alive(&q);
            if (result.error)
                failWith(result.error);
            else
                callback(result);
            if (alive)
                endIfDone();
        });
}

/** The computer is known: the download waits until it is known what is stored of it. */
void SyncJobPrivate::onComputer(const VardaIdentity &identity)
{
    if (!computer || storeError)
        return;
    download->pause();
    const BleDeviceInfo device = computer->device();
    ask<Synchronisation::Start>(
        [identity, device](Database &database) {
            return Synchronisation::start(database, identity, device.address(), device.name());
        },
        [this](const LogbookResult<Synchronisation::Start> &start) { onStart(start); });
}

void SyncJobPrivate::onStart(const LogbookResult<Synchronisation::Start> &start)
{
    computerId = start.value.computer;
    known = int(start.value.stored.size());
    knowledge->stored = {start.value.stored.cbegin(), start.value.stored.cend()};
    if (!download)
        return;
    QList<std::uint16_t> told;
    for (const auto &[number, begin] : start.value.current) {
        knowledge->newest = {number, begin};
        told.append(number);
    }
    if (!told.isEmpty())
        told.removeAll(told.constLast());
    knowledge->toldAny = !told.isEmpty();
    download->setKnown(told);
    download->resume();
}

void SyncJobPrivate::onHeaders(const QList<TidemarDiveHeader> &wanted)
{
    m_total = wanted.size();
    const QPointer<SyncJob> alive(&q);
    ask<bool>(
        [computer = computerId, shown = keysOf(download->headers()),
         isNew = knowledge->startedAgain](Database &database) {
            Synchronisation::note(database, computer, shown, isNew);
            return true;
        },
        [](const LogbookResult<bool> &) {});
    count();
    if (alive)
        Q_EMIT q.headersRead(wanted);
}

void SyncJobPrivate::onDive(const Dive &dive, const TidemarDiveHeader &header,
                            const QList<DiveSample> &samples)
{
    if (storeError)
        return;
    if (++m_waiting >= kMostWaiting && download)
        download->pause();
    LogbookDive whole;
    whole.dive = dive;
    whole.header = header;
    whole.samples = samples;
    ask<LogbookStore::Added>(
        [computer = computerId, whole](Database &database) {
            return Synchronisation::add(database, computer, whole);
        },
        [this, dive](const LogbookResult<LogbookStore::Added> &result) { onStored(dive, result); });
}

void SyncJobPrivate::onStored(const Dive &dive, const LogbookResult<LogbookStore::Added> &result)
{
    --m_waiting;
    if (download)
        download->resume();
    if (!result.value.isNew) { // another process was faster
        count();
        return;
    }
    ++added;
    const QPointer<SyncJob> alive(&q);
    count();
    if (alive)
        Q_EMIT q.diveStored(result.value.id, dive);
}

void SyncJobPrivate::onDownloaded()
{
    m_downloaded = {download->error(), download->reason(), download->errorText(),
                    download->remedy()};
    endIfDone();
}

void SyncJobPrivate::failWith(const LogbookError &error)
{
    if (!storeError)
        storeError = error;
    if (download && !m_downloaded)
        download->cancel();
}

void SyncJobPrivate::count()
{
    if (m_total >= 0)
        q.setProgress(added + damaged.size(), m_total);
}

void SyncJobPrivate::endIfDone()
{
    if (!m_downloaded || m_asked > 0)
        return;
    if (storeError) {
        q.fail(VardaJob::NotStored, VardaJob::Reason::StoreFailed, storeError.text,
               storeError.remedy);
    } else if (m_downloaded->error != VardaJob::NoError) {
        q.fail(m_downloaded->error, m_downloaded->reason, m_downloaded->text, m_downloaded->remedy);
    } else if (m_finishing) {
        q.finish(added);
    } else {
        m_finishing = true;
        ask<bool>(
            [computer = computerId](Database &database) {
                Synchronisation::finish(database, computer);
                return true;
            },
            [](const LogbookResult<bool> &) {});
        if (m_asked == 0) // the store is gone
            endIfDone();
    }
}

void SyncJobPrivate::stop(bool atOnce)
{
    // What has been downloaded is stored, then the job ends.
    if (m_downloaded)
        m_downloaded = {VardaJob::Cancelled,
                        VardaJob::Reason::ByCaller,
                        SyncJob::tr("synchronisation: cancelled"),
                        {}};
    else if (atOnce)
        download->abort();
    else
        download->cancel();
}

// The job

SyncJob::SyncJob(VardaComputer &computer, LogbookStore &store)
    : VardaJob(Unit::Dives), d(std::make_unique<SyncJobPrivate>(*this, computer, store))
{
}

SyncJob::~SyncJob()
{
    if (d->download)
        d->download->cancel();
}

DownloadJob *SyncJob::download() const
{
    return d->download;
}

qint64 SyncJob::computerId() const
{
    return d->computerId;
}

int SyncJob::added() const
{
    return d->added;
}

int SyncJob::known() const
{
    return d->known;
}

QList<std::uint16_t> SyncJob::damaged() const
{
    return d->damaged;
}

LogbookError SyncJob::storeError() const
{
    return d->storeError;
}

void SyncJob::stop(bool atOnce)
{
    d->stop(atOnce);
}

SyncJob *syncLogbook(VardaComputer &computer, LogbookStore &store)
{
    return new SyncJob(computer, store);
}
