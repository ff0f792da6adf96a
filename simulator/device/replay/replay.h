// SPDX-License-Identifier: MIT
#pragma once

#include "device/scenario/faults.h"

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <functional>
#include <optional>

namespace simulator {

/** A request of a trace, and what became of it. */
struct RecordedRequest {
    struct Notification {
        double ms = 0; ///< after the request
        QByteArray bytes;
    };

    int line = 0; ///< in the trace
    QByteArray bytes;
    QList<Notification> notifications;
    std::optional<double> linkDownMs;
    std::optional<double> calamityMs;
    Fault calamity;
};

/** A computer that answers as one did when a trace was made. */
class Replay
{
public:
    explicit Replay(const QList<RecordedRequest> &requests) : m_requests(requests) { }

    /** How fast: 1 as it was recorded, 0 without any pause. */
    void setSpeed(double speed) { m_speed = speed; }
    [[nodiscard]] int paced(double ms) const;

    /**
     * What became of this request: of an equal one that was not asked yet, of the last equal one,
     * or of the one that is most like it. Null if no request with the same command was recorded.
     */
    const RecordedRequest *find(const QByteArray &request);

    /** Gets each difference to the trace. */
    void setReport(std::function<void(const QString &text)> report)
    {
        m_report = std::move(report);
    }
    /** Reports what was recorded and not asked. */
    void reportUnasked() const;

private:
    qsizetype nextLike(const QByteArray &request, bool unasked) const;
    qsizetype nearest(const QByteArray &request) const;
    void report(const QByteArray &got, qsizetype used) const;

    QList<RecordedRequest> m_requests;
    QList<bool> m_asked = QList<bool>(m_requests.size(), false);
    double m_speed = 1;
    std::function<void(const QString &)> m_report;
};

} // namespace simulator
