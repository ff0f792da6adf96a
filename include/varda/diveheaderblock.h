// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <array>
#include <cstdint>

#include <varda/computermodel.h>

/**
 * What a dive header and a generic dive have in common: all that a computer reports about a dive.
 *
 * The comment of a field gives its meaning and unit, as far as they are known. A field without a
 * comment holds the number that the computer sent; its name gives the size or the place, and its
 * meaning is not known. Fields marked "never sent", and fields that a model's layout does not have,
 * keep their defaults.
 */
struct DiveHeaderBlock {
    std::uint16_t diveNumber = 0; ///< the number in the computer's logbook
    ComputerModel::ComputerModelIn model = ComputerModel::Unknown; ///< of the computer
    /** The beginning, as far as is known: seconds since 1970-01-01 on the computer's own clock. */
    std::uint64_t stamp = 0;
    std::int64_t stamp2 = 0;
    double tenths1 = 0;              ///< sent in tenths
    double tenths2 = 0;              ///< sent in tenths
    std::uint8_t sampleInterval = 5; ///< seconds between two samples
    std::uint32_t value32a = 0;
    /** 0: an open-circuit dive; otherwise closed circuit. A 3 from a Tidemar or VSKM becomes 5. */
    std::uint8_t kindByte = 0;
    std::uint8_t tidemarBit = 1; ///< 0 or 1; Tidemar only
    std::uint16_t headerWord1 = 0;
    bool below1020 = false; ///< whether the number sent here, which is not kept, was below 1020
    std::uint8_t headerByte1 = 80;
    std::uint8_t headerByte2 = 80;
    std::uint16_t headerWord2 = 0;
    std::uint16_t headerWord3 = 0;
    std::uint16_t headerWord4 = 0;
    std::uint32_t value32b = 0;
    double count1 = 0; ///< a whole number
    double count2 = 0; ///< a whole number
    std::uint32_t value32c = 0;
    std::array<std::uint16_t, 16> tissueN2{};     ///< nitrogen load of each tissue; unit unknown
    std::array<std::uint16_t, 16> tissueHe{};     ///< helium load of each tissue; unit unknown
    std::uint16_t gasSlotMask = 0;                ///< bit i: gas slot i is in use
    std::uint8_t headerByte3 = 0;                 ///< never sent
    std::array<std::uint8_t, 12> gasO2{};         ///< oxygen in whole percent, by gas slot
    std::array<std::uint8_t, 12> gasHe{};         ///< helium in whole percent, by gas slot
    std::array<std::uint8_t, 48> reservedBlock{}; ///< never sent
    std::uint8_t headerByte4 = 0;                 ///< never sent
    std::uint8_t headerByte5 = 0;
    std::uint8_t headerByte6 = 0; ///< never sent
    std::uint16_t headerWord5 = 0;
    std::uint16_t headerWord6 = 0;
    std::uint16_t headerWord7 = 0;
    std::uint32_t value32d = 0;
    std::uint16_t headerWord8 = 0;  ///< Varda only
    double signed1 = 0;             ///< -128 to 127
    double signed2 = 0;             ///< -128 to 127
    std::uint16_t headerWord9 = 0;  ///< never sent
    std::uint16_t headerWord10 = 0; ///< never sent
    std::uint16_t headerWord11 = 0;
    std::uint16_t headerWord12 = 0;
    std::uint32_t value32e = 0;
    std::uint32_t value32f = 0;
    QString text1; ///< never sent
    QString text2; ///< never sent
    QString text3; ///< never sent
    QString text4; ///< never sent
};
