// SPDX-License-Identifier: MIT
#pragma once

#include "line/options.h"
#include "run/jobrun.h"

#include <varda/vardacomputer.h>

#include <QtCore/qobject.h>

#include <chrono>
#include <functional>

/** What a computer is looked for. */
enum class Purpose { Reading, Writing };

/**
 * Runs jobs on the computer that the options mean, one after the other, and lets it go in the end.
 *
 * Reading takes the first computer if none is named. For writing there must be only one; if there
 * are more, the user of a terminal says which.
 */
class Runner : public QObject
{
    Q_OBJECT

public:
    /** For writing, it connects at once. @throws Failure */
    explicit Runner(const Options &options, Purpose purpose = Purpose::Reading);
    ~Runner() override;
    Q_DISABLE_COPY_MOVE(Runner)

    using ShowProgress = std::function<void()>;

    /** Where jobs come from. */
    [[nodiscard]] VardaComputer &computer() { return m_computer; }
    /** How patient the options want a job to be. */
    void prepare(VardaJob &job) const;

    /** Runs a job to its end. @throws Failure */
    void run(VardaJob *job, const QString &status, const ShowProgress &showProgress = {});
    /** @return the job's result  @throws Failure */
    template <typename T>
    T resultOf(VardaReply<T> *job, const QString &status, const ShowProgress &showProgress = {})
    {
        prepare(*job);
        setStatus(status);
        JobRun jobRun(job);
        jobRun.wait(showProgress);
        return job->result();
    }
    /** What is done: on the status line as soon as the computer is connected. */
    void setStatus(const QString &status);

    [[nodiscard]] BleDeviceInfo device() const { return m_computer.device(); }
    [[nodiscard]] VardaIdentity identity() const { return m_computer.identity(); }
    /** "Varda (00:AA:01:01:00:01)". */
    [[nodiscard]] QString computerName() const;
    /** The line above the result where something was written: into which computer. */
    [[nodiscard]] QString heading() const;

private:
    void find(Purpose purpose);
    void connectToOnly();
    void showState();
    void disconnectAtEnd();

    Options m_options;
    std::chrono::milliseconds m_connectLimit;
    QString m_status;
    VardaComputer m_computer;
};
