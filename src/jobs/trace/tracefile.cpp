// SPDX-License-Identifier: MIT
#include <varda/vardatracefile.h>

#include <QtCore/qiodevice.h>
#include <QtCore/qjsondocument.h>

#include <algorithm>
#include <array>
#include <utility>

#include "jobs/trace/traceformat_p.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kFormat = "varda-trace"_L1;
/** The longest answer has 64 KiB; who writes longer lines means no good. */
constexpr qint64 kLongestLine = 1 << 20;
constexpr double kPerMillisecond = 1000;

using Named = std::pair<VardaTraceEvent::Kind, QLatin1StringView>;
constexpr std::array kKinds = {
    Named(VardaTraceEvent::Service, "service"_L1),
    Named(VardaTraceEvent::Others, "others"_L1),
    Named(VardaTraceEvent::Bluetooth, "bluetooth"_L1),
    Named(VardaTraceEvent::Connect, "connect"_L1),
    Named(VardaTraceEvent::Up, "up"_L1),
    Named(VardaTraceEvent::Services, "services"_L1),
    Named(VardaTraceEvent::Characteristics, "characteristics"_L1),
    Named(VardaTraceEvent::Subscribe, "subscribe"_L1),
    Named(VardaTraceEvent::Subscribed, "subscribed"_L1),
    Named(VardaTraceEvent::Write, "write"_L1),
    Named(VardaTraceEvent::Notification, "notification"_L1),
    Named(VardaTraceEvent::Silence, "silence"_L1),
    Named(VardaTraceEvent::Failure, "failure"_L1),
    Named(VardaTraceEvent::Disconnect, "disconnect"_L1),
    Named(VardaTraceEvent::Down, "down"_L1),
    Named(VardaTraceEvent::Computer, "computer"_L1),
    Named(VardaTraceEvent::Job, "job"_L1),
    Named(VardaTraceEvent::JobEnd, "jobEnd"_L1),
};

VardaTraceEvent::Kind kindOf(const QString &name)
{
    const auto *const it = std::find_if(kKinds.begin(), kKinds.end(),
                                        [&name](const Named &each) { return each.second == name; });
    return it == kKinds.end() ? VardaTraceEvent::Unknown : it->first;
}

bool carriesBytes(VardaTraceEvent::Kind kind)
{
    return kind == VardaTraceEvent::Write || kind == VardaTraceEvent::Notification;
}

QByteArray lineOf(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QString readHeader(const QJsonObject &object, VardaTraceHeader &header)
{
    if (object.value("format"_L1).toString() != kFormat)
        return u"this is not a trace"_s;
    header.version = object.value("version"_L1).toInt();
    if (header.version < 1)
        return u"\"version\" is not a positive number"_s;
    if (header.version > TraceFormat::kVersion)
        return u"this trace was made by a newer version of the program"_s;
    header.redacted = object.value("redacted"_L1).toBool();
    header.library = object.value("library"_L1).toString();
    header.qt = object.value("qt"_L1).toString();
    header.system = object.value("system"_L1).toString();
    return {};
}

QString readBytes(QJsonObject &fields, VardaTraceEvent &event)
{
    const QByteArray hex = fields.take("bytes"_L1).toString().toLatin1();
    event.bytes = QByteArray::fromHex(hex);
    return event.bytes.toHex() == hex.toLower() ? QString() : u"\"bytes\" is not hexadecimal"_s;
}

QString readEvent(QJsonObject fields, VardaTraceEvent &event)
{
    const QJsonValue name = fields.take("event"_L1);
    if (!name.isString())
        return u"\"event\" is missing"_s;
    const QJsonValue at = fields.take("at"_L1);
    if (!at.isDouble() || at.toDouble() < 0 || at.toDouble() > 1e12)
        return u"\"at\" is not a number of milliseconds"_s;
    event.at = qRound64(at.toDouble() * kPerMillisecond);
    event.kind = kindOf(name.toString());
    const QString wrong = carriesBytes(event.kind) ? readBytes(fields, event) : QString();
    if (event.kind == VardaTraceEvent::Unknown)
        fields.insert("event"_L1, name);
    event.fields = fields;
    return wrong;
}

/** Reads one line into the trace; what is wrong with it, if anything. */
QString readLine(const QByteArray &line, bool isFirst, VardaTraceFile &trace)
{
    QJsonParseError parse;
    const QJsonDocument document = QJsonDocument::fromJson(line, &parse);
    if (!document.isObject() && isFirst)
        return u"this is not a trace"_s;
    if (parse.error != QJsonParseError::NoError)
        return parse.errorString();
    if (!document.isObject())
        return u"this is not an object"_s;
    if (isFirst)
        return readHeader(document.object(), trace.header);
    VardaTraceEvent event;
    const QString wrong = readEvent(document.object(), event);
    if (wrong.isEmpty())
        trace.events.append(event);
    return wrong;
}

} // namespace

QByteArray TraceFormat::lineOf(const VardaTraceHeader &header)
{
    QJsonObject object;
    object.insert("format"_L1, kFormat);
    object.insert("version"_L1, header.version);
    object.insert("redacted"_L1, header.redacted);
    object.insert("library"_L1, header.library);
    object.insert("qt"_L1, header.qt);
    object.insert("system"_L1, header.system);
    return ::lineOf(object);
}

QByteArray TraceFormat::lineOf(const VardaTraceEvent &event)
{
    QJsonObject object = event.fields;
    object.insert("at"_L1, double(event.at) / kPerMillisecond);
    if (event.kind != VardaTraceEvent::Unknown)
        object.insert("event"_L1, VardaTraceFile::nameOf(event.kind));
    if (carriesBytes(event.kind))
        object.insert("bytes"_L1, QString::fromLatin1(event.bytes.toHex()));
    return ::lineOf(object);
}

QString VardaTraceFile::nameOf(VardaTraceEvent::Kind kind)
{
    const auto *const it = std::find_if(kKinds.begin(), kKinds.end(),
                                        [kind](const Named &each) { return each.first == kind; });
    return it == kKinds.end() ? QString() : QString(it->second);
}

std::optional<VardaTraceFile> VardaTraceFile::read(QIODevice &device, QString *error)
{
    VardaTraceFile trace;
    QString wrong;
    int number = 0;
    for (QByteArray line; wrong.isEmpty() && !(line = device.readLine(kLongestLine)).isEmpty();) {
        ++number;
        const bool isLast = !line.endsWith('\n');
        if (isLast && line.size() >= kLongestLine - 1)
            wrong = u"it is too long"_s;
        else if (!line.trimmed().isEmpty() || number == 1)
            wrong = readLine(line, number == 1, trace);
        if (isLast && number > 1 && !wrong.isEmpty() && device.atEnd()) {
            trace.cutShort = true;
            wrong.clear();
        }
    }
    if (number == 0) {
        number = 1;
        wrong = u"this is not a trace"_s;
    }
    if (wrong.isEmpty())
        return trace;
    if (error)
        *error = u"line %1: %2"_s.arg(number).arg(wrong);
    return {};
}

bool VardaTraceFile::write(QIODevice &device) const
{
    const auto put = [&device](const QByteArray &line) {
        return device.write(line) == line.size();
    };
    return put(TraceFormat::lineOf(header))
           && std::all_of(events.cbegin(), events.cend(), [&put](const VardaTraceEvent &event) {
                  return put(TraceFormat::lineOf(event));
              });
}
