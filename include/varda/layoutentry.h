// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <cstdint>

/** One entry of the list of screen layouts, as received. */
struct LayoutEntry {
    std::uint8_t first = 0;
    std::uint8_t second = 0;
    QString name;
};
