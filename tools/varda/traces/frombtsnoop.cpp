// SPDX-License-Identifier: MIT
#include "traces/frombtsnoop.h"

#include "run/failure.h"
#include "traces/attributes.h"
#include "traces/bytereader.h"
#include "traces/gatt.h"
#include "traces/hcilog.h"

#include <QtCore/qjsonarray.h>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Event = VardaTraceEvent;

/** What every computer of one model calls itself: for logs that do not know. */
constexpr auto kUsualName = "Varda"_L1;
constexpr int kDefaultMtu = 23;

/** A connection with a computer, and what is known of its attributes. */
struct Found {
    LoggedConnection connection;
    Attributes attributes;
};

QJsonArray flagsOf(quint8 properties)
{
    constexpr std::array kFlags = {
        "broadcast"_L1, "read"_L1,     "write-without-response"_L1,     "write"_L1,
        "notify"_L1,    "indicate"_L1, "authenticated-signed-writes"_L1};
    QJsonArray flags;
    for (std::size_t i = 0; i < kFlags.size(); ++i) {
        if (unsigned(properties) & (1U << i))
            flags.append(kFlags[i]);
    }
    return flags;
}

/** One connection as events. */
class Teller
{
public:
    Teller(const Found &found, qint64 beginning, QList<Event> &events)
        : m_found(found),
          m_beginning(beginning),
          m_events(events),
          m_data(found.attributes.dataHandle())
    {
    }

    void run()
    {
        const LoggedConnection &connection = m_found.connection;
        add(connection.askedAt, Event::Connect,
            {{"address"_L1, connection.address}, {"name"_L1, nameText()}});
        add(connection.upAt, Event::Up);
        for (const AttributePdu &pdu : connection.pdus)
            tell(pdu);
        if (connection.ended)
            add(connection.endedAt, connection.endedByUs ? Event::Disconnect : Event::Down);
    }

private:
    [[nodiscard]] QString nameText() const
    {
        if (!m_found.connection.name.isEmpty())
            return m_found.connection.name;
        return m_found.attributes.name.isEmpty() ? QString(kUsualName) : m_found.attributes.name;
    }

    void tell(const AttributePdu &pdu)
    {
        ByteReader reader(pdu.bytes);
        const quint8 opcode = reader.u8();
        switch (opcode) {
        case Gatt::MtuRequest:
        case Gatt::MtuResponse:
            setMtu(reader.u16(), opcode == Gatt::MtuResponse);
            break;
        case Gatt::WriteRequest:
        case Gatt::WriteCommand:
            if (!pdu.received)
                written(pdu.at, reader);
            break;
        case Gatt::WriteResponse:
            if (pdu.received)
                subscribed(pdu.at);
            break;
        case Gatt::NotificationPdu:
        case Gatt::IndicationPdu:
            if (pdu.received && reader.u16() == m_data)
                data(pdu.at, Event::Notification, reader.take(reader.left()));
            break;
        default:
            break;
        }
    }

    void setMtu(quint16 mtu, bool isAnswer)
    {
        m_mtu = isAnswer ? qMax(kDefaultMtu, qMin(m_asked, int(mtu))) : m_mtu;
        m_asked = mtu;
    }

    void written(qint64 at, ByteReader &reader)
    {
        const quint16 handle = reader.u16();
        const auto &values = m_found.attributes.values;
        if (handle == values[m_data].descriptor && handle != 0) {
            known(at);
            m_subscribing = true;
            add(at, Event::Subscribe,
                {{"characteristic"_L1, values[m_data].uuid},
                 {"value"_L1,
                  QString::fromLatin1(reader.take(reader.left()).toByteArray().toHex())}});
        } else if (handle == m_data) {
            data(at, Event::Write, reader.take(reader.left()));
        } else if (values.contains(handle)
                   && m_found.attributes.serviceOf(handle)
                          == m_found.attributes.serviceOf(m_data)) {
            data(at, Event::Write, reader.take(reader.left()),
                 {{"characteristic"_L1, values[handle].uuid}});
        }
    }

    void subscribed(qint64 at)
    {
        if (!std::exchange(m_subscribing, false))
            return;
        add(at, Event::Subscribed, {{"mtu"_L1, m_mtu}});
    }

    void data(qint64 at, Event::Kind kind, QByteArrayView bytes, const QJsonObject &fields = {})
    {
        known(at);
        add(at, kind, fields);
        m_events.last().bytes = bytes.toByteArray();
    }

    /** Before the first use of an attribute it is known, whenever the program has asked for it. */
    void known(qint64 at)
    {
        if (std::exchange(m_known, true))
            return;
        const Attributes &attributes = m_found.attributes;
        const QString service = attributes.serviceOf(m_data);
        QJsonArray uuids;
        for (const auto &each : attributes.services)
            uuids.append(each.uuid);
        add(at, Event::Services, {{"uuids"_L1, uuids}});
        QJsonArray characteristics;
        for (auto it = attributes.values.cbegin(); it != attributes.values.cend(); ++it) {
            if (attributes.serviceOf(it.key()) == service)
                characteristics.append(QJsonObject{{"uuid"_L1, it->uuid},
                                                   {"flags"_L1, flagsOf(it->properties)},
                                                   {"cccd"_L1, it->descriptor != 0}});
        }
        add(at, Event::Characteristics,
            {{"service"_L1, service}, {"characteristics"_L1, characteristics}});
    }

    void add(qint64 at, Event::Kind kind, const QJsonObject &fields = {})
    {
        Event event;
        // Clocks of phones are set now and then.
        event.at = qMax(at - m_beginning, m_events.isEmpty() ? 0 : m_events.last().at);
        event.kind = kind;
        event.fields = fields;
        m_events.append(event);
    }

    const Found &m_found;
    qint64 m_beginning;
    QList<Event> &m_events;
    quint16 m_data;
    int m_mtu = kDefaultMtu;
    int m_asked = kDefaultMtu;
    bool m_known = false;
    bool m_subscribing = false;
};

bool isDiscovery(const AttributePdu &pdu)
{
    const quint8 opcode = pdu.bytes.isEmpty() ? quint8(0) : quint8(pdu.bytes[0]);
    return opcode == Gatt::ReadByGroupRequest || opcode == Gatt::ReadByTypeRequest
           || opcode == Gatt::FindInformationRequest;
}

QList<Found> computersIn(const QList<LoggedConnection> &connections)
{
    QHash<QString, Attributes> known;
    QList<Found> found;
    for (const LoggedConnection &connection : connections) {
        Attributes attributes = known.value(connection.address);
        QByteArray request;
        for (const AttributePdu &pdu : connection.pdus) {
            if (pdu.received)
                attributes.read(std::exchange(request, {}), pdu.bytes);
            else if (isDiscovery(pdu))
                request = pdu.bytes;
        }
        if (!attributes.hasData())
            attributes.guess(connection);
        if (!connection.address.isEmpty())
            known.insert(connection.address, attributes);
        if (attributes.hasData())
            found.append({connection, attributes});
    }
    return found;
}

bool isWanted(const Found &found, const QString &computer)
{
    return computer.isEmpty()
           || computer.compare(found.connection.address, Qt::CaseInsensitive) == 0
           || computer == found.connection.name;
}

QStringList namesOf(const QList<Found> &found)
{
    QStringList names;
    for (const Found &each : found)
        names.append(each.connection.address);
    names.removeDuplicates();
    return names;
}

} // namespace

VardaTraceFile fromBtSnoop(const BtSnoop::Log &log, const QString &computer)
{
    QList<Found> found = computersIn(connectionsIn(log));
    found.removeIf([&](const Found &each) { return !isWanted(each, computer); });
    if (found.isEmpty())
        throw Failure{ExitCode::UsageError,
                      u"the Bluetooth log has no connection with a diving computer"_s,
                      u"Switch the log on before you switch Bluetooth on, then let the app "
                      "connect."_s};
    if (const QStringList names = namesOf(found); names.size() > 1)
        throw Failure{ExitCode::UsageError, u"the Bluetooth log has several computers"_s,
                      u"Choose one with --device:"_s, names};
    VardaTraceFile trace;
    trace.header.redacted = false;
    for (const Found &each : std::as_const(found))
        Teller(each, found.constFirst().connection.askedAt, trace.events).run();
    return trace;
}
