// SPDX-License-Identifier: MIT
#include "begin_p.h"

#include <QtCore/qdatetime.h>
#include <QtCore/qtimezone.h>

namespace {

constexpr quint64 kEarliest = 946684800; // 2000-01-01
constexpr quint64 kLatest = 4102444800;  // 2100-01-01

} // namespace

QString beginText(quint64 stamp)
{
    if (stamp < kEarliest || stamp >= kLatest)
        return {};
    return QDateTime::fromSecsSinceEpoch(qint64(stamp), QTimeZone::utc())
        .toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
}

std::optional<quint64> stampOf(const QString &text)
{
    // Apart, since the local time of this machine may have left out an hour that day.
    const QDate date = QDate::fromString(text.left(10), QStringLiteral("yyyy-MM-dd"));
    const QTime time = QTime::fromString(text.mid(10, 9), QStringLiteral("'T'HH:mm:ss"));
    const QDateTime begin(date, time, QTimeZone::utc());
    if (!date.isValid() || !time.isValid() || begin.toSecsSinceEpoch() < 0)
        return std::nullopt;
    return quint64(begin.toSecsSinceEpoch());
}
