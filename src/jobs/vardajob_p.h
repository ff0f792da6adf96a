// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qelapsedtimer.h>
#include <QtCore/qpointer.h>

#include <chrono>
#include <memory>
#include <optional>

#include <varda/vardajob.h>

#include "jobs/jobend_p.h"
#include "jobs/work/work_p.h"

class JobEngine;

class VardaJobPrivate
{
public:
    VardaJobPrivate() = default;
    VardaJobPrivate(JobEngine *jobEngine, QString jobName, std::unique_ptr<Work> jobWork);
    virtual ~VardaJobPrivate();

    [[nodiscard]] static VardaJobPrivate &of(const VardaJob &job) { return *job.d; }

    void setState(VardaJob::State state);
    void setProgress(qint64 done, qint64 total);
    /** Ends it from the event loop; only the first call counts. */
    void end(const JobEnd &how, const QVariant &result = {});
    /** The same with a text of its own. */
    void endWith(const JobEnd &how, const QString &text, const QVariant &result);
    /** Ends it now; the caller is the event loop. */
    void deliver();
    [[nodiscard]] bool isEnding() const { return m_isEnding; }
    [[nodiscard]] const JobEnd &ending() const { return m_end; }
    [[nodiscard]] std::chrono::milliseconds totalLimitNow() const;

    VardaJob *q = nullptr;
    QPointer<JobEngine> engine; ///< none for a job that is made of jobs
    QString name;               ///< for people: "owner"
    std::unique_ptr<Work> work;

    VardaJob::Unit unit = VardaJob::Unit::None;
    qint64 done = 0;
    qint64 total = -1;
    qint64 bytes = 0;
    bool outcomeUnknown = false;
    QVariant value;

    std::chrono::milliseconds idleLimit{10'000};
    std::chrono::milliseconds connectLimit{60'000};
    std::optional<std::chrono::milliseconds> totalLimit;
    int retries = 3;
    bool autoDelete = true;
    QString computerName; ///< "Varda (00:…)", once it is known, for the text

private:
    friend class VardaJob;
    void announceProgress(bool always);
    void report();

    VardaJob::State m_state = VardaJob::Waiting;
    bool m_isEnding = false;
    JobEnd m_end;
    QString m_text;
    QString m_remedy;
    QVariant m_result;
    QElapsedTimer m_sinceProgress;
};

/** The text and the remedy of a reason, in the language that is installed. */
[[nodiscard]] QString textOf(const JobEnd &end, const QString &job, const QString &computer);
[[nodiscard]] QString remedyOf(VardaJob::Reason reason);
