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
 * A task for a computer: queued when it is made, run in its turn, finished once.
 *
 * finished() comes exactly once, from the event loop and never from inside a call; also after
 * cancel(), after abort(), and after the VardaComputer has been deleted. (A job's parent is a
 * private object that outlives the computer and protects it from QML's garbage collector.) After
 * that the job deletes itself, unless setAutoDelete(false) was called. The only exception: if you
 * delete a job before its end, there is no finished(). Without an event loop no job ends.
 *
 * Use a job only on the thread of its computer.
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
    Q_PROPERTY(qint64 bytes READ bytes NOTIFY progressed)

public:
    enum State {
        Waiting,    ///< for its turn; no limit counts
        Connecting, ///< or searching
        Running,
        Paused,     ///< a download after pause(); no limit counts
        Recovering, ///< connecting again, or about to repeat a request
        Cancelling, ///< until the line is quiet
        Finished,   ///< set just before finished()
    };
    Q_ENUM(State)

    /** The kind of failure, which decides what to do about it. */
    enum Error {
        NoError,
        Rejected,     ///< nothing was sent: a bad argument, or firmware that is installed already
        Refused,      ///< the computer said no
        Damaged,      ///< an answer came damaged or incomplete, also when it was requested again
        Repeated,     ///< every notification comes twice, as another program is subscribed
        TimedOut,     ///< no answer, an answer without an end, or the total limit
        NotFound,     ///< no computer in reach
        Ambiguous,    ///< a job that writes, no device set, and more than one in reach
        InUse,        ///< another VardaComputer of this process has the computer
        NotConnected, ///< found, but the connection failed
        LinkLost,     ///< the link was lost and could not be restored
        NoBluetooth,  ///< see reason()
        Cancelled,
        NotStored, ///< what was read could not be kept; the text and the remedy give the reason
    };
    Q_ENUM(Error)

    /** The exact reason. Values are stable: new ones are only appended. Each has a text. */
    enum class Reason {
        None,
        // Rejected
        BadArgument,
        TooLong,           ///< for one write of this link
        UnknownImage,      ///< the image's type word is unknown
        SameVersion,       ///< the computer has that version already
        BootloaderUnknown, ///< for firmware: the bootloader's version cannot be read
        // Refused
        ComputerRefused,
        BeginRefused, ///< the beginning of an upload
        BlockRefused, ///< a block of an upload
        EndRefused,   ///< the end of an upload
        // Damaged
        WrongChecksum,
        IncompleteFrame,
        TooManyNotifications, ///< more than an answer may have
        Undecodable,          ///< bytes that belong to no frame
        // TimedOut
        NoAnswer,
        NoEnd,
        TotalLimit,
        // NotConnected, LinkLost
        LinkFailed,
        NoService,     ///< it has no service of a computer
        OtherLinkMode, ///< it has only the kind of link that setLinkMode() rules out
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
        SmallMtu,        ///< Damaged: the answer does not fit a link with this MTU (23)
        Silent,          ///< NotFound: no advertisement from it, or from any computer
        ManyInReach,     ///< Ambiguous
        OtherComputer,   ///< InUse: another VardaComputer has it
        OtherSubscriber, ///< Repeated
        ConnectLimit,    ///< TimedOut: found, but not connected in time
        StoreFailed,     ///< NotStored
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
    /** What the user can do about it, in one line; may be empty. */
    [[nodiscard]] QString remedy() const;
    /** A job that writes failed after its request was sent, so it may have been carried out. */
    [[nodiscard]] bool outcomeUnknown() const;
    /** The result; invalid before the end and after a failure. */
    [[nodiscard]] QVariant value() const;
    [[nodiscard]] Unit unit() const;
    /** Progress so far; never decreases, even if a part is read again. */
    [[nodiscard]] qint64 done() const;
    /** What done() reaches at the end; -1 until it is known. */
    [[nodiscard]] qint64 total() const;
    /** Bytes received for the current part, for a smooth progress bar. */
    [[nodiscard]] qint64 bytes() const;

    // Call these before the job runs; later they have no effect.

    /**
     * How long the computer may be silent while the job runs; by default 10 s. If it does not begin
     * to answer, the job waits only 5 s, so a longer limit matters only within an answer. There it
     * is at least 2 s, because some answers end only with a second of silence.
     */
    void setIdleLimit(std::chrono::milliseconds limit);
    /** How long finding and connecting may take, including all attempts; by default 60 s. */
    void setConnectLimit(std::chrono::milliseconds limit);
    /**
     * How long the whole job may take after Waiting; by default 5 min. Downloads, logbooks, logs
     * and uploads have no such limit (0), because the limit for silence ends them.
     */
    void setTotalLimit(std::chrono::milliseconds limit);
    /**
     * How often a failed part is repeated, by default 3 times; each part is counted separately.
     * With 0 a connection too is attempted only once.
     */
    Q_INVOKABLE void setRetries(int count);
    void setAutoDelete(bool on);

public Q_SLOTS:
    /**
     * Ends the job with Cancelled: at once if it waits or connects, otherwise as soon as the line
     * is quiet. If that takes more than 5 s, the link is dropped.
     */
    void cancel();
    /** Ends the job, and drops the link at once if the job is running. The queue goes on. */
    void abort();

Q_SIGNALS:
    void finished(VardaJob *job);
    void progressed(qint64 done, qint64 total); ///< at most ten times a second, and at the end
    void stateChanged();

protected:
    /** For a job that is made of other jobs, such as a synchronisation; it is not queued itself. */
    explicit VardaJob(Unit unit = Unit::None);
    explicit VardaJob(VardaJobPrivate *priv); ///< takes ownership
    void setState(State state);
    void setProgress(qint64 done, qint64 total);
    /** Ends the job from the event loop; only the first call counts. */
    void finish(const QVariant &value);
    /**
     * Ends the job with @p text and @p remedy, or the reason's own if they are empty; the first
     * call counts.
     */
    void fail(Error error, Reason reason, const QString &text = {}, const QString &remedy = {});
    /** cancel() or abort() was called: end the other jobs, then call fail(Cancelled, …). */
    virtual void stop(bool atOnce);

private:
    friend class VardaJobPrivate;
    std::unique_ptr<VardaJobPrivate> d;
};
