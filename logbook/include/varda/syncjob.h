// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <cstdint>
#include <memory>

#include <varda/dive.h>
#include <varda/downloadjob.h>
#include <varda/logbookerror.h>
#include <varda/logbookexport.h>
#include <varda/logbookstore.h>
#include <varda/tidemardiveheader.h>
#include <varda/vardacomputer.h>
#include <varda/vardajob.h>

class SyncJobPrivate;

/**
 * Downloads the dives that a store does not have and keeps each one as soon as it is whole;
 * value() is how many. It may be interrupted at any moment, also by the power: the next one goes on
 * with the first dive that is not stored.
 *
 * If storing fails, the job ends with NotStored and with the store's text and remedy.
 */
class VARDA_LOGBOOK_EXPORT SyncJob final : public VardaJob
{
    Q_OBJECT
    Q_PROPERTY(qint64 computerId READ computerId NOTIFY stateChanged)
    Q_PROPERTY(int added READ added NOTIFY diveStored)
    Q_PROPERTY(int known READ known NOTIFY headersRead)
    Q_PROPERTY(QList<std::uint16_t> damaged READ damaged NOTIFY diveDamaged)
    Q_PROPERTY(LogbookError storeError READ storeError NOTIFY stateChanged)
public:
    ~SyncJob() override;

    /** The download that it consists of, for its limits and diveBytes(); null when it has ended. */
    [[nodiscard]] DownloadJob *download() const;
    /** LogbookComputer::id; 0 before the computer is known. */
    [[nodiscard]] qint64 computerId() const;
    /** Dives that this job has stored. */
    [[nodiscard]] int added() const;
    /** Dives that were read from this computer before, with hidden ones. */
    [[nodiscard]] int known() const;
    /** Dives that could not be read; the next synchronisation asks for them again. */
    [[nodiscard]] QList<std::uint16_t> damaged() const;
    /** What the store reported if error() is NotStored. */
    [[nodiscard]] LogbookError storeError() const;

Q_SIGNALS:
    /** The headers of the dives that will be read, the oldest first. */
    void headersRead(const QList<TidemarDiveHeader> &wanted);
    /** A dive is in the store now, with this LogbookEntry::id; comes once for each. */
    void diveStored(qint64 id, const Dive &dive);
    /** A dive that is given up; @p text is one line for people. */
    void diveDamaged(std::uint16_t number, VardaJob::Error error, const QString &text);

protected:
    void stop(bool atOnce) override;

private:
    friend class SyncJobPrivate;
    friend VARDA_LOGBOOK_EXPORT SyncJob *syncLogbook(VardaComputer &computer, LogbookStore &store);
    SyncJob(VardaComputer &computer, LogbookStore &store);

    std::unique_ptr<SyncJobPrivate> d;
};

/**
 * Brings @p store up to date with @p computer. The job deletes itself after its end, as all jobs
 * do; the store and the computer may be deleted before it. Both must be used on the same thread.
 *
 * What the computer has beyond the store is decided by each header: a dive is read if its number is
 * new, or if it is stored with another begin only, or if only a copy from a file is stored, which it
 * replaces (LogbookStore::addDive()). The computer is told the numbers that it had at
 * the last synchronisation, except the newest: if that one does not come back with the same begin,
 * the numbers have started again, and all headers are requested.
 */
[[nodiscard]] VARDA_LOGBOOK_EXPORT SyncJob *syncLogbook(VardaComputer &computer,
                                                        LogbookStore &store);
