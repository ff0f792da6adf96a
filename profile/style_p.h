// SPDX-License-Identifier: MIT
#pragma once

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

    [[nodiscard]] static Style of(PictureOptions::Theme theme);
    /** They repeat after six. */
    [[nodiscard]] QColor gas(int index) const;
};
