// SPDX-License-Identifier: MIT
#include "device/replay/tracefile.h"

#include <QtCore/qjsondocument.h>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

constexpr int kNewestVersion = 1;
constexpr double kLongestMs = 1e12;

QString checkHeader(const QJsonObject &header)
{
    if (header.value("format"_L1).toString() != "varda-trace"_L1)
        return u"this is not a trace"_s;
    const int version = header.value("version"_L1).toInt();
    if (version < 1 || version > kNewestVersion)
        return u"version %1 of the format is not known"_s.arg(version);
    return {};
}

QString readEvent(const QJsonObject &fields, TraceEvent &event)
{
    event.fields = fields;
    event.name = fields.value("event"_L1).toString();
    event.ms = fields.value("at"_L1).toDouble(-1);
    const QByteArray hex = fields.value("bytes"_L1).toString().toLatin1();
    event.bytes = QByteArray::fromHex(hex);
    if (event.name.isEmpty())
        return u"\"event\" is missing"_s;
    if (!(event.ms >= 0) || event.ms > kLongestMs)
        return u"\"at\" is not a number of milliseconds"_s;
    if (event.bytes.toHex() != hex.toLower())
        return u"\"bytes\" is not hexadecimal"_s;
    // A replay shows how a computer would have answered, not how one did.
    if (event.name == "service"_L1 && fields.value("name"_L1).toString() == "replay"_L1)
        return u"this is the trace of a replay"_s;
    return {};
}

} // namespace

std::optional<QList<TraceEvent>> readTrace(const QByteArray &text, QString *error)
{
    QList<TraceEvent> events;
    const QList<QByteArray> lines = text.split('\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (i > 0 && lines[i].trimmed().isEmpty())
            continue;
        const bool isCut = i > 0 && i + 1 == lines.size(); // the end of what has crashed
        const QJsonDocument document = QJsonDocument::fromJson(lines[i]);
        TraceEvent event;
        event.line = int(i) + 1;
        QString wrong;
        if (i == 0)
            wrong = checkHeader(document.object());
        else if (!document.isObject())
            wrong = u"this is not an object"_s;
        else
            wrong = readEvent(document.object(), event);
        if (!wrong.isEmpty() && isCut)
            break;
        if (!wrong.isEmpty()) {
            *error = u"line %1: %2"_s.arg(i + 1).arg(wrong);
            return std::nullopt;
        }
        if (i > 0)
            events.append(event);
    }
    return events;
}

} // namespace simulator
