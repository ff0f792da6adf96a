// SPDX-License-Identifier: MIT
#include "expectation.h"

#include <QtCore/qmetaobject.h>

#include <algorithm>

#include "device/wire/frame.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kAnswerTime = 5000;
constexpr int kQuietTime = 1000;
constexpr qsizetype kHeader = 8;

QString nameOf(int command)
{
    const char *name = QMetaEnum::fromType<TidemarCommand::TidemarCommandIn>().valueToKey(command);
    return name ? QString::fromLatin1(name) : QString::number(command);
}

QString ended(int command)
{
    return u"endCommand "_s + nameOf(command);
}

QString refused(int command, const char *error)
{
    return u"exchangeError %1 %2"_s.arg(nameOf(command), QLatin1String(error));
}

// How each answer ends its job.
enum class Closes {
    Nothing,
    Always,
    WhenEmpty,
    WhenShort,       // the gas tables
    WithBoolean,     // done or refused
    WithFlaggedBool, // the same, and an empty one is a refusal
    Chunk,           // done: the next step of a layout
    Begin,           // done: the first block of a firmware
    Block,           // done: the next one
    End,
    Link,
};

struct Row {
    int command;
    Closes closes;
    int told = -1; // reported as this one
    const char *error = "GenericError";
};

constexpr Row kRows[] = {
    {1, Closes::Always},
    {2, Closes::WhenEmpty},
    {3, Closes::Always},
    {5, Closes::Always},
    {7, Closes::Always},
    {8, Closes::Always},
    {9, Closes::Always},
    {10, Closes::Always},
    {13, Closes::Begin, 13, "BeginProgramError"},
    {14, Closes::Block, 14, "ProgramError"},
    {15, Closes::End, 15, "EndProgramError"},
    {17, Closes::Always},
    {19, Closes::WhenEmpty},
    {20, Closes::WhenEmpty},
    {22, Closes::Always},
    {23, Closes::WithBoolean, 23, "SetOwnerError"},
    {24, Closes::Always},
    {25, Closes::Always},
    {26, Closes::Always, 25},
    {28, Closes::Always},
    {29, Closes::WhenEmpty},
    {30, Closes::Begin, 30, "BeginProgramError"},
    {31, Closes::Block, 14, "ProgramError"},
    {32, Closes::End, 15, "EndProgramError"},
    {33, Closes::Always},
    {34, Closes::WhenShort},
    {35, Closes::WithBoolean},
    {36, Closes::WhenEmpty},
    {37, Closes::WhenEmpty},
    {38, Closes::Chunk},
    {39, Closes::WithFlaggedBool},
    {40, Closes::WithFlaggedBool},
    {41, Closes::Always},
    {42, Closes::WithFlaggedBool},
    {238, Closes::WhenEmpty},
    {254, Closes::Link},
};

Row rowOf(int command)
{
    const auto *row = std::ranges::find(kRows, command, &Row::command);
    return row == std::end(kRows) ? Row{command, Closes::Nothing} : *row;
}

/** What the other end's bytes do, told by the description of the protocol. */
class Reading
{
public:
    Reading(bool collected, bool lastStep) : m_collected(collected), m_lastStep(lastStep) { }

    void read(const QList<Arrival> &arrivals)
    {
        for (const Arrival &each : arrivals) {
            passTime(each.at);
            if (timedOut || linkGone)
                return;
            if (each.bytes.isEmpty())
                continue; // no notification at all
            if (m_collected) {
                m_bytes += each.bytes;
                m_quietAt = each.at + kQuietTime;
                m_giveUpAt = each.at + kAnswerTime;
            } else {
                m_giveUpAt = kNever;
                parse(each.bytes);
            }
        }
        passTime(kNever - 1);
    }

    QStringList entries;
    int steps = 0; // answers that let an upload go on
    bool timedOut = false;
    bool linkGone = false;

private:
    static constexpr int kNever = 1'000'000'000;

    void passTime(int now)
    {
        if (m_quietAt <= now) {
            m_quietAt = m_giveUpAt = kNever;
            parse(std::exchange(m_bytes, {}));
        }
        if (m_giveUpAt <= now)
            timedOut = true;
    }

    void parse(QByteArray bytes)
    {
        while (!linkGone && bytes.size() >= kHeader && bytes.startsWith("\xDC\xDC")) {
            const auto at = [&bytes](qsizetype i) { return int(quint8(bytes[i])); };
            const int length = at(2) + 256 * at(3);
            if (length == 0 || bytes.size() < kHeader + length)
                return;
            const QByteArray body = bytes.mid(kHeader, length);
            const int command = quint8(body[0]);
            if (simulator::crc16(body) != at(4) + 256 * at(5)) {
                entries += refused(command, "InvalidCrc");
                return;
            }
            frame(command, body.mid(1));
            bytes.remove(0, kHeader + length);
        }
    }

    void frame(int command, const QByteArray &payload)
    {
        const Row row = rowOf(command);
        const int as = row.told < 0 ? command : row.told;
        const bool yes = !payload.isEmpty() && payload[0] != 0;
        switch (row.closes) {
        case Closes::Nothing:
            break;
        case Closes::Always:
            entries += ended(as);
            break;
        case Closes::WhenEmpty:
            if (payload.isEmpty())
                entries += ended(as);
            break;
        case Closes::WhenShort:
            if (payload.size() < 2)
                entries += ended(as);
            break;
        case Closes::WithBoolean:
        case Closes::WithFlaggedBool:
        case Closes::End:
            entries += yes ? ended(as) : refused(as, row.error);
            break;
        case Closes::Chunk:
            if (yes && !m_lastStep)
                ++steps;
            else
                entries += yes ? ended(as) : refused(as, row.error);
            break;
        case Closes::Begin:
        case Closes::Block:
            if (yes)
                ++steps;
            else
                entries += refused(command == 30 ? 30 : as, row.error);
            break;
        case Closes::Link:
            entries += {u"message Disconnect from device"_s, u"disconnectController"_s};
            linkGone = true;
            break;
        }
    }

    const bool m_collected;
    const bool m_lastStep;
    QByteArray m_bytes;
    int m_quietAt = kNever;
    int m_giveUpAt = kAnswerTime;
};

} // namespace

bool matches(const QStringList &log, const QStringList &entries)
{
    return std::ranges::equal(log, entries, [](const QString &is, const QString &should) {
        return should.endsWith(u'*') ? is.startsWith(should.chopped(1)) : is == should;
    });
}

Outcome told(const QStringList &entries)
{
    return {entries, After::Up, false};
}

Outcome silence()
{
    return {{}, After::Up, true};
}

Outcome linkWentDown()
{
    return {{u"message Device disconnected"_s, u"disconnectController"_s}, After::Down, false};
}

Outcome receiveTimeout()
{
    return QStringList(u"message Receive timeout"_s) + linkWentDown();
}

Outcome linkFailed()
{
    return {{u"message BLE error: *"_s, u"disconnectController"_s}, After::Gone, false};
}

Outcome connectionFailed()
{
    return {{u"message BLE error: *"_s, u"NotCreated"_s}, After::Gone, false};
}

Outcome operator+(const QStringList &before, Outcome outcome)
{
    outcome.entries = before + outcome.entries;
    return outcome;
}

Expectation expected(const Job &job, const QList<Exchange> &healthy, int request,
                     const QList<Arrival> &arrivals)
{
    const auto isLast = [&](int i) {
        return rowOf(healthy[i].command).closes == Closes::End || i == healthy.size() - 1;
    };
    int end = 0;
    while (!isLast(end))
        ++end;

    Reading reading(job.collected, request == end);
    reading.read(arrivals);
    // Two answers to one step set two steps on their way, and where that ends is up to the computer.
    if (reading.steps > 1 || (reading.steps == 1 && !reading.entries.isEmpty()))
        return {};

    // Behind the step that ends a job there may be one more, a farewell.
    QStringList entries = request > end ? job.ends : QStringList();
    entries += reading.steps == 1 ? job.ends : reading.entries;
    if (reading.linkGone)
        return {{entries, After::Gone, false}};
    if (reading.timedOut)
        return {entries + receiveTimeout()};
    return {{entries, After::Up, reading.entries.isEmpty() && reading.steps == 0}};
}
