// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtGui/qcolor.h>

#include <varda/pictureoptions.h>

/** The colours of a theme. */
struct Style {
    QColor background;
    QColor text;
    QColor muted;
    QColor grid;
    QColor axis;
    QColor depth;
    QColor water;
    QColor temperature;
    bool dark = false;

    [[nodiscard]] static Style of(const PictureOptions &options);
    /** They repeat after six. */
    [[nodiscard]] QColor gas(int index) const;
    /** Of the line of a dive among others; the same. They can be told apart without seeing red or green. */
    [[nodiscard]] QColor dive(qsizetype index) const;
    /** The dashes of such a line; the same. */
    [[nodiscard]] static QList<double> dashes(qsizetype index);
};
