// SPDX-License-Identifier: MIT
#include "traces/attributes.h"

#include "traces/bytereader.h"
#include "traces/gatt.h"

#include <varda/vardatraceframe.h>

#include <QtCore/quuid.h>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/** Of 16 or 128 bits, the last byte first. */
QString uuidText(QByteArrayView bytes)
{
    QByteArray whole = bytes.toByteArray();
    std::reverse(whole.begin(), whole.end());
    constexpr qsizetype kShort = 2;
    if (whole.size() == kShort)
        whole = QByteArray(2, '\0') + whole + QByteArray::fromHex("00001000800000805f9b34fb");
    return QUuid::fromRfc4122(whole).toString(QUuid::WithoutBraces);
}

/** The kind of attribute that a request reads; 0 if it is one with a long number. */
quint16 typeAsked(const QByteArray &request)
{
    constexpr qsizetype kSize = 7;
    ByteReader reader(request);
    reader.take(kSize - 2);
    const quint16 type = reader.u16();
    return request.size() == kSize ? type : quint16(0);
}

/** The frames in what was written to each handle and what came from it. */
QHash<quint16, VardaTraceFile> tracesOf(const LoggedConnection &connection)
{
    QHash<quint16, VardaTraceFile> traces;
    for (const AttributePdu &pdu : connection.pdus) {
        ByteReader reader(pdu.bytes);
        const quint8 opcode = reader.u8();
        const bool isWrite = opcode == Gatt::WriteCommand || opcode == Gatt::WriteRequest;
        if (!isWrite && opcode != Gatt::NotificationPdu && opcode != Gatt::IndicationPdu)
            continue;
        const quint16 handle = reader.u16();
        VardaTraceEvent event;
        event.kind = isWrite ? VardaTraceEvent::Write : VardaTraceEvent::Notification;
        event.bytes = reader.take(reader.left()).toByteArray();
        traces[handle].events.append(event);
    }
    return traces;
}

} // namespace

quint16 Attributes::dataHandle() const
{
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        if (it->uuid == Gatt::kGattData || it->uuid == Gatt::kSpsData)
            return it.key();
    }
    return 0;
}

QString Attributes::serviceOf(quint16 handle) const
{
    auto it = services.upperBound(handle);
    if (it == services.cbegin())
        return {};
    --it;
    return handle <= it->last ? it->uuid : QString();
}

void Attributes::read(const QByteArray &request, const QByteArray &response)
{
    if (request.isEmpty() || response.isEmpty())
        return;
    switch (quint8(response[0])) {
    case Gatt::ReadByGroupResponse:
        readServices(request, response);
        break;
    case Gatt::ReadByTypeResponse:
        readValues(request, response);
        break;
    case Gatt::FindInformationResponse:
        readDescriptors(response);
        break;
    default:
        break;
    }
}

void Attributes::readServices(const QByteArray &request, const QByteArray &response)
{
    ByteReader reader(response);
    reader.u8();
    const quint8 size = reader.u8();
    constexpr quint8 kHandles = 4;
    if (typeAsked(request) != Gatt::kPrimaryService || size <= kHandles)
        return;
    while (reader.left() >= size) {
        const quint16 first = reader.u16();
        const quint16 last = reader.u16();
        services.insert(first, {last, uuidText(reader.take(size - kHandles))});
    }
}

void Attributes::readValues(const QByteArray &request, const QByteArray &response)
{
    ByteReader reader(response);
    reader.u8();
    const quint8 size = reader.u8();
    if (typeAsked(request) == Gatt::kDeviceName && size > 2) {
        reader.u16();
        name = QString::fromUtf8(reader.take(size - 2));
    }
    constexpr quint8 kBeforeUuid = 5;
    if (typeAsked(request) != Gatt::kCharacteristic || size <= kBeforeUuid)
        return;
    while (reader.left() >= size) {
        reader.u16();
        const quint8 properties = reader.u8();
        const quint16 handle = reader.u16();
        values.insert(handle, {uuidText(reader.take(size - kBeforeUuid)), properties, 0});
    }
}

void Attributes::readDescriptors(const QByteArray &response)
{
    ByteReader reader(response);
    reader.u8();
    constexpr quint8 kShortNumbers = 1;
    if (reader.u8() != kShortNumbers)
        return;
    constexpr qsizetype kSize = 4;
    while (reader.left() >= kSize) {
        const quint16 handle = reader.u16();
        if (reader.u16() != Gatt::kClientConfiguration)
            continue;
        auto it = values.lowerBound(handle);
        if (it != values.begin())
            (--it)->descriptor = handle;
    }
}

void Attributes::guess(const LoggedConnection &connection)
{
    const auto traces = tracesOf(connection);
    quint16 data = 0;
    for (auto it = traces.cbegin(); it != traces.cend(); ++it) {
        const auto frames = VardaTraceFrame::in(*it);
        if (std::any_of(frames.cbegin(), frames.cend(), [](const VardaTraceFrame &frame) {
                return frame.state == VardaTraceFrame::Sound;
            }))
            data = it.key();
    }
    if (data == 0)
        return;
    // Only one of the two kinds of link has a second value, which gets one byte.
    const auto credits = std::find_if(traces.cbegin(), traces.cend(), [](const auto &trace) {
        return trace.events.constFirst().bytes.size() == 1;
    });
    constexpr quint8 kWriteAndNotify = 0x1C;
    const bool isSps = credits != traces.cend();
    const quint16 first = isSps ? qMin(data, credits.key()) : data;
    services = {{first, {0xFFFF, isSps ? Gatt::kSpsService : Gatt::kGattService}}};
    values = {
        {data, {isSps ? Gatt::kSpsData : Gatt::kGattData, kWriteAndNotify, quint16(data + 1)}}};
    if (isSps)
        values.insert(credits.key(), {Gatt::kSpsCredits, kWriteAndNotify, 0});
}
