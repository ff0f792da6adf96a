// SPDX-License-Identifier: MIT
#include "output/tables.h"

#include "output/displaywidth.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kGap = 2; // between columns

} // namespace

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
