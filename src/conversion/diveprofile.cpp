// SPDX-License-Identifier: MIT
#include <varda/diveprofile.h>

#include <algorithm>
#include <cmath>

namespace {

std::optional<DiveProfile::TemperatureRange> temperatureOf(const QList<DiveLine> &lines)
{
    const auto [lowest, highest] = std::minmax_element(
        lines.begin(), lines.end(),
        [](const DiveLine &one, const DiveLine &other) { return one.aux1Value < other.aux1Value; });
    if (lowest->aux1Value == 0 && highest->aux1Value == 0)
        return std::nullopt;
    return DiveProfile::TemperatureRange{lowest->aux1Value, highest->aux1Value};
}

QList<DiveProfile::GasSwitch> switchesOf(const QList<DiveLine> &lines)
{
    QList<DiveProfile::GasSwitch> switches;
    for (const DiveLine &line : lines) {
        if (switches.isEmpty() || switches.back().gasIndex != line.gasIndex)
            switches.append({line.time, line.gasIndex});
    }
    return switches;
}

} // namespace

DiveProfile DiveProfile::fromDive(const Dive &dive)
{
    DiveProfile profile;
    if (dive.lines.isEmpty())
        return profile;
    double sum = 0;
    for (const DiveLine &line : dive.lines) {
        sum += line.depth;
        profile.maximumDepth = std::max(profile.maximumDepth, line.depth);
    }
    profile.duration = dive.lines.back().time;
    profile.meanDepth = sum / double(dive.lines.size());
    profile.temperature = temperatureOf(dive.lines);
    if (!dive.gases.isEmpty())
        profile.switches = switchesOf(dive.lines);
    return profile;
}

QString DiveProfile::gasName(int oxygen, int helium)
{
    if (helium > 0)
        return QStringLiteral("%1/%2").arg(oxygen).arg(helium);
    if (oxygen == 21)
        return QStringLiteral("Air");
    if (oxygen == 100)
        return QStringLiteral("Oxygen");
    return QStringLiteral("EAN%1").arg(oxygen);
}

QString DiveProfile::gasName(const DiveGas &gas)
{
    return gasName(int(std::lround(gas.oxygen * 100)), int(std::lround(gas.helium * 100)));
}
