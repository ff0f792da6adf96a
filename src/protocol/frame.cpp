// SPDX-License-Identifier: MIT
#include "protocol/frame_p.h"

#include <QtCore/qendian.h>

#include "protocol/crc16_p.h"

namespace Frame {

QByteArray buildFrame(const BleCommand &command)
{
    const auto length = quint16(command.payload.size() + 1);
    QByteArray frame(kHeaderSize, '\0');
    frame.reserve(kHeaderSize + command.payload.size() + 1);
    frame.append(char(command.command)).append(command.payload);

    frame[0] = char(kStx);
    frame[1] = char(kStx);
    qToLittleEndian(length, frame.data() + 2);
    const auto body = QByteArrayView(frame)
                          .sliced(kHeaderSize)
                          .first(qMin<qsizetype>(length, frame.size() - kHeaderSize));
    qToLittleEndian(Crc16::computeCrc(body), frame.data() + 4);
    return frame;
}

bool startsFrame(QByteArrayView bytes)
{
    return bytes.size() >= kHeaderSize && quint8(bytes[0]) == kStx && quint8(bytes[1]) == kStx;
}

Header parseHeader(QByteArrayView bytes)
{
    return {qFromLittleEndian<quint16>(bytes.data() + 2),
            qFromLittleEndian<quint16>(bytes.data() + 4)};
}

} // namespace Frame
