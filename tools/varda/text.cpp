// SPDX-License-Identifier: MIT
#include "text.h"

#include <QtCore/qdatetime.h>
#include <QtCore/qstringview.h>
#include <QtCore/qtimezone.h>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr char32_t kZeroWidthNonJoiner = 0x200C;
constexpr char32_t kZeroWidthJoiner = 0x200D;

/** Control characters, those that turn the direction of writing, and other invisible ones. */
bool isHarmful(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    case QChar::Other_Format:
        // Whole scripts, and pictures of people, are written with these two.
        return character != kZeroWidthNonJoiner && character != kZeroWidthJoiner;
    default:
        return false;
    }
}

/** @p replace gives the text that stands for a harmful character. */
template <typename Replace> QString replaced(const QString &text, Replace replace)
{
    QString result;
    result.reserve(text.size());
    for (const char32_t character : text.toUcs4()) {
        if (isHarmful(character))
            result += replace(character);
        else
            result += QChar::fromUcs4(character);
    }
    return result;
}

QString escaped(char32_t character)
{
    QString result;
    const auto units = QChar::fromUcs4(character);
    for (const QChar unit : QStringView(units))
        result += u"\\u%1"_s.arg(int(unit.unicode()), 4, 16, QChar(u'0'));
    return result;
}

} // namespace

QString safeText(const QString &text)
{
    return replaced(text, [](char32_t) { return QString(QChar(QChar::ReplacementCharacter)); });
}

QString safeJson(const QString &json)
{
    // Outside its strings a document has no control character but the line feed.
    return replaced(json, [](char32_t c) { return c == U'\n' ? u"\n"_s : escaped(c); });
}

QString safeFileName(const QString &text)
{
    // 255 bytes is as long as a name may be; a character takes up to four.
    constexpr qsizetype kLongest = 50;
    QString result;
    for (const char32_t character : text.toUcs4().mid(0, kLongest)) {
        const bool fits = QChar::isLetterOrNumber(character) || QChar::isMark(character)
                          || character == U' ' || character == U'-';
        if (fits)
            result += QChar::fromUcs4(character);
        else
            result += u'_';
    }
    return result;
}

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

QString clockText(std::int64_t seconds)
{
    // Far more than any clock shows, and little enough for the calendar.
    constexpr std::int64_t kLatest = 253402300799; // end of the year 9999
    if (seconds < 0 || seconds > kLatest)
        return QString::number(seconds);
    return QDateTime::fromSecsSinceEpoch(seconds, QTimeZone::utc())
        .toString(u"yyyy-MM-dd HH:mm:ss"_s);
}

QString gasName(int oxygen, int helium)
{
    if (helium > 0)
        return u"%1/%2"_s.arg(oxygen).arg(helium);
    if (oxygen == 21)
        return u"Air"_s;
    return oxygen == 100 ? u"Oxygen"_s : u"EAN%1"_s.arg(oxygen);
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

void Table::add(const QString &label, const QString &value)
{
    m_lines.append({label, value.isEmpty() ? u"-"_s : value});
}

QString Table::text(int indent) const
{
    qsizetype width = 0;
    for (const auto &[label, value] : m_lines)
        width = std::max(width, label.size());
    QString result;
    for (const auto &[label, value] : m_lines)
        result += QString(indent, u' ') + label.leftJustified(width + 2) + value + u'\n';
    return result;
}

QString Columns::text() const
{
    QList<qsizetype> widths;
    for (qsizetype i = 0; i < m_columns.size(); ++i) {
        qsizetype width = m_columns[i].title.size();
        for (const QStringList &row : m_rows)
            width = std::max(width, row[i].size());
        widths.append(width);
    }
    const auto line = [&](const auto &cellAt) {
        QString text;
        for (qsizetype i = 0; i < m_columns.size(); ++i) {
            const QString cell = cellAt(i);
            const bool right = m_columns[i].side == Side::Right;
            if (i > 0)
                text += u"  "_s;
            text += right ? cell.rightJustified(widths[i]) : cell.leftJustified(widths[i]);
        }
        while (text.endsWith(u' '))
            text.chop(1);
        return text + u'\n';
    };
    QString text = line([this](qsizetype i) { return m_columns[i].title; });
    for (const QStringList &row : m_rows)
        text += line([&row](qsizetype i) { return row[i]; });
    return text;
}
