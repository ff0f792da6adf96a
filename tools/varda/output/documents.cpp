// SPDX-License-Identifier: MIT
#include "output/documents.h"

#include "output/records.h"
#include "output/text.h"

#include <varda/vardacomputer.h>

#include <QtCore/qmetaobject.h>

using namespace Qt::StringLiterals;

namespace {

QString modeText(CurrentMode::CurrentModeIn mode)
{
    return QString::fromLatin1(QMetaEnum::fromType<CurrentMode::CurrentModeIn>().valueToKey(mode));
}

Fields membersOf(const SyslogBinRecord &record)
{
    return {{"time"_L1, record.time},
            {"type"_L1, record.type},
            {"arg1"_L1, record.arg1},
            {"arg2"_L1, record.arg2},
            {"text"_L1, convertSyslogRecord(record, true).trimmed()}};
}

Fields membersOf(const MarloSettings &settings)
{
    return {{"byte1"_L1, settings.byte1},   {"byte2"_L1, settings.byte2},
            {"float1"_L1, settings.float1}, {"byte3"_L1, settings.byte3},
            {"float2"_L1, settings.float2}, {"byte4"_L1, settings.byte4},
            {"byte5"_L1, settings.byte5},   {"byte6"_L1, settings.byte6}};
}

Fields membersOf(const LayoutEntry &layout)
{
    return {{"first"_L1, layout.first}, {"second"_L1, layout.second}, {"name"_L1, layout.name}};
}

QString familyText(const FirmwareImage &image)
{
    if (!image.hasHeader())
        return u"headerless"_s;
    return image.kind == FirmwareImage::Kind::Bootloader ? u"bootloader"_s : u"application"_s;
}

} // namespace

Fields documents::withDevice(const BleDeviceInfo &device, const Fields &document)
{
    Fields fields{{"device"_L1, fieldsOf(device)}};
    append(fields, document);
    return fields;
}

Fields documents::device(const BleDeviceInfo &device)
{
    Fields fields = fieldsOf(device);
    fields.emplace_back("computer"_L1, VardaComputer::isComputerName(device.name()));
    return fields;
}

Fields documents::devices(const QList<BleDeviceInfo> &devices)
{
    return {{"devices"_L1, listOf(devices, &documents::device)}};
}

Fields documents::info(const ComputerInfo &info)
{
    const VardaIdentity &identity = info.identity;
    const QString &serialNumber = identity.serialNumber;
    Fields fields{
        {"computerModel"_L1, modelText(identity)},
        {"currentMode"_L1, modeText(identity.mode)},
        {"recordVersion"_L1, identity.recordVersion},
        {"serialNumber"_L1, serialNumber.isEmpty() ? Json(nullptr) : Json(serialNumber)},
        {"firmwareVersion"_L1, identity.firmwareVersion},
        {"firmwareVersionStr"_L1, versionText(identity.firmwareVersionStr)},
        {"bootloaderVersion"_L1, identity.bootloaderVersion},
        {"bootloaderVersionStr"_L1, bootloaderText(identity)},
    };
    if (info.isBootloader())
        return fields;
    append(fields, {
                       {"owner"_L1, info.owner},
                       {"computerTime"_L1, info.time},
                       {"batteryType"_L1, info.computer.batteryType},
                       {"batteryStr"_L1, info.computer.getBatteryStr()},
                   });
    append(fields, sensors(info.sensors));
    return fields;
}

Fields documents::config(const VardaIdentity &identity, const VardaConfiguration &configuration)
{
    return {
        {"computerModel"_L1, modelText(identity)},
        {"firmwareVersionStr"_L1, versionText(identity.firmwareVersionStr)},
        {"config"_L1, fieldsOf(configuration.config)},
        {"computer"_L1, fieldsOf(configuration.computer)},
    };
}

Fields documents::clock(std::int64_t time)
{
    return {{"computerTime"_L1, time}};
}

Fields documents::owner(const QString &owner)
{
    return {{"owner"_L1, owner}};
}

Fields documents::sensors(const VardaSensors &sensors)
{
    return {{"psurf"_L1, sensors.psurf},
            {"pamb"_L1, sensors.pamb},
            {"dstop"_L1, sensors.dstop},
            {"density"_L1, sensors.density}};
}

Fields documents::tissues(const VardaTissues &tissues)
{
    return {{"diverN2"_L1, listOf(tissues.n2)},
            {"diverHe"_L1, listOf(tissues.he)},
            {"diverCns"_L1, tissues.cns}};
}

Fields documents::gasTables(const VardaGasTables &tables)
{
    return {{"gasTable1"_L1, gasesOf(tables.table1)}, {"gasTable2"_L1, gasesOf(tables.table2)}};
}

Fields documents::battery(const QList<BatteryInfoRecord> &records)
{
    return {{"batteryInfo"_L1,
             listOf(records, [](const BatteryInfoRecord &each) { return fieldsOf(each); })}};
}

Fields documents::log(const QStringList &lines)
{
    return {{"syslog"_L1, listOf(lines)}};
}

Fields documents::binaryLog(const QList<SyslogBinRecord> &records)
{
    return {{"syslogBin"_L1,
             listOf(records, [](const SyslogBinRecord &each) { return membersOf(each); })}};
}

Fields documents::settings(const MarloSettings &settings)
{
    return {{"marloSettings"_L1, membersOf(settings)}};
}

Fields documents::superUserMode(bool on, bool answered)
{
    return {{"superUserMode"_L1, on}, {"answered"_L1, answered}};
}

Fields documents::deletion(const DeleteDivesResult &result)
{
    const auto [resultA, resultB] = result;
    return {{"deleteResult"_L1, Fields{{"resultA"_L1, resultA}, {"resultB"_L1, resultB}}}};
}

Fields documents::layouts(const QList<LayoutEntry> &layouts)
{
    return {
        {"layouts"_L1, listOf(layouts, [](const LayoutEntry &each) { return membersOf(each); })}};
}

Fields documents::layout(int index, const QByteArray &blob)
{
    return {{"index"_L1, index},
            {"size"_L1, blob.size()},
            {"layoutBlob"_L1, QString::fromLatin1(blob.toHex())}};
}

Fields documents::activeLayouts(const std::array<std::int8_t, 5> &layouts)
{
    return {{"activeLayouts"_L1, listOf(layouts)}};
}

Fields documents::layoutsChanged()
{
    return {{"layoutCommandSuccess"_L1, true}};
}

Fields documents::firmware(const FirmwareImage &image)
{
    return {{"family"_L1, familyText(image)}, {"name"_L1, image.name},
            {"version"_L1, image.version},    {"versionStr"_L1, versionText(image.versionStr)},
            {"size"_L1, image.size},          {"crc"_L1, image.checksum}};
}

Fields documents::uploaded(const FirmwareImage &image, std::chrono::milliseconds elapsed)
{
    Fields fields = firmware(image);
    fields.emplace_back("uploadElapsed"_L1, std::chrono::duration<double>(elapsed).count());
    return fields;
}

Fields documents::dives(const VardaIdentity &identity)
{
    return {{"computerModel"_L1, modelText(identity)}};
}

Fields documents::dives(const VardaIdentity &identity, const Json &gaps)
{
    return {{"computerModel"_L1, modelText(identity)}, {"gaps"_L1, gaps}};
}

Fields documents::logbook(const VardaIdentity &identity, const QList<TidemarDiveHeader> &headers,
                          const Json &gaps)
{
    Fields fields = dives(identity, gaps);
    fields.emplace_back("diveHeaders"_L1, listOf(headers, [](const TidemarDiveHeader &each) {
                            return fieldsOf(each);
                        }));
    return fields;
}

Fields documents::storedDive(qint64 id, const DiveHeaderBlock &dive)
{
    return {{"id"_L1, id}, {"diveNumber"_L1, dive.diveNumber}, {"stamp"_L1, wide(dive.stamp)}};
}

Fields documents::synchronised(const VardaIdentity &identity, const Synchronised &done)
{
    return {{"computerModel"_L1, modelText(identity)},
            {"file"_L1, done.file},
            {"computer"_L1, done.computer},
            {"new"_L1, done.added},
            {"known"_L1, done.known},
            {"damaged"_L1, listOf(done.damaged)},
            {"dives"_L1, done.dives}};
}
