// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qsize.h>
#include <QtCore/qstring.h>
#include <QtCore/qstringlist.h>
#include <QtGui/qcolor.h>

/** How a DivePicture looks. */
struct PictureOptions {
    enum class Units {
        Metric,   ///< metres and degrees Celsius
        Imperial, ///< feet and degrees Fahrenheit
    };
    enum class Theme { Light, Dark };

    /**
     * Of a profile, in pixels: 480 x 300 to 10000 x 10000, without a header from 120 x 80. Of a
     * thumbnail: from 16 x 8. A sheet is always A4.
     */
    QSize size = {960, 540};
    Units units = Units::Metric;
    Theme theme = Theme::Light;
    /** Empty: the application's font, and in an SVG the sans serif one of the program that shows it. */
    // NOLINTNEXTLINE(readability-redundant-member-init): GCC asks applications for it
    QString fontFamily = {};
    /** Behind the picture. Not valid: the colour of the theme; transparent: nothing. */
    // NOLINTNEXTLINE(readability-redundant-member-init): the same
    QColor background = {};
    /** Whether the dive's number, its begin and its figures stand above a profile. */
    bool header = true;
    /** The first second that a profile shows. */
    double from = 0;
    /** The last one, at least ten seconds later; 0 for the end of the dive. */
    double to = 0;
    /** Of the dives of a comparison, in their order. Without one: "#3, 2024-03-02". */
    // NOLINTNEXTLINE(readability-redundant-member-init): the same
    QStringList names = {};
    /** What stands in a profile without samples. */
    QString nothing = QStringLiteral("no samples");
};
