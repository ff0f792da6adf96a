// SPDX-License-Identifier: MIT
#include <varda/vardadata.h>

#include <algorithm>
#include <span>

#include <varda/bufferreader.h>

#include "decoding/text_p.h"

namespace {

/** Bytes to skip from a layout version on. */
struct Skip {
    int fromVersion;
    int bytes;
};

constexpr Skip kTidemarAfterGases[] = {{5, 3}, {10, 4}, {11, 8}};
constexpr Skip kTidemarBeforeSetting1[] = {{8, 2}, {12, 9}};
constexpr Skip kVskmAfterGases[] = {{5, 3},   {10, 4},  {11, 8},  {12, 9},  {13, 13},
                                    {14, 15}, {15, 41}, {17, 44}, {20, 68}, {21, 82}};
constexpr Skip kVskmBeforeSetting1[] = {{8, 2}};

int bytesToSkip(std::span<const Skip> table, int version)
{
    int bytes = 0;
    for (const Skip &row : table) {
        if (version >= row.fromVersion)
            bytes = row.bytes;
    }
    return bytes;
}

constexpr int kEntrySize = 11;

template <typename T, std::size_t N> void take(BufferReader &reader, std::array<T, N> &values)
{
    for (T &value : values)
        value = reader.take<T>();
}

void takeGases(BufferReader &reader, std::span<BleConfig::Gas> table, int padding)
{
    for (BleConfig::Gas &gas : table) {
        gas.oxygen = reader.take<std::uint8_t>();
        gas.helium = reader.take<std::uint8_t>();
        reader.jump(padding);
    }
}

/** Where the layouts of two models that are otherwise the same differ. */
struct ModelSkips {
    std::span<const Skip> afterGases;
    std::span<const Skip> beforeSetting1;
};

/** The layout that Tidemar and VSKM share. */
void readSharedLayout(VardaData &data, BufferReader &reader, int version, bool extended,
                      const ModelSkips &skips)
{
    BleConfig &config = data.config;
    BleComputer &computer = data.computer;

    for (std::uint8_t &value : std::span(config.tailBytes).last<3>())
        value = reader.take<std::uint8_t>();
    take(reader, config.cfgBytes);

    const int padding = version >= 8 ? 2 : 0;
    takeGases(reader, std::span(config.gasTable1).first<8>(), padding);
    config.cfgH = reader.take<std::uint8_t>();
    for (BleConfig::Triple &triple : config.cfgTriple) {
        triple.first = reader.take<std::uint16_t>();
        triple.second = reader.take<std::uint16_t>();
        triple.third = reader.take<std::uint8_t>();
    }
    if (version > 1) {
        takeGases(reader, std::span(config.gasTable2).first<8>(), padding);
        reader.jump(bytesToSkip(skips.afterGases, version));
    }

    take(reader, computer.rawBlock);
    data.owner = textOf(std::span(std::as_const(computer.rawBlock)));
    computer.batteryType = reader.take<std::uint8_t>();
    computer.setting2 = reader.take<std::uint8_t>();
    computer.setting3 = reader.take<std::uint8_t>();
    computer.setting4 = reader.take<std::uint8_t>();
    computer.setting5 = reader.take<std::uint8_t>();
    computer.setting6 = reader.take<std::uint16_t>();
    computer.setting7 = reader.take<std::uint8_t>();
    computer.setting8 = reader.take<std::uint8_t>();
    computer.value64a = reader.take<std::uint64_t>();
    take(reader, computer.flags32);

    if (!extended)
        return;
    computer.computerWord7 = reader.take<std::uint16_t>();
    computer.computerByte5 = reader.take<std::uint8_t>();
    computer.computerByte1 = reader.take<std::uint8_t>();
    take(reader, computer.quadWords);
    reader.jump(bytesToSkip(skips.beforeSetting1, version));
    computer.setting1 = reader.take<std::uint8_t>();
}

} // namespace

void VardaData::processComputer(const Payload &payload, bool extended)
{
    BufferReader reader(payload);
    config.configWord = reader.take<std::uint16_t>();
    int version = 0;
    int model = 0;
    // A first word of 255 and more is no setting but the mark of a versioned layout.
    if (config.configWord >= 255) {
        version = config.configWord & 0xFF;
        model = reader.take<std::uint8_t>();
        config.configWord = reader.take<std::uint16_t>();
    }
    config.cfgA = reader.take<std::uint8_t>();
    config.cfgB = reader.take<std::uint8_t>();
    config.cfgC = reader.take<std::uint8_t>();
    config.cfgD = reader.take<std::uint8_t>();
    config.cfgE = reader.take<std::uint16_t>();
    config.waterType = reader.take<std::uint8_t>();
    config.surfacePressure = reader.take<std::uint16_t>();
    config.cfgF = reader.take<std::uint8_t>();
    config.cfgG = reader.take<std::uint8_t>();

    switch (model) {
    case ComputerModel::Unknown:
    case ComputerModel::Varda:
        readVardaComputer(reader, version, extended);
        break;
    case ComputerModel::Tidemar:
        readTidemarComputer(reader, version, extended);
        break;
    case ComputerModel::VSKM:
        readVSKMComputer(reader, version, extended);
        break;
    default:
        break;
    }
}

void VardaData::readVardaComputer(BufferReader &reader, int version, bool extended)
{
    for (std::uint8_t &value : std::span(config.tailBytes).first<3>())
        value = reader.take<std::uint8_t>();
    for (std::uint8_t &value : std::span(config.cfgBytes).first<5>())
        value = reader.take<std::uint8_t>();
    reader.jump(1);
    takeGases(reader, std::span(config.gasTable1).first(version > 12 ? 12 : 8), 0);
    config.cfgH = reader.take<std::uint8_t>();
    for (BleConfig::Triple &triple : config.cfgTriple)
        triple.first = reader.take<std::uint16_t>();

    take(reader, computer.rawBlock);
    computer.batteryType = reader.take<std::uint8_t>();
    computer.setting1 = reader.take<std::uint8_t>();
    computer.setting2 = reader.take<std::uint8_t>();
    computer.setting3 = reader.take<std::uint8_t>();
    computer.setting4 = reader.take<std::uint8_t>();
    computer.setting5 = reader.take<std::uint8_t>();
    computer.setting6 = reader.take<std::uint16_t>();
    computer.setting7 = reader.take<std::uint8_t>();
    computer.setting8 = reader.take<std::uint8_t>();
    computer.value64a = reader.take<std::uint64_t>();
    take(reader, computer.flags32);

    if (!extended)
        return;
    computer.value64b = reader.take<std::uint64_t>();
    computer.entryCount = reader.take<std::uint8_t>();
    reader.jump(computer.entryCount * kEntrySize);
    computer.value64c = reader.take<std::uint64_t>();
    computer.computerByte1 = reader.take<std::uint8_t>();
    take(reader, computer.quadWords);
    computer.computerWord1 = reader.take<std::uint16_t>();
    computer.computerWord2 = reader.take<std::uint16_t>();
    computer.computerWord3 = reader.take<std::uint16_t>();
    computer.computerWord4 = reader.take<std::uint16_t>();
    computer.computerByte2 = reader.take<std::uint8_t>();
    computer.computerByte3 = reader.take<std::uint8_t>();
    computer.computerByte4 = reader.take<std::uint8_t>();
    computer.value64d = reader.take<std::uint64_t>();
    computer.value64e = reader.take<std::uint64_t>();
    computer.computerByte5 = reader.take<std::uint8_t>();
    computer.computerWord6 = reader.take<std::uint16_t>();
    computer.computerWord5 = reader.take<std::uint16_t>();
    computer.computerWord7 = reader.take<std::uint16_t>();
    if (version > 12)
        take(reader, computer.sixWords);
}

void VardaData::readTidemarComputer(BufferReader &reader, int version, bool extended)
{
    readSharedLayout(*this, reader, version, extended,
                     {kTidemarAfterGases, kTidemarBeforeSetting1});
}

void VardaData::readVSKMComputer(BufferReader &reader, int version, bool extended)
{
    readSharedLayout(*this, reader, version, extended, {kVskmAfterGases, kVskmBeforeSetting1});
}
