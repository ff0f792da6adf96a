// SPDX-License-Identifier: MIT
#pragma once

#include <varda/batteryinforecord.h>
#include <varda/blecomputer.h>
#include <varda/bleconfig.h>
#include <varda/deletedivesresult.h>
#include <varda/layoutentry.h>
#include <varda/marlosettings.h>
#include <varda/previousdive.h>
#include <varda/syslogbinrecord.h>
#include <varda/vardaconfiguration.h>
#include <varda/vardagastables.h>
#include <varda/vardaidentity.h>
#include <varda/vardasensors.h>
#include <varda/vardatissues.h>

#include "field.h"

struct GasEntryValue : BleConfig::Gas {
    VARDA_VALUE_TYPE(BleConfig::Gas, GasEntryValue, gasEntry)

    VARDA_FIELD(int, oxygen)
    VARDA_FIELD(int, helium)
};

struct TripleValue : BleConfig::Triple {
    VARDA_VALUE_TYPE(BleConfig::Triple, TripleValue, configTriple)

    VARDA_FIELD(int, first)
    VARDA_FIELD(int, second)
    VARDA_FIELD(int, third)
};

struct BleConfigValue : BleConfig {
    VARDA_VALUE_TYPE(BleConfig, BleConfigValue, bleConfig)

    VARDA_FIELD(int, configWord)
    VARDA_FIELD(int, cfgA)
    VARDA_FIELD(int, cfgB)
    VARDA_FIELD(int, cfgC)
    VARDA_FIELD(int, cfgD)
    VARDA_FIELD(int, cfgE)
    VARDA_FIELD(int, waterType)
    VARDA_FIELD(int, surfacePressure)
    VARDA_FIELD(int, cfgF)
    VARDA_FIELD(int, cfgG)
    VARDA_NUMBERS(cfgBytes)
    VARDA_RECORDS(gasTable1)
    VARDA_RECORDS(gasTable2)
    VARDA_FIELD(int, cfgH)
    VARDA_RECORDS(cfgTriple)
    VARDA_NUMBERS(tailBytes)
    /** Of the water, in kg/l. */
    Q_PROPERTY(double density READ density CONSTANT)

public:
    double density() const { return getDensity(); }
    /** Bar at a depth in metres. */
    Q_INVOKABLE double pressureAt(double depth) const { return pressureAtDepth(float(depth)); }
};

struct BleComputerValue : BleComputer {
    VARDA_VALUE_TYPE(BleComputer, BleComputerValue, bleComputer)

    VARDA_BYTES(rawBlock)
    VARDA_FIELD(int, batteryType)
    VARDA_FIELD(int, setting1)
    VARDA_FIELD(int, setting2)
    VARDA_FIELD(int, setting3)
    VARDA_FIELD(int, setting4)
    VARDA_FIELD(int, setting5)
    VARDA_FIELD(int, setting6)
    VARDA_FIELD(int, setting7)
    VARDA_FIELD(int, setting8)
    VARDA_WIDE(value64a)
    VARDA_NUMBERS(flags32)
    VARDA_WIDE(value64b)
    VARDA_FIELD(int, entryCount)
    VARDA_FIELD(QByteArray, entries)
    VARDA_WIDE(value64c)
    VARDA_FIELD(int, computerByte1)
    VARDA_NUMBERS(quadWords)
    VARDA_FIELD(int, computerWord1)
    VARDA_FIELD(int, computerWord2)
    VARDA_FIELD(int, computerWord3)
    VARDA_FIELD(int, computerWord4)
    VARDA_FIELD(int, computerWord5)
    VARDA_FIELD(int, computerWord6)
    VARDA_NUMBERS(sixWords)
    VARDA_FIELD(int, computerByte2)
    VARDA_FIELD(int, computerByte3)
    VARDA_FIELD(int, computerByte4)
    VARDA_WIDE(value64d)
    VARDA_WIDE(value64e)
    VARDA_FIELD(int, computerByte5)
    VARDA_FIELD(int, computerWord7)
    /** "Alcaline", "NiMH", "Lion36" or "Unknown". */
    Q_PROPERTY(QString battery READ battery CONSTANT)

public:
    QString battery() const { return getBatteryStr(); }
};

struct ConfigurationValue : VardaConfiguration {
    VARDA_VALUE_TYPE(VardaConfiguration, ConfigurationValue, vardaConfiguration)

    VARDA_FIELD(BleConfig, config)
    VARDA_FIELD(BleComputer, computer)
};

struct GasTablesValue : VardaGasTables {
    VARDA_VALUE_TYPE(VardaGasTables, GasTablesValue, vardaGasTables)

    VARDA_RECORDS(table1)
    VARDA_RECORDS(table2)
};

struct IdentityValue : VardaIdentity {
    VARDA_VALUE_TYPE(VardaIdentity, IdentityValue, vardaIdentity)

    VARDA_FIELD(int, model)
    VARDA_FIELD(int, mode)
    VARDA_FIELD(int, recordVersion)
    VARDA_FIELD(uint, firmwareVersion)
    VARDA_FIELD(uint, bootloaderVersion)
    VARDA_FIELD(QString, firmwareVersionStr)
    VARDA_FIELD(QString, bootloaderVersionStr)
    VARDA_FIELD(QString, serialNumber)
};

struct SensorsValue : VardaSensors {
    VARDA_VALUE_TYPE(VardaSensors, SensorsValue, vardaSensors)

    VARDA_FIELD(uint, psurf)
    VARDA_FIELD(uint, pamb)
    VARDA_FIELD(int, dstop)
    VARDA_FIELD(int, density)
};

struct TissuesValue : VardaTissues {
    VARDA_VALUE_TYPE(VardaTissues, TissuesValue, vardaTissues)

    VARDA_REALS(n2)
    VARDA_REALS(he)
    VARDA_FIELD(double, cns)
};

struct BatteryInfoValue : BatteryInfoRecord {
    VARDA_VALUE_TYPE(BatteryInfoRecord, BatteryInfoValue, batteryInfoRecord)

    VARDA_FIELD(int, kind)
    VARDA_FIELD(uint, value20)
    VARDA_FIELD(int, code2)
    VARDA_FIELD(int, flag28)
    VARDA_FIELD(int, flag29)
    VARDA_FIELD(int, value12)
    VARDA_FIELD(int, code4)
    VARDA_FIELD(int, flag16)
    VARDA_FIELD(int, flag17)
    VARDA_FIELD(int, flag18)
    VARDA_FIELD(int, offsetValue)
    VARDA_FIELD(int, scaledValue)
    VARDA_FIELD(int, hasExtra)
    VARDA_FIELD(int, extra15)
    VARDA_FIELD(int, extra12)
    VARDA_FIELD(int, extraCode2)
    VARDA_FIELD(int, extraFlag29)
    VARDA_FIELD(int, extraFlag30)
};

struct SyslogBinValue : SyslogBinRecord {
    VARDA_VALUE_TYPE(SyslogBinRecord, SyslogBinValue, syslogBinRecord)

    VARDA_WIDE(time)
    VARDA_FIELD(int, type)
    VARDA_FIELD(int, arg1)
    VARDA_FIELD(int, arg2)
    /** The entry in English, with its date and time. */
    Q_PROPERTY(QString text READ text CONSTANT)
    /** The entry in English alone. */
    Q_PROPERTY(QString message READ message CONSTANT)

public:
    QString text() const { return convertSyslogRecord(*this, false); }
    QString message() const { return convertSyslogRecord(*this, true); }
};

struct LayoutEntryValue : LayoutEntry {
    VARDA_VALUE_TYPE(LayoutEntry, LayoutEntryValue, layoutEntry)

    VARDA_FIELD(int, first)
    VARDA_FIELD(int, second)
    VARDA_FIELD(QString, name)
};

struct DeleteDivesValue : DeleteDivesResult {
    VARDA_VALUE_TYPE(DeleteDivesResult, DeleteDivesValue, deleteDivesResult)

    VARDA_FIELD(uint, resultA)
    VARDA_FIELD(uint, resultB)
};

struct MarloSettingsValue : MarloSettings {
    VARDA_VALUE_TYPE(MarloSettings, MarloSettingsValue, marloSettings)

    VARDA_FIELD(int, byte1)
    VARDA_FIELD(int, byte2)
    VARDA_FIELD(double, float1)
    VARDA_FIELD(int, byte3)
    VARDA_FIELD(double, float2)
    VARDA_FIELD(int, byte4)
    VARDA_FIELD(int, byte5)
    VARDA_FIELD(int, byte6)
};

struct PreviousDiveValue : PreviousDive {
    VARDA_VALUE_TYPE(PreviousDive, PreviousDiveValue, previousDive)

    VARDA_WIDE(value64)
    VARDA_FIELD(int, value16)
    VARDA_FIELD(int, value8)
};
