// SPDX-License-Identifier: MIT
#pragma once

#include "output/json.h"

#include <varda/tidemardiveheader.h>

#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <cstdint>

/** Numbers that are not there, from the first to the last. */
struct NumberGap {
    std::uint16_t first;
    std::uint16_t last;
};

/**
 * The numbers that are missing before and behind @p listed dives, as far as the next one that is
 * listed or @p known. What is missing among known ones is known as well.
 */
[[nodiscard]] QList<NumberGap> numberGaps(const QList<std::uint16_t> &listed,
                                          const QList<std::uint16_t> &known);
/** "10-11, 14", as people write them; of very many only the first. */
[[nodiscard]] QString gapsText(const QList<NumberGap> &gaps);

/** The numbers that are missing in a logbook, which may have known dives too. */
[[nodiscard]] QList<NumberGap> gapsIn(const QList<TidemarDiveHeader> &headers,
                                      const QList<std::uint16_t> &known);
[[nodiscard]] Json jsonOf(const QList<NumberGap> &gaps);
/** The computer does not say how many dives there are; a gap is all that one can see. */
void warnAbout(const QList<NumberGap> &gaps);
