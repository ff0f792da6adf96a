// SPDX-License-Identifier: MIT
#include <varda/vardadata.h>

#include <QtCore/qchar.h>

#include <varda/bufferreader.h>

using namespace Qt::StringLiterals;

namespace {

// The identification gives model and record version in one number: 11 to 20 Varda, 21 to 30
// Tidemar, from 31 on VSKM; below, the model is not told.
constexpr quint8 kVardaBase = 10;
constexpr quint8 kTidemarBase = 20;
constexpr quint8 kVskmBase = 30;

CurrentMode::CurrentModeIn modeOf(quint8 recordVersion)
{
    switch (recordVersion) {
    case 1:
        return CurrentMode::Normal;
    case 2:
        return CurrentMode::BootLoader;
    default:
        return CurrentMode::Unknown;
    }
}

QString hexByte(quint8 value)
{
    return u"%1"_s.arg(uint(value), 2, 16, QLatin1Char('0'));
}

QString hexWord(quint32 value)
{
    return u"%1"_s.arg(value, 8, 16, QLatin1Char('0')).toUpper();
}

} // namespace

QString VardaData::firmwareVersionToString(std::uint32_t version)
{
    const auto number = [version](int shift) { return QString::number((version >> shift) & 0xFF); };
    return number(24) + u'.' + number(16) + u'.' + number(8) + u'.' + QChar(version & 0xFF);
}

void VardaData::processIdentification(const Payload &payload)
{
    BufferReader reader(payload);
    firmwareVersion = reader.take<std::uint32_t>();
    firmwareVersionStr = firmwareVersionToString(firmwareVersion);

    const auto code = reader.take<std::uint8_t>();
    recordVersion = code;
    if (code > kVskmBase) {
        computerModel = ComputerModel::VSKM;
        recordVersion = std::uint8_t(code - kVskmBase);
    } else if (code > kTidemarBase) {
        computerModel = ComputerModel::Tidemar;
        recordVersion = std::uint8_t(code - kTidemarBase);
    } else if (code > kVardaBase) {
        computerModel = ComputerModel::Varda;
        recordVersion = std::uint8_t(code - kVardaBase);
    }
    currentMode = modeOf(recordVersion);

    if (computerModel == ComputerModel::Tidemar || computerModel == ComputerModel::VSKM)
        bootloaderVersion = reader.take<std::uint32_t>();
}

void VardaData::processSerialNumber(const Payload &payload)
{
    if (recordVersion == 0) {
        const auto hex = [&payload](std::size_t offset) { return hexByte(payload[offset]); };
        serialNumber = hex(6) + hex(5) + u'-' + hex(4) + hex(3) + u'-' + hex(2) + hex(1) + u'-'
                       + QChar(char16_t(payload[7]));
        return;
    }
    BufferReader reader(payload);
    const auto first = reader.take<std::uint32_t>();
    const auto second = reader.take<std::uint32_t>();
    const auto third = reader.take<std::uint32_t>();
    serialNumber = hexWord(first) + u'-' + hexWord(second) + u'-' + hexWord(third);
}

void VardaData::processBootloaderVersion(const Payload &payload)
{
    bootloaderVersion = BufferReader(payload).take<std::uint32_t>();
    bootloaderVersionStr = bootloaderVersion == 0 ? u"Unknown"_s
                                                  : firmwareVersionToString(bootloaderVersion);
}
