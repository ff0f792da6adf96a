// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtCore/qstring.h>
#include <QtCore/qvariant.h>

#include <chrono>
#include <memory>

#include <varda/vardaexport.h>

class VardaJobPrivate;

/**
 * One piece of work for a computer: queued when it is made, run in its turn, finished once.
 *
 * finished() comes exactly once, from the event loop and never from inside a call, also after
 * cancel(), after abort(), and after the VardaComputer is gone: a job's parent is a private object
 * that outlives the computer (and keeps QML's garbage collector away). After the emission the job
 * deletes itself later, unless setAutoDelete(false). The one exception: whoever deletes a job before
 * its end gets no finished(). Without an event loop there is no end.
 *
 * A job belongs to the thread of its computer and is used only there.
 */
class VARDA_EXPORT VardaJob : public QObject
{
    Q_OBJECT
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    Q_PROPERTY(Error error READ error NOTIFY stateChanged)
    Q_PROPERTY(Reason reason READ reason NOTIFY stateChanged)
    Q_PROPERTY(QString errorText READ errorText NOTIFY stateChanged)
    Q_PROPERTY(QString remedy READ remedy NOTIFY stateChanged)
    Q_PROPERTY(bool outcomeUnknown READ outcomeUnknown NOTIFY stateChanged)
    Q_PROPERTY(QVariant value READ value NOTIFY stateChanged)
    Q_PROPERTY(Unit unit READ unit CONSTANT)
    Q_PROPERTY(qint64 done READ done NOTIFY progressed)
    Q_PROPERTY(qint64 total READ total NOTIFY progressed)

public:
    enum State {
        Waiting,    ///< for its turn; no clock runs
        Connecting, ///< searching included
        Running,
        Paused,     ///< a download that was asked to; the silence does not count
        Recovering, ///< connecting again, or waiting to ask again
        Cancelling, ///< until the line is quiet
        Finished,   ///< set right before finished()
    };
    Q_ENUM(State)

    /** What to do about it; the exit statuses of the `varda` command follow it. */
    enum Error {
        NoError,
        Rejected,     ///< nothing was sent: an argument, or a firmware that the computer has
        Refused,      ///< the computer said no
        Damaged,      ///< an answer arrived damaged or incomplete, also when asked for again
        Repeated,     ///< every notification comes twice: another program is subscribed
        TimedOut,     ///< no answer, an answer without an end, or the total limit
        NotFound,     ///< no computer in reach
        Ambiguous,    ///< a writing job, no device set, and more than one in reach
        InUse,        ///< another VardaComputer of this process has that computer
        NotConnected, ///< found, but the connection failed
        LinkLost,     ///< and could not be restored
        NoBluetooth,  ///< see reason()
        Cancelled,
    };
    Q_ENUM(Error)

    /** Why exactly: stable, one text and one remedy each. New ones are only appended. */
    enum class Reason {
        None,
        // Rejected
        BadArgument,
        TooLong,           ///< for one write of this link
        UnknownImage,      ///< the image's type word is unknown
        SameVersion,       ///< the computer has that version already
        BootloaderUnknown, ///< a firmware, and the bootloader's version cannot be read
        // Refused
        ComputerRefused,
        BeginRefused, ///< the beginning of an upload
        BlockRefused, ///< a block of an upload
        EndRefused,   ///< the end of an upload
        // Damaged
        WrongChecksum,
        IncompleteFrame,
        TooManyNotifications, ///< more than one answer may hold
        Undecodable,          ///< bytes that are no frame
        // TimedOut
        NoAnswer,
        NoEnd,
        TotalLimit,
        // NotConnected, LinkLost
        LinkFailed,
        NoService,     ///< none that a computer has
        OtherLinkMode, ///< it offers the other kind of link than setLinkMode() insists on
        WriteFailed,   ///< the system refused a write
        // NoBluetooth
        NoAdapter,
        AdapterOff,
        AdapterRemoved,
        ServiceGone,
        ServiceFrozen,
        PermissionDenied,
        NotSupported,
        // Cancelled
        ByCaller,
        ByDisconnect,
        ByOtherDevice,
        ComputerDeleted,
        // Appended
        SmallMtu,        ///< Damaged: the answer cannot arrive over a link of this MTU (23)
        Silent,          ///< NotFound: no advertisement of it, or of any computer
        ManyInReach,     ///< Ambiguous
        OtherComputer,   ///< InUse: another VardaComputer has it
        OtherSubscriber, ///< Repeated
        ConnectLimit,    ///< TimedOut: found, but not connected in time
    };
    Q_ENUM(Reason)

    enum class Unit { None, Bytes, Dives };
    Q_ENUM(Unit)

    ~VardaJob() override;

    [[nodiscard]] State state() const;
    [[nodiscard]] Error error() const;
    [[nodiscard]] Reason reason() const;
    /** One line for people: English, or a translation of context "VardaJob" if one is installed. */
    [[nodiscard]] QString errorText() const;
    /** What a person can do about it, one line; empty where there is nothing. */
    [[nodiscard]] QString remedy() const;
    /** A writing job failed after its request had left: it may have been carried out. */
    [[nodiscard]] bool outcomeUnknown() const;
    /** The result; invalid before the end and after a failure. */
    [[nodiscard]] QVariant value() const;
    [[nodiscard]] Unit unit() const;
    /** Never goes down, also when a part is read again. */
    [[nodiscard]] qint64 done() const;
    /** -1 as long as it is not known. */
    [[nodiscard]] qint64 total() const;
    /** Bytes that have come in for the part under way, for a smooth progress. */
    [[nodiscard]] qint64 bytes() const;

    // Before the job runs; afterwards they change nothing.

    /**
     * How long a running job may be silent; by default 10 s. A computer that does not begin to
     * answer is given up after 5 s in any case, so more than that counts only within an answer.
     */
    void setIdleLimit(std::chrono::milliseconds limit);
    /** How long finding and connecting may take, all attempts together; by default 60 s. */
    void setConnectLimit(std::chrono::milliseconds limit);
    /**
     * How long all of it may take from the end of Waiting; by default 5 min, and none (0) for a
     * download, a logbook, a log and an upload, which the silence ends.
     */
    void setTotalLimit(std::chrono::milliseconds limit);
    /**
     * How often in succession a part is tried again, by default 3; a part that is done starts the
     * count anew. 0 also gives up a connection at the first failure.
     */
    void setRetries(int count);
    void setAutoDelete(bool on);

public Q_SLOTS:
    /**
     * Ends the job: at once while it waits or connects, else when the line is quiet, for which it
     * waits 5 s at most before it drops the link. error() is Cancelled, whatever still came.
     */
    void cancel();
    /** Ends the job; if it is the running one, drops the link at once. The queue goes on. */
    void abort();

Q_SIGNALS:
    void finished(VardaJob *job);
    void progressed(qint64 done, qint64 total); ///< at most ten times a second, and at the end
    void stateChanged();

protected:
    /** For jobs that are made of jobs, such as a synchronisation: these are not queued themselves. */
    VardaJob();
    explicit VardaJob(VardaJobPrivate *priv); ///< takes it
    void setState(State state);
    void setProgress(qint64 done, qint64 total);
    /** Ends it from the event loop; only the first call counts. */
    void finish(const QVariant &value);
    /** Ends it with @p text, or the reason's own if that is empty; only the first call counts. */
    void fail(Error error, Reason reason, const QString &text = {});
    /** cancel() or abort() was called: end the parts, then fail(Cancelled, …). */
    virtual void stop(bool atOnce);

private:
    friend class VardaJobPrivate;
    std::unique_ptr<VardaJobPrivate> d;
};
