// SPDX-License-Identifier: MIT
#include "traces/hcilog.h"

#include "traces/bytereader.h"
#include "traces/gatt.h"

#include <QtCore/qhash.h>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using BtSnoop::Packet;
using BtSnoop::PacketType;

QString addressText(QByteArrayView bytes)
{
    QByteArray turned = bytes.toByteArray();
    std::reverse(turned.begin(), turned.end());
    return QString::fromLatin1(turned.toHex(':')).toUpper();
}

/** The name in what a device advertises; empty if it is not there. */
QString advertisedName(QByteArrayView data)
{
    constexpr quint8 kShortName = 0x08;
    constexpr quint8 kCompleteName = 0x09;
    ByteReader reader(data);
    while (reader.left() > 1) {
        const quint8 size = reader.u8();
        if (size == 0)
            break;
        const quint8 type = reader.u8();
        const QByteArrayView value = reader.take(size - 1);
        if (type == kShortName || type == kCompleteName)
            return QString::fromUtf8(value);
    }
    return {};
}

class Reader
{
public:
    void read(const Packet &packet)
    {
        switch (packet.type) {
        case PacketType::Command:
            command(packet);
            break;
        case PacketType::Event:
            event(packet);
            break;
        case PacketType::Acl:
            data(packet);
            break;
        }
    }

    QList<LoggedConnection> connections()
    {
        for (LoggedConnection &each : m_connections)
            each.name = m_names.value(each.address);
        return std::exchange(m_connections, {});
    }

private:
    struct Half {
        QByteArray bytes;
        bool lost = false; ///< what comes cannot be put together with what came
    };
    struct Open {
        qsizetype index = 0;        ///< of the connection
        std::array<Half, 2> halves; ///< sent, received
    };
    using Key = std::pair<int, quint16>;

    void command(const Packet &packet)
    {
        ByteReader reader(packet.bytes);
        switch (reader.u16()) {
        case Gatt::Hci::kCreateConnection:
        case Gatt::Hci::kExtendedCreateConnection:
            m_askedAt = packet.at;
            break;
        case Gatt::Hci::kDisconnect:
            reader.u8();
            m_endedByUs.insert({packet.adapter, reader.u16()}, true);
            break;
        default:
            break;
        }
    }

    void event(const Packet &packet)
    {
        ByteReader reader(packet.bytes);
        const quint8 code = reader.u8();
        reader.u8();
        if (code == Gatt::Hci::kDisconnected)
            disconnected(packet, reader);
        if (code != Gatt::Hci::kLeMeta)
            return;
        switch (reader.u8()) {
        case Gatt::Hci::kConnected:
        case Gatt::Hci::kConnectedEnhanced:
        case Gatt::Hci::kConnectedEnhanced2:
            connected(packet, reader);
            break;
        case Gatt::Hci::kAdvertised:
            advertised(reader);
            break;
        case Gatt::Hci::kAdvertisedExtended:
            advertisedExtended(reader);
            break;
        default:
            break;
        }
    }

    void connected(const Packet &packet, ByteReader &reader)
    {
        const bool failed = reader.u8() != 0;
        const quint16 handle = reader.u16();
        reader.take(2);
        const QString address = addressText(reader.take(6));
        const qint64 askedAt = std::exchange(m_askedAt, 0);
        if (failed || !reader.isGood())
            return;
        const Key key(packet.adapter, handle);
        end(key, packet.at, false);
        LoggedConnection &connection = open(key, packet.at);
        connection.address = address;
        if (askedAt != 0)
            connection.askedAt = askedAt;
    }

    void disconnected(const Packet &packet, ByteReader &reader)
    {
        if (reader.u8() != 0)
            return;
        const Key key(packet.adapter, reader.u16());
        end(key, packet.at, reader.u8() == Gatt::Hci::kEndedByUs || m_endedByUs.value(key));
    }

    void end(const Key &key, qint64 at, bool byUs)
    {
        m_endedByUs.remove(key);
        const auto it = m_open.constFind(key);
        if (it == m_open.cend())
            return;
        LoggedConnection &connection = m_connections[it->index];
        connection.ended = true;
        connection.endedAt = at;
        connection.endedByUs = byUs;
        m_open.erase(it);
    }

    LoggedConnection &open(const Key &key, qint64 at)
    {
        m_open.insert(key, {m_connections.size(), {}});
        LoggedConnection connection;
        connection.askedAt = connection.upAt = at;
        m_connections.append(connection);
        return m_connections.last();
    }

    void advertised(ByteReader &reader)
    {
        // Logs have one report an event; those behind it would be mixed up with it.
        if (reader.u8() != 1)
            return;
        reader.take(2);
        const QString address = addressText(reader.take(6));
        name(address, reader.take(reader.u8()));
    }

    void advertisedExtended(ByteReader &reader)
    {
        if (reader.u8() != 1)
            return;
        reader.take(3);
        const QString address = addressText(reader.take(6));
        reader.take(14);
        name(address, reader.take(reader.u8()));
    }

    void name(const QString &address, QByteArrayView data)
    {
        if (const QString found = advertisedName(data); !found.isEmpty())
            m_names.insert(address, found);
    }

    void data(const Packet &packet)
    {
        ByteReader reader(packet.bytes);
        const quint16 head = reader.u16();
        const quint16 size = reader.u16();
        if (!reader.isGood())
            return;
        constexpr quint16 kHandle = 0x0FFF;
        constexpr int kBoundaryShift = 12;
        constexpr unsigned kContinues = 1;
        const Key key(packet.adapter, head & kHandle);
        const bool begins = ((unsigned(head) >> kBoundaryShift) & 3U) != kContinues;
        if (!m_open.contains(key))
            open(key, packet.at);
        Half &half = m_open[key].halves[packet.received ? 1 : 0];
        if (begins)
            half = {};
        half.lost = half.lost || packet.truncated || reader.left() < size
                    || (!begins && half.bytes.isEmpty());
        if (half.lost)
            return;
        half.bytes += reader.take(size);
        takePdu(half, packet, m_connections[m_open[key].index]);
    }

    static void takePdu(Half &half, const Packet &packet, LoggedConnection &connection)
    {
        ByteReader reader(half.bytes);
        const quint16 size = reader.u16();
        const quint16 channel = reader.u16();
        if (!reader.isGood() || reader.left() < size)
            return;
        if (channel == Gatt::kAttributeChannel && size > 0)
            connection.pdus.append(
                {packet.at, packet.received, reader.take(size).toByteArray(), packet.offset});
        half = {};
        half.lost = true; // until the next one begins
    }

    QList<LoggedConnection> m_connections;
    QHash<Key, Open> m_open;
    QHash<Key, bool> m_endedByUs;
    QHash<QString, QString> m_names;
    qint64 m_askedAt = 0;
};

} // namespace

QList<LoggedConnection> connectionsIn(const BtSnoop::Log &log)
{
    Reader reader;
    for (const Packet &each : log.packets)
        reader.read(each);
    return reader.connections();
}
