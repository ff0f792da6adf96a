// SPDX-License-Identifier: MIT
#pragma once

#include "run/jobrun.h"
#include "run/runner.h"

#include <varda/dive.h>
#include <varda/downloadjob.h>
#include <varda/tidemardiveheader.h>

#include <QtCore/qelapsedtimer.h>
#include <QtCore/qlist.h>

#include <cstdint>
#include <functional>

/** The numbers of dives in a computer. @throws Failure  if an ID of a saved dive is among them */
[[nodiscard]] QList<std::uint16_t> numbersToRead(const QStringList &names);

/** Reads dives, one after the other; what becomes of them is somebody else's. */
class Download
{
public:
    explicit Download(Runner &runner, const QList<std::uint16_t> &known = {});

    /** The headers are there. */
    std::function<void(const QList<TidemarDiveHeader> &wanted)> onBegin;
    std::function<void(const Dive &)> onDive;

    [[nodiscard]] DownloadJob &job() { return *m_job; }
    /** Reads these dives only, all of which have to be there. */
    void want(const QList<std::uint16_t> &numbers);

    /**
     * A dive that comes damaged does not keep the others from coming.
     *
     * @throws Failure
     */
    void run();

private:
    void begin(const QList<TidemarDiveHeader> &wanted);
    void onDamaged(const Failure &failure);
    void next();
    [[nodiscard]] double seconds() const;
    void showProgress() const;
    [[nodiscard]] QString place() const;

    Runner &m_runner;
    DownloadJob *m_job;
    JobRun m_run;
    QList<std::uint16_t> m_numbers; ///< that have to be there
    QList<TidemarDiveHeader> m_wanted;
    qsizetype m_damaged = 0;
    qsizetype m_at = 0;
    double m_begin = 0; ///< of the dive that is read
    QElapsedTimer m_time;
};
