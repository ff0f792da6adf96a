// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>

/**
 * A firmware image in which every byte differs from its neighbours and from those a block further.
 * At byte 512 it has four zeros or this header.
 */
inline QByteArray image(int size, const QByteArray &headerHex = QByteArray(8, '0'))
{
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = char(i % 251);
    const QByteArray header = QByteArray::fromHex(headerHex);
    bytes.replace(512, header.size(), header);
    bytes.truncate(size);
    return bytes;
}

// The headers of a firmware 4.5.6.d and a bootloader 4.5.6.d; what follows the version means
// something to the computer only.
constexpr auto kFirmwareHeader = "efbeadde 01020304 64060504 05060708"
                                 "090a0b0c 0d0e0f10 11121314 15161718";
constexpr auto kBootloaderHeader = "544f4f42 f1f2f3f4 64060504 f5f6f7f8"
                                   "e1e2e3e4 e5e6e7e8 d1d2d3d4 d5d6d7d8";
