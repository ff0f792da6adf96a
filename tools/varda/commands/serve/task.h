// SPDX-License-Identifier: MIT
#pragma once

#include "commands/serve/request.h"
#include "commands/serve/requesterror.h"
#include "line/options.h"
#include "output/json.h"

#include <varda/vardacomputer.h>

#include <QtCore/qjsonvalue.h>
#include <QtCore/qlist.h>
#include <QtCore/qobject.h>
#include <QtCore/qpointer.h>

#include <functional>
#include <optional>
#include <utility>

/** A request that is carried out: its jobs, and one end. */
class Task : public QObject
{
    Q_OBJECT

public:
    using Cancel = std::function<bool(const QJsonValue &id)>;

    Task(QJsonValue id, VardaComputer &computer, const Options &options, Cancel cancelOther);

    [[nodiscard]] const QJsonValue &id() const { return m_id; }
    [[nodiscard]] VardaComputer &computer() { return m_computer; }
    [[nodiscard]] const Options &options() const { return m_options; }

    /** Begins. */
    void run(const Work &work);
    /** It ends with what its jobs end with then. */
    void cancel();
    /** The same at the end of the program: most jobs end with the link that goes down. */
    void stop();
    /** What can wait does so while the reader does not keep up. */
    void hold(bool on);

    // For its work

    /**
     * Goes on with @p next once the job has ended well. All jobs that are asked for at once have
     * their places in the queue together; where one fails, those behind it are cancelled.
     */
    void follow(VardaJob *job, const std::function<void()> &next);
    template <typename T, typename Next> void follow(VardaReply<T> *job, Next next)
    {
        follow(static_cast<VardaJob *>(job), [job, next] { next(job->result()); });
    }
    /** The only job whose result is shown as @p toDocument says. */
    template <typename T, typename ToDocument>
    void finishWith(VardaReply<T> *job, ToDocument toDocument)
    {
        follow(job, [this, toDocument](const T &result) { succeedOnDevice(toDocument(result)); });
    }
    /** How patient the options want a job to be. */
    void prepare(VardaJob &job) const;
    /** Does something outside of follow(); what is thrown is its end. */
    void attempt(const std::function<void()> &work);

    void sendEvent(QLatin1StringView type, const Fields &members);
    void succeed(const Fields &document);
    void succeedOnDevice(const Fields &document = {});
    void fail(const RequestError &error);
    /** Ends its jobs, and then fails with this. */
    void giveUp(const RequestError &error);
    /** Cancels another one. @return whether there is one with this id */
    [[nodiscard]] bool cancelOther(const QJsonValue &id) const { return m_cancel(id); }

Q_SIGNALS:
    void lineReady(const Fields &line);
    void ended();

private:
    void onFinished(VardaJob *job, const std::function<void()> &next);
    void showProgress(const VardaJob &job);
    void end(QLatin1StringView type, const Fields &members);

    QJsonValue m_id;
    VardaComputer &m_computer;
    const Options &m_options;
    Cancel m_cancel;
    QList<QPointer<VardaJob>> m_jobs;      ///< those that have not ended
    std::optional<RequestError> m_failure; ///< rather than what its jobs end with
    Fields m_shown;
    bool m_isHeld = false;
    bool m_hasEnded = false;
};

/** As a member of a line. */
[[nodiscard]] Json jsonOf(const RequestError &error);
/** An enumerator of VardaJob: "Rejected". */
[[nodiscard]] QString keyOf(VardaJob::Error kind);
