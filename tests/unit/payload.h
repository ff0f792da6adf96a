// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>

#include <varda/vardadata.h>

#include <algorithm>
#include <cstddef>

/** A response buffer: the bytes of a hexadecimal text from byte 1 on, zeros behind them. */
inline VardaData::Payload payloadOf(const QByteArray &hex)
{
    VardaData::Payload payload{};
    payload[0] = 0xA5; // the command's code; a decoder that reads it shows
    const QByteArray bytes = QByteArray::fromHex(hex);
    std::copy(bytes.begin(), bytes.end(), payload.begin() + 1);
    return payload;
}

/** A response buffer whose byte i is 7 i + 3: no two offsets within 256 bytes read the same. */
inline VardaData::Payload patternPayload()
{
    VardaData::Payload payload{};
    for (std::size_t i = 0; i < payload.size(); ++i)
        payload[i] = std::uint8_t(7 * i + 3);
    return payload;
}

/** The same with a little-endian word at byte 1, where layouts tell their version. */
inline VardaData::Payload patternPayload(quint16 first)
{
    VardaData::Payload payload = patternPayload();
    payload[1] = std::uint8_t(first);
    payload[2] = std::uint8_t(first >> 8);
    return payload;
}
