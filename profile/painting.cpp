// SPDX-License-Identifier: MIT
#include "painting_p.h"

#include <QtGui/qfont.h>
#include <QtGui/qfontmetrics.h>

#include <algorithm>

namespace {

class Brush
{
public:
    Brush(QPainter &painter, const QString &family) : m_painter(painter)
    {
        if (!family.isEmpty())
            m_font.setFamily(family);
    }

    void operator()(const Path &path) const
    {
        QPen pen(Qt::NoPen);
        if (path.line.isValid()) {
            pen = QPen(path.line, path.width, Qt::SolidLine,
                       path.dashes.isEmpty() ? Qt::RoundCap : Qt::FlatCap, Qt::RoundJoin);
            // Qt counts in widths of the line.
            QList<double> widths = path.dashes;
            for (double &each : widths)
                each /= path.width;
            if (!widths.isEmpty())
                pen.setDashPattern(widths);
        }
        m_painter.setPen(pen);
        m_painter.setBrush(path.fill.isValid() ? QBrush(path.fill) : QBrush(Qt::NoBrush));
        if (path.fill.isValid())
            m_painter.drawPolygon(path.points.constData(), int(path.points.size()));
        else
            drawLine(path.points, pen);
    }

    void operator()(const Box &box) const
    {
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(box.fill);
        m_painter.drawRoundedRect(box.place, box.radius, box.radius);
    }

    void operator()(const Dot &dot) const
    {
        m_painter.setPen(QPen(dot.line, 1.5));
        m_painter.setBrush(dot.fill);
        m_painter.drawEllipse(dot.centre, dot.radius, dot.radius);
    }

    void operator()(const Text &text) const
    {
        QFont font(m_font);
        font.setPixelSize(text.size);
        font.setBold(text.bold);
        const double width = QFontMetricsF(font, m_painter.device()).horizontalAdvance(text.text);
        QPointF at = text.at;
        if (text.anchor == Text::Anchor::Middle)
            at.rx() -= width / 2;
        else if (text.anchor == Text::Anchor::End)
            at.rx() -= width;
        m_painter.setFont(font);
        m_painter.setPen(text.colour);
        m_painter.drawText(at, text.text);
    }

private:
    /** In pieces: the time that Qt needs for one line grows with the square of its points. */
    void drawLine(const QList<QPointF> &points, QPen pen) const
    {
        constexpr qsizetype kPiece = 16;
        double length = 0;
        for (qsizetype at = 0; at == 0 || at + 1 < points.size(); at += kPiece) {
            const qsizetype count = std::min(points.size() - at, kPiece + 1);
            if (pen.style() == Qt::CustomDashLine) {
                pen.setDashOffset(length / pen.widthF());
                m_painter.setPen(pen);
            }
            m_painter.drawPolyline(points.constData() + at, int(count));
            for (qsizetype i = at + 1; i < at + count; ++i)
                length += QLineF(points[i - 1], points[i]).length();
        }
    }

    QPainter &m_painter;
    QFont m_font;
};

} // namespace

void paintDrawing(QPainter &painter, const Drawing &drawing)
{
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    const Brush brush(painter, drawing.fontFamily);
    for (const auto &item : drawing.items)
        std::visit(brush, item);
}
