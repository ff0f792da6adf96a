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

constexpr std::array<quint16, 256> makeTable()
{
    std::array<quint16, 256> table{};
    for (unsigned byte = 0; byte < table.size(); ++byte) {
        unsigned value = byte << 8;
        for (int bit = 0; bit < 8; ++bit)
            value = (value << 1) ^ ((value & 0x8000) ? kPolynomial : 0U);
        table[byte] = quint16(value);
    }
    return table;
}

inline constexpr std::array<quint16, 256> kTable = makeTable();

/** The CRC of any number of bytes; of none it is 0x1D0F. */
constexpr quint16 computeCrc(QByteArrayView data)
{
    quint16 crc = kInitial;
    for (const char byte : data)
        crc = quint16((crc << 8) ^ kTable[(crc >> 8) ^ quint8(byte)]);
    return crc;
}

} // namespace Crc16
