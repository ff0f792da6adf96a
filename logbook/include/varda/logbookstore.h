// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qobject.h>
#include <QtCore/qstring.h>

#include <chrono>
#include <functional>
#include <memory>

#include <varda/logbookcomputer.h>
#include <varda/logbookdive.h>
#include <varda/logbookentry.h>
#include <varda/logbookerror.h>
#include <varda/logbookexport.h>
#include <varda/logbookquery.h>
#include <varda/logbookresult.h>

class LogbookStorePrivate;

/**
 * A file with dives: each dive once, with all that its computer said about it, and with what the
 * diver adds to it. Several processes may use one file at the same time.
 *
 * Every call returns at once; a thread of the store's own does the work, one call after the other.
 * The callback comes exactly once, from the event loop of the thread that made the store, unless
 * @p context is deleted before; it may be null. What a call has stored when it ends without an error stays stored,
 * whatever happens to the program, the system or the power afterwards.
 *
 * A dive is the same as another if its computer, its number and its begin are. A computer is known
 * by its serial number. If that could not be read, it is known by its address, and it becomes one
 * with the computer of that serial number as soon as this is seen under the same address.
 *
 * Keep the dives of simulated computers in a file of their own.
 */
class VARDA_LOGBOOK_EXPORT LogbookStore : public QObject
{
    Q_OBJECT
public:
    template <typename T> using Callback = std::function<void(const LogbookResult<T> &)>;
    using Done = std::function<void(const LogbookError &)>;

    /** Whether an added dive is new, and its LogbookEntry::id. */
    struct Added {
        qint64 id = 0;
        bool isNew = false;
    };

    explicit LogbookStore(QObject *parent = nullptr);
    /** Waits for the call that runs; those that have not begun end with LogbookError::Closed. */
    ~LogbookStore() override;

    /** The file of the varda command and the app, or the one for simulated computers. */
    [[nodiscard]] static QString defaultFile(bool simulated = false);

    /**
     * Opens @p file, and makes it and its folder if they are missing. A file that was open before
     * is closed. A file that cannot be written is opened for reading.
     */
    void open(const QString &file, const QObject *context, const Done &done);
    /** Closes the file after all earlier calls. */
    void close(const QObject *context, const Done &done);
    /** The file of the last open(). */
    [[nodiscard]] QString file() const;
    /** How long a call waits for another process, by default 30 s; call it before open(). */
    void setBusyLimit(std::chrono::milliseconds limit);

    /** All computers, in the order in which they were first seen. */
    void computers(const QObject *context, const Callback<QList<LogbookComputer>> &callback);
    /** The dives that @p query means, the earliest begin first. */
    void dives(const LogbookQuery &query, const QObject *context,
               const Callback<QList<LogbookEntry>> &callback);
    /** One dive; NoSuchDive if there is none with this id. */
    void dive(qint64 id, const QObject *context, const Callback<LogbookDive> &callback);

    /**
     * Adds a dive that comes from elsewhere, such as a file. Its computer is @p computer, or the
     * one of Dive::serialNumber if @p computer has neither serial number nor address. A dive that
     * is there already is left as it is. LogbookEntry::number and begin are taken from the Dive.
     * If the begin is 0, as from a file that has none, the dive is there already if its computer
     * has one with its number whose begin is no time in this century.
     *
     * If LogbookDive::header is not that of the dive, with its number and begin, this is a copy:
     * the next synchronisation reads the dive from its computer, if that still has it. Then the
     * copy gets all that the computer says, and keeps its id, place and notes, and stays hidden.
     */
    void addDive(const LogbookComputer &computer, const LogbookDive &dive, const QObject *context,
                 const Callback<Added> &callback);

    // What the diver adds
    void setPlace(qint64 id, const QString &place, const QObject *context, const Done &done);
    void setNotes(qint64 id, const QString &notes, const QObject *context, const Done &done);
    void setHidden(qint64 id, bool hidden, const QObject *context, const Done &done);

    /** Reads the whole file and reports Damaged if anything in it is not sound. */
    void check(const QObject *context, const Done &done);

private:
    friend class LogbookStorePrivate;
    std::unique_ptr<LogbookStorePrivate> d;
};
