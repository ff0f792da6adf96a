// SPDX-License-Identifier: MIT
#include "device/memory/batteryhistory.h"

#include "device/scenario/scenario.h"

namespace simulator {

namespace {

// A state of the battery: bit 31 set.
constexpr quint32 state(quint32 value, quint32 code, quint32 flags, quint32 offset, quint32 scaled)
{
    return 0x8000'0000U | (scaled & 0x3F) << 25 | (offset & 0x3F) << 19 | (flags & 7) << 16
           | (code & 0xF) << 12 | (value & 0xFFF);
}

// Something that happened to it: bit 31 clear.
constexpr quint32 event(quint32 value, quint32 code, quint32 flags)
{
    return (flags & 3) << 28 | (code & 3) << 20 | (value & 0xF'FFFF);
}

constexpr quint32 extra(quint32 low, quint32 high, quint32 code, quint32 flags)
{
    return 0x8000'0000U | (flags & 3) << 29 | (code & 3) << 27 | (high & 0xFFF) << 15
           | (low & 0x7FFF);
}

} // namespace

QList<BatteryWords> plausibleBatteryHistory()
{
    return {
        {state(3712, 9, 0b010, 31, 20), extra(14210, 3698, 1, 0b01)},
        {state(3655, 8, 0b000, 28, 19), 0},
        {0xFFFF'FFFF, 0xFFFF'FFFF},
        {event(86'400, 1, 0b01), 0},
        {event(172'801, 2, 0b10), extra(120, 3544, 3, 0b10)},
        {state(3388, 3, 0b101, 17, 15), 0},
    };
}

} // namespace simulator
