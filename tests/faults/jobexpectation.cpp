// SPDX-License-Identifier: MIT
#include "jobexpectation.h"

#include <QtCore/qmetaobject.h>

#include <algorithm>
#include <optional>

#include "device/wire/frame.h"

using namespace Qt::StringLiterals;

namespace {

using Error = VardaJob::Error;
using Reason = VardaJob::Reason;

struct End {
    Error error;
    Reason reason;
};

struct Row {
    const char *fault;  ///< a name's end; one that ends in "*" is its begin
    QList<End> ends;    ///< where the job is not to ask again
    bool lasts = false; ///< asking again does not help
};

const QList<End> kLinkLost{{Error::LinkLost, Reason::LinkFailed}};
const QList<End> kNoLink{{Error::NotConnected, Reason::LinkFailed},
                         {Error::NotConnected, Reason::NoService},
                         {Error::TimedOut, Reason::ConnectLimit},
                         {Error::LinkLost, Reason::LinkFailed}};
// No end, if an earlier step was answered.
const QList<End> kNoAnswer{{Error::TimedOut, Reason::NoAnswer}, {Error::TimedOut, Reason::NoEnd}};
const QList<End> kServiceGone{{Error::NoBluetooth, Reason::ServiceGone}};
const QList<End> kDamaged{
    {Error::Damaged, Reason::WrongChecksum},    {Error::Damaged, Reason::IncompleteFrame},
    {Error::Damaged, Reason::Undecodable},      {Error::Damaged, Reason::SmallMtu},
    {Error::Repeated, Reason::OtherSubscriber}, {Error::TimedOut, Reason::NoEnd},
    {Error::TimedOut, Reason::NoAnswer}};

/** By the kind of a fault, wherever it is. */
const QList<Row> &rowsOfKinds()
{
    static const QList<Row> kRows{
        {"adapterOff", {{Error::NoBluetooth, Reason::AdapterOff}}, true},
        {"adapterRemoved",
         {{Error::NoBluetooth, Reason::AdapterRemoved}, {Error::NoBluetooth, Reason::NoAdapter}},
         true},
        {"daemonGone", kServiceGone, true},
        {"daemonRestarted", kServiceGone},
        {"deviceRemoved", kNoLink},
        {"drop", kNoLink},
        {"notOnAir", {{Error::NotFound, Reason::Silent}}, true},
        {"endless", {{Error::Damaged, Reason::Undecodable}}, true},
        {"flood", {{Error::Damaged, Reason::Undecodable}}},
        {"frozenLong", kNoAnswer},
    };
    return kRows;
}

/** By place and kind. */
const QList<Row> &rowsOfPlaces()
{
    static const QList<Row> kRows{
        {"connect/refuse", kNoLink},
        {"connect/silent", kNoLink, true}, // the simulated daemon keeps at it for ever
        {"discover/silent", kNoLink},
        {"discover/empty", {{Error::NotConnected, Reason::NoService}}},
        {"details/refuse", kNoLink},
        {"details/silent", kNoLink},
        {"subscribe/refuse", kNoLink},
        {"subscribe/silent", kNoLink},
        {"subscribe/late4000", kNoLink},
        {"known/write/refuse",
         {{Error::NotConnected, Reason::LinkFailed}, {Error::LinkLost, Reason::WriteFailed}}},
        {"scan/write/refuse",
         {{Error::NotConnected, Reason::LinkFailed}, {Error::LinkLost, Reason::WriteFailed}}},
        {"write/refuse", {{Error::LinkLost, Reason::WriteFailed}}},
        {"write/lost", kNoAnswer},
        {"write/silent", kNoAnswer},
        {"request/silent", kNoAnswer},
    };
    return kRows;
}

/** What a fault does to a job; nothing if it is none. */
const Row *rowOf(const Case &each)
{
    for (const Row &row : rowsOfPlaces()) {
        if (each.name.endsWith(QLatin1String(row.fault)))
            return &row;
    }
    for (const Row &row : rowsOfKinds()) {
        // "drop500": a drop that comes late.
        const QString digits = each.kind.mid(QLatin1String(row.fault).size());
        if (each.kind.startsWith(QLatin1String(row.fault))
            && std::ranges::all_of(digits, [](QChar c) { return c.isDigit(); }))
            return &row;
    }
    return nullptr;
}

/** What the notifications of one answer are, however they were cut. */
struct Frames {
    QByteArrayList all;
    bool sound = true;
    bool hasForeign = false;

    Frames(QByteArray bytes, quint8 command)
    {
        constexpr qsizetype kHeader = 8;
        while (!bytes.isEmpty()) {
            if (bytes.size() <= kHeader || !bytes.startsWith("\xDC\xDC")) {
                sound = false;
                return;
            }
            const auto at = [&bytes](qsizetype i) { return int(quint8(bytes[i])); };
            const int length = at(2) + 256 * at(3);
            if (length == 0 || bytes.size() < kHeader + length
                || simulator::crc16(bytes.mid(kHeader, length)) != at(4) + 256 * at(5)) {
                sound = false;
                return;
            }
            // Two bytes of the header say nothing.
            const QByteArray body = bytes.mid(kHeader, length);
            if (quint8(body[0]) == command)
                all += body;
            else
                hasForeign = true;
            bytes.remove(0, kHeader + length);
        }
    }
};

QByteArray joined(const QList<Arrival> &arrivals)
{
    QByteArray bytes;
    for (const Arrival &each : arrivals)
        bytes += each.bytes;
    return bytes;
}

enum class Answer { Same, Other, Damaged };

Answer answerOf(const Case &each, const Healthy &healthy)
{
    const Exchange &exchange = healthy.exchanges[each.request];
    const Frames come(joined(*each.arrivals), exchange.command);
    const Frames should(exchange.notifications.join(), exchange.command);
    if (!come.sound || each.arrivals->isEmpty())
        return Answer::Damaged;
    if (come.all != should.all)
        return Answer::Other;
    return Answer::Same;
}

QString complain(const JobOutcome &outcome, const QString &should)
{
    return u"ended with %1 instead of %2"_s.arg(nameOf(outcome.error, outcome.reason), should);
}

bool isOneOf(const QList<End> &ends, const JobOutcome &outcome)
{
    return std::ranges::any_of(ends, [&](const End &end) {
        return end.error == outcome.error && end.reason == outcome.reason;
    });
}

QString namesOf(const QList<End> &ends)
{
    QStringList names;
    for (const End &end : ends)
        names += nameOf(end.error, end.reason);
    return names.join(u" or "_s);
}

} // namespace

QString nameOf(VardaJob::Error error, VardaJob::Reason reason)
{
    const auto key = [](auto value) {
        return QString::fromLatin1(QMetaEnum::fromType<decltype(value)>().valueToKey(int(value)));
    };
    return key(error) + u'/' + key(reason);
}

QString difference(const Report &is, const Report &should, bool withAbout)
{
    const auto first = [](const QByteArray &one, const QByteArray &other) {
        const auto at = std::ranges::mismatch(one, other).in1 - one.begin();
        constexpr qsizetype kExcerpt = 40;
        const qsizetype from = qMax<qsizetype>(0, at - kExcerpt / 2);
        return u"\"%1\" instead of \"%2\""_s.arg(QString::fromUtf8(one.mid(from, kExcerpt)),
                                                 QString::fromUtf8(other.mid(from, kExcerpt)));
    };
    if (is.data != should.data)
        return first(is.data, should.data);
    return withAbout && is.about != should.about ? first(is.about, should.about) : QString();
}

bool isOtherAnswer(const Case &each, const Healthy &healthy)
{
    return each.arrivals && !each.arrivals->isEmpty() && answerOf(each, healthy) == Answer::Other;
}

QString judge(const Case &each, const Setting &setting, const Healthy &healthy,
              const JobOutcome &outcome)
{
    const ComputerJob &job = setting.job->computer;
    const bool atRequest = each.request >= 0;
    const int command = atRequest ? healthy.exchanges[each.request].command : -1;
    // A second fault may hit a request that is not asked again.
    const bool optional = job.optional.contains(TidemarCommand::TidemarCommandIn(command))
                          || (each.isSecond && !job.optional.isEmpty());
    const bool well = outcome.error == Error::NoError;
    const QString differs = difference(outcome.report, healthy.report, !optional);
    // A restarted daemon's computer has forgotten what was written before.
    const bool sameData = differs.isEmpty() || (job.writes && each.kind == "daemonRestarted"_L1);

    if (each.isOwnDeed) {
        const QList<End> ends{{Error::Cancelled, Reason::ByCaller},
                              {Error::Cancelled, Reason::ComputerDeleted}};
        return (well && sameData) || isOneOf(ends, outcome) ? QString()
                                                            : complain(outcome, namesOf(ends));
    }
    // What got no answer at all is asked for once more, and not once more for each fault.
    if (each.isSecond && isOneOf(kNoAnswer, outcome))
        return {};
    if (well && job.mayBeSilent)
        return {};
    const Row *const row = each.arrivals ? nullptr : rowOf(each);
    // A service that goes before there is a link has not been there yet.
    const bool lasts = row
                       && (row->lasts || (each.kind == "daemonRestarted"_L1 && !each.isLinked()));
    // Of many parts one may be missing, if nobody asks again or that does not help.
    if (well && outcome.report.isPartial && command == TidemarCommand::Fullsamples
        && (!each.retries || each.isSecond || lasts))
        return {};

    QList<End> ends;
    if (each.arrivals && !each.arrivals->isEmpty()) {
        switch (answerOf(each, healthy)) {
        case Answer::Other:
            // Another sound answer is what the computer says, unless a frame came twice.
            if (each.kind != "doubled"_L1)
                return {};
            ends = kDamaged;
            break;
        case Answer::Same:
        case Answer::Damaged:
            ends = kDamaged;
            break;
        }
        // A sound one of another job's kind may be this job's too.
        if (each.kind.startsWith("foreignFrame"_L1) && command == TidemarCommand::Time)
            return {};
        if (each.kind.startsWith("late"_L1) || each.kind == "merged"_L1 || each.kind == "split"_L1)
            ends = kDamaged;
    } else if (each.arrivals) {
        ends = kNoAnswer;
    } else if (row) {
        ends = row->ends;
    }

    if (well)
        return sameData ? QString() : u"has another result: "_s + differs;
    const bool repeats = each.retries && !lasts && !(job.once && atRequest);
    if (repeats)
        return complain(outcome, u"well"_s);
    if (!isOneOf(ends, outcome))
        return complain(outcome, ends.isEmpty() ? u"well"_s : namesOf(ends));
    return {};
}
