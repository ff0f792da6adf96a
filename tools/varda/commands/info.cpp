// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "output/documents.h"
#include "output/records.h"
#include "output/safetext.h"
#include "output/tables.h"
#include "output/terminal.h"
#include "output/text.h"
#include "run/runner.h"

using namespace Qt::StringLiterals;

namespace {

ComputerInfo readAll(Runner &runner)
{
    VardaComputer &computer = runner.computer();
    ComputerInfo about;
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

void printText(const BleDeviceInfo &device, const ComputerInfo &about)
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
    table.add(u"Bootloader"_s, safeText(bootloaderText(identity)));
    if (!about.isBootloader()) {
        table.add(u"Owner"_s, safeText(about.owner));
        table.add(u"Clock"_s, clockText(about.time));
        table.add(u"Battery type"_s, about.computer.getBatteryStr());
        table.add(u"Surface pressure"_s, u"%1 mbar"_s.arg(about.sensors.psurf));
        table.add(u"Ambient pressure"_s, u"%1 mbar"_s.arg(about.sensors.pamb));
    }
    print(table.text(outputStyle()));
}

class Info : public Command
{
public:
    Info() : Command("info", "Show what the computer is") { }

    void run(const Options &options) const override
    {
        Runner runner(options);
        const ComputerInfo about = readAll(runner);
        if (options.json)
            print(documents::withDevice(runner.device(), documents::info(about)));
        else
            printText(runner.device(), about);
    }
};

} // namespace

void addInfo(Commands &commands)
{
    commands.push_back(std::make_unique<Info>());
}
