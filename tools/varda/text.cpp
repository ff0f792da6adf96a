// SPDX-License-Identifier: MIT
#include "text.h"

#include "displaywidth.h"

#include <QtCore/qdatetime.h>
#include <QtCore/qstringview.h>
#include <QtCore/qtimezone.h>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr char32_t kZeroWidthNonJoiner = 0x200C;
constexpr char32_t kZeroWidthJoiner = 0x200D;

constexpr int kGap = 2; // between columns

// As Unicode's advice on spoofed texts has it (UTS 39); no language needs more.
constexpr int kMostMarks = 4;

/** Letters and symbols that nobody sees. */
bool isBlank(char32_t character)
{
    switch (character) {
    case 0x115F: // the fillers of Hangul
    case 0x1160:
    case 0x3164:
    case 0xFFA0:
    case 0x2800: // Braille without a dot
        return true;
    default:
        return false;
    }
}

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
        return isBlank(character);
    }
}

/** What stands above, below or within the character before it, or shows nothing at all. */
bool addsToTheLast(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
        return true;
    default:
        return false;
    }
}

/** @p replace gives the text that stands for a harmful character, or for a mark too many. */
template <typename Replace> QString replaced(const QString &text, Replace replace)
{
    QString result;
    result.reserve(text.size());
    int marks = 0;
    for (const char32_t character : text.toUcs4()) {
        marks = addsToTheLast(character) ? marks + 1 : 0;
        if (isHarmful(character) || marks > kMostMarks)
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
    for (const char32_t character : safeText(text).toUcs4().mid(0, kLongest)) {
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

QString heading(const QString &text, const TextStyle &style)
{
    return style.bold ? u"\x1b[1m"_s + text + u"\x1b[m"_s : text;
}

QString folded(const QStringList &parts, const QString &gap, int indent, int width)
{
    QString result;
    int used = 0;
    for (const QString &part : parts) {
        const int more = displayWidth(part);
        if (!result.isEmpty() && indent + used + gap.size() + more > width) {
            result += u'\n' + QString(indent, u' ');
            used = 0;
        } else if (!result.isEmpty()) {
            result += gap;
            used += int(gap.size());
        }
        result += part;
        used += more;
    }
    return result;
}

void Table::add(const QString &label, const QString &value)
{
    m_lines.append({label, value.isEmpty() ? u"-"_s : value});
}

QString Table::text(const TextStyle &style, int indent) const
{
    qsizetype width = 0;
    for (const auto &[label, value] : m_lines)
        width = std::max(width, label.size());
    QString result;
    for (const auto &[label, value] : m_lines) {
        const QString begin = QString(indent, u' ') + label.leftJustified(width + 2);
        result += begin + folded(value.split(u' '), u" "_s, int(begin.size()), style.width) + u'\n';
    }
    return result;
}

QList<int> Columns::fullWidths() const
{
    QList<int> widths;
    for (qsizetype i = 0; i < m_columns.size(); ++i) {
        int width = std::max(displayWidth(m_columns[i].title), m_columns[i].width);
        for (const QStringList &row : m_rows)
            width = std::max(width, displayWidth(row[i]));
        widths.append(width);
    }
    return widths;
}

/** Of a column that is left out it is 0. */
QList<int> Columns::widths(int limit) const
{
    const QList<int> full = fullWidths();
    QList<int> widths = full;
    int total = -kGap;
    for (qsizetype i = 0; i < full.size(); ++i) {
        if (m_columns[i].enough > 0)
            widths[i] = std::min(full[i], m_columns[i].enough);
        total += widths[i] + kGap;
    }
    QList<qsizetype> order; // the first to be left out is the last
    for (qsizetype i = 0; i < full.size(); ++i)
        order.append(i);
    std::ranges::sort(order, {}, [this](qsizetype i) { return std::pair(m_columns[i].rank, i); });
    for (; total > limit && order.size() > 1; order.removeLast())
        total -= std::exchange(widths[order.back()], 0) + kGap;
    for (const qsizetype i : order) {
        const int more = std::clamp(limit - total, 0, full[i] - widths[i]);
        widths[i] += more;
        total += more;
    }
    return widths;
}

QString Columns::line(const QStringList &cells, const QList<int> &widths,
                      const TextStyle &style) const
{
    QString text;
    QString gap;
    for (qsizetype i = 0; i < cells.size(); ++i) {
        if (widths[i] == 0)
            continue;
        const QString cell = clipped(cells[i], widths[i], style.utf8 ? u"…" : u"...");
        const QString space(widths[i] - displayWidth(cell), u' ');
        text += gap + (m_columns[i].side == Side::Right ? space + cell : cell + space);
        gap = QString(kGap, u' ');
    }
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

QString Columns::text(const TextStyle &style) const
{
    QStringList titles;
    for (const Column &column : m_columns)
        titles.append(column.title);
    return heading(line(titles, widths(style.width), style), style) + u'\n' + rows(style);
}

QString Columns::rows(const TextStyle &style) const
{
    const QList<int> fitting = widths(style.width);
    QString text;
    for (const QStringList &row : m_rows)
        text += line(row, fitting, style) + u'\n';
    return text;
}
