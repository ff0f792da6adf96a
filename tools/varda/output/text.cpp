// SPDX-License-Identifier: MIT
#include "output/text.h"

#include <QtCore/qdatetime.h>
#include <QtCore/qtimezone.h>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

QString versionText(const QString &version)
{
    QString text = version;
    while (text.endsWith(QChar::Null))
        text.chop(1);
    // "1.4.2." would look cut off.
    if (text.size() < version.size() && text.endsWith(u'.'))
        text.chop(1);
    return text;
}

QString bootloaderText(const VardaIdentity &identity)
{
    return identity.bootloaderVersion == 0 ? u"Unknown"_s
                                           : versionText(identity.bootloaderVersionStr);
}

QString clockText(std::int64_t seconds)
{
    // Far more than any clock shows, and little enough for the calendar.
    constexpr std::int64_t kLatest = 253402300799; // end of the year 9999
    if (seconds < 0 || seconds > kLatest)
        return QString::number(seconds);
    return QDateTime::fromSecsSinceEpoch(seconds, QTimeZone::utc())
        .toString(u"yyyy-MM-dd HH:mm:ss"_s);
}

QString durationText(double seconds)
{
    constexpr double kLongest = 1e9;
    const auto whole = qint64(std::clamp(std::round(seconds), 0.0, kLongest));
    const auto twoDigits = [](qint64 number) { return u"%1"_s.arg(number, 2, 10, QChar(u'0')); };
    const QString rest = u':' + twoDigits(whole % 60);
    if (whole < 3600)
        return QString::number(whole / 60) + rest;
    return QString::number(whole / 3600) + u':' + twoDigits(whole / 60 % 60) + rest;
}

double secondsLeft(double spent, qsizetype done, qsizetype remaining, double underWay)
{
    const double each = spent / double(done);
    return each * double(remaining) - std::min(underWay, each);
}

QString bytesText(double bytes)
{
    if (bytes < 1e3)
        return u"%1 B"_s.arg(bytes, 0, 'f', 0);
    if (bytes < 1e6)
        return u"%1 kB"_s.arg(bytes / 1e3, 0, 'f', bytes < 1e4 ? 1 : 0);
    return u"%1 MB"_s.arg(bytes / 1e6, 0, 'f', 1);
}

QString tenthsText(double value)
{
    return QString::number(value, 'f', 1);
}
