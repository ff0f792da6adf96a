// SPDX-License-Identifier: MIT
#include <varda/syslogbinrecord.h>
#include <varda/vardadata.h>

#include <QtCore/qdatetime.h>

#include <array>

#include <varda/bufferreader.h>

#include "decoding/text_p.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
// The calendar repeats itself after so long.
constexpr std::int64_t kYearsPerCycle = 400;
constexpr std::int64_t kDaysPerCycle = 146097;

/** How the arguments of a log entry stand in its text. */
enum class Arguments {
    None,
    First,        ///< arg1 as a number
    Both,         ///< arg1, arg2 as numbers
    PercentHours, ///< arg1 as a number, arg2 minutes as hours and minutes
    Tenths,       ///< arg1 in tenths
    Date,         ///< both as seconds since 1970, behind the text
    Duration,     ///< arg1 seconds, behind the text
    Address,      ///< both as one hexadecimal number
    Halves,       ///< of each argument all but the low byte, and its low four bits
};

struct Entry {
    QStringView text;
    Arguments arguments = Arguments::None;
};

constexpr std::array<Entry, 73> kEntries = {{
    {u"Start battery with %1mV", Arguments::First},
    {u"Check battery: Current=%1, Last=%2", Arguments::Both},
    {u"RTC: Failed to read register"},
    {u"RTC: Time invalid"},
    {u"RTC: Set to default"},
    {u"Offgasing %1% reduction during %2h %3mn", Arguments::PercentHours},
    {u"No offgasing %1% reduction", Arguments::First},
    {u"Offgasing with no reduction during %1h %2mn", Arguments::Both},
    {u"No offgasing with no reduction"},
    {u"Lost time"},
    {u"Computer not restored"},
    {u"No surface interval"},
    {u"Surface date time: ", Arguments::Date},
    {u"Load inert from: ", Arguments::Date},
    {u"Load inert to: ", Arguments::Date},
    {u"Diver reset (%1mb)", Arguments::First},
    {u"Wet startup %1mb (M2mb)", Arguments::First},
    {u"Dry startup %1mb (%2mb)", Arguments::Both},
    {u"AI transmitter %1 timed out", Arguments::First},
    {u"Automatic change to bottom setpoint at %1m", Arguments::Tenths},
    {u"Automatic change to deco setpoint at %1m", Arguments::Tenths},
    {u"Automatic change to surface setpoint at %1m", Arguments::Tenths},
    {u"Cancel deco setpoint and change to bottom setpoint at %1m", Arguments::Tenths},
    {u"Emergency set time"},
    {u"Diver invalidated by tick load"},
    {u"pamb %1 to %2", Arguments::Both},
    {u"gas %1/%2", Arguments::Both},
    {u"Setpoint %1", Arguments::First},
    {u"Pressure %1", Arguments::First},
    {u"-------------------- Power down --------------------"},
    {u"Begin dive"},
    {u"Begin logging"},
    {u"End logging"},
    {u"End dive"},
    {u"Oversize packet"},
    {u"Writing bad diver"},
    {u"Bad data in diver"},
    {u"Erase block 0x%1", Arguments::Address},
    {u"Startup: Tamb fail"},
    {u"Startup: Pamb fail"},
    {u"Stop mode timeout, power off"},
    {u"Manual end dive"},
    {u"Computer restored"},
    {u"Diver restored"},
    {u"Diver not restored"},
    {u"RTC restored"},
    {u"RTC not restored"},
    {u"Startup at %1mb", Arguments::First},
    {u"Dive with yoyo since: ", Arguments::Duration},
    {u"Number of previous dives since 24H: %1", Arguments::First},
    {u"Invalid depth calculated with pamb %1", Arguments::First},
    {u"End of interval yoyo 20H"},
    {u"End of interval CNC 12H"},
    {u"End of interval Gauge 12H"},
    {u"Computer end during dive"},
    {u"---------- to bootloader ----------"},
    {u"Begin consecutive dive at: ", Arguments::Date},
    {u"End dive at: ", Arguments::Date},
    {u"Dive with yoyo, start 20H period"},
    {u"Gauge dive, start 12H period"},
    {u"Dive with CNC, start 12H period"},
    {u"End logging at: ", Arguments::Date},
    {u"PACKET OVERRUN"},
    {u"CORRUPT PACKET"},
    {u"READ TIMEOUT"},
    {u"MONITOR TIMEOUT"},
    {u"Read computer: bad data"},
    {u"Read computer: versions %1 current %2", Arguments::Both},
    {u"read computer: header %1 %2 footer %3 %4", Arguments::Halves},
    {u"First dive: %1 Count: %2", Arguments::Both},
    {u"RTC power on reset flag: %1", Arguments::First},
    {u"RTC backup config written to eeprom: %1 -> %2", Arguments::Both},
    {u"RTC backup config eeprom write failed: %1 -> %2", Arguments::Both},
}};

/** Broken-down time as the computer's own firmware has it. */
struct Calendar {
    std::int64_t yearsSince1900 = 0;
    int month = 0; ///< from 0
    int day = 0;
    int secondOfDay = 0;
};

struct Division {
    std::int64_t quotient;
    std::int64_t remainder; ///< never negative
};

constexpr Division divide(std::int64_t dividend, std::int64_t divisor)
{
    const std::int64_t remainder = dividend % divisor;
    if (remainder < 0)
        return {dividend / divisor - 1, remainder + divisor};
    return {dividend / divisor, remainder};
}

/** In UTC; all zeros where the years since 1900 exceed 32 bits, which no C library breaks down. */
Calendar breakDown(std::int64_t seconds)
{
    const auto [days, secondOfDay] = divide(seconds, kSecondsPerDay);
    // QDate ends some 1900 years before the last of these years, and it has no year 0.
    const auto [cycles, day] = divide(days, kDaysPerCycle);
    const QDate date = QDate(1970, 1, 1).addDays(day);
    const std::int64_t years = cycles * kYearsPerCycle + date.year() - 1900;
    if (years != std::int32_t(years))
        return {};
    return {years, date.month() - 1, date.day(), int(secondOfDay)};
}

QString twoDigits(int value)
{
    return u"%1"_s.arg(value, 2, 10, QLatin1Char('0'));
}

QString timestamp(std::int64_t seconds)
{
    const Calendar at = breakDown(seconds);
    return u"%1-%2-%3 %4:%5:%6 "_s.arg(at.yearsSince1900 + 1900, 4)
        .arg(twoDigits(at.month), twoDigits(at.day), twoDigits(at.secondOfDay / 3600),
             twoDigits(at.secondOfDay / 60 % 60), twoDigits(at.secondOfDay % 60));
}

/** The low halves of both arguments as one number of seconds. */
std::int64_t dateOf(const SyslogBinRecord &record)
{
    return std::int64_t(quint16(record.arg2)) << 16 | quint16(record.arg1);
}

QString durationOf(std::int32_t seconds)
{
    const QTime duration = QTime(0, 0).addSecs(seconds);
    return duration.toString(seconds > 3599 ? u"hh:mm:ss"_s : u"mm:ss"_s);
}

QString message(const SyslogBinRecord &record)
{
    if (record.type >= kEntries.size())
        return u"Unknow type %1"_s.arg(uint(record.type));
    const Entry &entry = kEntries[record.type];
    QString text = entry.text.toString();
    const qint32 first = record.arg1;
    const qint32 second = record.arg2;
    switch (entry.arguments) {
    case Arguments::None:
        break;
    case Arguments::First:
        return text.arg(first);
    case Arguments::Both:
        return text.arg(first).arg(second);
    case Arguments::PercentHours:
        return text.arg(first).arg(second / 60).arg(second % 60);
    case Arguments::Tenths:
        return text.arg(QString::number(first / 10.0, 'g', 6));
    case Arguments::Date:
        return text + timestamp(dateOf(record));
    case Arguments::Duration:
        return text + durationOf(first);
    case Arguments::Address:
        return text.arg(quint32(second) << 16 | quint32(first), 0, 16);
    case Arguments::Halves:
        return text.arg(first >> 8).arg(first & 0xF).arg(second >> 8).arg(second & 0xF);
    }
    return text;
}

} // namespace

QString convertSyslogRecord(const SyslogBinRecord &record, bool noTimestamp)
{
    return noTimestamp ? message(record) : timestamp(record.time) + message(record);
}

void VardaData::processSyslog(const Payload &payload)
{
    syslog += textOf(std::span(payload).subspan<1>()) + u'\n';
}

void VardaData::processSyslogBin(const Payload &payload)
{
    BufferReader reader(payload);
    SyslogBinRecord record;
    record.time = reader.take<std::int64_t>();
    record.type = reader.take<std::uint8_t>();
    record.arg1 = reader.take<std::int32_t>();
    record.arg2 = reader.take<std::int32_t>();
    syslogBin.append(record);
}
