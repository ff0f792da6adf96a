// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtCore/qpointer.h>
#include <QtCore/qtimer.h>

#include <memory>
#include <optional>

#include "jobs/answercheck_p.h"
#include "jobs/link/computerlink_p.h"
#include "jobs/work/request_p.h"

/**
 * One request and its answer, to the end: sent on a link that is up, watched over, and judged as a
 * whole. A damaged answer ends when the line is quiet, so that nothing of it reaches the next.
 */
class Exchange : public QObject, public LinkObserver
{
    Q_OBJECT

public:
    explicit Exchange(ComputerLink *link);
    ~Exchange() override;

    void start(const Request &request);
    /** It reports nothing more; the answer may still be under way. */
    void abandon();
    /** Nothing more is sent for it, as an upload would. */
    void stopSteps();
    /** The link is down. */
    void onLinkLost(const JobEnd &end);

    [[nodiscard]] bool isRunning() const { return m_running; }
    /** Nothing has come since the session has sent something. */
    [[nodiscard]] bool isAwaiting() const { return m_awaiting; }
    [[nodiscard]] bool hasSent() const { return m_sent; }
    /** It has asked the computer to go. */
    [[nodiscard]] bool awaitsLinkDown() const
    {
        return m_running && m_sent && m_request.ending == Request::Ending::LinkDown;
    }
    /** Bytes of the answer, of the last request too. */
    [[nodiscard]] qint64 bytes() const { return m_bytes; }
    /** The digest of an answer that whole frames of equal content make doubtful. */
    [[nodiscard]] std::optional<quint64> doubt() const { return m_doubt; }
    /** It was given up with its answer still under way. */
    [[nodiscard]] bool isNoisy() const { return m_isNoisy; }
    [[nodiscard]] bool acknowledged() const { return m_acknowledged; }

Q_SIGNALS:
    /** From the event loop, once after each start() that was not abandoned. */
    void ended(const JobEnd &end);
    /** A sign of life. */
    void alive();

private:
    void watch(VardaSession &session);
    void send();
    void judge();
    void finish(const JobEnd &end);
    void finishWhenQuiet(const JobEnd &end);
    void onQuiet(const JobEnd &why);
    void onRefused(ExchangeError::ExchangeErrorIn error);
    [[nodiscard]] std::optional<JobEnd> damage() const;
    [[nodiscard]] bool isStep() const;
    void judgeLater();

    void notified(QByteArrayView bytes) override;
    void written(QByteArrayView bytes) override;
    void frameReceived(quint8 code, QByteArrayView frame) override;
    void tooManyNotifications() override;
    void answerProcessed() override;

    ComputerLink *m_link;
    QPointer<VardaSession> m_watched;
    Request m_request;
    std::unique_ptr<AnswerCheck> m_check; ///< while it runs, and of the last request
    bool m_collected = false;
    bool m_running = false;
    bool m_sent = false;
    bool m_ended = false;
    bool m_stopped = false; ///< nothing more is sent for it
    bool m_awaiting = false;
    bool m_acknowledged = false;
    bool m_tooMany = false; ///< bytes: the session has dropped what it had
    bool m_isNoisy = false;
    std::optional<VardaJob::Reason> m_refusal;
    std::optional<JobEnd> m_whenQuiet;
    std::optional<quint64> m_doubt;
    qint64 m_bytes = 0;
    quint64 m_serial = 0;
    QTimer m_quiet;
    QTimer m_longest;
};
