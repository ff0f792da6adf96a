// SPDX-License-Identifier: MIT
#include "device/wire/spoil.h"

#include "device/scenario/faults.h"
#include "device/wire/frame.h"

#include <QtCore/qendian.h>

#include <algorithm>
#include <utility>

namespace simulator {

namespace {

constexpr qsizetype kLengthAt = 2;
constexpr qsizetype kCrcAt = 4;
constexpr qsizetype kBodyAt = 8;

// The first byte of a part and the one after its last.
std::pair<qsizetype, qsizetype> bounds(FaultPart part, qsizetype size)
{
    switch (part) {
    case FaultPart::Header:
        return {0, std::min(size, kCrcAt)};
    case FaultPart::Crc:
        return {std::min(size, kCrcAt), std::min(size, kCrcAt + 2)};
    case FaultPart::Body:
        return {std::min(size, kBodyAt), size};
    case FaultPart::All:
        break;
    }
    return {0, size};
}

QByteArray flipped(QByteArray bytes, const Fault &fault)
{
    const auto [begin, end] = bounds(fault.part, bytes.size());
    if (begin == end)
        return bytes;
    const qsizetype at = begin + fault.bit / 8 % (end - begin);
    bytes[at] = char(bytes[at] ^ (1 << fault.bit % 8));
    return bytes;
}

QByteArray withWrongLength(QByteArray frame, int by)
{
    const auto length = qFromLittleEndian<quint16>(frame.constData() + kLengthAt);
    qToLittleEndian(quint16(length + by), frame.data() + kLengthAt);
    return frame;
}

QByteArray truncated(const QByteArray &bytes, const Fault &fault)
{
    return bytes.left(fault.keep >= 0 ? fault.keep : bytes.size() - 1);
}

QByteArray spoiltFrame(QByteArray frame, const Fault &fault)
{
    switch (fault.kind) {
    case FaultKind::WrongCrc:
        frame[kCrcAt] = char(frame[kCrcAt] ^ 0x5A);
        return frame;
    case FaultKind::WrongStart:
        frame[1] = char(0xDD);
        return frame;
    case FaultKind::WrongCommand:
        return encodeFrame(
            {quint8(fault.bytes.isEmpty() ? 0 : fault.bytes.front()), frame.mid(kBodyAt + 1)});
    case FaultKind::WrongLength:
        return withWrongLength(frame, fault.by);
    case FaultKind::Flip:
        return flipped(frame, fault);
    case FaultKind::Garbage:
        return fault.bytes;
    case FaultKind::Insert:
        return fault.bytes + frame;
    case FaultKind::Append:
        return frame + fault.bytes;
    case FaultKind::Truncate:
        return truncated(frame, fault);
    default:
        return frame;
    }
}

} // namespace

void spoilAnswer(QList<QByteArray> &frames, const Fault &fault)
{
    if (fault.frame > frames.size())
        return;
    QByteArray &frame = frames[fault.frame - 1];
    frame = spoiltFrame(frame, fault);
    if (fault.kind == FaultKind::Duplicate)
        frames.insert(fault.frame, QByteArray(frame));
    if (fault.kind == FaultKind::Endless)
        frames.resize(fault.frame);
}

QList<QByteArray> spoiltNotification(const QByteArray &bytes, const Fault &fault)
{
    switch (fault.kind) {
    case FaultKind::Lost:
        return {};
    case FaultKind::Empty:
        return {QByteArray()};
    case FaultKind::Garbage:
        return {fault.bytes};
    case FaultKind::Insert:
        return {fault.bytes, bytes};
    case FaultKind::Duplicate:
        return {bytes, bytes};
    case FaultKind::Truncate:
        return {truncated(bytes, fault)};
    case FaultKind::Flip:
        return {flipped(bytes, fault)};
    case FaultKind::Split: {
        const QByteArray head = bytes.left(fault.keep >= 0 ? fault.keep : bytes.size() / 2);
        return {head, bytes.mid(head.size())};
    }
    default:
        return {bytes};
    }
}

} // namespace simulator
