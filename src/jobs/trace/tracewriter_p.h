// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qelapsedtimer.h>
#include <QtCore/qiodevice.h>
#include <QtCore/qobject.h>
#include <QtCore/qpointer.h>

#include <optional>

#include <varda/vardatracefile.h>

#include "jobs/trace/redactor_p.h"

/** Writes the lines of one trace as they come, until the device does not take one. */
class TraceWriter : public QObject
{
    Q_OBJECT

public:
    TraceWriter(QIODevice *device, bool redacted, QObject *parent = nullptr);
    ~TraceWriter() override;

    /** It happens now. */
    void add(VardaTraceEvent::Kind kind, const QJsonObject &fields = {});
    void add(VardaTraceEvent::Kind kind, QByteArrayView bytes, const QJsonObject &fields = {});
    /** The session has looked at all notifications up to now, and goes on with an empty buffer. */
    void answerOver();

Q_SIGNALS:
    /** From the event loop, once. */
    void failed(const QString &text);

private:
    void redact(VardaTraceEvent &event) const;
    void write(const QByteArray &line);
    void end(const QString &why);

    QPointer<QIODevice> m_device;
    QElapsedTimer m_clock;
    std::optional<Redactor> m_redactor;
    /** An answer cannot be redacted before it is whole. It begins with a notification. */
    QList<VardaTraceEvent> m_waiting;
    qsizetype m_waitingBytes = 0;
};
