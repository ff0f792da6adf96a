// SPDX-License-Identifier: MIT
#include "profileoverlay_p.h"

#include <QtGui/qfontmetrics.h>
#include <QtGui/qpainter.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kDot = 4;     // its radius
constexpr double kAround = 6;  // the line, for its dots
constexpr double kMargin = 7;  // in the flag
constexpr double kBeside = 10; // the line and its flag

} // namespace

ProfileCursor::ProfileCursor(QQuickItem *profile) : QQuickPaintedItem(profile) { }

void ProfileCursor::show(double x, const QRectF &plot, const QList<Dot> &dots, const QColor &line,
                         const QColor &rim, double scale)
{
    // The first dive above the others.
    m_dots = {dots.rbegin(), dots.rend()};
    m_line = line;
    m_rim = rim;
    m_scale = scale;
    const double around = kAround * scale;
    // On whole pixels the line is sharp.
    setPosition({std::round(x) - around, plot.top() - around});
    setSize({2 * around, plot.height() + 2 * around});
    for (Dot &dot : m_dots)
        dot.y -= this->y();
    update();
}

void ProfileCursor::paint(QPainter *painter)
{
    const double middle = width() / 2;
    const double around = kAround * m_scale;
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillRect(QRectF(middle - 0.5 * m_scale, around, m_scale, height() - 2 * around),
                      m_line);
    for (const Dot &dot : m_dots) {
        painter->setPen(QPen(m_rim, 1.5 * m_scale));
        painter->setBrush(dot.colour);
        painter->drawEllipse(QPointF(middle, dot.y), kDot * m_scale, kDot * m_scale);
    }
}

ProfileFlag::ProfileFlag(QQuickItem *profile) : QQuickPaintedItem(profile) { }

QFont ProfileFlag::bold() const
{
    QFont font(m_font);
    font.setBold(true);
    return font;
}

QSizeF ProfileFlag::sizeOf(const QList<Row> &rows) const
{
    const QFontMetricsF metrics(bold());
    double width = 0;
    for (const Row &row : rows)
        width = std::max(width, metrics.horizontalAdvance(row.text)
                                    + (row.mark.isValid() ? metrics.height() : 0));
    return {std::ceil(width + 2 * kMargin),
            std::ceil(metrics.height() * double(rows.size()) + 2 * kMargin - 2)};
}

void ProfileFlag::show(QPointF at, const QRectF &plot, const QList<Row> &rows, const QFont &font)
{
    if (m_rows != rows || m_font != font) {
        m_rows = rows;
        m_font = font;
        setSize(sizeOf(rows));
        update();
    }
    const bool isRight = at.x() + kBeside + width() <= plot.right();
    const double x = isRight ? at.x() + kBeside : at.x() - kBeside - width();
    const bool isAbove = at.y() > plot.center().y();
    const double y = isAbove ? plot.top() + 4 : plot.bottom() - height() - 4;
    const double most = std::max(parentItem()->width() - width(), 0.0);
    setPosition({std::round(std::clamp(x, 0.0, most)), std::round(std::max(y, 0.0))});
}

void ProfileFlag::setColours(const QColor &background, const QColor &text, const QColor &rim)
{
    m_background = background;
    m_text = text;
    m_rim = rim;
    update();
}

void ProfileFlag::paint(QPainter *painter)
{
    painter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter->setPen(QPen(m_rim, 1));
    painter->setBrush(m_background);
    painter->drawRoundedRect(boundingRect().adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    painter->setFont(bold());
    const QFontMetricsF metrics(m_font);
    double base = kMargin - 1 + metrics.ascent();
    for (const Row &row : m_rows) {
        double x = kMargin;
        if (row.mark.isValid()) {
            const double side = metrics.height() * 0.55;
            painter->setPen(Qt::NoPen);
            painter->setBrush(row.mark);
            painter->drawEllipse(QRectF(x, base - side, side, side));
            x += metrics.height();
        }
        painter->setPen(m_text);
        painter->drawText(QPointF(x, base), row.text);
        painter->setFont(m_font);
        base += metrics.height();
    }
}

ProfileFocus::ProfileFocus(QQuickItem *profile) : QQuickPaintedItem(profile) { }

void ProfileFocus::show(const QColor &colour)
{
    m_colour = colour;
    setVisible(true);
    update();
}

void ProfileFocus::paint(QPainter *painter)
{
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(m_colour, 2));
    painter->drawRoundedRect(boundingRect().adjusted(1, 1, -1, -1), 4, 4);
}
