// SPDX-License-Identifier: MIT
#pragma once

#include "output/json.h"

#include <varda/batteryinforecord.h>
#include <varda/blecomputer.h>
#include <varda/bledeviceinfo.h>
#include <varda/deletedivesresult.h>
#include <varda/firmwareimage.h>
#include <varda/layoutentry.h>
#include <varda/marlosettings.h>
#include <varda/syslogbinrecord.h>
#include <varda/tidemardiveheader.h>
#include <varda/vardaconfiguration.h>
#include <varda/vardagastables.h>
#include <varda/vardaidentity.h>
#include <varda/vardasensors.h>
#include <varda/vardatissues.h>

#include <QtCore/qlist.h>
#include <QtCore/qstringlist.h>

#include <array>
#include <chrono>
#include <cstdint>

/** All that a computer says about itself. A bootloader knows neither its owner nor the sea. */
struct ComputerInfo {
    VardaIdentity identity;
    std::int64_t time = 0;
    BleComputer computer;
    VardaSensors sensors;
    QString owner;

    [[nodiscard]] bool isBootloader() const { return identity.mode == CurrentMode::BootLoader; }
};

/** What the results are in JSON, each without the device that it is from. */
namespace documents {

/** Behind the device. */
[[nodiscard]] Fields withDevice(const BleDeviceInfo &device, const Fields &document = {});

[[nodiscard]] Fields device(const BleDeviceInfo &device);
[[nodiscard]] Fields devices(const QList<BleDeviceInfo> &devices);

[[nodiscard]] Fields info(const ComputerInfo &info);
[[nodiscard]] Fields config(const VardaIdentity &identity, const VardaConfiguration &configuration);
[[nodiscard]] Fields clock(std::int64_t time);
[[nodiscard]] Fields owner(const QString &owner);
[[nodiscard]] Fields sensors(const VardaSensors &sensors);
[[nodiscard]] Fields tissues(const VardaTissues &tissues);
[[nodiscard]] Fields gasTables(const VardaGasTables &tables);
[[nodiscard]] Fields battery(const QList<BatteryInfoRecord> &records);
[[nodiscard]] Fields log(const QStringList &lines);
[[nodiscard]] Fields binaryLog(const QList<SyslogBinRecord> &records);

[[nodiscard]] Fields settings(const MarloSettings &settings);
[[nodiscard]] Fields superUserMode(bool on, bool answered);
[[nodiscard]] Fields deletion(const DeleteDivesResult &result);

[[nodiscard]] Fields layouts(const QList<LayoutEntry> &layouts);
[[nodiscard]] Fields layout(int index, const QByteArray &blob);
[[nodiscard]] Fields activeLayouts(const std::array<std::int8_t, 5> &layouts);
/** After each change of them. */
[[nodiscard]] Fields layoutsChanged();

[[nodiscard]] Fields firmware(const FirmwareImage &image);
[[nodiscard]] Fields uploaded(const FirmwareImage &image, std::chrono::milliseconds elapsed);

/** Of what the dives are; they themselves come behind it. */
[[nodiscard]] Fields dives(const VardaIdentity &identity);
/** @param gaps  as numberGaps() knows them */
[[nodiscard]] Fields dives(const VardaIdentity &identity, const Json &gaps);
[[nodiscard]] Fields logbook(const VardaIdentity &identity, const QList<TidemarDiveHeader> &headers,
                             const Json &gaps);

/** What a synchronisation has done. */
struct Synchronised {
    QString file;
    qint64 computer = 0;
    int added = 0;
    int known = 0;
    QList<std::uint16_t> damaged;
    std::vector<Json> dives;
};
[[nodiscard]] Fields storedDive(qint64 id, const DiveHeaderBlock &dive);
[[nodiscard]] Fields synchronised(const VardaIdentity &identity, const Synchronised &done);

} // namespace documents
