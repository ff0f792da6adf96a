// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>

#include <optional>

namespace simulator {

struct Frame {
    quint8 command = 0;
    QByteArray payload;
};

quint16 crc16(QByteArrayView bytes);

QByteArray encodeFrame(const Frame &frame);

/**
 * Cuts the bytes that arrive on the serial link into frames. Bytes that are no frame, and frames
 * with a wrong checksum, are dropped: the computer waits for the next start pattern.
 */
class FrameAssembler
{
public:
    void feed(QByteArrayView bytes);
    std::optional<Frame> next();
    void clear() { m_bytes.clear(); }

private:
    QByteArray m_bytes;
};

} // namespace simulator
