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
    connection.read(TidemarCommand::Serialnumber, u"serial number"_s);
    // Some models tell it with their identification.
    if (session.bootloaderVersion() == 0)
        connection.read(TidemarCommand::BootloaderVersion, u"bootloader version"_s);
    // A bootloader knows neither its owner nor the sea.
    if (session.currentMode() == CurrentMode::BootLoader)
        return;
    connection.read(TidemarCommand::Owner, u"owner"_s);
    connection.read(TidemarCommand::Time, u"clock"_s);
    connection.read(TidemarCommand::Computer, u"battery type"_s);
    connection.read(TidemarCommand::SimulParams, u"surface pressure"_s);
    connection.read(TidemarCommand::Sensors, u"sensors"_s);
}

QString bootloaderText(const VardaSession &session)
{
    const quint32 version = session.bootloaderVersion();
    return version == 0 ? u"unknown"_s : VardaData::firmwareVersionToString(version);
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
    table.add(u"Serial number"_s, safeText(session.serialNumber()));
    table.add(u"Firmware"_s, safeText(versionText(session.firmwareVersionStr())));
    table.add(u"Bootloader"_s, safeText(versionText(bootloaderText(session))));
    if (session.currentMode() != CurrentMode::BootLoader) {
        table.add(u"Owner"_s, safeText(session.owner()));
        table.add(u"Clock"_s, clockText(session.computerTime()));
        table.add(u"Battery type"_s, session.computer().getBatteryStr());
        table.add(u"Surface pressure"_s, u"%1 mbar"_s.arg(session.psurf()));
        table.add(u"Ambient pressure"_s, u"%1 mbar"_s.arg(session.pamb()));
    }
    print(table.text());
}

void printJson(const Connection &connection)
{
    const VardaSession &session = connection.session();
    QJsonObject object{
        {u"device"_s, toJson(connection.device())},
        {u"computerModel"_s, session.computerModelStr()},
        {u"currentMode"_s, session.qmlCurrentMode()},
        {u"recordVersion"_s, session.recordVersion()},
        {u"serialNumber"_s, session.serialNumber()},
        {u"firmwareVersion"_s, qint64(session.firmwareVersion())},
        {u"firmwareVersionStr"_s, versionText(session.firmwareVersionStr())},
        {u"bootloaderVersion"_s, qint64(session.bootloaderVersion())},
        {u"bootloaderVersionStr"_s, versionText(bootloaderText(session))},
    };
    if (session.currentMode() != CurrentMode::BootLoader) {
        object.insert(u"owner"_s, session.owner());
        object.insert(u"computerTime"_s, qint64(session.computerTime()));
        object.insert(u"batteryType"_s, session.computer().batteryType);
        object.insert(u"batteryStr"_s, session.computer().getBatteryStr());
        object.insert(u"psurf"_s, qint64(session.psurf()));
        object.insert(u"pamb"_s, qint64(session.pamb()));
        object.insert(u"dstop"_s, session.dstop());
        object.insert(u"density"_s, session.density());
    }
    print(object);
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
