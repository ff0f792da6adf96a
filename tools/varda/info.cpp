// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "commands.h"
#include "connection.h"
#include "records.h"
#include "terminal.h"
#include "text.h"

#include <varda/vardadata.h>

using namespace Qt::StringLiterals;

namespace {

void readAll(Connection &connection)
{
    const VardaSession &session = connection.session();
    connection.readIfWhole(TidemarCommand::Serialnumber, u"serial number"_s);
    // Some models tell it with their identification.
    if (session.bootloaderVersion() == 0)
        connection.read(TidemarCommand::BootloaderVersion, u"bootloader version"_s);
    // A bootloader knows neither its owner nor the sea.
    if (session.currentMode() == CurrentMode::BootLoader)
        return;
    connection.read(TidemarCommand::Time, u"clock"_s);
    connection.read(TidemarCommand::Computer, u"battery type"_s);
    connection.read(TidemarCommand::SimulParams, u"surface pressure"_s);
    connection.read(TidemarCommand::Sensors, u"sensors"_s);
    // Last, because the settings have a text of their own in its place.
    connection.read(TidemarCommand::Owner, u"owner"_s);
}

Json serialNumber(const VardaSession &session)
{
    const QString &number = session.serialNumber();
    return number.isEmpty() ? Json(nullptr) : Json(number);
}

QString bootloaderText(const VardaSession &session)
{
    const quint32 version = session.bootloaderVersion();
    return version == 0 ? u"Unknown"_s : VardaData::firmwareVersionToString(version);
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

void printText(const Connection &connection)
{
    const VardaSession &session = connection.session();
    Table table;
    table.add(u"Name"_s, safeText(connection.device().name()));
    table.add(u"Address"_s, connection.device().address());
    table.add(u"Model"_s, session.computerModelStr());
    table.add(u"Mode"_s, modeText(session.currentMode()));
    const QString &serialNumber = session.serialNumber();
    table.add(u"Serial number"_s, serialNumber.isEmpty() ? u"unknown"_s : safeText(serialNumber));
    table.add(u"Firmware"_s, safeText(versionText(session.firmwareVersionStr())));
    table.add(u"Bootloader"_s, safeText(versionText(bootloaderText(session))));
    if (session.currentMode() != CurrentMode::BootLoader) {
        table.add(u"Owner"_s, safeText(session.owner()));
        table.add(u"Clock"_s, clockText(session.computerTime()));
        table.add(u"Battery type"_s, session.computer().getBatteryStr());
        table.add(u"Surface pressure"_s, u"%1 mbar"_s.arg(session.psurf()));
        table.add(u"Ambient pressure"_s, u"%1 mbar"_s.arg(session.pamb()));
    }
    print(table.text(outputStyle()));
}

void printJson(const Connection &connection)
{
    const VardaSession &session = connection.session();
    Fields fields{
        {"device"_L1, fieldsOf(connection.device())},
        {"computerModel"_L1, session.computerModelStr()},
        {"currentMode"_L1, session.qmlCurrentMode()},
        {"recordVersion"_L1, session.recordVersion()},
        {"serialNumber"_L1, serialNumber(session)},
        {"firmwareVersion"_L1, session.firmwareVersion()},
        {"firmwareVersionStr"_L1, versionText(session.firmwareVersionStr())},
        {"bootloaderVersion"_L1, session.bootloaderVersion()},
        {"bootloaderVersionStr"_L1, versionText(bootloaderText(session))},
    };
    if (session.currentMode() != CurrentMode::BootLoader) {
        append(fields, {
                           {"owner"_L1, session.owner()},
                           {"computerTime"_L1, session.computerTime()},
                           {"batteryType"_L1, session.computer().batteryType},
                           {"batteryStr"_L1, session.computer().getBatteryStr()},
                           {"psurf"_L1, session.psurf()},
                           {"pamb"_L1, session.pamb()},
                           {"dstop"_L1, session.dstop()},
                           {"density"_L1, session.density()},
                       });
    }
    print(fields);
}

void info(const Options &options)
{
    Connection connection(options);
    connection.read(TidemarCommand::Identification, u"identification"_s);
    readAll(connection);
    if (options.json)
        printJson(connection);
    else
        printText(connection);
}

} // namespace

void addInfo(CommandLine &line)
{
    line.add("info", "Tell what the computer is", info);
}
