// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "output/records.h"
#include "output/safetext.h"
#include "output/tables.h"
#include "output/terminal.h"
#include "output/text.h"
#include "run/runner.h"

#include <QtCore/qmetaobject.h>

using namespace Qt::StringLiterals;

namespace {

/** All that a computer says about itself. A bootloader knows neither its owner nor the sea. */
struct About {
    VardaIdentity identity;
    std::int64_t time = 0;
    BleComputer computer;
    VardaSensors sensors;
    QString owner;

    [[nodiscard]] bool isBootloader() const { return identity.mode == CurrentMode::BootLoader; }
};

About readAll(Runner &runner)
{
    VardaComputer &computer = runner.computer();
    About about;
    about.identity = runner.resultOf(computer.readIdentity(), u"Reading the identification"_s);
    if (about.identity.serialNumber.isEmpty())
        printWarning(u"the serial number could not be read"_s);
    if (about.isBootloader())
        return about;
    about.time = runner.resultOf(computer.readClock(), u"Reading the clock"_s);
    about.computer =
        runner.resultOf(computer.readConfiguration(true), u"Reading the battery type"_s).computer;
    about.sensors = runner.resultOf(computer.readSensors(), u"Reading the sensors"_s);
    about.owner = runner.resultOf(computer.readOwner(), u"Reading the owner"_s);
    return about;
}

QString bootloaderText(const VardaIdentity &identity)
{
    return identity.bootloaderVersion == 0 ? u"Unknown"_s : identity.bootloaderVersionStr;
}

QString modeText(CurrentMode::CurrentModeIn mode)
{
    switch (mode) {
    case CurrentMode::Normal:
        return u"normal"_s;
    case CurrentMode::BootLoader:
        return u"bootloader"_s;
    case CurrentMode::Unknown:
        break;
    }
    return u"unknown"_s;
}

void printText(const BleDeviceInfo &device, const About &about)
{
    const VardaIdentity &identity = about.identity;
    Table table;
    table.add(u"Name"_s, safeText(device.name()));
    table.add(u"Address"_s, device.address());
    table.add(u"Model"_s, modelText(identity));
    table.add(u"Mode"_s, modeText(identity.mode));
    table.add(u"Serial number"_s,
              identity.serialNumber.isEmpty() ? u"unknown"_s : safeText(identity.serialNumber));
    table.add(u"Firmware"_s, safeText(versionText(identity.firmwareVersionStr)));
    table.add(u"Bootloader"_s, safeText(versionText(bootloaderText(identity))));
    if (!about.isBootloader()) {
        table.add(u"Owner"_s, safeText(about.owner));
        table.add(u"Clock"_s, clockText(about.time));
        table.add(u"Battery type"_s, about.computer.getBatteryStr());
        table.add(u"Surface pressure"_s, u"%1 mbar"_s.arg(about.sensors.psurf));
        table.add(u"Ambient pressure"_s, u"%1 mbar"_s.arg(about.sensors.pamb));
    }
    print(table.text(outputStyle()));
}

void printJson(const BleDeviceInfo &device, const About &about)
{
    const VardaIdentity &identity = about.identity;
    const QString &serialNumber = identity.serialNumber;
    Fields fields{
        {"device"_L1, fieldsOf(device)},
        {"computerModel"_L1, modelText(identity)},
        {"currentMode"_L1,
         QString::fromLatin1(
             QMetaEnum::fromType<CurrentMode::CurrentModeIn>().valueToKey(identity.mode))},
        {"recordVersion"_L1, identity.recordVersion},
        {"serialNumber"_L1, serialNumber.isEmpty() ? Json(nullptr) : Json(serialNumber)},
        {"firmwareVersion"_L1, identity.firmwareVersion},
        {"firmwareVersionStr"_L1, versionText(identity.firmwareVersionStr)},
        {"bootloaderVersion"_L1, identity.bootloaderVersion},
        {"bootloaderVersionStr"_L1, versionText(bootloaderText(identity))},
    };
    if (!about.isBootloader()) {
        append(fields, {
                           {"owner"_L1, about.owner},
                           {"computerTime"_L1, about.time},
                           {"batteryType"_L1, about.computer.batteryType},
                           {"batteryStr"_L1, about.computer.getBatteryStr()},
                           {"psurf"_L1, about.sensors.psurf},
                           {"pamb"_L1, about.sensors.pamb},
                           {"dstop"_L1, about.sensors.dstop},
                           {"density"_L1, about.sensors.density},
                       });
    }
    print(fields);
}

class Info : public Command
{
public:
    Info() : Command("info", "Show what the computer is") { }

    void run(const Options &options) const override
    {
        Runner runner(options);
        const About about = readAll(runner);
        if (options.json)
            printJson(runner.device(), about);
        else
            printText(runner.device(), about);
    }
};

} // namespace

void addInfo(Commands &commands)
{
    commands.push_back(std::make_unique<Info>());
}
