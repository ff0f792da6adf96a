// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qpoint.h>
#include <QtCore/qrect.h>
#include <QtCore/qstring.h>
#include <QtGui/qcolor.h>

#include <variant>
#include <vector>

/** A line through points; filled, if it has a colour for that. */
struct Path {
    QList<QPointF> points;
    QColor line;
    double width = 0;
    QColor fill;
    // NOLINTNEXTLINE(readability-redundant-member-init): GCC asks for it in a line without dashes
    QList<double> dashes = {}; ///< lengths of dashes and gaps in turn; solid without
};

struct Box {
    QRectF place;
    QColor fill;
    double radius = 0;
};

struct Dot {
    QPointF centre;
    double radius = 0;
    QColor fill;
    QColor line;
};

struct Text {
    enum class Anchor { Start, Middle, End };

    QPointF at; ///< on the base line
    QString text;
    int size = 12;
    QColor colour;
    Anchor anchor = Anchor::Start;
    bool bold = false;
};

/** What there is to draw, in order; nothing in it depends on a font's measures. */
struct Drawing {
    QSizeF size;
    QString title;
    QString description;
    QString fontFamily;
    QColor background;
    std::vector<std::variant<Path, Box, Dot, Text>> items;
};
