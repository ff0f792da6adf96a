// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <cstdint>

/** One entry of the list of screen layouts. The meaning of the two numbers is not known. */
struct LayoutEntry {
    std::uint8_t first = 0;
    std::uint8_t second = 0;
    QString name; ///< for the user
};
