// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>
#include <QtCore/qstringlist.h>

/** Files with what passes between a system and its Bluetooth adapter, as phones write them. */
namespace BtSnoop {

/** The numbers are those that stand in front of a packet on a serial line. */
enum class PacketType : quint8 { Command = 1, Acl = 2, Event = 4 };

struct Packet {
    qint64 at = 0; ///< microseconds, since the year 0
    PacketType type = PacketType::Acl;
    bool received = false; ///< from the adapter
    int adapter = 0;
    QByteArray bytes;       ///< without the type
    qint64 offset = 0;      ///< of the record in its file
    bool truncated = false; ///< the log has not kept all of it
};

struct Log {
    QList<Packet> packets;
    QStringList warnings;
};

[[nodiscard]] bool isBtSnoop(const QByteArray &bytes);
/** What a phone writes, and what btmon writes. @throws Failure that names the offset */
[[nodiscard]] Log read(const QByteArray &bytes);
/** As phones write it. */
[[nodiscard]] QByteArray write(const QList<Packet> &packets);

} // namespace BtSnoop
