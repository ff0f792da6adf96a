// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qstring.h>

#include <array>
#include <cstdint>

#include <varda/vardaexport.h>

/**
 * A computer's settings, from its configuration answer. The model and the answer's version decide
 * which fields are filled; the others keep their values.
 *
 * The meaning of fields without a comment is not known.
 */
struct VARDA_EXPORT BleComputer {
    std::array<char, 32> rawBlock{}; ///< the owner's text in UTF-8; ended by a NUL if shorter
    std::uint8_t batteryType = 0;    ///< see getBatteryStr()
    std::uint8_t setting1 = 0;
    std::uint8_t setting2 = 0;
    std::uint8_t setting3 = 0;
    std::uint8_t setting4 = 0;
    std::uint8_t setting5 = 0;
    std::uint16_t setting6 = 0;
    std::uint8_t setting7 = 0;
    std::uint8_t setting8 = 0;
    std::uint64_t value64a = 0;
    std::array<std::uint8_t, 32> flags32{};
    std::uint64_t value64b = 0;
    std::uint8_t entryCount = 0; ///< number of 11-byte entries, which are skipped; Varda only
    QByteArray entries;          ///< never filled
    std::uint64_t value64c = 0;
    std::uint8_t computerByte1 = 0;
    std::array<std::uint16_t, 4> quadWords{};
    std::uint16_t computerWord1 = 0;
    std::uint16_t computerWord2 = 0;
    std::uint16_t computerWord3 = 0;
    std::uint16_t computerWord4 = 0;
    std::uint16_t computerWord5 = 0;
    std::uint16_t computerWord6 = 0;
    std::array<std::uint16_t, 6> sixWords{};
    std::uint8_t computerByte2 = 0;
    std::uint8_t computerByte3 = 0;
    std::uint8_t computerByte4 = 0;
    std::uint64_t value64d = 0;
    std::uint64_t value64e = 0;
    std::uint8_t computerByte5 = 0;
    std::uint16_t computerWord7 = 0;

    /** "Alcaline", "NiMH" or "Lion36" for battery types 0 to 2, otherwise "Unknown". */
    [[nodiscard]] QString getBatteryStr() const;
};
