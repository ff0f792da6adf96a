// SPDX-License-Identifier: MIT
#include "commands/trace/trace.h"
#include "line/options.h"
#include "output/json.h"
#include "output/safetext.h"
#include "output/terminal.h"
#include "traces/framewords.h"
#include "traces/tracefiles.h"

#include <QtCore/qjsonarray.h>

using namespace Qt::StringLiterals;

namespace {

using Event = VardaTraceEvent;

constexpr qint64 kMicrosecondsInSecond = 1'000'000;
/** Shorter ones are part of every exchange. */
constexpr qint64 kPause = kMicrosecondsInSecond;

struct Line {
    qint64 at = 0;
    QString what;    ///< the event's name, or "request" or "answer"
    QString command; ///< of a request or an answer
    QString words;
    QString fault;
    qsizetype bytes = 0;
    int parts = 0; ///< writes or notifications
};

QString text(const Event &event, QLatin1StringView key)
{
    return safeText(event.fields[key].toString());
}

QString joined(const QString &first, const QString &second)
{
    return first.isEmpty() || second.isEmpty() ? first + second : first + u", "_s + second;
}

/** The system may not report it. */
QString mtuText(int mtu)
{
    return mtu > 0 ? u"MTU %1"_s.arg(mtu) : QString();
}

/** What an event other than bytes says. */
QString wordsOf(const Event &event)
{
    switch (event.kind) {
    case Event::Service:
        return text(event, "name"_L1);
    case Event::Others:
        return u"%1 other devices"_s.arg(event.fields["count"_L1].toInt());
    case Event::Connect:
        return joined(text(event, "name"_L1), text(event, "address"_L1));
    case Event::Services:
        return u"%1 services"_s.arg(event.fields["uuids"_L1].toArray().size());
    case Event::Characteristics:
        return text(event, "service"_L1);
    case Event::Subscribe:
        return text(event, "characteristic"_L1);
    case Event::Subscribed:
        return mtuText(event.fields["mtu"_L1].toInt());
    case Event::Computer:
        return joined(text(event, "model"_L1), text(event, "firmware"_L1));
    case Event::Job:
        return text(event, "name"_L1);
    case Event::Write:
        return QString::fromLatin1(event.bytes.toHex(' '));
    default:
        return {};
    }
}

QString faultOf(const Event &event)
{
    switch (event.kind) {
    case Event::Silence:
        return u"no answer"_s;
    case Event::Failure:
        return joined(text(event, "what"_L1), text(event, "error"_L1));
    case Event::Down:
        return u"the link was lost"_s;
    case Event::JobEnd:
        return text(event, "error"_L1) == "NoError"_L1
                   ? QString()
                   : joined(text(event, "error"_L1), text(event, "reason"_L1));
    default:
        return {};
    }
}

Line lineOf(const Event &event)
{
    const QString name = VardaTraceFile::nameOf(event.kind);
    Line line;
    line.at = event.at;
    line.what = name.isEmpty() ? text(event, "event"_L1) : name;
    line.words = wordsOf(event);
    line.fault = faultOf(event);
    line.bytes = event.bytes.size();
    return line;
}

Line lineOf(const VardaTraceFrame &frame, FrameWords &words)
{
    constexpr qsizetype kAroundPayload = 9;
    const bool isWhole = frame.state == VardaTraceFrame::Sound
                         || frame.state == VardaTraceFrame::WrongChecksum;
    Line line;
    line.at = frame.at;
    line.what = frame.isRequest ? u"request"_s : u"answer"_s;
    line.command = isWhole ? FrameWords::nameOf(frame) : QString();
    line.words = words.words(frame);
    line.fault = FrameWords::faultOf(frame);
    line.bytes = frame.payload.size() + (isWhole ? kAroundPayload : 0);
    line.parts = int(frame.lastEvent - frame.firstEvent) + 1;
    return line;
}

bool isInFrames(const Event &event)
{
    return event.kind == Event::Notification
           || (event.kind == Event::Write && !event.fields.contains("characteristic"_L1));
}

/** Frames stand where their last byte does. */
QList<Line> linesOf(const VardaTraceFile &trace)
{
    const auto frames = VardaTraceFrame::in(trace);
    FrameWords words;
    QList<Line> lines;
    auto next = frames.cbegin();
    for (qsizetype i = 0; i < trace.events.size(); ++i) {
        if (!isInFrames(trace.events[i]))
            lines.append(lineOf(trace.events[i]));
        for (; next != frames.cend() && next->lastEvent <= i; ++next)
            lines.append(lineOf(*next, words));
    }
    return lines;
}

QString timeText(qint64 at)
{
    constexpr int kWidth = 10;
    return QString::number(double(at) / kMicrosecondsInSecond, 'f', 3).rightJustified(kWidth);
}

QString lineText(const Line &line)
{
    constexpr int kWidth = 20; // the longest command's
    const QString arrow = line.what == "request"_L1  ? u"> "_s
                          : line.what == "answer"_L1 ? u"< "_s
                                                     : QString();
    const QString name = arrow.isEmpty() ? line.what : arrow + line.command;
    QString text = timeText(line.at) + u"  "_s + name.leftJustified(kWidth) + u"  "_s + line.words;
    if (line.parts > 1)
        text += u" (%1 in %2 parts)"_s.arg(line.bytes).arg(line.parts);
    if (!line.fault.isEmpty())
        text += u"  !! "_s + line.fault;
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

void printText(const QList<Line> &lines)
{
    qint64 last = 0;
    for (const Line &each : lines) {
        if (each.at - last >= kPause)
            print(
                timeText(last)
                + u"  ... %1 s\n"_s.arg(double(each.at - last) / kMicrosecondsInSecond, 0, 'f', 1));
        last = qMax(last, each.at);
        print(lineText(each) + u'\n');
    }
}

Fields fieldsOf(const Line &line)
{
    return {{"at"_L1, double(line.at) / 1000}, {"what"_L1, line.what},
            {"command"_L1, line.command},      {"words"_L1, line.words},
            {"fault"_L1, line.fault},          {"bytes"_L1, line.bytes},
            {"parts"_L1, line.parts}};
}

} // namespace

void showTrace(const QString &file, const Options &options)
{
    const VardaTraceFile trace = readTrace(file, options.device);
    const QList<Line> lines = linesOf(trace);
    if (options.json)
        print({{"redacted"_L1, trace.header.redacted},
               {"lines"_L1, listOf(lines, [](const Line &each) { return fieldsOf(each); })}});
    else
        printText(lines);
}
