// SPDX-License-Identifier: MIT
#include "device/scenario/gatttable.h"

#include "device/scenario/jsonreader.h"

#include <QtCore/qregularexpression.h>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

const QString kCccd = u"00002902-0000-1000-8000-00805f9b34fb"_s;

const QString kUartService = u"49535343-fe7d-4ae5-8fa9-9fafd205e455"_s;
const QString kUartData = u"49535343-1e4d-4bd9-ba61-23c647249616"_s;
const QString kSpsService = u"2456e1b9-26e2-8f83-e744-f34f01e9d701"_s;
const QString kSpsFifo = u"2456e1b9-26e2-8f83-e744-f34f01e9d703"_s;
const QString kSpsCredits = u"2456e1b9-26e2-8f83-e744-f34f01e9d704"_s;

QString bluetoothUuid(const QString &sixteenBits)
{
    return u"0000%1-0000-1000-8000-00805f9b34fb"_s.arg(sixteenBits);
}

Role roleOf(const QString &uuid)
{
    if (uuid == kUartData || uuid == kSpsFifo)
        return Role::Data;
    return uuid == kSpsCredits ? Role::Credits : Role::None;
}

CharacteristicSpec readable(const QString &uuid, const QByteArray &value)
{
    return {uuid, {u"read"_s}, value, {}, Role::None};
}

CharacteristicSpec serial(const QString &uuid, Role role)
{
    return {uuid, {u"write-without-response"_s, u"write"_s, u"notify"_s}, {}, {{kCccd, {}}}, role};
}

ServiceSpec dataService(const DataServiceSpec &spec, bool sps)
{
    ServiceSpec service{
        spec.uuid.isEmpty() ? (sps ? kSpsService : kUartService) : spec.uuid, true, {}};
    if (spec.characteristicPresent) {
        CharacteristicSpec data = serial(sps ? kSpsFifo : kUartData, Role::Data);
        if (!spec.characteristic.isEmpty())
            data.uuid = spec.characteristic;
        if (!spec.flags.isEmpty())
            data.flags = spec.flags;
        if (!spec.cccd)
            data.descriptors.clear();
        service.characteristics.append(data);
    }
    if (sps && spec.creditsPresent)
        service.characteristics.append(serial(kSpsCredits, Role::Credits));
    return service;
}

CharacteristicSpec readCharacteristic(const QJsonValue &value, const QString &path)
{
    constexpr std::pair<const char *, Role> kRoles[] = {
        {"none", Role::None}, {"data", Role::Data}, {"credits", Role::Credits}};
    ObjectReader reader(value, path);
    CharacteristicSpec spec;
    spec.uuid = readUuid(reader.take("uuid"), reader.path("uuid"));
    spec.flags = readFlags(reader);
    spec.value = reader.hex("value");
    spec.role = reader.choice("role", roleOf(spec.uuid), kRoles);
    const bool notifies = spec.flags.contains(u"notify"_s) || spec.flags.contains(u"indicate"_s);
    if (reader.boolean("cccd", notifies))
        spec.descriptors.append({kCccd, {}});
    const QJsonArray descriptors = reader.array("descriptors");
    for (qsizetype i = 0; i < descriptors.size(); ++i) {
        ObjectReader each(descriptors[i], reader.path("descriptors") + u"[%1]"_s.arg(i));
        spec.descriptors.append(
            {readUuid(each.take("uuid"), each.path("uuid")), each.hex("value")});
        each.finish();
    }
    reader.finish();
    return spec;
}

} // namespace

QStringList readFlags(ObjectReader &reader)
{
    static const QStringList kKnown = {
        u"broadcast"_s, u"read"_s,     u"write-without-response"_s,      u"write"_s,
        u"notify"_s,    u"indicate"_s, u"authenticated-signed-writes"_s, u"extended-properties"_s,
    };
    QStringList flags;
    const QJsonArray list = reader.array("flags");
    for (qsizetype i = 0; i < list.size(); ++i) {
        const QString where = reader.path("flags") + u"[%1]"_s.arg(i);
        const QString flag = readText(list[i], where);
        if (!kKnown.contains(flag))
            badValue(where, u"\"%1\" is not one of %2"_s.arg(flag, kKnown.join(u", "_s)));
        flags.append(flag);
    }
    return flags;
}

QString readUuid(const QJsonValue &value, const QString &path)
{
    static const QRegularExpression kLongForm(
        u"^[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}$"_s);
    static const QRegularExpression kShortForm(u"^[0-9a-f]{4}$"_s);
    QString text = readText(value, path).toLower();
    if (kShortForm.match(text).hasMatch())
        return bluetoothUuid(text);
    if (!kLongForm.match(text).hasMatch())
        badValue(path, u"\"%1\" is not a UUID"_s.arg(text));
    return text;
}

ServiceSpec readService(const QJsonValue &value, const QString &path)
{
    ObjectReader reader(value, path);
    ServiceSpec service;
    service.uuid = readUuid(reader.take("uuid"), reader.path("uuid"));
    service.primary = reader.boolean("primary", true);
    const QJsonArray list = reader.array("characteristics");
    for (qsizetype i = 0; i < list.size(); ++i) {
        service.characteristics.append(
            readCharacteristic(list[i], reader.path("characteristics") + u"[%1]"_s.arg(i)));
    }
    reader.finish();
    return service;
}

QList<ServiceSpec> gattTable(const DeviceScenario &device)
{
    if (device.hasOwnTable)
        return device.services;

    QList<ServiceSpec> table;
    table.append({bluetoothUuid(u"1800"_s),
                  true,
                  {readable(bluetoothUuid(u"2a00"_s), device.name.value_or(QString()).toUtf8()),
                   readable(bluetoothUuid(u"2a01"_s), QByteArray::fromHex("0000"))}});
    table.append({bluetoothUuid(u"1801"_s), true, {}});
    table.append({bluetoothUuid(u"180a"_s),
                  true,
                  {readable(bluetoothUuid(u"2a29"_s), QByteArrayLiteral("Simulated"))}});
    table += device.extraBefore;
    if (device.dataService.present) {
        if (device.mode == LinkMode::Gatt || device.mode == LinkMode::Both)
            table.append(dataService(device.dataService, false));
        if (device.mode == LinkMode::Sps || device.mode == LinkMode::Both)
            table.append(dataService(device.dataService, true));
    }
    table += device.extraAfter;
    return table;
}

} // namespace simulator
