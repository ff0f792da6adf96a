// SPDX-License-Identifier: MIT
#include "run/jobrun.h"

#include "run/interrupt.h"
#include "run/jobfailure.h"

#include <QtCore/qeventloop.h>
#include <QtCore/qtimer.h>

using namespace std::chrono_literals;

namespace {

constexpr auto kBetweenProgress = 100ms;

} // namespace

JobRun::JobRun(VardaJob *job) : m_job(job)
{
    job->setAutoDelete(false);
    if (const Interrupt *interrupt = Interrupt::instance()) {
        connect(interrupt, &Interrupt::interrupted, job, &VardaJob::abort);
        if (Interrupt::number() != 0)
            job->abort();
    }
}

JobRun::~JobRun()
{
    delete m_job;
}

void JobRun::attempt(const std::function<void()> &work)
{
    if (m_failure)
        return;
    try { // the event loop lets no exception through
        work();
    } catch (const Failure &failure) {
        m_failure = failure;
        m_job->abort();
    }
}

void JobRun::wait(const std::function<void()> &showProgress)
{
    QEventLoop loop;
    connect(m_job, &VardaJob::finished, &loop, &QEventLoop::quit);
    QTimer progress;
    connect(&progress, &QTimer::timeout, m_job, [this, &showProgress] {
        if (m_job->state() == VardaJob::Running)
            showProgress();
    });
    if (showProgress)
        progress.start(kBetweenProgress);
    loop.exec();
    if (m_failure)
        throw Failure(*m_failure);
    if (Interrupt::number() != 0)
        throw Interrupt::failure();
    if (m_job->error() != VardaJob::NoError)
        throw failureOf(*m_job);
}
