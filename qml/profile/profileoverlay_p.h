// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qpoint.h>
#include <QtCore/qrect.h>
#include <QtGui/qcolor.h>
#include <QtGui/qfont.h>
#include <QtQuick/qquickpainteditem.h>

// What stands above a profile is drawn by children of it: if the cursor moves, the profile is not
// drawn again.

/** The line of the cursor, with a dot where it meets a profile. */
class ProfileCursor : public QQuickPaintedItem
{
    Q_OBJECT

public:
    struct Dot {
        double y = 0;
        QColor colour;
    };

    explicit ProfileCursor(QQuickItem *profile);

    /** @param plot  in the profile */
    void show(double x, const QRectF &plot, const QList<Dot> &dots, const QColor &line,
              const QColor &rim, double scale);

    void paint(QPainter *painter) override;

private:
    QList<Dot> m_dots;
    QColor m_line;
    QColor m_rim;
    double m_scale = 1;
};

/** The values at the cursor. */
class ProfileFlag : public QQuickPaintedItem
{
    Q_OBJECT

public:
    struct Row {
        QString text;
        QColor mark; ///< of one dive among others

        bool operator==(const Row &other) const { return text == other.text && mark == other.mark; }
    };

    explicit ProfileFlag(QQuickItem *profile);

    /**
     * @param at  the point that must not be covered
     * @param plot  in the profile
     */
    void show(QPointF at, const QRectF &plot, const QList<Row> &rows, const QFont &font);
    void setColours(const QColor &background, const QColor &text, const QColor &rim);

    void paint(QPainter *painter) override;

private:
    [[nodiscard]] QFont bold() const; ///< of the first row
    [[nodiscard]] QSizeF sizeOf(const QList<Row> &rows) const;

    QList<Row> m_rows;
    QFont m_font;
    QColor m_background;
    QColor m_text;
    QColor m_rim;
};

/** A frame around a profile that the keys go to. */
class ProfileFocus : public QQuickPaintedItem
{
    Q_OBJECT

public:
    explicit ProfileFocus(QQuickItem *profile);

    void show(const QColor &colour);

    void paint(QPainter *painter) override;

private:
    QColor m_colour;
};
