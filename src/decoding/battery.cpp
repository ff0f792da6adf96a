// SPDX-License-Identifier: MIT
#include <varda/vardadata.h>

#include <algorithm>

#include <varda/bufferreader.h>

namespace {

constexpr int kRecordSize = 8;
constexpr std::uint32_t kEmptySlot = 0xFFFFFFFF;

/** Bits @p first to @p last of a word. */
template <typename T> T bits(std::uint32_t word, int first, int last)
{
    return T((word >> first) & ((1U << (last - first + 1)) - 1U));
}

template <typename T> T bit(std::uint32_t word, int number)
{
    return bits<T>(word, number, number);
}

BatteryInfoRecord recordOf(std::uint32_t a, std::uint32_t b)
{
    BatteryInfoRecord record;
    if (bit<bool>(a, 31)) {
        record.kind = 0;
        record.value12 = bits<std::uint16_t>(a, 0, 11);
        record.code4 = bits<std::uint8_t>(a, 12, 15);
        record.flag16 = bit<std::uint8_t>(a, 16);
        record.flag17 = bit<std::uint8_t>(a, 17);
        record.flag18 = bit<std::uint8_t>(a, 18);
        record.offsetValue = bits<std::int32_t>(a, 19, 24) - 10;
        record.scaledValue = std::uint16_t(bits<unsigned>(a, 25, 30) * 200);
    } else {
        record.kind = 1;
        record.value20 = bits<std::uint32_t>(a, 0, 19);
        record.code2 = bits<std::uint8_t>(a, 20, 21);
        record.flag28 = bit<std::uint8_t>(a, 28);
        record.flag29 = bit<std::uint8_t>(a, 29);
    }
    record.hasExtra = bit<std::uint8_t>(b, 31);
    if (record.hasExtra) {
        record.extra15 = bits<std::uint16_t>(b, 0, 14);
        record.extra12 = bits<std::uint16_t>(b, 15, 26);
        record.extraCode2 = bits<std::uint8_t>(b, 27, 28);
        record.extraFlag29 = bit<std::uint8_t>(b, 29);
        record.extraFlag30 = bit<std::uint8_t>(b, 30);
    }
    return record;
}

} // namespace

void VardaData::processBatteryInformation(const Payload &payload, std::uint16_t length)
{
    const int end = std::min(int(length), int(payload.size()));
    BufferReader reader(payload);
    for (int offset = 1; offset + kRecordSize <= end; offset += kRecordSize) {
        const auto a = reader.take<std::uint32_t>();
        const auto b = reader.take<std::uint32_t>();
        if (a != kEmptySlot)
            batteryInfo.append(recordOf(a, b));
    }
}
