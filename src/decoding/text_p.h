// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <algorithm>
#include <span>

/** UTF-8 text up to its first NUL, or to the end of the block that holds it. */
template <typename Byte, std::size_t N> QString textOf(std::span<const Byte, N> block)
{
    static_assert(sizeof(Byte) == 1);
    const auto end = std::find(block.begin(), block.end(), Byte(0));
    return QString::fromUtf8(reinterpret_cast<const char *>(block.data()),
                             qsizetype(end - block.begin()));
}
