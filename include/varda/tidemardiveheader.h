// SPDX-License-Identifier: MIT
#pragma once

#include <varda/diveheaderblock.h>

/**
 * One dive of the logbook, as the computer lists it. DiveHeaderBlock says what is known about the
 * fields. Only newer Vardas send the three below; their meaning is not known.
 */
struct TidemarDiveHeader : DiveHeaderBlock {
    std::uint8_t headerByte7 = 0;
    std::uint16_t headerWord13 = 1;
    std::uint16_t headerWord14 = 900;
};
