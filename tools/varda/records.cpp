// SPDX-License-Identifier: MIT
#include "records.h"

#include "text.h"

#include <QtCore/qmetaobject.h>

#include <cstring>

using namespace Qt::StringLiterals;

namespace {

template <typename Bytes> QString hexOf(const Bytes &bytes)
{
    const auto *const data = reinterpret_cast<const char *>(bytes.data());
    return QString::fromLatin1(QByteArray::fromRawData(data, qsizetype(bytes.size())).toHex());
}

/** An enumerator by its name, or by its number where it has none. */
template <typename Enum> Json keyOf(Enum value)
{
    if (const char *key = QMetaEnum::fromType<Enum>().valueToKey(int(value)))
        return QString::fromLatin1(key);
    return int(value);
}

Json triplesOf(const std::array<BleConfig::Triple, 3> &triples)
{
    return listOf(triples, [](const BleConfig::Triple &triple) {
        return Fields{
            {"first"_L1, triple.first}, {"second"_L1, triple.second}, {"third"_L1, triple.third}};
    });
}

Fields fieldsOf(const DiveMark &mark)
{
    return {{"first"_L1, mark.first}, {"second"_L1, mark.second}, {"third"_L1, mark.third}};
}

template <typename Record> Json recordsOf(const QList<Record> &records)
{
    return listOf(records, [](const Record &record) { return fieldsOf(record); });
}

Fields blockOf(const DiveHeaderBlock &block)
{
    return {
        {"diveNumber"_L1, block.diveNumber},
        {"model"_L1, keyOf(block.model)},
        {"stamp"_L1, wide(block.stamp)},
        {"stamp2"_L1, wide(block.stamp2)},
        {"tenths1"_L1, block.tenths1},
        {"tenths2"_L1, block.tenths2},
        {"sampleInterval"_L1, block.sampleInterval},
        {"value32a"_L1, block.value32a},
        {"kindByte"_L1, block.kindByte},
        {"tidemarBit"_L1, block.tidemarBit},
        {"headerWord1"_L1, block.headerWord1},
        {"below1020"_L1, block.below1020},
        {"headerByte1"_L1, block.headerByte1},
        {"headerByte2"_L1, block.headerByte2},
        {"headerWord2"_L1, block.headerWord2},
        {"headerWord3"_L1, block.headerWord3},
        {"headerWord4"_L1, block.headerWord4},
        {"value32b"_L1, block.value32b},
        {"count1"_L1, block.count1},
        {"count2"_L1, block.count2},
        {"value32c"_L1, block.value32c},
        {"tissueN2"_L1, listOf(block.tissueN2)},
        {"tissueHe"_L1, listOf(block.tissueHe)},
        {"gasSlotMask"_L1, block.gasSlotMask},
        {"headerByte3"_L1, block.headerByte3},
        {"gasO2"_L1, listOf(block.gasO2)},
        {"gasHe"_L1, listOf(block.gasHe)},
        {"reservedBlock"_L1, hexOf(block.reservedBlock)},
        {"headerByte4"_L1, block.headerByte4},
        {"headerByte5"_L1, block.headerByte5},
        {"headerByte6"_L1, block.headerByte6},
        {"headerWord5"_L1, block.headerWord5},
        {"headerWord6"_L1, block.headerWord6},
        {"headerWord7"_L1, block.headerWord7},
        {"value32d"_L1, block.value32d},
        {"headerWord8"_L1, block.headerWord8},
        {"signed1"_L1, block.signed1},
        {"signed2"_L1, block.signed2},
        {"headerWord9"_L1, block.headerWord9},
        {"headerWord10"_L1, block.headerWord10},
        {"headerWord11"_L1, block.headerWord11},
        {"headerWord12"_L1, block.headerWord12},
        {"value32e"_L1, block.value32e},
        {"value32f"_L1, block.value32f},
        {"text1"_L1, block.text1},
        {"text2"_L1, block.text2},
        {"text3"_L1, block.text3},
        {"text4"_L1, block.text4},
    };
}

} // namespace

Json gasesOf(const std::array<BleConfig::Gas, 12> &table)
{
    return listOf(table, [](const BleConfig::Gas &gas) {
        return Fields{{"oxygen"_L1, gas.oxygen}, {"helium"_L1, gas.helium}};
    });
}

QString textOf(const BleComputer &computer)
{
    const auto &block = computer.rawBlock;
    return QString::fromUtf8(block.data(), qsizetype(::strnlen(block.data(), block.size())));
}

Fields fieldsOf(const BleDeviceInfo &device)
{
    return {
        {"address"_L1, device.address()}, {"name"_L1, device.name()}, {"rssi"_L1, device.rssi()}};
}

Fields fieldsOf(const BleConfig &config)
{
    return {
        {"configWord"_L1, config.configWord},
        {"cfgA"_L1, config.cfgA},
        {"cfgB"_L1, config.cfgB},
        {"cfgC"_L1, config.cfgC},
        {"cfgD"_L1, config.cfgD},
        {"cfgE"_L1, config.cfgE},
        {"waterType"_L1, config.waterType},
        {"surfacePressure"_L1, config.surfacePressure},
        {"cfgF"_L1, config.cfgF},
        {"cfgG"_L1, config.cfgG},
        {"cfgBytes"_L1, listOf(config.cfgBytes)},
        {"gasTable1"_L1, gasesOf(config.gasTable1)},
        {"gasTable2"_L1, gasesOf(config.gasTable2)},
        {"cfgH"_L1, config.cfgH},
        {"cfgTriple"_L1, triplesOf(config.cfgTriple)},
        {"tailBytes"_L1, listOf(config.tailBytes)},
    };
}

Fields fieldsOf(const BleComputer &computer)
{
    return {
        {"rawBlock"_L1, textOf(computer)},
        {"batteryType"_L1, computer.batteryType},
        {"setting1"_L1, computer.setting1},
        {"setting2"_L1, computer.setting2},
        {"setting3"_L1, computer.setting3},
        {"setting4"_L1, computer.setting4},
        {"setting5"_L1, computer.setting5},
        {"setting6"_L1, computer.setting6},
        {"setting7"_L1, computer.setting7},
        {"setting8"_L1, computer.setting8},
        {"value64a"_L1, wide(computer.value64a)},
        {"flags32"_L1, listOf(computer.flags32)},
        {"value64b"_L1, wide(computer.value64b)},
        {"entryCount"_L1, computer.entryCount},
        {"entries"_L1, hexOf(computer.entries)},
        {"value64c"_L1, wide(computer.value64c)},
        {"computerByte1"_L1, computer.computerByte1},
        {"quadWords"_L1, listOf(computer.quadWords)},
        {"computerWord1"_L1, computer.computerWord1},
        {"computerWord2"_L1, computer.computerWord2},
        {"computerWord3"_L1, computer.computerWord3},
        {"computerWord4"_L1, computer.computerWord4},
        {"computerWord5"_L1, computer.computerWord5},
        {"computerWord6"_L1, computer.computerWord6},
        {"sixWords"_L1, listOf(computer.sixWords)},
        {"computerByte2"_L1, computer.computerByte2},
        {"computerByte3"_L1, computer.computerByte3},
        {"computerByte4"_L1, computer.computerByte4},
        {"value64d"_L1, wide(computer.value64d)},
        {"value64e"_L1, wide(computer.value64e)},
        {"computerByte5"_L1, computer.computerByte5},
        {"computerWord7"_L1, computer.computerWord7},
    };
}

Fields fieldsOf(const BatteryInfoRecord &record)
{
    return {
        {"kind"_L1, record.kind},
        {"value20"_L1, record.value20},
        {"code2"_L1, record.code2},
        {"flag28"_L1, record.flag28},
        {"flag29"_L1, record.flag29},
        {"value12"_L1, record.value12},
        {"code4"_L1, record.code4},
        {"flag16"_L1, record.flag16},
        {"flag17"_L1, record.flag17},
        {"flag18"_L1, record.flag18},
        {"offsetValue"_L1, record.offsetValue},
        {"scaledValue"_L1, record.scaledValue},
        {"hasExtra"_L1, record.hasExtra},
        {"extra15"_L1, record.extra15},
        {"extra12"_L1, record.extra12},
        {"extraCode2"_L1, record.extraCode2},
        {"extraFlag29"_L1, record.extraFlag29},
        {"extraFlag30"_L1, record.extraFlag30},
    };
}

Fields fieldsOf(const TidemarDiveHeader &header)
{
    Fields fields = blockOf(header);
    append(fields, {
                       {"headerByte7"_L1, header.headerByte7},
                       {"headerWord13"_L1, header.headerWord13},
                       {"headerWord14"_L1, header.headerWord14},
                   });
    return fields;
}

Fields fieldsOf(const DiveGas &gas)
{
    return {
        {"oxygen"_L1, gas.oxygen},
        {"helium"_L1, gas.helium},
        {"nitrogen"_L1, gas.nitrogen},
        {"limit"_L1, gas.limit},
        {"reserved"_L1, wide(gas.reserved)},
        {"usage"_L1, keyOf(gas.usage)},
        {"enabled"_L1, gas.enabled},
        {"label"_L1, gas.label},
        {"label2"_L1, gas.label2},
        {"color"_L1, gas.color},
        {"closedCircuit"_L1, gas.closedCircuit},
    };
}

Fields fieldsOf(const DiveLine &line)
{
    return {
        {"time"_L1, line.time},
        {"depth"_L1, line.depth},
        {"value3"_L1, line.value3},
        {"value4"_L1, line.value4},
        {"aux1Value"_L1, line.aux1Value},
        {"valueTenths"_L1, line.valueTenths},
        {"valueNegated"_L1, line.valueNegated},
        {"value8"_L1, wide(line.value8)},
        {"value9"_L1, wide(line.value9)},
        {"value10"_L1, wide(line.value10)},
        {"value11"_L1, wide(line.value11)},
        {"gasIndex"_L1, line.gasIndex},
        {"mode"_L1, line.mode},
        {"flag"_L1, line.flag},
        {"aux3"_L1, line.aux3},
        {"aux4"_L1, line.aux4},
        {"aux5"_L1, line.aux5},
        {"aux6"_L1, line.aux6},
        {"aux7"_L1, line.aux7},
        {"aux2"_L1, line.aux2},
        {"aux8"_L1, line.aux8},
        {"aux11"_L1, line.aux11},
        {"aux9"_L1, line.aux9},
        {"aux10"_L1, line.aux10},
        {"value24"_L1, line.value24},
        {"flag25"_L1, line.flag25},
    };
}

Fields fieldsOf(const Dive &dive)
{
    Fields fields = blockOf(dive);
    append(fields, {
                       {"numberText"_L1, dive.numberText},
                       {"ownerName"_L1, dive.ownerName},
                       {"text"_L1, dive.text},
                       {"serialNumber"_L1, dive.serialNumber},
                       {"firmwareVersion"_L1, versionText(dive.firmwareVersion)},
                       {"kind"_L1, dive.kind},
                       {"lines"_L1, recordsOf(dive.lines)},
                       {"lines2"_L1, recordsOf(dive.lines2)},
                       {"lines3"_L1, recordsOf(dive.lines3)},
                       {"lines4"_L1, recordsOf(dive.lines4)},
                       {"gases"_L1, recordsOf(dive.gases)},
                       {"tagBytes"_L1, listOf(dive.tagBytes)},
                       {"value16"_L1, dive.value16},
                       {"value64"_L1, wide(dive.value64)},
                       {"value32"_L1, dive.value32},
                       {"index"_L1, dive.index},
                       {"marks"_L1, recordsOf(dive.marks)},
                       {"flag"_L1, dive.flag},
                       {"marks2"_L1, recordsOf(dive.marks2)},
                       {"modeByte"_L1, dive.modeByte},
                       {"count"_L1, dive.count},
                   });
    return fields;
}
