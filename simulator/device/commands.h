// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <optional>

namespace simulator {

/** The codes of the requests that the computer knows; the code is byte 8 of a frame. */
enum Command : quint8 {
    Sync = 0,
    Identification = 1,
    Syslog = 2,
    Serialnumber = 3,
    SetSerialnumber = 4,
    ComputerSettings = 5,
    SetComputer = 6,
    Time = 7,
    SetTime = 8,
    Sensors = 9,
    SetSensors = 10,
    Dive = 11,
    Samples = 12,
    BeginProgram = 13,
    Program = 14,
    EndProgram = 15,
    Factoryreset = 16,
    Diver = 17,
    SetDiver = 18,
    ListDives = 19,
    Fullsamples = 20,
    Owner = 22,
    SetOwner = 23,
    ComputerSettingsNew = 24,
    DeleteLastDive = 25,
    EraseDives = 26,
    EraseDivesFlash = 27,
    SimulParams = 28,
    SyslogBin = 29,
    BeginUpdate = 30,
    ProgramUpdate = 31,
    EndUpdate = 32,
    BootloaderVersion = 33,
    GetGases = 34,
    MarloSet = 35,
    LayoutList = 36,
    LayoutGet = 37,
    LayoutAdd = 38,
    LayoutRemove = 39,
    LayoutRemoveAll = 40,
    LayoutActiveGet = 41,
    LayoutActiveSet = 42,
    BatteryInformationClear = 237,
    BatteryInformation = 238,
    SuperUserMode = 252,
    CleanNvram = 253,
    Reset = 254,
    Close = 255,
};

/** A command as a scenario names it: by its code in decimal or by its name. */
std::optional<quint8> commandFromText(const QString &text);

} // namespace simulator
