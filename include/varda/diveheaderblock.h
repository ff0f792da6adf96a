// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <array>
#include <cstdint>

#include <varda/computermodel.h>

/** What a dive header and a generic dive have in common: all that the computer tells of a dive. */
struct DiveHeaderBlock {
    std::uint16_t diveNumber = 0;
    ComputerModel::ComputerModelIn model = ComputerModel::Unknown;
    std::uint64_t stamp = 0; ///< as sent
    std::int64_t stamp2 = 0; ///< as sent
    double tenths1 = 0;
    double tenths2 = 0;
    std::uint8_t sampleInterval = 5; ///< seconds between two samples
    std::uint32_t value32a = 0;
    std::uint8_t kindByte = 0;   ///< not 0: a closed-circuit dive
    std::uint8_t tidemarBit = 1; ///< 0 or 1
    std::uint16_t headerWord1 = 0;
    bool below1020 = false;
    std::uint8_t headerByte1 = 80;
    std::uint8_t headerByte2 = 80;
    std::uint16_t headerWord2 = 0;
    std::uint16_t headerWord3 = 0;
    std::uint16_t headerWord4 = 0;
    std::uint32_t value32b = 0;
    double count1 = 0;
    double count2 = 0;
    std::uint32_t value32c = 0;
    std::array<std::uint16_t, 16> tissueN2{};
    std::array<std::uint16_t, 16> tissueHe{};
    std::uint16_t gasSlotMask = 0; ///< bit i: gas slot i is in use
    std::uint8_t headerByte3 = 0;
    std::array<std::uint8_t, 12> gasO2{}; ///< percent, by slot
    std::array<std::uint8_t, 12> gasHe{}; ///< percent, by slot
    std::array<std::uint8_t, 48> reservedBlock{};
    std::uint8_t headerByte4 = 0;
    std::uint8_t headerByte5 = 0;
    std::uint8_t headerByte6 = 0;
    std::uint16_t headerWord5 = 0;
    std::uint16_t headerWord6 = 0;
    std::uint16_t headerWord7 = 0;
    std::uint32_t value32d = 0;
    std::uint16_t headerWord8 = 0;
    double signed1 = 0;
    double signed2 = 0;
    std::uint16_t headerWord9 = 0;
    std::uint16_t headerWord10 = 0;
    std::uint16_t headerWord11 = 0;
    std::uint16_t headerWord12 = 0;
    std::uint32_t value32e = 0;
    std::uint32_t value32f = 0;
    QString text1;
    QString text2;
    QString text3;
    QString text4;
};
