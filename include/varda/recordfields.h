// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <cstdint>
#include <type_traits>
#include <utility>

#include <varda/batteryinforecord.h>
#include <varda/blecomputer.h>
#include <varda/bleconfig.h>
#include <varda/deletedivesresult.h>
#include <varda/dive.h>
#include <varda/divegas.h>
#include <varda/diveheaderblock.h>
#include <varda/diveline.h>
#include <varda/divemark.h>
#include <varda/divesample.h>
#include <varda/layoutentry.h>
#include <varda/marlosettings.h>
#include <varda/previousdive.h>
#include <varda/syslogbinrecord.h>
#include <varda/tidemardiveheader.h>

/**
 * The fields of a record, for code that treats them all alike: JSON, comparisons, exports and
 * reading back. It is specialized below for every record; use it through forEachField().
 */
template <typename Record> struct RecordFields;

/** Whether forEachField() knows a type: a record, or a record within a record (BleConfig::Gas). */
// NOLINTNEXTLINE(readability-identifier-naming): named as the traits of the standard
template <typename Type, typename = void> inline constexpr bool hasFields = false;
template <typename Type>
// NOLINTNEXTLINE(readability-identifier-naming): named as the traits of the standard
inline constexpr bool hasFields<Type, std::void_t<decltype(sizeof(RecordFields<Type>))>> = true;

/**
 * Calls @p function once for each field of @p Record, in the order of declaration, the fields of a
 * base class first:
 *
 * - `name`, a QLatin1StringView that stays valid: the field's name in C++;
 * - `get(record)`: its value, by const reference, or by value for a bit-field;
 * - `set(record, value)`: sets it; a bit-field takes only the low bits that it has room for.
 *
 * @code
 * forEachField<DiveSample>([&](QLatin1StringView name, auto get, auto) {
 *     if (get(one) != get(other))
 *         qDebug() << name;
 * });
 * @endcode
 */
template <typename Record, typename Function> constexpr void forEachField(Function function)
{
    RecordFields<Record>::visit(function);
}

/** A field that is a plain member; for the lists below. */
template <typename Function, typename Owner, typename Value>
constexpr void visitField(Function &function, const char *name, Value Owner::*member)
{
    function(
        QLatin1StringView(name),
        [member](const Owner &record) -> const Value & { return record.*member; },
        [member](Owner &record, Value value) { record.*member = std::move(value); });
}

template <> struct RecordFields<BleConfig::Gas> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        visitField(f, "oxygen", &BleConfig::Gas::oxygen);
        visitField(f, "helium", &BleConfig::Gas::helium);
    }
};

template <> struct RecordFields<BleConfig::Triple> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        visitField(f, "first", &BleConfig::Triple::first);
        visitField(f, "second", &BleConfig::Triple::second);
        visitField(f, "third", &BleConfig::Triple::third);
    }
};

template <> struct RecordFields<BleConfig> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        visitField(f, "configWord", &BleConfig::configWord);
        visitField(f, "cfgA", &BleConfig::cfgA);
        visitField(f, "cfgB", &BleConfig::cfgB);
        visitField(f, "cfgC", &BleConfig::cfgC);
        visitField(f, "cfgD", &BleConfig::cfgD);
        visitField(f, "cfgE", &BleConfig::cfgE);
        visitField(f, "waterType", &BleConfig::waterType);
        visitField(f, "surfacePressure", &BleConfig::surfacePressure);
        visitField(f, "cfgF", &BleConfig::cfgF);
        visitField(f, "cfgG", &BleConfig::cfgG);
        visitField(f, "cfgBytes", &BleConfig::cfgBytes);
        visitField(f, "gasTable1", &BleConfig::gasTable1);
        visitField(f, "gasTable2", &BleConfig::gasTable2);
        visitField(f, "cfgH", &BleConfig::cfgH);
        visitField(f, "cfgTriple", &BleConfig::cfgTriple);
        visitField(f, "tailBytes", &BleConfig::tailBytes);
    }
};

template <> struct RecordFields<BleComputer> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        visitField(f, "rawBlock", &BleComputer::rawBlock);
        visitField(f, "batteryType", &BleComputer::batteryType);
        visitField(f, "setting1", &BleComputer::setting1);
        visitField(f, "setting2", &BleComputer::setting2);
        visitField(f, "setting3", &BleComputer::setting3);
        visitField(f, "setting4", &BleComputer::setting4);
        visitField(f, "setting5", &BleComputer::setting5);
        visitField(f, "setting6", &BleComputer::setting6);
        visitField(f, "setting7", &BleComputer::setting7);
        visitField(f, "setting8", &BleComputer::setting8);
        visitField(f, "value64a", &BleComputer::value64a);
        visitField(f, "flags32", &BleComputer::flags32);
        visitField(f, "value64b", &BleComputer::value64b);
        visitField(f, "entryCount", &BleComputer::entryCount);
        visitField(f, "entries", &BleComputer::entries);
        visitField(f, "value64c", &BleComputer::value64c);
        visitField(f, "computerByte1", &BleComputer::computerByte1);
        visitField(f, "quadWords", &BleComputer::quadWords);
        visitField(f, "computerWord1", &BleComputer::computerWord1);
        visitField(f, "computerWord2", &BleComputer::computerWord2);
        visitField(f, "computerWord3", &BleComputer::computerWord3);
        visitField(f, "computerWord4", &BleComputer::computerWord4);
        visitField(f, "computerWord5", &BleComputer::computerWord5);
        visitField(f, "computerWord6", &BleComputer::computerWord6);
        visitField(f, "sixWords", &BleComputer::sixWords);
        visitField(f, "computerByte2", &BleComputer::computerByte2);
        visitField(f, "computerByte3", &BleComputer::computerByte3);
        visitField(f, "computerByte4", &BleComputer::computerByte4);
        visitField(f, "value64d", &BleComputer::value64d);
        visitField(f, "value64e", &BleComputer::value64e);
        visitField(f, "computerByte5", &BleComputer::computerByte5);
        visitField(f, "computerWord7", &BleComputer::computerWord7);
    }
};

template <> struct RecordFields<BatteryInfoRecord> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        visitField(f, "kind", &BatteryInfoRecord::kind);
        visitField(f, "value20", &BatteryInfoRecord::value20);
        visitField(f, "code2", &BatteryInfoRecord::code2);
        visitField(f, "flag28", &BatteryInfoRecord::flag28);
        visitField(f, "flag29", &BatteryInfoRecord::flag29);
        visitField(f, "value12", &BatteryInfoRecord::value12);
        visitField(f, "code4", &BatteryInfoRecord::code4);
        visitField(f, "flag16", &BatteryInfoRecord::flag16);
        visitField(f, "flag17", &BatteryInfoRecord::flag17);
        visitField(f, "flag18", &BatteryInfoRecord::flag18);
        visitField(f, "offsetValue", &BatteryInfoRecord::offsetValue);
        visitField(f, "scaledValue", &BatteryInfoRecord::scaledValue);
        visitField(f, "hasExtra", &BatteryInfoRecord::hasExtra);
        visitField(f, "extra15", &BatteryInfoRecord::extra15);
        visitField(f, "extra12", &BatteryInfoRecord::extra12);
        visitField(f, "extraCode2", &BatteryInfoRecord::extraCode2);
        visitField(f, "extraFlag29", &BatteryInfoRecord::extraFlag29);
        visitField(f, "extraFlag30", &BatteryInfoRecord::extraFlag30);
    }
};

template <> struct RecordFields<SyslogBinRecord> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        visitField(f, "time", &SyslogBinRecord::time);
        visitField(f, "type", &SyslogBinRecord::type);
        visitField(f, "arg1", &SyslogBinRecord::arg1);
        visitField(f, "arg2", &SyslogBinRecord::arg2);
    }
};

template <> struct RecordFields<LayoutEntry> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        visitField(f, "first", &LayoutEntry::first);
        visitField(f, "second", &LayoutEntry::second);
        visitField(f, "name", &LayoutEntry::name);
    }
};

template <> struct RecordFields<DeleteDivesResult> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        visitField(f, "resultA", &DeleteDivesResult::resultA);
        visitField(f, "resultB", &DeleteDivesResult::resultB);
    }
};

template <> struct RecordFields<MarloSettings> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        visitField(f, "byte1", &MarloSettings::byte1);
        visitField(f, "byte2", &MarloSettings::byte2);
        visitField(f, "float1", &MarloSettings::float1);
        visitField(f, "byte3", &MarloSettings::byte3);
        visitField(f, "float2", &MarloSettings::float2);
        visitField(f, "byte4", &MarloSettings::byte4);
        visitField(f, "byte5", &MarloSettings::byte5);
        visitField(f, "byte6", &MarloSettings::byte6);
    }
};

template <> struct RecordFields<PreviousDive> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        visitField(f, "value64", &PreviousDive::value64);
        visitField(f, "value16", &PreviousDive::value16);
        visitField(f, "value8", &PreviousDive::value8);
    }
};

template <> struct RecordFields<DiveHeaderBlock> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        visitField(f, "diveNumber", &DiveHeaderBlock::diveNumber);
        visitField(f, "model", &DiveHeaderBlock::model);
        visitField(f, "stamp", &DiveHeaderBlock::stamp);
        visitField(f, "stamp2", &DiveHeaderBlock::stamp2);
        visitField(f, "tenths1", &DiveHeaderBlock::tenths1);
        visitField(f, "tenths2", &DiveHeaderBlock::tenths2);
        visitField(f, "sampleInterval", &DiveHeaderBlock::sampleInterval);
        visitField(f, "value32a", &DiveHeaderBlock::value32a);
        visitField(f, "kindByte", &DiveHeaderBlock::kindByte);
        visitField(f, "tidemarBit", &DiveHeaderBlock::tidemarBit);
        visitField(f, "headerWord1", &DiveHeaderBlock::headerWord1);
        visitField(f, "below1020", &DiveHeaderBlock::below1020);
        visitField(f, "headerByte1", &DiveHeaderBlock::headerByte1);
        visitField(f, "headerByte2", &DiveHeaderBlock::headerByte2);
        visitField(f, "headerWord2", &DiveHeaderBlock::headerWord2);
        visitField(f, "headerWord3", &DiveHeaderBlock::headerWord3);
        visitField(f, "headerWord4", &DiveHeaderBlock::headerWord4);
        visitField(f, "value32b", &DiveHeaderBlock::value32b);
        visitField(f, "count1", &DiveHeaderBlock::count1);
        visitField(f, "count2", &DiveHeaderBlock::count2);
        visitField(f, "value32c", &DiveHeaderBlock::value32c);
        visitField(f, "tissueN2", &DiveHeaderBlock::tissueN2);
        visitField(f, "tissueHe", &DiveHeaderBlock::tissueHe);
        visitField(f, "gasSlotMask", &DiveHeaderBlock::gasSlotMask);
        visitField(f, "headerByte3", &DiveHeaderBlock::headerByte3);
        visitField(f, "gasO2", &DiveHeaderBlock::gasO2);
        visitField(f, "gasHe", &DiveHeaderBlock::gasHe);
        visitField(f, "reservedBlock", &DiveHeaderBlock::reservedBlock);
        visitField(f, "headerByte4", &DiveHeaderBlock::headerByte4);
        visitField(f, "headerByte5", &DiveHeaderBlock::headerByte5);
        visitField(f, "headerByte6", &DiveHeaderBlock::headerByte6);
        visitField(f, "headerWord5", &DiveHeaderBlock::headerWord5);
        visitField(f, "headerWord6", &DiveHeaderBlock::headerWord6);
        visitField(f, "headerWord7", &DiveHeaderBlock::headerWord7);
        visitField(f, "value32d", &DiveHeaderBlock::value32d);
        visitField(f, "headerWord8", &DiveHeaderBlock::headerWord8);
        visitField(f, "signed1", &DiveHeaderBlock::signed1);
        visitField(f, "signed2", &DiveHeaderBlock::signed2);
        visitField(f, "headerWord9", &DiveHeaderBlock::headerWord9);
        visitField(f, "headerWord10", &DiveHeaderBlock::headerWord10);
        visitField(f, "headerWord11", &DiveHeaderBlock::headerWord11);
        visitField(f, "headerWord12", &DiveHeaderBlock::headerWord12);
        visitField(f, "value32e", &DiveHeaderBlock::value32e);
        visitField(f, "value32f", &DiveHeaderBlock::value32f);
        visitField(f, "text1", &DiveHeaderBlock::text1);
        visitField(f, "text2", &DiveHeaderBlock::text2);
        visitField(f, "text3", &DiveHeaderBlock::text3);
        visitField(f, "text4", &DiveHeaderBlock::text4);
    }
};

template <> struct RecordFields<TidemarDiveHeader> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        RecordFields<DiveHeaderBlock>::visit(f);
        visitField(f, "headerByte7", &TidemarDiveHeader::headerByte7);
        visitField(f, "headerWord13", &TidemarDiveHeader::headerWord13);
        visitField(f, "headerWord14", &TidemarDiveHeader::headerWord14);
    }
};

template <> struct RecordFields<DiveSample> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        visitField(f, "version", &DiveSample::version);
        f(
            QLatin1StringView("depth"),
            [](const DiveSample &sample) -> std::uint16_t { return sample.depth; },
            [](DiveSample &sample, std::uint16_t value) { sample.depth = value & 0xFFF; });
        f(
            QLatin1StringView("flag"),
            [](const DiveSample &sample) -> std::uint8_t { return sample.flag; },
            [](DiveSample &sample, std::uint8_t value) { sample.flag = value & 0x1; });
        f(
            QLatin1StringView("code"),
            [](const DiveSample &sample) -> std::uint8_t { return sample.code; },
            [](DiveSample &sample, std::uint8_t value) { sample.code = value & 0xF; });
        f(
            QLatin1StringView("value12"),
            [](const DiveSample &sample) -> std::int16_t { return sample.value12; },
            [](DiveSample &sample, std::int16_t value) {
                // GCC warns about a narrowing that the sign extension rules out.
                QT_WARNING_PUSH
                QT_WARNING_DISABLE_GCC("-Wconversion")
                sample.value12 = std::int16_t(((value & 0xFFF) ^ 0x800) - 0x800);
                QT_WARNING_POP
            });
        f(
            QLatin1StringView("mode"),
            [](const DiveSample &sample) -> std::uint8_t { return sample.mode; },
            [](DiveSample &sample, std::uint8_t value) { sample.mode = value & 0x3; });
        f(
            QLatin1StringView("modeFlag"),
            [](const DiveSample &sample) -> std::uint8_t { return sample.modeFlag; },
            [](DiveSample &sample, std::uint8_t value) { sample.modeFlag = value & 0x1; });
        visitField(f, "aux1", &DiveSample::aux1);
        visitField(f, "aux2", &DiveSample::aux2);
        visitField(f, "aux3", &DiveSample::aux3);
        visitField(f, "aux4", &DiveSample::aux4);
        visitField(f, "aux5", &DiveSample::aux5);
        visitField(f, "aux6", &DiveSample::aux6);
        visitField(f, "aux7", &DiveSample::aux7);
        visitField(f, "aux8", &DiveSample::aux8);
        visitField(f, "aux9", &DiveSample::aux9);
        visitField(f, "aux10", &DiveSample::aux10);
        visitField(f, "aux11", &DiveSample::aux11);
        visitField(f, "aux12", &DiveSample::aux12);
    }
};

template <> struct RecordFields<DiveGas> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        visitField(f, "oxygen", &DiveGas::oxygen);
        visitField(f, "helium", &DiveGas::helium);
        visitField(f, "nitrogen", &DiveGas::nitrogen);
        visitField(f, "limit", &DiveGas::limit);
        visitField(f, "reserved", &DiveGas::reserved);
        visitField(f, "usage", &DiveGas::usage);
        visitField(f, "enabled", &DiveGas::enabled);
        visitField(f, "label", &DiveGas::label);
        visitField(f, "label2", &DiveGas::label2);
        visitField(f, "color", &DiveGas::color);
        visitField(f, "closedCircuit", &DiveGas::closedCircuit);
    }
};

template <> struct RecordFields<DiveLine> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        visitField(f, "time", &DiveLine::time);
        visitField(f, "depth", &DiveLine::depth);
        visitField(f, "value3", &DiveLine::value3);
        visitField(f, "value4", &DiveLine::value4);
        visitField(f, "aux1Value", &DiveLine::aux1Value);
        visitField(f, "valueTenths", &DiveLine::valueTenths);
        visitField(f, "valueNegated", &DiveLine::valueNegated);
        visitField(f, "value8", &DiveLine::value8);
        visitField(f, "value9", &DiveLine::value9);
        visitField(f, "value10", &DiveLine::value10);
        visitField(f, "value11", &DiveLine::value11);
        visitField(f, "gasIndex", &DiveLine::gasIndex);
        visitField(f, "mode", &DiveLine::mode);
        visitField(f, "flag", &DiveLine::flag);
        visitField(f, "aux3", &DiveLine::aux3);
        visitField(f, "aux4", &DiveLine::aux4);
        visitField(f, "aux5", &DiveLine::aux5);
        visitField(f, "aux6", &DiveLine::aux6);
        visitField(f, "aux7", &DiveLine::aux7);
        visitField(f, "aux2", &DiveLine::aux2);
        visitField(f, "aux8", &DiveLine::aux8);
        visitField(f, "aux11", &DiveLine::aux11);
        visitField(f, "aux9", &DiveLine::aux9);
        visitField(f, "aux10", &DiveLine::aux10);
        visitField(f, "value24", &DiveLine::value24);
        visitField(f, "flag25", &DiveLine::flag25);
    }
};

template <> struct RecordFields<DiveMark> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        visitField(f, "first", &DiveMark::first);
        visitField(f, "second", &DiveMark::second);
        visitField(f, "third", &DiveMark::third);
    }
};

template <> struct RecordFields<Dive> {
    template <typename Function> static constexpr void visit(Function &f)
    {
        RecordFields<DiveHeaderBlock>::visit(f);
        visitField(f, "numberText", &Dive::numberText);
        visitField(f, "ownerName", &Dive::ownerName);
        visitField(f, "text", &Dive::text);
        visitField(f, "serialNumber", &Dive::serialNumber);
        visitField(f, "firmwareVersion", &Dive::firmwareVersion);
        visitField(f, "kind", &Dive::kind);
        visitField(f, "lines", &Dive::lines);
        visitField(f, "lines2", &Dive::lines2);
        visitField(f, "lines3", &Dive::lines3);
        visitField(f, "lines4", &Dive::lines4);
        visitField(f, "gases", &Dive::gases);
        visitField(f, "tagBytes", &Dive::tagBytes);
        visitField(f, "value16", &Dive::value16);
        visitField(f, "value64", &Dive::value64);
        visitField(f, "value32", &Dive::value32);
        visitField(f, "index", &Dive::index);
        visitField(f, "marks", &Dive::marks);
        visitField(f, "flag", &Dive::flag);
        visitField(f, "marks2", &Dive::marks2);
        visitField(f, "modeByte", &Dive::modeByte);
        visitField(f, "count", &Dive::count);
    }
};
