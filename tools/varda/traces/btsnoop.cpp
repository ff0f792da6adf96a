// SPDX-License-Identifier: MIT
#include "traces/btsnoop.h"

#include "run/failure.h"
#include "traces/bytereader.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace {

using BtSnoop::Log;
using BtSnoop::Packet;
using BtSnoop::PacketType;

constexpr QByteArrayView kMagic("btsnoop\0", 8);
constexpr qsizetype kFileHeader = 16;
constexpr quint32 kVersion = 1;

/** How the packets stand in a file. */
enum DataLink : quint32 {
    Unencapsulated = 1001, ///< their type is in the flags
    Serial = 1002,         ///< their type is in front of them
    Monitor = 2001,        ///< their type and adapter are in place of the flags
};

constexpr quint32 kReceived = 1;
constexpr quint32 kNoData = 2;
/** No packet of Bluetooth is longer, whatever stands around it. */
constexpr quint32 kLongest = 1 << 17;

[[noreturn]] void fail(const QString &what, qint64 offset)
{
    throw Failure{ExitCode::UsageError,
                  u"the Bluetooth log is damaged at byte %1: %2"_s.arg(offset).arg(what),
                  {}};
}

std::optional<PacketType> typeOf(quint8 number)
{
    switch (number) {
    case quint8(PacketType::Command):
    case quint8(PacketType::Acl):
    case quint8(PacketType::Event):
        return PacketType(number);
    default:
        return std::nullopt;
    }
}

/** What the monitor's numbers mean, as far as it is about data. */
bool setMonitored(Packet &packet, quint32 flags)
{
    constexpr int kAdapterShift = 16;
    packet.adapter = int(flags >> kAdapterShift);
    const quint32 kind = flags & 0xFFFF;
    constexpr quint32 kCommand = 2;
    constexpr quint32 kEvent = 3;
    constexpr quint32 kAclReceived = 5;
    if (kind < kCommand || kind > kAclReceived)
        return false;
    packet.type = kind == kCommand ? PacketType::Command
                  : kind == kEvent ? PacketType::Event
                                   : PacketType::Acl;
    packet.received = kind == kEvent || kind == kAclReceived;
    return true;
}

bool setFlagged(Packet &packet, quint32 flags)
{
    packet.received = (flags & kReceived) != 0;
    packet.type = !(flags & kNoData) ? PacketType::Acl
                  : packet.received  ? PacketType::Event
                                     : PacketType::Command;
    return true;
}

bool setTyped(Packet &packet, quint32 flags)
{
    packet.received = (flags & kReceived) != 0;
    const auto type = packet.bytes.isEmpty() ? std::nullopt : typeOf(quint8(packet.bytes[0]));
    if (!type)
        return false;
    packet.type = *type;
    packet.bytes.remove(0, 1);
    return true;
}

bool setType(Packet &packet, quint32 link, quint32 flags)
{
    switch (link) {
    case Serial:
        return setTyped(packet, flags);
    case Monitor:
        return setMonitored(packet, flags);
    default:
        return setFlagged(packet, flags);
    }
}

quint32 readLink(ByteReader &reader)
{
    reader.take(kMagic.size());
    const quint32 version = reader.bigU32();
    const quint32 link = reader.bigU32();
    if (!reader.isGood())
        fail(u"it ends in its header"_s, kMagic.size());
    if (version != kVersion)
        fail(u"version %1 is not known"_s.arg(version), kMagic.size());
    if (link != Unencapsulated && link != Serial && link != Monitor)
        fail(u"link type %1 is not known"_s.arg(link), kMagic.size() + 4);
    return link;
}

} // namespace

bool BtSnoop::isBtSnoop(const QByteArray &bytes)
{
    return bytes.startsWith(kMagic);
}

Log BtSnoop::read(const QByteArray &bytes)
{
    ByteReader reader(bytes);
    const quint32 link = readLink(reader);
    Log log;
    int truncated = 0;
    while (reader.left() > 0) {
        Packet packet;
        packet.offset = bytes.size() - reader.left();
        const quint32 original = reader.bigU32();
        const quint32 included = reader.bigU32();
        const quint32 flags = reader.bigU32();
        reader.bigU32();
        packet.at = qint64(reader.bigU64());
        // Phones stop in the middle of writing.
        if (!reader.isGood() || (included <= kLongest && reader.left() < qsizetype(included))) {
            log.warnings.append(
                u"the Bluetooth log ends in the middle of a packet, at byte %1"_s.arg(
                    packet.offset));
            break;
        }
        if (included > kLongest || included > original)
            fail(u"no packet has %1 bytes"_s.arg(included), packet.offset);
        packet.bytes = reader.take(included).toByteArray();
        packet.truncated = included < original;
        truncated += packet.truncated ? 1 : 0;
        if (setType(packet, link, flags))
            log.packets.append(packet);
    }
    if (truncated > 0)
        log.warnings.append(
            u"the Bluetooth log has not kept all bytes of %1 packets"_s.arg(truncated));
    return log;
}

QByteArray BtSnoop::write(const QList<Packet> &packets)
{
    QByteArray bytes = kMagic.toByteArray();
    const auto put = [&bytes](auto number) {
        const auto big = qToBigEndian(number);
        bytes.append(reinterpret_cast<const char *>(&big), sizeof big);
    };
    put(kVersion);
    put(quint32(Serial));
    Q_ASSERT(bytes.size() == kFileHeader);
    for (const Packet &each : packets) {
        const auto size = quint32(each.bytes.size() + 1);
        put(size);
        put(size);
        put((each.received ? kReceived : 0) | (each.type == PacketType::Acl ? 0 : kNoData));
        put(quint32(0));
        put(each.at);
        bytes.append(char(each.type)).append(each.bytes);
    }
    return bytes;
}
