// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <array>
#include <cstdint>

#include <varda/divegas.h>
#include <varda/diveheaderblock.h>
#include <varda/diveline.h>
#include <varda/divemark.h>

/**
 * A dive in a form that does not depend on the computer it came from.
 *
 * TidemarDiveConverter fills the fields that have a comment; the others keep their defaults and
 * have no meaning yet.
 */
struct Dive : DiveHeaderBlock {
    QString numberText; ///< the dive's number in decimal
    QString ownerName;  ///< the computer's owner
    QString text;
    QString serialNumber;    ///< of the computer
    QString firmwareVersion; ///< of the computer
    std::int32_t kind = 4;   ///< always 4
    QList<DiveLine> lines;   ///< the profile, one line for each sample
    QList<DiveLine> lines2;
    QList<DiveLine> lines3;
    QList<DiveLine> lines4;
    QList<DiveGas> gases;                   ///< the gas slots in use, in order
    std::array<std::uint8_t, 8> tagBytes{}; ///< value32d as bytes 0 to 3, on a Tidemar 5 to 7
    std::uint16_t value16 = 0;
    std::uint64_t value64 = 0;
    std::uint32_t value32 = 0;
    std::int32_t index = -1;
    QList<DiveMark> marks;
    bool flag = false;
    QList<DiveMark> marks2;
    std::uint8_t modeByte = 0xFF; ///< TidemarDiveHeader::headerByte7
    std::uint16_t count = 1;
};
