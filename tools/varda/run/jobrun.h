// SPDX-License-Identifier: MIT
#pragma once

#include "run/failure.h"

#include <varda/vardajob.h>

#include <QtCore/qobject.h>

#include <functional>
#include <optional>

/** One job, run to its end in an event loop. An interruption ends it early. */
class JobRun : public QObject
{
    Q_OBJECT

public:
    /** Takes the job. */
    explicit JobRun(VardaJob *job);
    ~JobRun() override;
    Q_DISABLE_COPY_MOVE(JobRun)

    /** Does something in one of the job's slots; if that fails, the job and wait() do so too. */
    void attempt(const std::function<void()> &work);

    /**
     * Waits for the end.
     *
     * @param showProgress  called from time to time meanwhile
     * @throws Failure
     */
    void wait(const std::function<void()> &showProgress = {});

private:
    VardaJob *m_job;
    std::optional<Failure> m_failure;
};
