// SPDX-License-Identifier: MIT
#include "traces/tobtsnoop.h"

#include "run/failure.h"
#include "traces/gatt.h"

#include <QtCore/qendian.h>
#include <QtCore/qhash.h>
#include <QtCore/qjsonarray.h>
#include <QtCore/quuid.h>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using BtSnoop::Packet;
using BtSnoop::PacketType;
using Event = VardaTraceEvent;

/** A trace does not say when it began: the first of January 2000. */
constexpr qint64 kBeginning = 0x00E03AB44A676000;
constexpr quint16 kConnection = 0x0040;
/** What one packet over the air carries at most. */
constexpr qsizetype kAclSize = 251;
constexpr qsizetype kLongestPdu = 0xFFFF;
constexpr int kDefaultMtu = 23;

template <typename Number> QByteArray little(Number number)
{
    QByteArray bytes(sizeof(Number), '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

QByteArray byte(quint8 value)
{
    return {1, char(value)};
}

QByteArray uuidBytes(const QString &text)
{
    QByteArray bytes = QUuid::fromString(text).toRfc4122();
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

/** Six bytes, the last one first. */
QByteArray addressBytes(const QString &text)
{
    QByteArray bytes = QByteArray::fromHex(text.toLatin1().replace(':', ""));
    bytes.resize(6);
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

quint8 propertiesOf(const QJsonArray &flags)
{
    constexpr std::array kFlags = {
        "broadcast"_L1, "read"_L1,     "write-without-response"_L1,     "write"_L1,
        "notify"_L1,    "indicate"_L1, "authenticated-signed-writes"_L1};
    unsigned properties = 0;
    for (std::size_t i = 0; i < kFlags.size(); ++i) {
        if (flags.contains(QJsonValue(kFlags[i])))
            properties |= 1U << i;
    }
    return quint8(properties);
}

struct Characteristic {
    QString uuid;
    quint8 properties;
    bool cccd;
    quint16 declaration = 0; ///< its value and its descriptor follow
};

class Writer
{
public:
    explicit Writer(const VardaTraceFile &trace) : m_trace(trace) { }

    QList<Packet> packets()
    {
        for (m_index = 0; m_index < m_trace.events.size(); ++m_index)
            write(m_trace.events[m_index]);
        if (m_up)
            disconnected(Gatt::Hci::kEndedByUs);
        return std::exchange(m_packets, {});
    }

private:
    void write(const Event &event)
    {
        m_at = event.at;
        switch (event.kind) {
        case Event::Connect:
            connect(event);
            break;
        case Event::Up:
            up();
            break;
        case Event::Services:
            m_services = event.fields["uuids"_L1].toArray();
            break;
        case Event::Characteristics:
            setCharacteristics(event);
            break;
        case Event::Subscribe:
            subscribe(event);
            break;
        case Event::Subscribed:
            if (m_up)
                received(byte(Gatt::WriteResponse));
            break;
        case Event::Write:
            written(event);
            break;
        case Event::Notification:
            notified(event);
            break;
        case Event::Disconnect:
            if (m_up)
                command(Gatt::Hci::kDisconnect,
                        little(kConnection) + byte(Gatt::Hci::kEndedByOther));
            disconnected(Gatt::Hci::kEndedByUs);
            break;
        case Event::Down:
            disconnected(Gatt::Hci::kEndedByOther);
            break;
        default:
            break;
        }
    }

    void connect(const Event &event)
    {
        disconnected(Gatt::Hci::kEndedByUs);
        m_address = addressBytes(event.fields["address"_L1].toString());
        advertised(event.fields["name"_L1].toString().toUtf8());
        // Scan interval and window, no filter, the peer, our kind of address, intervals, latency,
        // time-out, lengths
        command(Gatt::Hci::kCreateConnection,
                little(quint16(96)) + little(quint16(48)) + byte(0) + byte(0) + m_address + byte(0)
                    + little(quint16(24)) + little(quint16(40)) + little(quint16(0))
                    + little(quint16(42)) + little(quint16(0)) + little(quint16(0)));
    }

    /** The only place for a name before the connection. */
    void advertised(const QByteArray &name)
    {
        constexpr qsizetype kLongestName = 200;
        constexpr char kCompleteName = 0x09;
        const QByteArray data = name.first(qMin(name.size(), kLongestName));
        event(Gatt::Hci::kLeMeta,
              byte(Gatt::Hci::kAdvertisedExtended) + byte(1) + little(quint16(0x0013)) + byte(0)
                  + m_address + byte(1) + byte(0) + byte(0xFF) + byte(0x7F) + byte(0xC4)
                  + little(quint16(0)) + byte(0) + QByteArray(6, '\0')
                  + byte(quint8(data.isEmpty() ? 0 : data.size() + 2))
                  + (data.isEmpty() ? data : byte(quint8(data.size() + 1)) + kCompleteName + data));
    }

    void up()
    {
        m_up = true;
        m_discovered = false;
        m_services = {};
        m_characteristics.clear();
        event(Gatt::Hci::kLeMeta, byte(Gatt::Hci::kConnected) + byte(0) + little(kConnection)
                                      + byte(0) + byte(0) + m_address + little(quint16(40))
                                      + little(quint16(0)) + little(quint16(42)) + byte(0));
    }

    void disconnected(quint8 reason)
    {
        if (std::exchange(m_up, false))
            event(Gatt::Hci::kDisconnected, byte(0) + little(kConnection) + byte(reason));
    }

    void setCharacteristics(const Event &event)
    {
        m_service = event.fields["service"_L1].toString();
        const QJsonArray list = event.fields["characteristics"_L1].toArray();
        for (const QJsonValue each : list)
            m_characteristics.append({each["uuid"_L1].toString(),
                                      propertiesOf(each["flags"_L1].toArray()),
                                      each["cccd"_L1].toBool(), 0});
        discover();
    }

    /** A trace that begins with a connection in use has no characteristics. */
    void requireDiscovery()
    {
        if (!m_up)
            up();
        if (m_discovered)
            return;
        if (m_characteristics.isEmpty()) {
            constexpr quint8 kNotifyAndWrite = 0x1C;
            m_service = Gatt::kGattService;
            m_characteristics.append({Gatt::kGattData, kNotifyAndWrite, true, 0});
        }
        discover();
    }

    void discover()
    {
        if (!m_up)
            up();
        m_discovered = true;
        exchangeMtu();
        discoverServices();
        discoverCharacteristics();
        discoverDescriptors();
    }

    void exchangeMtu()
    {
        const auto next = std::find_if(
            m_trace.events.begin() + m_index, m_trace.events.end(), [](const Event &event) {
                return event.kind == Event::Subscribed || event.kind == Event::Connect;
            });
        int mtu = next != m_trace.events.end() ? next->fields["mtu"_L1].toInt() : 0;
        // A system that does not report it has had one that the answers fit into.
        if (mtu <= 0)
            mtu = longestNotification() + 3;
        const auto agreed = quint16(qBound(kDefaultMtu, mtu, 0xFFFF));
        sent(byte(Gatt::MtuRequest) + little(agreed));
        received(byte(Gatt::MtuResponse) + little(agreed));
    }

    [[nodiscard]] int longestNotification() const
    {
        qsizetype longest = 0;
        for (const Event &each : m_trace.events) {
            if (each.kind == Event::Notification)
                longest = qMax(longest, each.bytes.size());
        }
        return int(longest);
    }

    void discoverServices()
    {
        QStringList uuids;
        for (const QJsonValue each : std::as_const(m_services))
            uuids.append(each.toString());
        if (!uuids.contains(m_service, Qt::CaseInsensitive))
            uuids.append(m_service);
        constexpr quint16 kRoom = 0x100;
        quint16 first = 1;
        for (const QString &each : std::as_const(uuids)) {
            const bool inUse = each.compare(m_service, Qt::CaseInsensitive) == 0;
            // Its characteristics are behind all others, however many they are.
            const quint16 last = inUse ? 0xFFFF : quint16(first + kRoom - 1);
            if (inUse)
                continue;
            service(first, last, each);
            first = quint16(last + 1);
        }
        m_first = first;
        service(first, 0xFFFF, m_service);
    }

    void service(quint16 first, quint16 last, const QString &uuid)
    {
        request(Gatt::ReadByGroupRequest, first, Gatt::kPrimaryService);
        received(byte(Gatt::ReadByGroupResponse) + byte(20) + little(first) + little(last)
                 + uuidBytes(uuid));
    }

    void discoverCharacteristics()
    {
        m_handles.clear();
        quint16 handle = m_first;
        for (Characteristic &each : m_characteristics) {
            each.declaration = quint16(handle + 1);
            handle = quint16(each.declaration + (each.cccd ? 2 : 1));
            request(Gatt::ReadByTypeRequest, each.declaration, Gatt::kCharacteristic);
            received(byte(Gatt::ReadByTypeResponse) + byte(21) + little(each.declaration)
                     + byte(each.properties) + little(quint16(each.declaration + 1))
                     + uuidBytes(each.uuid));
            m_handles.insert(each.uuid.toLower(), quint16(each.declaration + 1));
        }
        request(Gatt::ReadByTypeRequest, quint16(handle + 1), Gatt::kCharacteristic);
        received(byte(Gatt::ErrorResponse) + byte(Gatt::ReadByTypeRequest)
                 + little(quint16(handle + 1)) + byte(Gatt::kAttributeNotFound));
    }

    void discoverDescriptors()
    {
        for (const Characteristic &each : std::as_const(m_characteristics)) {
            if (!each.cccd)
                continue;
            const auto handle = quint16(each.declaration + 2);
            sent(byte(Gatt::FindInformationRequest) + little(handle) + little(handle));
            received(byte(Gatt::FindInformationResponse) + byte(1) + little(handle)
                     + little(Gatt::kClientConfiguration));
        }
    }

    void request(Gatt::Opcode opcode, quint16 first, quint16 type)
    {
        sent(byte(opcode) + little(first) + little(quint16(0xFFFF)) + little(type));
    }

    /** Of the characteristic that carries the data: the one that is subscribed to. */
    [[nodiscard]] quint16 dataHandle() const
    {
        if (m_data != 0)
            return m_data;
        for (const auto &known : {Gatt::kGattData, Gatt::kSpsData}) {
            if (const auto it = m_handles.constFind(known); it != m_handles.cend())
                return *it;
        }
        return m_handles.isEmpty() ? 0 : quint16(m_characteristics.constFirst().declaration + 1);
    }

    void subscribe(const Event &event)
    {
        requireDiscovery();
        const QString uuid = event.fields["characteristic"_L1].toString().toLower();
        m_data = m_handles.value(uuid, dataHandle());
        const QByteArray value = QByteArray::fromHex(
            event.fields["value"_L1].toString().toLatin1());
        m_indicated = value.startsWith('\x02');
        sent(byte(Gatt::WriteRequest) + little(quint16(m_data + 1)) + value);
    }

    void written(const Event &event)
    {
        requireDiscovery();
        const QString uuid = event.fields["characteristic"_L1].toString().toLower();
        const quint16 handle = uuid.isEmpty() ? dataHandle() : m_handles.value(uuid);
        sent(byte(Gatt::WriteCommand) + little(handle) + event.bytes);
    }

    void notified(const Event &event)
    {
        requireDiscovery();
        received(byte(m_indicated ? Gatt::IndicationPdu : Gatt::NotificationPdu)
                 + little(dataHandle()) + event.bytes);
        if (m_indicated)
            sent(byte(Gatt::ConfirmationPdu));
    }

    void sent(const QByteArray &pdu) { attribute(pdu, false); }
    void received(const QByteArray &pdu) { attribute(pdu, true); }

    void attribute(const QByteArray &pdu, bool isReceived)
    {
        if (pdu.size() > kLongestPdu)
            throw Failure{ExitCode::UsageError,
                          u"event %1 of the trace has %2 bytes, too many for a Bluetooth log"_s
                              .arg(m_index + 1)
                              .arg(m_trace.events[m_index].bytes.size()),
                          {}};
        const QByteArray whole = little(quint16(pdu.size())) + little(Gatt::kAttributeChannel)
                                 + pdu;
        for (qsizetype at = 0; at < whole.size(); at += kAclSize) {
            constexpr quint16 kContinues = 0x1000;
            constexpr quint16 kBeginsReceived = 0x2000;
            const quint16 flags = at > 0 ? kContinues : isReceived ? kBeginsReceived : 0;
            const QByteArray part = whole.mid(at, kAclSize);
            add(PacketType::Acl, isReceived,
                little(quint16(kConnection | flags)) + little(quint16(part.size())) + part);
        }
    }

    void command(quint16 opcode, const QByteArray &parameters)
    {
        add(PacketType::Command, false,
            little(opcode) + byte(quint8(parameters.size())) + parameters);
    }

    void event(quint8 code, const QByteArray &parameters)
    {
        add(PacketType::Event, true, byte(code) + byte(quint8(parameters.size())) + parameters);
    }

    void add(PacketType type, bool isReceived, const QByteArray &bytes)
    {
        Packet packet;
        packet.at = kBeginning + m_at;
        packet.type = type;
        packet.received = isReceived;
        packet.bytes = bytes;
        m_packets.append(packet);
    }

    const VardaTraceFile &m_trace;
    qsizetype m_index = 0;
    QList<Packet> m_packets;
    qint64 m_at = 0;
    QByteArray m_address = QByteArray(6, '\0');
    bool m_up = false;
    bool m_discovered = false;
    bool m_indicated = false;
    QJsonArray m_services;
    QString m_service;
    QList<Characteristic> m_characteristics;
    QHash<QString, quint16> m_handles; ///< of the values
    quint16 m_first = 1;               ///< handle of the service in use
    quint16 m_data = 0;
};

} // namespace

QList<Packet> toBtSnoop(const VardaTraceFile &trace)
{
    return Writer(trace).packets();
}
