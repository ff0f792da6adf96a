// SPDX-License-Identifier: MIT
#include <varda/bleconfig.h>

namespace {

constexpr float kStandardGravity = 9.80665F; // m/s2
constexpr float kMillibarPerBar = 1000.0F;

} // namespace

float BleConfig::getDensity() const
{
    switch (waterType) {
    case 0:
        return 1.03F;
    case 2:
        return 1.02F;
    default:
        return 1.0F;
    }
}

float BleConfig::pressureAtDepth(float depthMetres) const
{
    return getDensity() * kStandardGravity * depthMetres / 100.0F
           + float(surfacePressure) / kMillibarPerBar;
}

float BleConfig::depthAtPressure(float pressureBar) const
{
    // Bar against millibar, as the computers themselves compare: their displays depend on it.
    if (!(pressureBar > float(surfacePressure)))
        return 0.0F;
    return (pressureBar - float(surfacePressure) / kMillibarPerBar) * 100.0F
           / (getDensity() * kStandardGravity);
}
