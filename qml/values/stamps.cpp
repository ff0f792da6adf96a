// SPDX-License-Identifier: MIT
#include "stamps.h"

#include <QtCore/qdatetime.h>
#include <QtCore/qtimezone.h>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

QVariant Stamps::dateOf(std::uint64_t stamp)
{
    constexpr std::uint64_t kEarliest = 946684800; // 2000-01-01
    constexpr std::uint64_t kLatest = 4102444800;  // 2100-01-01
    if (stamp < kEarliest || stamp >= kLatest)
        return {};
    // A computer knows no time zone. As a local time its digits stay what they are.
    const QDateTime shown = QDateTime::fromSecsSinceEpoch(qint64(stamp), QTimeZone::utc());
    return QDateTime(shown.date(), shown.time());
}

QString Stamps::monthOf(std::uint64_t stamp)
{
    const QDateTime date = dateOf(stamp).toDateTime();
    return date.isValid() ? date.toString(u"yyyy-MM"_s) : QString();
}

qint64 Stamps::idOf(double number)
{
    constexpr double kLargest = 9007199254740991.0; // beyond it QML has no whole numbers
    return number >= 0 && number <= kLargest ? qint64(number) : 0;
}

std::optional<std::uint64_t> Stamps::in(const QVariant &time)
{
    if (time.metaType() == QMetaType::fromType<QDateTime>()) {
        const QDateTime local = time.toDateTime().toLocalTime();
        const QDateTime shown(local.date(), local.time(), QTimeZone::utc());
        return std::uint64_t(std::max<qint64>(0, shown.toSecsSinceEpoch()));
    }
    bool isNumber = false;
    const double number = time.toDouble(&isNumber);
    if (isNumber && number >= 0 && number < double(std::numeric_limits<std::int64_t>::max()))
        return std::uint64_t(number);
    return std::nullopt;
}
