// SPDX-License-Identifier: MIT
#include "device/scenario/scenario.h"

#include "device/commands.h"
#include "device/memory/batteryhistory.h"
#include "device/scenario/gatttable.h"
#include "device/scenario/jsonreader.h"
#include "device/versiontext.h"
#include "device/wire/wirewriter.h"

#include <QtCore/qdatetime.h>
#include <QtCore/qjsondocument.h>
#include <QtCore/qregularexpression.h>
#include <QtCore/qtimezone.h>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

constexpr int kMaxMs = 3'600'000;

// A peripheral is never heard in the very moment in which a discovery starts. Qt asks for the
// known devices right after it started one and must not find a new device there already.
constexpr int kFirstAdvertisement = 10;

constexpr std::pair<const char *, Model> kModels[] = {
    {"varda", Model::Varda}, {"tidemar", Model::Tidemar},       {"vskm", Model::Vskm},
    {"none", Model::None},   {"thirdparty", Model::ThirdParty},
};

constexpr std::pair<const char *, LinkMode> kModes[] = {
    {"gatt", LinkMode::Gatt},
    {"sps", LinkMode::Sps},
    {"both", LinkMode::Both},
    {"none", LinkMode::None},
};

constexpr std::pair<const char *, Radio> kRadios[] = {
    {"le", Radio::LowEnergy}, {"classic", Radio::Classic}, {"dual", Radio::Dual}};

// What a healthy computer of a model is when the scenario does not say otherwise.
struct Profile {
    const char *name;
    const char *firmware;
    const char *bootloader;
    Model model;
    int configurationVersion; // the newest there is
};

constexpr Profile kProfiles[] = {
    {"Varda", "1.4.2.b", "1.0.3.a", Model::Varda, 13},
    {"Tidemar", "2.3.1.c", "2.0.1.a", Model::Tidemar, 12},
    {"VSK-0042", "3.1.0.d", "3.0.2.b", Model::Vskm, 21},
    {"RN4871-1A2B", "4.0.0.a", "4.0.0.a", Model::ThirdParty, 1},
    {"RN4871-0000", "0.9.0.a", "0.0.0.a", Model::None, 1},
};

const Profile &profileOf(Model model)
{
    return *std::ranges::find(kProfiles, model, &Profile::model);
}

QString readAddress(ObjectReader &reader, const QString &fallback)
{
    static const QRegularExpression kPattern(u"^([0-9A-F]{2}:){5}[0-9A-F]{2}$"_s);
    const QString address = reader.text("address", fallback);
    if (!kPattern.match(address).hasMatch()) {
        badValue(reader.path("address"),
                 u"\"%1\" is not an address such as 00:AA:01:01:00:01"_s.arg(address));
    }
    return address;
}

quint32 readVersion(ObjectReader &reader, const char *key, const char *fallback)
{
    const QString text = reader.text(key, QLatin1String(fallback));
    const std::optional<quint32> packed = packVersion(text);
    if (!packed)
        badValue(reader.path(key), u"\"%1\" is not a version such as 1.4.2.b"_s.arg(text));
    return *packed;
}

// As people read it: "0011AABB-22334455-66778899", or "0605-0403-0201-A" for the oldest records.
QByteArray readSerial(ObjectReader &reader, int recordVersion)
{
    static const QRegularExpression kWords(
        u"^([0-9A-Fa-f]{8})-([0-9A-Fa-f]{8})-([0-9A-Fa-f]{8})$"_s);
    static const QRegularExpression kOld(
        u"^([0-9A-Fa-f]{4})-([0-9A-Fa-f]{4})-([0-9A-Fa-f]{4})-(.)$"_s);

    if (recordVersion == 0) {
        const QString text = reader.text("serial", u"2024-0517-0042-B"_s);
        const QRegularExpressionMatch match = kOld.match(text);
        if (!match.hasMatch() || match.captured(4).front().unicode() > 255)
            badValue(reader.path("serial"), u"\"%1\" is not like 0605-0403-0201-A"_s.arg(text));
        QByteArray bytes = QByteArray::fromHex(
            (match.captured(1) + match.captured(2) + match.captured(3)).toLatin1());
        std::ranges::reverse(bytes);
        return bytes + match.captured(4).toLatin1();
    }

    const QString text = reader.text("serial", u"00420017-3138510D-37373934"_s);
    const QRegularExpressionMatch match = kWords.match(text);
    if (!match.hasMatch()) {
        badValue(reader.path("serial"),
                 u"\"%1\" is not like 0011AABB-22334455-66778899"_s.arg(text));
    }
    WireWriter w;
    for (int i = 1; i <= 3; ++i)
        w.u32(match.captured(i).toUInt(nullptr, 16));
    return w.data();
}

void readClock(ObjectReader &reader, DeviceScenario &device)
{
    const QJsonValue value = reader.take("clock");
    device.clockRuns = reader.boolean("clockRuns", value.isUndefined());
    if (value.isUndefined()) {
        const QDateTime now = QDateTime::currentDateTime();
        device.clock = now.toSecsSinceEpoch() + now.offsetFromUtc();
    } else if (value.isString()) {
        // The computer shows the time of day where it is and knows no time zone.
        const QDateTime time = QDateTime::fromString(value.toString(), Qt::ISODate);
        if (!time.isValid())
            badValue(reader.path("clock"),
                     u"expected seconds or a time such as 2024-05-17T08:30:00"_s);
        device.clock = QDateTime(time.date(), time.time(), QTimeZone::utc()).toSecsSinceEpoch();
    } else {
        device.clock = readInteger(value, reader.path("clock"), -(qint64(1) << 53),
                                   qint64(1) << 53);
    }
}

void readLoads(ObjectReader &reader, const char *key, std::array<float, 16> &loads)
{
    const QJsonArray list = reader.array(key);
    if (list.size() > 16)
        badValue(reader.path(key), u"at most 16 tissues fit"_s);
    for (qsizetype i = 0; i < list.size(); ++i)
        loads[size_t(i)] = float(readNumber(list[i], reader.path(key) + u"[%1]"_s.arg(i)));
}

void readDiver(ObjectReader &device, DeviceScenario &scenario)
{
    restTissues(scenario);
    if (!device.has("diver"))
        return;
    ObjectReader reader(device.take("diver"), device.path("diver"));
    readLoads(reader, "n2", scenario.tissueN2);
    readLoads(reader, "he", scenario.tissueHe);
    const QJsonValue cns = reader.take("cns");
    if (!cns.isUndefined())
        scenario.cns = float(readNumber(cns, reader.path("cns")));
    reader.finish();
}

void readGases(ObjectReader &reader, const char *key, const char *table, Configuration &target)
{
    if (!reader.has(key))
        return;
    const QJsonArray list = reader.array(key);
    if (list.size() > 12)
        badValue(reader.path(key), u"at most 12 gases fit"_s);
    for (int i = 0; i < 12; ++i) {
        quint64 mix = 0;
        if (i < list.size()) {
            const QString where = reader.path(key) + u"[%1]"_s.arg(i);
            const QJsonArray pair = readArray(list[i], where);
            if (pair.size() != 2)
                badValue(where, u"expected [oxygen, helium] in percent"_s);
            mix = quint64(readInteger(pair[0], where, 0, 255))
                  | quint64(readInteger(pair[1], where, 0, 255)) << 8;
        }
        target.set(table, mix, i);
    }
}

void readConfiguration(ObjectReader &reader, DeviceScenario &device)
{
    Configuration &configuration = device.configuration;
    const QJsonValue version = reader.take("configurationVersion");
    if (version.toString() == "short"_L1) {
        configuration.setShortForm();
    } else {
        const int newest = profileOf(device.model).configurationVersion;
        configuration.setVersion(
            device.model,
            version.isUndefined()
                ? newest
                : int(readInteger(version, reader.path("configurationVersion"), 0, 255)));
    }
    configuration.set("surfacePressure", std::min(device.psurf, 0xFFFFU));
    readGases(reader, "gases", "gasTable1", configuration);
    readGases(reader, "gases2", "gasTable2", configuration);
    if (reader.has("configuration"))
        configuration.read(reader.take("configuration"), reader.path("configuration"));
    if (version.toString() == "short"_L1 && configuration.value("configWord") >= 255) {
        badValue(reader.path("configuration.configWord"),
                 u"only values below 255 fit in the short form"_s);
    }
}

void readBattery(ObjectReader &reader, DeviceScenario &device)
{
    if (!reader.has("battery")) {
        device.battery = plausibleBatteryHistory();
        return;
    }
    const QJsonArray list = reader.array("battery");
    for (qsizetype i = 0; i < list.size(); ++i) {
        const QString where = reader.path("battery") + u"[%1]"_s.arg(i);
        const QJsonArray pair = readArray(list[i], where);
        if (pair.size() != 2)
            badValue(where, u"expected two numbers of 32 bits"_s);
        const auto word = [&](qsizetype index) {
            return quint32(readInteger(pair[index], where, 0, 0xFFFF'FFFF));
        };
        device.battery.append({word(0), word(1)});
    }
}

QList<QByteArray> readParts(const QJsonValue &value, const QString &path)
{
    QList<QByteArray> parts;
    const QJsonArray list = readArray(value, path);
    for (qsizetype i = 0; i < list.size(); ++i)
        parts.append(readHex(list[i], path + u"[%1]"_s.arg(i)));
    return parts;
}

void readResponses(ObjectReader &device, DeviceScenario &scenario)
{
    if (!device.has("responses"))
        return;
    ObjectReader reader(device.take("responses"), device.path("responses"));
    const QStringList keys = reader.keys();
    for (const QString &key : keys) {
        const QByteArray name = key.toUtf8();
        const std::optional<quint8> command = commandFromText(key);
        if (!command)
            badValue(reader.path(name), u"unknown command \"%1\""_s.arg(key));
        const QJsonValue value = reader.take(name);
        Response response;
        if (value.isObject()) {
            ObjectReader raw(value, reader.path(name));
            response.raw = true;
            response.parts = readParts(raw.take("notifications"), raw.path("notifications"));
            raw.finish();
        } else {
            response.parts = readParts(value, reader.path(name));
        }
        scenario.responses.insert(*command, response);
    }
}

QList<ServiceSpec> readServices(ObjectReader &reader, const char *key)
{
    QList<ServiceSpec> services;
    const QJsonArray list = reader.array(key);
    for (qsizetype i = 0; i < list.size(); ++i)
        services.append(readService(list[i], reader.path(key) + u"[%1]"_s.arg(i)));
    return services;
}

void readDataService(ObjectReader &device, DataServiceSpec &spec)
{
    if (!device.has("dataService"))
        return;
    ObjectReader reader(device.take("dataService"), device.path("dataService"));
    if (reader.has("uuid"))
        spec.uuid = readUuid(reader.take("uuid"), reader.path("uuid"));
    if (reader.has("characteristic"))
        spec.characteristic = readUuid(reader.take("characteristic"),
                                       reader.path("characteristic"));
    spec.present = reader.boolean("present", true);
    spec.characteristicPresent = reader.boolean("characteristicPresent", true);
    spec.creditsPresent = reader.boolean("creditsPresent", true);
    spec.cccd = reader.boolean("cccd", true);
    spec.flags = readFlags(reader);
    reader.finish();
}

void readLink(ObjectReader &reader, DeviceScenario &device)
{
    constexpr std::pair<const char *, bool> kCredits[] = {{"ignored", false}, {"counted", true}};
    device.mode = reader.choice("mode", LinkMode::Gatt, kModes);
    device.mtu = int(reader.integer("mtu", 247, 23, 517));
    device.split = int(reader.integer("split", 0, 0, 65535));
    device.merge = reader.boolean("merge", false);
    device.countCredits = reader.choice("credits", false, kCredits);
    if (reader.has("pace")) {
        ObjectReader pace(reader.take("pace"), reader.path("pace"));
        device.paceMs = int(pace.integer("ms", 30, 1, kMaxMs));
        device.paceCount = int(pace.integer("count", 1, 1, 65535));
        pace.finish();
    }
    device.hasOwnTable = reader.has("services");
    device.services = readServices(reader, "services");
    device.extraBefore = readServices(reader, "servicesBefore");
    device.extraAfter = readServices(reader, "servicesAfter");
    readDataService(reader, device.dataService);
    const QJsonArray faults = reader.array("faults");
    for (qsizetype i = 0; i < faults.size(); ++i)
        device.faults.append(readFault(faults[i], reader.path("faults") + u"[%1]"_s.arg(i)));
    readResponses(reader, device);
}

void readAdvertising(ObjectReader &reader, DeviceScenario &device, int index)
{
    constexpr std::pair<const char *, const char *> kAddressTypes[] = {{"public", "public"},
                                                                       {"random", "random"}};
    const QJsonValue name = reader.take("name");
    if (name.isUndefined())
        device.name = QLatin1String(profileOf(device.model).name);
    else if (!name.isNull())
        device.name = readText(name, reader.path("name"));
    if (reader.has("alias"))
        device.alias = reader.text("alias", {});
    device.address = readAddress(
        reader, u"00:AA:01:01:00:%1"_s.arg(index + 1, 2, 16, QLatin1Char('0')).toUpper());
    device.addressType = QLatin1String(reader.choice("addressType", "public", kAddressTypes));
    device.radio = reader.choice("type", Radio::LowEnergy, kRadios);
    const bool classic = device.radio != Radio::LowEnergy;
    device.deviceClass = quint32(reader.integer("class", classic ? 0x240404 : 0, 0, 0xFF'FFFF));
    // A computer of the other kind is no answer to a Low Energy scan; it is there because the
    // host has met it before.
    device.known = reader.boolean("known", device.radio == Radio::Classic);

    const int rssi = int(reader.integer("rssi", -60, -127, 127));
    if (!reader.has("advertise")) {
        device.advertise.append({kFirstAdvertisement, rssi, std::nullopt});
        return;
    }
    const QJsonArray list = reader.array("advertise");
    for (qsizetype i = 0; i < list.size(); ++i) {
        ObjectReader each(list[i], reader.path("advertise") + u"[%1]"_s.arg(i));
        Advertisement advertisement;
        advertisement.after = int(each.integer("after", kFirstAdvertisement, 0, kMaxMs));
        advertisement.rssi = int(each.integer("rssi", rssi, -127, 127));
        if (each.has("name"))
            advertisement.name = each.text("name", {});
        each.finish();
        device.advertise.append(advertisement);
    }
}

void readContent(ObjectReader &reader, DeviceScenario &device)
{
    const Profile &profile = profileOf(device.model);
    const bool hasModelInCode = device.model == Model::Varda || device.model == Model::Tidemar
                                || device.model == Model::Vskm;
    device.recordVersion = int(reader.integer("recordVersion", 1, hasModelInCode ? 1 : 0, 10));
    device.firmware = readVersion(reader, "firmware", profile.firmware);
    const QJsonValue bootloader = reader.take("bootloader");
    device.bootloader = bootloader.isNull() ? 0
                                            : readVersion(reader, "bootloader", profile.bootloader);
    device.serial = readSerial(reader, device.recordVersion);
    device.owner = reader.text("owner", u"Ada Lindqvist"_s);
    readClock(reader, device);
    constexpr qint64 kMax32 = std::numeric_limits<quint32>::max();
    device.psurf = quint32(reader.integer("psurf", 1013, 0, kMax32));
    device.pamb = quint32(reader.integer("pamb", device.psurf, 0, kMax32));
    device.dstop = quint16(reader.integer("dstop", 0, 0, 0xFFFF));
    device.density = quint16(reader.integer("density", 1030, 0, 0xFFFF));
    device.logbook = readLogbook(reader, device.model);
    device.log = readEventLog(reader);
    device.layouts = readLayouts(reader);
    device.firmwareUpload = readFirmware(reader);
    readDiver(reader, device);
    readBattery(reader, device);
    readConfiguration(reader, device);
}

DeviceScenario readDevice(const QJsonValue &value, const QString &path, int index)
{
    ObjectReader reader(value, path);
    DeviceScenario device;
    device.model = reader.choice("model", Model::Varda, kModels);
    readAdvertising(reader, device, index);
    readLink(reader, device);
    readContent(reader, device);
    reader.finish();
    return device;
}

AdapterScenario readAdapter(const QJsonValue &value)
{
    ObjectReader reader(value.isUndefined() ? QJsonValue(QJsonObject()) : value, u"adapter"_s);
    AdapterScenario adapter;
    adapter.address = readAddress(reader, u"00:AA:01:00:00:00"_s);
    adapter.powered = reader.boolean("powered", true);
    adapter.present = reader.boolean("present", true);
    reader.finish();
    return adapter;
}

QJsonValue withOverrides(const QJsonValue &device, const Scenario::Overrides &overrides)
{
    QJsonObject object = device.toObject();
    if (!device.isObject() || object.value("type"_L1).toString() == "classic"_L1)
        return device;
    if (!overrides.model.isEmpty())
        object.insert("model"_L1, overrides.model);
    if (!overrides.mode.isEmpty())
        object.insert("mode"_L1, overrides.mode);
    return object;
}

Scenario readScenario(const QJsonObject &object, const Scenario::Overrides &overrides)
{
    ObjectReader reader(object, {});
    Scenario scenario;
    scenario.adapter = readAdapter(reader.take("adapter"));
    scenario.disconnectDelay = int(reader.integer("disconnectDelay", 0, 0, kMaxMs));
    scenario.temporaryTimeout = int(reader.integer("temporaryTimeout", 30000, 0, kMaxMs));
    scenario.recordTraffic = reader.boolean("recordTraffic", true);
    const QJsonArray devices = reader.array("devices");
    for (qsizetype i = 0; i < devices.size(); ++i) {
        const QString path = u"devices[%1]"_s.arg(i);
        const DeviceScenario device = readDevice(withOverrides(devices[i], overrides), path,
                                                 int(i));
        for (const DeviceScenario &other : std::as_const(scenario.devices)) {
            if (other.address == device.address)
                badValue(path + u".address"_s, u"%1 is already taken"_s.arg(device.address));
        }
        scenario.devices.append(device);
    }
    reader.finish();
    return scenario;
}

QString placeOf(const QByteArray &json, int offset)
{
    const QByteArray before = json.left(offset);
    const qsizetype line = before.count('\n') + 1;
    const qsizetype column = offset - before.lastIndexOf('\n');
    return u"line %1, column %2"_s.arg(line).arg(column);
}

} // namespace

void restTissues(DeviceScenario &device)
{
    // In air at sea level, a little nitrogen left in the slow tissues.
    for (size_t i = 0; i < 16; ++i)
        device.tissueN2[i] = 0.745F + 0.0125F * float(i);
    device.tissueHe.fill(0);
    device.cns = 4.5F;
}

std::optional<Scenario> Scenario::parse(const QByteArray &json, QString *error,
                                        const Overrides &overrides)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        // Qt points behind the character that it did not expect.
        *error = placeOf(json, std::max(0, parseError.offset - 1)) + u": "_s
                 + parseError.errorString();
        return std::nullopt;
    }
    if (!document.isObject()) {
        *error = u"expected an object"_s;
        return std::nullopt;
    }
    try {
        return readScenario(document.object(), overrides);
    } catch (const BadScenario &bad) {
        *error = bad.text;
        return std::nullopt;
    }
}

} // namespace simulator
