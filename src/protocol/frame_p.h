// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qbytearrayview.h>

#include <varda/blecommand.h>

/**
 * The frame that carries a command or an answer:
 *
 *     0xDC 0xDC | L, 16 bits | CRC of the body, 16 bits | two bytes, 0 | body of L bytes
 *
 * little-endian. The body is the command's code and the payload. The CRC leaves out the header.
 */
namespace Frame {

constexpr unsigned char kStx = 0xDC;
constexpr int kHeaderSize = 8;

/** The frame of a command. L wraps at 65536: no payload comes near that. */
[[nodiscard]] QByteArray buildFrame(const BleCommand &command);

/** What the first 8 bytes of a frame say. */
struct Header {
    quint16 length;
    quint16 crc;
};

/** Whether @p bytes begins with two start bytes and holds a whole header. */
[[nodiscard]] bool startsFrame(QByteArrayView bytes);
/** The header that @p bytes starts with; startsFrame() holds. */
[[nodiscard]] Header parseHeader(QByteArrayView bytes);

} // namespace Frame
