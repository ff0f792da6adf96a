// SPDX-License-Identifier: MIT
#include "style_p.h"

#include <array>

namespace {

Style themed(PictureOptions::Theme theme)
{
    if (theme == PictureOptions::Theme::Dark) {
        return {.background = QColor(0x10, 0x18, 0x20),
                .text = QColor(0xE8, 0xEE, 0xF4),
                .muted = QColor(0x93, 0xA3, 0xB3),
                .grid = QColor(0x26, 0x33, 0x40),
                .axis = QColor(0x5A, 0x6B, 0x7B),
                .depth = QColor(0x5C, 0xB3, 0xF5),
                .water = QColor(0x5C, 0xB3, 0xF5, 0x2B),
                .temperature = QColor(0xFB, 0x9A, 0x4B),
                .dark = true};
    }
    return {.background = QColor(0xFF, 0xFF, 0xFF),
            .text = QColor(0x1B, 0x26, 0x31),
            .muted = QColor(0x5F, 0x6D, 0x7B),
            .grid = QColor(0xE2, 0xE8, 0xEE),
            .axis = QColor(0x9A, 0xA8, 0xB5),
            .depth = QColor(0x15, 0x65, 0xA8),
            .water = QColor(0x15, 0x65, 0xA8, 0x24),
            .temperature = QColor(0xC2, 0x4E, 0x0C),
            .dark = false};
}

} // namespace

Style Style::of(const PictureOptions &options)
{
    Style style = themed(options.theme);
    // Dots have a rim of the background, even if that is somebody else's.
    if (options.background.isValid() && options.background.alpha() > 0)
        style.background = options.background;
    return style;
}

QColor Style::gas(int index) const
{
    static constexpr std::array<QRgb, 6> kOnLight{0xFF2B8A3E, 0xFF7048C8, 0xFFD08700,
                                                  0xFF0B7A8C, 0xFFC2255C, 0xFF5C6B1A};
    static constexpr std::array<QRgb, 6> kOnDark{0xFF69DB7C, 0xFFB197FC, 0xFFFFC94D,
                                                 0xFF4DD4E6, 0xFFFF8FB3, 0xFFC0D860};
    const std::size_t place = std::size_t(qMax(index, 0)) % kOnLight.size();
    return QColor(dark ? kOnDark.at(place) : kOnLight.at(place));
}

QColor Style::dive(qsizetype index) const
{
    static constexpr std::array<QRgb, 6> kOnLight{0xFF1565A8, 0xFFDE6A08, 0xFF0A3D1E,
                                                  0xFFC4668F, 0xFF2B0A38, 0xFF7A6E3C};
    static constexpr std::array<QRgb, 6> kOnDark{0xFF5CB3F5, 0xFFF07F2E, 0xFF2FA37C,
                                                 0xFFF5A9DC, 0xFFFFFFFF, 0xFFF2E24E};
    const std::size_t place = std::size_t(index) % kOnLight.size();
    return QColor(dark ? kOnDark.at(place) : kOnLight.at(place));
}

QList<double> Style::dashes(qsizetype index)
{
    static const std::array<QList<double>, 6> kDashes{{
        {},
        {9, 4},
        {3, 3},
        {9, 3, 2, 3},
        {6, 3},
        {9, 3, 2, 3, 2, 3},
    }};
    return kDashes.at(std::size_t(index) % kDashes.size());
}
