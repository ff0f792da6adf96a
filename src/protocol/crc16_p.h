// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearrayview.h>

#include <array>

/**
 * CRC-16/SPI-FUJITSU, also catalogued as CRC-16/AUG-CCITT: polynomial 0x1021, nothing reflected, no
 * final XOR. The computers run it bit by bit from 0xFFFF and then 16 zero bits behind the data; the
 * usual form that looks one byte ahead gives the same from 0x1D0F. Check value: 0xE5CC.
 */
namespace Crc16 {

constexpr quint16 kPolynomial = 0x1021;
constexpr quint16 kInitial = 0x1D0F;

/** How many bytes are taken at once: with one table for each place they do not wait for each other. */
constexpr int kAtOnce = 8;
using Table = std::array<quint16, 256>;

/** For each number of zero bytes behind a byte, what the byte adds to the CRC. */
constexpr std::array<Table, kAtOnce> makeTables()
{
    std::array<Table, kAtOnce> tables{};
    for (unsigned byte = 0; byte < 256; ++byte) {
        unsigned value = byte << 8;
        for (Table &table : tables) {
            for (int bit = 0; bit < 8; ++bit)
                value = (value << 1) ^ ((value & 0x8000) ? kPolynomial : 0U);
            table[byte] = quint16(value);
        }
    }
    return tables;
}

inline constexpr std::array<Table, kAtOnce> kTables = makeTables();

/** The CRC of any number of bytes; of none it is 0x1D0F. */
constexpr quint16 computeCrc(QByteArrayView data)
{
    unsigned crc = kInitial;
    for (; data.size() >= kAtOnce; data = data.sliced(kAtOnce)) {
        const auto at = [data](qsizetype i) { return unsigned(quint8(data[i])); };
        crc = kTables[7][at(0) ^ crc >> 8] ^ kTables[6][at(1) ^ (crc & 0xFF)] ^ kTables[5][at(2)]
              ^ kTables[4][at(3)] ^ kTables[3][at(4)] ^ kTables[2][at(5)] ^ kTables[1][at(6)]
              ^ kTables[0][at(7)];
    }
    for (const char byte : data)
        crc = (crc << 8 & 0xFF00) ^ kTables[0][crc >> 8 ^ quint8(byte)];
    return quint16(crc);
}

} // namespace Crc16
