// SPDX-License-Identifier: MIT
#include <varda/vardadata.h>

#include <algorithm>
#include <span>

#include <varda/bufferreader.h>

namespace {

/** The first word is a dive number up to here; above, its low byte is the layout's version. */
constexpr std::uint16_t kVersionMark = 0x8000;

double tenths(BufferReader &reader)
{
    return reader.take<std::uint16_t>() / 10.0;
}

} // namespace

void VardaData::processLogbook(const Payload &payload)
{
    const bool varda = computerModel == ComputerModel::Varda;
    const bool tidemar = computerModel == ComputerModel::Tidemar;
    const bool vskm = computerModel == ComputerModel::VSKM;

    TidemarDiveHeader header;
    header.model = computerModel;
    BufferReader reader(payload);
    header.diveNumber = reader.take<std::uint16_t>();
    int version = 0;
    if (header.diveNumber > kVersionMark) {
        version = header.diveNumber & 0xFF;
        header.diveNumber = reader.take<std::uint16_t>();
    }

    header.headerByte5 = reader.take<std::uint8_t>();
    header.kindByte = reader.take<std::uint8_t>();
    // These two count their kinds of dive differently; applications know the kind as 5.
    if ((tidemar || vskm) && header.kindByte == 3)
        header.kindByte = 5;
    header.headerByte1 = reader.take<std::uint8_t>();
    header.headerByte2 = reader.take<std::uint8_t>();
    header.below1020 = reader.take<std::uint16_t>() < 1020;
    header.headerWord1 = reader.take<std::uint16_t>();
    for (std::size_t tissue = 0; tissue < header.tissueN2.size(); ++tissue) {
        header.tissueN2[tissue] = reader.take<std::uint16_t>();
        header.tissueHe[tissue] = reader.take<std::uint16_t>();
    }
    const bool wideMask = version >= 5;
    header.gasSlotMask = wideMask ? reader.take<std::uint16_t>()
                                  : std::uint16_t(reader.take<std::uint8_t>());
    const std::size_t slots = wideMask ? 12 : 8;
    for (std::size_t slot = 0; slot < slots; ++slot) {
        header.gasO2[slot] = reader.take<std::uint8_t>();
        header.gasHe[slot] = reader.take<std::uint8_t>();
    }

    // Tidemar and VSKM keep three more bytes behind each of these.
    const int gap = tidemar || vskm ? 3 : 0;
    reader.jump(1);
    header.headerWord5 = reader.take<std::uint16_t>();
    reader.jump(gap);
    header.headerWord6 = reader.take<std::uint16_t>();
    reader.jump(gap);
    header.headerWord7 = reader.take<std::uint16_t>();
    reader.jump(gap);
    header.value32a = reader.take<std::uint32_t>();
    header.value32d = reader.take<std::uint32_t>();
    if (version != 0 && varda)
        header.headerWord8 = reader.take<std::uint16_t>();

    header.stamp = reader.take<std::uint64_t>();
    header.headerWord3 = reader.take<std::uint16_t>();
    header.tenths1 = tenths(reader);
    header.tenths2 = tenths(reader);
    header.signed1 = reader.take<std::int8_t>();
    header.signed2 = reader.take<std::int8_t>();
    header.value32b = reader.take<std::uint32_t>();
    header.headerWord2 = reader.take<std::uint16_t>();
    header.count1 = reader.take<std::uint32_t>();
    header.count2 = reader.take<std::uint32_t>();
    header.headerWord4 = reader.take<std::uint16_t>();
    header.headerWord11 = reader.take<std::uint16_t>();
    header.headerWord12 = reader.take<std::uint16_t>();
    header.stamp2 = reader.take<std::int64_t>();
    header.value32c = reader.take<std::uint32_t>();
    header.value32e = reader.take<std::uint32_t>();
    header.value32f = reader.take<std::uint32_t>();

    if (version >= 1) {
        header.sampleInterval = reader.take<std::uint8_t>();
        header.value32a = reader.take<std::uint32_t>(); // replaces the one above
    }
    if (version >= 6 && varda) {
        header.headerByte7 = reader.take<std::uint8_t>();
        header.headerWord13 = reader.take<std::uint16_t>();
    }
    if (version >= 10 && varda)
        header.headerWord14 = reader.take<std::uint16_t>();
    if (version >= 4 && tidemar)
        header.tidemarBit = reader.take<std::uint8_t>() & 1;

    diveHeaders.append(header);
}
