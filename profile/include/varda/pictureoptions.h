// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qsize.h>
#include <QtCore/qstring.h>

/** How a DivePicture looks. */
struct PictureOptions {
    enum class Units {
        Metric,   ///< metres and degrees Celsius
        Imperial, ///< feet and degrees Fahrenheit
    };
    enum class Theme { Light, Dark };

    /** Of a profile, in pixels: 480 x 300 to 10000 x 10000. A sheet is always A4. */
    QSize size = {960, 540};
    Units units = Units::Metric;
    Theme theme = Theme::Light;
    /** Empty: the application's font, and in an SVG the sans serif one of the program that shows it. */
    // NOLINTNEXTLINE(readability-redundant-member-init): GCC asks applications for it
    QString fontFamily = {};
};
