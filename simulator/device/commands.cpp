// SPDX-License-Identifier: MIT
#include "device/commands.h"

namespace simulator {

namespace {

struct Name {
    quint8 code;
    const char *text;
};

constexpr Name kNames[] = {
    {Sync, "Sync"},
    {Identification, "Identification"},
    {Syslog, "Syslog"},
    {Serialnumber, "Serialnumber"},
    {SetSerialnumber, "Set_serialnumber"},
    {ComputerSettings, "Computer"},
    {SetComputer, "Set_computer"},
    {Time, "Time"},
    {SetTime, "Set_time"},
    {Sensors, "Sensors"},
    {SetSensors, "Set_sensors"},
    {Dive, "Dive"},
    {Samples, "Samples"},
    {BeginProgram, "Begin_program"},
    {Program, "Program"},
    {EndProgram, "End_program"},
    {Factoryreset, "Factoryreset"},
    {Diver, "Diver"},
    {SetDiver, "Set_diver"},
    {ListDives, "Logbook"},
    {Fullsamples, "Fullsamples"},
    {Owner, "Owner"},
    {SetOwner, "Set_owner"},
    {ComputerSettingsNew, "Computer_new"},
    {DeleteLastDive, "DeleteLastDive"},
    {EraseDives, "EraseDives"},
    {EraseDivesFlash, "EraseDivesFlash"},
    {SimulParams, "SimulParams"},
    {SyslogBin, "SyslogBin"},
    {BeginUpdate, "BeginUpdate"},
    {ProgramUpdate, "ProgramUpdate"},
    {EndUpdate, "EndUpdate"},
    {BootloaderVersion, "BootloaderVersion"},
    {GetGases, "GetGases"},
    {MarloSet, "MarloSet"},
    {LayoutList, "LayoutList"},
    {LayoutGet, "LayoutGet"},
    {LayoutAdd, "LayoutAdd"},
    {LayoutRemove, "LayoutRemove"},
    {LayoutRemoveAll, "LayoutRemoveAll"},
    {LayoutActiveGet, "LayoutActiveGet"},
    {LayoutActiveSet, "LayoutActiveSet"},
    {BatteryInformationClear, "BatteryInformationClear"},
    {BatteryInformation, "BatteryInformation"},
    {SuperUserMode, "SuperUserMode"},
    {CleanNvram, "CleanNvram"},
    {Reset, "Reset"},
    {Close, "Close"},
};

} // namespace

std::optional<quint8> commandFromText(const QString &text)
{
    bool isNumber = false;
    const uint number = text.toUInt(&isNumber);
    if (isNumber)
        return number <= 255 ? std::optional<quint8>(quint8(number)) : std::nullopt;
    for (const Name &name : kNames) {
        if (text == QLatin1String(name.text))
            return name.code;
    }
    return std::nullopt;
}

} // namespace simulator
