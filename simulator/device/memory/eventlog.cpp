// SPDX-License-Identifier: MIT
#include "device/memory/eventlog.h"

#include "device/random.h"
#include "device/scenario/jsonreader.h"
#include "device/wire/wirewriter.h"

#include <QtCore/qdatetime.h>
#include <QtCore/qtimezone.h>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

struct Event {
    qint64 time = 0;
    int type = 0;
    qint32 first = 0;
    qint32 second = 0;
};

enum class Arguments { Ranges, Time };

// Something that happens to a computer, and how the text log puts it.
struct Happening {
    int type = 0;
    int secondsBefore = 0; // at most, since the last one
    const char *text = "";
    int low1 = 0;
    int high1 = 0;
    int low2 = 0;
    int high2 = 0;
    Arguments arguments = Arguments::Ranges;
};

// A day with a dive, from the battery's being put in to the switching off.
constexpr Happening kDay[] = {
    {0, 86'400, "battery in, %1 mV", 3500, 4180},
    {47, 2, "start at %1 mbar", 985, 1032},
    {45, 1, "clock restored"},
    {42, 1, "computer restored"},
    {43, 1, "diver restored"},
    {69, 1, "dives from %1, %2 of them", 1, 1, 12, 12},
    {27, 120, "setpoint %1", 70, 130},
    {26, 60, "gas %1/%2", 18, 32, 0, 45},
    {17, 7'200, "start by water %1 mbar (%2 mbar)", 1040, 1090, 985, 1032},
    {30, 5, "dive begins"},
    {31, 1, "recording begins"},
    {19, 600, "bottom setpoint at %1 dm", 100, 215},
    {20, 3'000, "decompression setpoint at %1 dm", 60, 120},
    {32, 1'200, "recording ends"},
    {61, 1, "recorded until %1", 0, 0, 0, 0, Arguments::Time},
    {33, 300, "dive ends"},
    {5, 1'800, "tissues %1% down in %2 min", 5, 60, 45, 300},
    {1, 900, "battery %1, last time %2", 3400, 4100, 3400, 4100},
    {29, 60, "off"},
};

constexpr int kDefaultCount = 38;

QByteArray recordOf(const Event &event)
{
    return WireWriter()
        .i64(event.time)
        .u8(quint8(event.type))
        .u32(quint32(event.first))
        .u32(quint32(event.second))
        .data();
}

QString timeText(qint64 seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds, QTimeZone::utc())
        .toString(u"yyyy-MM-dd HH:mm:ss"_s);
}

// A line is sent with the zero at its end: an empty one is not the end of the log.
QByteArray lineOf(const QString &text)
{
    return text.toUtf8() + '\0';
}

QByteArray lineOf(const Event &event)
{
    QString text = u"event %1 (%2, %3)"_s.arg(event.type).arg(event.first).arg(event.second);
    const auto *known = std::ranges::find(kDay, event.type, &Happening::type);
    if (known != std::end(kDay) && known->arguments == Arguments::Time) {
        const quint32 seconds = quint32(event.second) << 16 | quint32(event.first);
        text = QString::fromLatin1(known->text).replace("%1"_L1, timeText(seconds));
    } else if (known != std::end(kDay)) {
        text = QString::fromLatin1(known->text)
                   .replace("%1"_L1, QString::number(event.first))
                   .replace("%2"_L1, QString::number(event.second));
    }
    return lineOf(timeText(event.time) + u' ' + text);
}

QList<Event> plausibleEvents(int count, quint64 seed)
{
    constexpr qint64 kBegin = 1'709'222'400; // 2024-02-29 16:00
    Random random(seed);
    QList<Event> events;
    qint64 time = kBegin;
    for (int i = 0; i < count; ++i) {
        const Happening &next = kDay[size_t(i) % std::size(kDay)];
        time += random.between(next.secondsBefore / 2, next.secondsBefore);
        Event event{time, next.type, random.between(next.low1, next.high1),
                    random.between(next.low2, next.high2)};
        if (next.arguments == Arguments::Time) {
            event.first = qint32(time & 0xFFFF);
            event.second = qint32(time >> 16);
        }
        events.append(event);
    }
    return events;
}

Event readEvent(const QJsonValue &value, const QString &path)
{
    const QJsonArray parts = readArray(value, path);
    if (parts.size() != 4)
        badValue(path, u"expected [time, type, first argument, second argument]"_s);
    constexpr qint64 kMin32 = std::numeric_limits<qint32>::min();
    constexpr qint64 kMax32 = std::numeric_limits<qint32>::max();
    constexpr qint64 kMaxTime = qint64(1) << 53;
    return {readInteger(parts[0], path + u"[0]"_s, -kMaxTime, kMaxTime),
            int(readInteger(parts[1], path + u"[1]"_s, 0, 255)),
            qint32(readInteger(parts[2], path + u"[2]"_s, kMin32, kMax32)),
            qint32(readInteger(parts[3], path + u"[3]"_s, kMin32, kMax32))};
}

QList<Event> readEvents(const QJsonValue &value, const QString &path)
{
    constexpr int kMost = 1'000'000;
    if (value.isUndefined())
        return plausibleEvents(kDefaultCount, 1);
    if (value.isDouble())
        return plausibleEvents(int(readInteger(value, path, 0, kMost)), 1);
    if (value.isArray()) {
        QList<Event> events;
        const QJsonArray list = value.toArray();
        for (qsizetype i = 0; i < list.size(); ++i)
            events.append(readEvent(list[i], path + u"[%1]"_s.arg(i)));
        return events;
    }
    ObjectReader reader(value, path);
    const int count = int(reader.integer("count", kDefaultCount, 0, kMost));
    const auto seed = quint64(reader.integer("seed", 1, 0, qint64(1) << 53));
    reader.finish();
    return plausibleEvents(count, seed);
}

} // namespace

EventLog readEventLog(ObjectReader &reader)
{
    EventLog log;
    const QList<Event> events = readEvents(reader.take("log"), reader.path("log"));
    for (const Event &event : events) {
        log.records.append(recordOf(event));
        log.lines.append(lineOf(event));
    }
    if (reader.take("logText").isUndefined())
        return log;
    log.lines.clear();
    const QJsonArray lines = reader.array("logText");
    for (qsizetype i = 0; i < lines.size(); ++i)
        log.lines.append(lineOf(readText(lines[i], reader.path("logText") + u"[%1]"_s.arg(i))));
    return log;
}

} // namespace simulator
