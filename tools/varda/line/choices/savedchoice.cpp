// SPDX-License-Identifier: MIT
#include "line/choices/savedchoice.h"

#include "line/arguments.h"
#include "run/failure.h"

#include <QtCore/qdatetime.h>
#include <QtCore/qtimezone.h>

using namespace Qt::StringLiterals;

namespace {

constexpr std::uint64_t kDay = 86'400; // seconds

QDate dateIn(const QString &text)
{
    return QDate::fromString(text, u"yyyy-MM-dd"_s);
}

QString checkDate(const QString &text)
{
    return dateIn(text).isValid() ? QString()
                                  : u"\"%1\" is not a date such as 2024-05-31"_s.arg(text);
}

/** As computers count: the seconds of their own local time. */
std::uint64_t beginOf(const QString &date)
{
    const QDateTime begin(dateIn(date), QTime(0, 0), QTimeZone::utc());
    return std::uint64_t(std::max<qint64>(begin.toSecsSinceEpoch(), 0));
}

} // namespace

void SavedChoice::declare(Arguments &arguments)
{
    arguments.option("--computer", "COMPUTER", m_computer,
                     "Only dives of this computer: its serial number, address or name");
    arguments.option("--since", "DATE", m_since,
                     "Only dives since this day, such as 2024-05-31, by the computer's clock",
                     checkDate);
    arguments.option("--until", "DATE", m_until, "Only dives until the end of this day", checkDate);
    m_file.declare(arguments);
}

void SavedChoice::declareWithFlag(Arguments &arguments)
{
    arguments.flag("--saved", m_saved, "Show the saved dives, without a computer");
    declare(arguments);
}

void SavedChoice::requireNone(const QString &advice) const
{
    const QString given = !m_computer.isEmpty() ? u"--computer"_s
                          : !m_since.isEmpty()  ? u"--since"_s
                          : !m_until.isEmpty()  ? u"--until"_s
                          : m_file.isGiven()    ? u"--logbook"_s
                                                : QString();
    if (!given.isEmpty())
        throw Failure{ExitCode::UsageError, u"%1 is for saved dives"_s.arg(given), advice};
}

LogbookQuery SavedChoice::query() const
{
    LogbookQuery query;
    if (m_since.isEmpty() && m_until.isEmpty())
        return query;
    query.since = beginOf(m_since.isEmpty() ? u"2000-01-01"_s : m_since);
    query.until = beginOf(m_until.isEmpty() ? u"2099-12-31"_s : m_until) + kDay - 1;
    return query;
}
