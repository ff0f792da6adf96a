// SPDX-License-Identifier: MIT
#include "texts_p.h"

#include <QtCore/qdatetime.h>
#include <QtCore/qmetaobject.h>
#include <QtCore/qtimezone.h>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/** Not valid unless it is a time in this century. */
QDateTime beginOf(const Dive &dive)
{
    constexpr quint64 kEarliest = 946684800; // 2000-01-01
    constexpr quint64 kLatest = 4102444800;  // 2100-01-01
    if (dive.stamp < kEarliest || dive.stamp >= kLatest)
        return {};
    return QDateTime::fromSecsSinceEpoch(qint64(dive.stamp), QTimeZone::utc());
}

} // namespace

double depthIn(PictureOptions::Units units, double metres)
{
    constexpr double kMetresAFoot = 0.3048;
    return units == PictureOptions::Units::Imperial ? metres / kMetresAFoot : metres;
}

double temperatureIn(PictureOptions::Units units, double celsius)
{
    return units == PictureOptions::Units::Imperial ? celsius * 9 / 5 + 32 : celsius;
}

QString depthUnit(PictureOptions::Units units)
{
    return units == PictureOptions::Units::Imperial ? u"ft"_s : u"m"_s;
}

QString temperatureUnit(PictureOptions::Units units)
{
    return units == PictureOptions::Units::Imperial ? u"°F"_s : u"°C"_s;
}

QString depthText(PictureOptions::Units units, double metres)
{
    return QString::number(depthIn(units, metres), 'f', 1) + u' ' + depthUnit(units);
}

QString temperatureText(PictureOptions::Units units, double lowest, double highest)
{
    const auto number = [units](double celsius) {
        return QString::number(std::lround(temperatureIn(units, celsius)));
    };
    const QString low = number(lowest);
    const QString high = number(highest);
    return (low == high ? low : low + u" to "_s + high) + u' ' + temperatureUnit(units);
}

QString durationText(double seconds)
{
    const auto whole = qint64(std::round(seconds));
    const auto twoDigits = [](qint64 number) { return u"%1"_s.arg(number, 2, 10, QChar(u'0')); };
    const QString rest = u':' + twoDigits(whole % 60);
    if (whole < 3600)
        return QString::number(whole / 60) + rest;
    return QString::number(whole / 3600) + u':' + twoDigits(whole / 60 % 60) + rest;
}

QString beginText(const Dive &dive)
{
    const QDateTime begin = beginOf(dive);
    return begin.isValid() ? begin.toString(u"yyyy-MM-dd HH:mm"_s) : u"begin unknown"_s;
}

QString nameOf(const Dive &dive, const QString &given)
{
    QString clean = shown(given);
    if (!clean.isEmpty())
        return clean;
    const QDateTime begin = beginOf(dive);
    const QString number = u"#%1"_s.arg(dive.diveNumber);
    return begin.isValid() ? number + begin.toString(u", yyyy-MM-dd"_s) : number;
}

QString modelText(const Dive &dive)
{
    const char *name = QMetaEnum::fromType<ComputerModel::ComputerModelIn>().valueToKey(dive.model);
    return name ? QString::fromLatin1(name) : u"Unknown"_s;
}

QString shown(const QString &text)
{
    constexpr qsizetype kMost = 60;
    QString result;
    for (const uint point : text.simplified().toUcs4()) {
        const QChar::Category category = QChar::category(char32_t(point));
        if (category != QChar::Other_Control && category != QChar::Other_Format
            && category != QChar::Other_Surrogate && category != QChar::Other_NotAssigned)
            result += QChar::fromUcs4(char32_t(point));
        if (result.size() >= kMost)
            return result + u'…';
    }
    return result;
}

double widthOf(const QString &text, int size)
{
    double ems = 0;
    for (const QChar each : text) {
        if (each == u' ' || each == u'.' || each == u':' || each == u'/')
            ems += 0.34;
        else
            ems += each.isUpper() ? 0.7 : 0.62;
    }
    return ems * size;
}
