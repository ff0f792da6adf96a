// SPDX-License-Identifier: MIT
#include "jobs/trace/tracewriter_p.h"

#include <QtCore/qfiledevice.h>
#include <QtCore/qsysinfo.h>

#include <utility>

#include "jobs/trace/traceformat_p.h"
#include "logging_p.h"

using namespace Qt::StringLiterals;

namespace {

/** What a socket may keep for a reader that is slow. */
constexpr qint64 kMostUnsent = 16 << 20;
constexpr qint64 kPerMicrosecond = 1000;
/** More than a session keeps of one answer. */
constexpr qsizetype kMostWaiting = 1 << 24;

} // namespace

TraceWriter::TraceWriter(QIODevice *device, bool redacted, QObject *parent)
    : QObject(parent), m_device(device)
{
    m_clock.start();
    if (redacted)
        m_redactor.emplace();
    VardaTraceHeader header;
    header.version = TraceFormat::kVersion;
    header.redacted = redacted;
    header.library = QStringLiteral(VARDA_VERSION);
    header.qt = QString::fromLatin1(qVersion());
    header.system = QSysInfo::prettyProductName();
    write(TraceFormat::lineOf(header));
}

TraceWriter::~TraceWriter()
{
    answerOver();
}

void TraceWriter::add(VardaTraceEvent::Kind kind, const QJsonObject &fields)
{
    add(kind, QByteArrayView(), fields);
}

void TraceWriter::add(VardaTraceEvent::Kind kind, QByteArrayView bytes, const QJsonObject &fields)
{
    if (!m_device)
        return;
    VardaTraceEvent event;
    event.at = m_clock.nsecsElapsed() / kPerMicrosecond;
    event.kind = kind;
    event.bytes = bytes.toByteArray();
    event.fields = fields;
    if (kind == VardaTraceEvent::Write || kind == VardaTraceEvent::Connect)
        answerOver(); // the session begins with an empty buffer
    if (m_redactor && (kind == VardaTraceEvent::Notification || !m_waiting.isEmpty())) {
        m_waiting.append(event);
        m_waitingBytes += bytes.size();
        if (m_waitingBytes > kMostWaiting)
            answerOver();
        return;
    }
    redact(event);
    write(TraceFormat::lineOf(event));
}

void TraceWriter::answerOver()
{
    if (m_waiting.isEmpty() || !m_redactor)
        return;
    QList<VardaTraceEvent> events = std::exchange(m_waiting, {});
    m_waitingBytes = 0;
    QList<QByteArray> notifications;
    for (const VardaTraceEvent &event : std::as_const(events)) {
        if (event.kind == VardaTraceEvent::Notification)
            notifications.append(event.bytes);
    }
    notifications = m_redactor->answer(notifications);
    for (VardaTraceEvent &event : events) {
        if (event.kind == VardaTraceEvent::Notification)
            event.bytes = notifications.takeFirst();
        else
            redact(event);
        write(TraceFormat::lineOf(event));
    }
}

void TraceWriter::redact(VardaTraceEvent &event) const
{
    if (!m_redactor)
        return;
    const auto replace = [&event](QLatin1StringView key, const QString &other) {
        event.fields.insert(key, other);
    };
    if (event.kind == VardaTraceEvent::Connect) {
        replace("address"_L1, m_redactor->address(event.fields["address"_L1].toString()));
        replace("name"_L1, m_redactor->name(event.fields["name"_L1].toString()));
    } else if (event.kind == VardaTraceEvent::Write && event.fields.isEmpty()) {
        event.bytes = m_redactor->request(event.bytes);
    }
}

void TraceWriter::write(const QByteArray &line)
{
    if (!m_device)
        return;
    if (m_device->write(line) != line.size()) {
        end(m_device->errorString());
        return;
    }
    // A crash of the program must not take with it what led there.
    auto *const file = qobject_cast<QFileDevice *>(m_device.data());
    if (file && !file->flush())
        end(file->errorString());
    else if (!file && m_device->bytesToWrite() > kMostUnsent)
        end(u"its reader is too slow"_s);
}

void TraceWriter::end(const QString &why)
{
    m_device.clear();
    qCWarning(lcSession).noquote() << "the trace has ended:" << why;
    // What slots do must not happen in the middle of what was being noted.
    QMetaObject::invokeMethod(this, [this, why] { Q_EMIT failed(why); }, Qt::QueuedConnection);
}
