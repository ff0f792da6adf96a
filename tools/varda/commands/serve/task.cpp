// SPDX-License-Identifier: MIT
#include "commands/serve/task.h"

#include "output/documents.h"
#include "run/failure.h"

#include <QtCore/qmetaobject.h>

using namespace Qt::StringLiterals;

namespace {

template <typename Enum> QString keyIn(Enum value)
{
    return QString::fromLatin1(QMetaEnum::fromType<Enum>().valueToKey(int(value)));
}

RequestError errorOf(const VardaJob &job)
{
    return {.code = keyIn(job.reason()),
            .text = job.errorText(),
            .remedy = job.remedy(),
            .kind = job.error(),
            .outcomeUnknown = job.outcomeUnknown()};
}

Fields progressOf(const VardaJob &job)
{
    return {{"state"_L1, keyIn(job.state())},
            {"unit"_L1, keyIn(job.unit())},
            {"done"_L1, job.done()},
            {"total"_L1, job.total()},
            {"bytes"_L1, job.bytes()}};
}

} // namespace

Json jsonOf(const RequestError &error)
{
    return Fields{{"code"_L1, error.code},
                  {"kind"_L1, keyOf(error.kind)},
                  {"text"_L1, error.text},
                  {"remedy"_L1, error.remedy},
                  {"outcomeUnknown"_L1, error.outcomeUnknown}};
}

QString keyOf(VardaJob::Error kind)
{
    return keyIn(kind);
}

Task::Task(QJsonValue id, VardaComputer &computer, const Options &options, Cancel cancelOther)
    : m_id(std::move(id)),
      m_computer(computer),
      m_options(options),
      m_cancel(std::move(cancelOther))
{
}

void Task::run(const Work &work)
{
    attempt([&] { work(*this); });
}

void Task::attempt(const std::function<void()> &work)
{
    try { // the event loop lets no exception through
        work();
    } catch (const RequestError &error) {
        giveUp(error);
    } catch (const Failure &failure) {
        giveUp({.code = u"BadArgument"_s, .text = failure.what});
    }
}

void Task::stop()
{
    for (const auto &job : m_jobs) {
        if (qobject_cast<SearchJob *>(job.data()))
            job->cancel();
    }
}

void Task::cancel()
{
    for (const auto &job : m_jobs) {
        if (job)
            job->cancel();
    }
}

void Task::hold(bool on)
{
    m_isHeld = on;
    for (const auto &job : m_jobs) {
        auto *const download = qobject_cast<DownloadJob *>(job.data());
        if (download && on)
            download->pause();
        else if (download)
            download->resume();
    }
}

void Task::prepare(VardaJob &job) const
{
    if (m_options.timeout)
        job.setConnectLimit(*m_options.timeout);
    if (m_options.retries)
        job.setRetries(*m_options.retries);
}

void Task::follow(VardaJob *job, const std::function<void()> &next)
{
    m_jobs.append(job);
    if (!qobject_cast<SearchJob *>(job))
        prepare(*job);
    const auto onProgress = [this, job] { showProgress(*job); };
    connect(job, &VardaJob::stateChanged, this, onProgress);
    connect(job, &VardaJob::progressed, this, onProgress);
    connect(job, &VardaJob::finished, this, [this, job, next] { onFinished(job, next); });
    if (m_isHeld)
        hold(true);
}

void Task::onFinished(VardaJob *job, const std::function<void()> &next)
{
    m_jobs.removeOne(job);
    if (m_failure)
        fail(*m_failure);
    else if (job->error() != VardaJob::NoError)
        fail(errorOf(*job));
    else
        attempt(next);
}

void Task::showProgress(const VardaJob &job)
{
    if (m_hasEnded || m_isHeld || job.state() == VardaJob::Finished)
        return;
    const Fields progress = progressOf(job);
    if (Json(progress).line() == Json(m_shown).line())
        return;
    m_shown = progress;
    sendEvent("progress"_L1, progress);
}

void Task::sendEvent(QLatin1StringView type, const Fields &members)
{
    Fields line{{"type"_L1, QString(type)}, {"id"_L1, jsonOfId(m_id)}};
    append(line, members);
    Q_EMIT lineReady(line);
}

void Task::end(QLatin1StringView type, const Fields &members)
{
    if (std::exchange(m_hasEnded, true))
        return;
    sendEvent(type, members);
    cancel();
    Q_EMIT ended();
}

void Task::succeed(const Fields &document)
{
    end("result"_L1, {{"result"_L1, document}});
}

void Task::succeedOnDevice(const Fields &document)
{
    succeed(documents::withDevice(m_computer.device(), document));
}

void Task::fail(const RequestError &error)
{
    end("error"_L1, {{"error"_L1, jsonOf(error)}});
}

void Task::giveUp(const RequestError &error)
{
    if (m_jobs.isEmpty())
        return fail(error);
    m_failure = error;
    cancel();
}
