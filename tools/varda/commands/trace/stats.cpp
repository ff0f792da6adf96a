// SPDX-License-Identifier: MIT
#include "commands/trace/trace.h"
#include "line/options.h"
#include "output/json.h"
#include "output/safetext.h"
#include "output/tables.h"
#include "output/terminal.h"
#include "output/text.h"
#include "traces/framewords.h"
#include "traces/tracefiles.h"

#include <QtCore/qmap.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Event = VardaTraceEvent;

constexpr double kMicrosecondsInSecond = 1e6;

/** One command, over all its exchanges. */
struct Exchange {
    QString command;
    int requests = 0;
    int frames = 0;
    int faults = 0;
    qsizetype bytes = 0;    ///< of answers' payloads
    qint64 untilAnswer = 0; ///< the longest
    qint64 time = 0;        ///< from the requests to the last frames of their answers
};

struct JobTime {
    QString name;
    QString error;
    qint64 time = -1; ///< -1: it has not ended
};

struct Stats {
    QList<Exchange> exchanges;
    QList<JobTime> jobs;
    qint64 length = 0;
    qint64 longestSilence = 0; ///< without any byte, while the link was up
    qint64 silenceAt = 0;
    qsizetype received = 0;
    int notifications = 0;
    int faults = 0;
};

class Counter
{
public:
    explicit Counter(const VardaTraceFile &trace)
    {
        for (const VardaTraceFrame &frame : VardaTraceFrame::in(trace))
            count(frame);
        endExchange();
        for (const Event &event : trace.events)
            count(event);
    }

    [[nodiscard]] const Stats &stats() const { return m_stats; }

private:
    void count(const VardaTraceFrame &frame)
    {
        const bool isFault = frame.state != VardaTraceFrame::Sound;
        m_stats.faults += isFault ? 1 : 0;
        if (frame.isRequest) {
            endExchange();
            if (isFault)
                return;
            m_current = exchangeOf(FrameWords::nameOf(frame));
            ++m_stats.exchanges[m_current].requests;
            m_asked = m_last = frame.at;
            return;
        }
        if (m_current < 0)
            return;
        Exchange &exchange = m_stats.exchanges[m_current];
        if (m_last == m_asked)
            exchange.untilAnswer = qMax(exchange.untilAnswer, frame.at - m_asked);
        ++exchange.frames;
        exchange.faults += isFault ? 1 : 0;
        exchange.bytes += frame.payload.size();
        m_last = frame.endAt;
    }

    void endExchange()
    {
        if (m_current >= 0)
            m_stats.exchanges[m_current].time += m_last - m_asked;
        m_current = -1;
    }

    qsizetype exchangeOf(const QString &command)
    {
        const auto it = std::find_if(m_stats.exchanges.cbegin(), m_stats.exchanges.cend(),
                                     [&](const Exchange &each) { return each.command == command; });
        if (it != m_stats.exchanges.cend())
            return it - m_stats.exchanges.cbegin();
        Exchange exchange;
        exchange.command = command;
        m_stats.exchanges.append(exchange);
        return m_stats.exchanges.size() - 1;
    }

    void count(const Event &event)
    {
        m_stats.length = qMax(m_stats.length, event.at);
        switch (event.kind) {
        case Event::Up:
            m_heard = event.at;
            break;
        case Event::Notification:
            ++m_stats.notifications;
            m_stats.received += event.bytes.size();
            heard(event.at);
            break;
        case Event::Write:
        case Event::Disconnect:
            heard(event.at);
            break;
        case Event::Down:
        case Event::Silence:
        case Event::Failure:
            ++m_stats.faults;
            heard(event.at);
            break;
        case Event::Job:
            m_jobs.insert(event.fields["job"_L1].toInt(), m_stats.jobs.size());
            m_began.insert(event.fields["job"_L1].toInt(), event.at);
            m_stats.jobs.append({safeText(event.fields["name"_L1].toString()), {}});
            break;
        case Event::JobEnd:
            endJob(event);
            break;
        default:
            break;
        }
    }

    void heard(qint64 at)
    {
        if (at - m_heard > m_stats.longestSilence) {
            m_stats.longestSilence = at - m_heard;
            m_stats.silenceAt = m_heard;
        }
        m_heard = at;
    }

    void endJob(const Event &event)
    {
        const int number = event.fields["job"_L1].toInt();
        if (!m_jobs.contains(number))
            return;
        JobTime &job = m_stats.jobs[m_jobs.value(number)];
        job.time = event.at - m_began.value(number);
        const QString error = safeText(event.fields["error"_L1].toString());
        job.error = error == "NoError"_L1 ? QString() : error;
    }

    Stats m_stats;
    qsizetype m_current = -1; ///< index of the exchange that is under way
    qint64 m_asked = 0;
    qint64 m_last = 0;
    qint64 m_heard = 0;
    QMap<int, qsizetype> m_jobs;
    QMap<int, qint64> m_began;
};

QString secondsText(qint64 microseconds)
{
    return QString::number(double(microseconds) / kMicrosecondsInSecond, 'f', 3);
}

double seconds(qint64 microseconds)
{
    return double(microseconds) / kMicrosecondsInSecond;
}

/** Bytes in a second; 0 if it took no time. */
double throughput(const Exchange &exchange)
{
    return exchange.time > 0 ? double(exchange.bytes) / seconds(exchange.time) : 0;
}

void printText(const Stats &stats)
{
    if (!stats.jobs.isEmpty()) {
        Columns jobs({{.title = u"JOB"_s, .side = Columns::Side::Left},
                      {.title = u"SECONDS"_s},
                      {.title = u"ERROR"_s, .side = Columns::Side::Left}});
        for (const JobTime &each : stats.jobs)
            jobs.add({each.name, each.time < 0 ? u"-"_s : secondsText(each.time), each.error});
        print(jobs.text(outputStyle()) + u'\n');
    }
    if (!stats.exchanges.isEmpty()) {
        Columns exchanges({{.title = u"COMMAND"_s, .side = Columns::Side::Left},
                           {.title = u"REQUESTS"_s},
                           {.title = u"FRAMES"_s},
                           {.title = u"FAULTS"_s},
                           {.title = u"FIRST ANSWER"_s},
                           {.title = u"SECONDS"_s},
                           {.title = u"PER SECOND"_s}});
        for (const Exchange &each : stats.exchanges)
            exchanges.add({each.command, QString::number(each.requests),
                           QString::number(each.frames), QString::number(each.faults),
                           secondsText(each.untilAnswer), secondsText(each.time),
                           bytesText(throughput(each))});
        print(exchanges.text(outputStyle()) + u'\n');
    }
    Table table;
    table.add(u"Length"_s, durationText(seconds(stats.length)));
    table.add(u"Received"_s, u"%1 in %2 notifications"_s.arg(bytesText(double(stats.received)))
                                 .arg(stats.notifications));
    table.add(u"Longest silence"_s, u"%1 s, from %2 s on"_s.arg(secondsText(stats.longestSilence),
                                                                secondsText(stats.silenceAt)));
    table.add(u"Faults"_s, QString::number(stats.faults));
    print(table.text(outputStyle()));
}

Fields fieldsOf(const Exchange &exchange)
{
    return {
        {"command"_L1, exchange.command},      {"requests"_L1, exchange.requests},
        {"frames"_L1, exchange.frames},        {"faults"_L1, exchange.faults},
        {"bytes"_L1, exchange.bytes},          {"firstAnswer"_L1, seconds(exchange.untilAnswer)},
        {"seconds"_L1, seconds(exchange.time)}};
}

Fields fieldsOf(const JobTime &job)
{
    return {{"name"_L1, job.name},
            {"seconds"_L1, job.time < 0 ? Json(nullptr) : Json(seconds(job.time))},
            {"error"_L1, job.error}};
}

} // namespace

void showTraceStats(const QString &file, const Options &options)
{
    const VardaTraceFile trace = readTrace(file, options.device);
    const Stats stats = Counter(trace).stats();
    if (!options.json) {
        printText(stats);
        return;
    }
    print({{"jobs"_L1, listOf(stats.jobs, [](const JobTime &each) { return fieldsOf(each); })},
           {"commands"_L1,
            listOf(stats.exchanges, [](const Exchange &each) { return fieldsOf(each); })},
           {"seconds"_L1, seconds(stats.length)},
           {"received"_L1, stats.received},
           {"notifications"_L1, stats.notifications},
           {"longestSilence"_L1, seconds(stats.longestSilence)},
           {"faults"_L1, stats.faults}});
}
