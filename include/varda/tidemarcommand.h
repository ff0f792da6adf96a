// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>

#include <varda/vardaexport.h>

/** Commands that a computer understands. The low 8 bits of a value are the code on the wire. The
 *  code of an answer is converted back unchecked, so a signal may have a value without a name. */
namespace TidemarCommand {
Q_NAMESPACE_EXPORT(VARDA_EXPORT)

enum TidemarCommandIn : int {
    Sync = 0,
    Identification = 1,
    Syslog = 2,
    Serialnumber = 3,
    Set_serialnumber = 4,
    Computer = 5,
    Set_computer = 6,
    Time = 7,
    Set_time = 8,
    Sensors = 9,
    Set_sensors = 10,
    Dive = 11,
    Samples = 12,
    Begin_program = 13,
    Program = 14,
    End_program = 15,
    Factoryreset = 16,
    Diver = 17,
    Set_diver = 18,
    Logbook = 19,
    Fullsamples = 20,
    Owner = 22,
    Set_owner = 23,
    Computer_new = 24,
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
Q_ENUM_NS(TidemarCommandIn)
} // namespace TidemarCommand
