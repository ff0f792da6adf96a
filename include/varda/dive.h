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

/** A dive in the form that does not depend on the computer it came from. */
struct Dive : DiveHeaderBlock {
    QString numberText; ///< the dive's number in decimal
    QString ownerName;
    QString text;
    QString serialNumber;    ///< of the computer
    QString firmwareVersion; ///< of the computer
    std::int32_t kind = 4;
    QList<DiveLine> lines; ///< the profile, one line a sample
    QList<DiveLine> lines2;
    QList<DiveLine> lines3;
    QList<DiveLine> lines4;
    QList<DiveGas> gases;
    std::array<std::uint8_t, 8> tagBytes{};
    std::uint16_t value16 = 0;
    std::uint64_t value64 = 0;
    std::uint32_t value32 = 0;
    std::int32_t index = -1;
    QList<DiveMark> marks;
    bool flag = false;
    QList<DiveMark> marks2;
    std::uint8_t modeByte = 0xFF;
    std::uint16_t count = 1;
};
