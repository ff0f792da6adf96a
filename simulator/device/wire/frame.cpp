// SPDX-License-Identifier: MIT
#include "device/wire/frame.h"

#include "device/wire/wirewriter.h"

#include <QtCore/qendian.h>

namespace simulator {

namespace {

constexpr QByteArrayView kStart("\xDC\xDC");
constexpr qsizetype kHeaderSize = 8;

} // namespace

quint16 crc16(QByteArrayView bytes)
{
    // 0x1D0F is what a register of 0xFFFF becomes once 16 zero bits went through it, so no bits
    // have to be appended to the message.
    quint16 crc = 0x1D0F;
    for (const char byte : bytes) {
        crc = quint16(crc ^ (quint8(byte) << 8));
        for (int bit = 0; bit < 8; ++bit)
            crc = quint16((crc & 0x8000) ? (crc << 1) ^ 0x1021 : crc << 1);
    }
    return crc;
}

QByteArray encodeFrame(const Frame &frame)
{
    WireWriter body;
    body.u8(frame.command).bytes(frame.payload);

    WireWriter whole;
    whole.bytes(kStart)
        .u16(quint16(body.data().size()))
        .u16(crc16(body.data()))
        .u16(0)
        .bytes(body.data());
    return whole.data();
}

void FrameAssembler::feed(QByteArrayView bytes)
{
    // The host sends a request with one write. What an earlier write left unfinished is never
    // finished by one that starts a frame itself.
    if (bytes.startsWith(kStart))
        m_bytes.clear();
    m_bytes.append(bytes);
}

std::optional<Frame> FrameAssembler::next()
{
    for (;;) {
        const qsizetype start = m_bytes.indexOf(kStart);
        if (start < 0) {
            // The second start byte may still be under way.
            m_bytes = m_bytes.endsWith(kStart[0]) ? m_bytes.right(1) : QByteArray();
            return std::nullopt;
        }
        m_bytes.remove(0, start);
        if (m_bytes.size() < kHeaderSize)
            return std::nullopt;

        const auto length = qFromLittleEndian<quint16>(m_bytes.constData() + 2);
        const auto crc = qFromLittleEndian<quint16>(m_bytes.constData() + 4);
        if (m_bytes.size() < kHeaderSize + length)
            return std::nullopt;

        const QByteArray body = m_bytes.mid(kHeaderSize, length);
        m_bytes.remove(0, kHeaderSize + length);
        if (!body.isEmpty() && crc == crc16(body))
            return Frame{quint8(body.front()), body.mid(1)};
    }
}

} // namespace simulator
