// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qelapsedtimer.h>
#include <QtCore/qlist.h>
#include <QtCore/qobject.h>
#include <QtCore/qpointer.h>
#include <QtCore/qtimer.h>

#include <chrono>
#include <memory>
#include <optional>

#include <varda/vardacomputer.h>

#include "jobs/exchange_p.h"
#include "jobs/link/computerlink_p.h"
#include "jobs/trace/linktrace_p.h"
#include "jobs/vardajob_p.h"
#include "jobs/work/readings_p.h"

/**
 * The queue of one computer, and the one job that has the line: connects for it, asks its requests
 * one after the other, asks again, connects again, keeps its limits, and ends it once.
 *
 * What an application does in a slot (delete the job or the computer, cancel, ask for more) may
 * happen inside every emission: after one, nothing of the job is touched before a look at whether
 * it is still the one that runs.
 */
class JobEngine : public QObject
{
    Q_OBJECT

public:
    explicit JobEngine(QObject *parent);
    ~JobEngine() override;

    void add(VardaJob *job);
    /** Ends all jobs and the link, and @p job, if there is one, when the system has ended it. */
    void disconnectLink(VardaJob *job, VardaJob::Reason reason);
    void setDevice(const BleDeviceInfo &device);
    void setMode(std::optional<BleMode> mode) { m_link->setMode(mode); }
    void setLinger(std::chrono::milliseconds time);
    void setTrace(QIODevice *device, bool redacted);

    // For the jobs
    void stop(VardaJob *job, bool atOnce);
    /** The job is being deleted. */
    void forget(VardaJob *job);
    /** The end of the job is about to be reported. */
    void release(VardaJob *job);
    /** Its slots have returned. */
    void goOn();
    /** Something of the job that runs has changed: it may go on, or hold. */
    void wake(VardaJob *job);

    [[nodiscard]] VardaComputer::State state() const { return m_state; }
    [[nodiscard]] BleDeviceInfo device() const { return m_device; }
    [[nodiscard]] VardaJob *currentJob() const { return m_current; }
    [[nodiscard]] QList<VardaJob *> waitingJobs() const { return m_queue; }
    [[nodiscard]] int mtu() const { return m_link->mtu(); }
    [[nodiscard]] VardaIdentity identity() const;
    /** "Varda (00:…)", for texts. */
    [[nodiscard]] QString computerName() const;

Q_SIGNALS:
    void stateChanged();
    void deviceChanged();
    void currentJobChanged();
    void linkLost();
    void traceFailed(const QString &text);

private:
    enum class Phase {
        Free,       ///< the link may be up, nothing runs
        Opening,    ///< the link is on its way up
        Asking,     ///< a request is under way
        Held,       ///< the job does not want to go on now
        Cancelling, ///< the job ends when the answer under way is over
        Settling,   ///< the same, without a job
        Closing,    ///< the link is on its way down
    };

    void setPhase(Phase phase);
    void updateState();
    void run(VardaJob *job);
    void advance();
    [[nodiscard]] const Request *nextRequest();
    void openLink();
    void closeLink(const JobEnd &why = {});
    void dropLinkAndFail(const JobEnd &end);
    void ask(const Request &request);
    void endCurrent(const JobEnd &end, const QVariant &value = {});
    void endAll(const JobEnd &end);
    void settle(Phase phase);
    void settled();

    void onLinkOpened();
    void onLinkFailed(const JobEnd &end);
    void onLinkLost(const JobEnd &end);
    void onLinkClosed(const JobEnd &why);
    void onExchangeEnded(const JobEnd &end);
    void onAnswered();
    void onNotAnswered(const JobEnd &end);
    void onAlive();
    void onTick();
    void onLimit();

    [[nodiscard]] VardaJobPrivate &current() const { return VardaJobPrivate::of(*m_current); }
    /** Whether there is a job, and it has not ended. */
    [[nodiscard]] bool isAtWork() const { return m_current && !current().isEnding(); }
    [[nodiscard]] bool isRunning(const VardaJob *job) const;
    [[nodiscard]] std::chrono::milliseconds silenceLimit() const;
    [[nodiscard]] int &tries();
    [[nodiscard]] bool mayAskAgain(const JobEnd &end);
    [[nodiscard]] bool mayShareAttempt(VardaJob &job) const;
    [[nodiscard]] bool isUnclear() const;

    std::unique_ptr<LinkTrace> m_trace; ///< none if nothing is written down
    TraceWriter *m_writer = nullptr;
    ComputerLink *m_link;
    Exchange *m_exchange;
    Phase m_phase = Phase::Free;
    VardaComputer::State m_state = VardaComputer::Unconnected;
    BleDeviceInfo m_device;
    std::optional<std::chrono::milliseconds> m_linger;

    QList<VardaJob *> m_queue;
    VardaJob *m_current = nullptr;
    QList<VardaJob *> m_closers; ///< wait for the link to be down

    const Request m_identification = Requests::identification();
    const Request m_bootloaderVersion = Requests::bootloaderVersion();
    bool m_identified = false;
    bool m_bootloaderKnown = false;
    bool m_lossExpected = false;
    bool m_opensForWriter = false; ///< the attempt under way makes sure that there is only one
    bool m_unclear = false;        ///< what it has written may have been carried out
    Request m_request;             ///< the one under way
    bool m_ownRequest = false;     ///< not the job's: an identification
    int m_tries = 0;
    int m_checkTries = 0; ///< of what is asked only because the link was lost
    std::optional<quint64> m_doubt;
    std::optional<JobEnd> m_cause; ///< what the link is restored after
    bool m_closesForJob = false;   ///< and goes on with it, or ends it, when the link is down

    // Clocks of the job that runs
    QTimer m_tick;
    QElapsedTimer m_sinceTick;
    std::chrono::milliseconds m_connecting{0};
    std::chrono::milliseconds m_silent{0};
    std::chrono::milliseconds m_altogether{0};
    bool m_hadGap = false;
    QTimer m_settling;
    QTimer m_lingering;
};
