// SPDX-License-Identifier: MIT
#include "profile.h"

#include "text.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

QString nameOf(const DiveGas &gas)
{
    return gasName(int(std::lround(gas.oxygen * 100)), int(std::lround(gas.helium * 100)));
}

} // namespace

double diveDuration(const Dive &dive)
{
    return dive.lines.isEmpty() ? 0 : dive.lines.back().time;
}

double maximumDepth(const Dive &dive)
{
    double deepest = 0;
    for (const DiveLine &line : dive.lines)
        deepest = std::max(deepest, line.depth);
    return deepest;
}

double averageDepth(const Dive &dive)
{
    double sum = 0;
    for (const DiveLine &line : dive.lines)
        sum += line.depth;
    return dive.lines.isEmpty() ? 0 : sum / double(dive.lines.size());
}

std::optional<TemperatureRange> temperatures(const Dive &dive)
{
    const auto less = [](const DiveLine &one, const DiveLine &other) {
        return one.aux1Value < other.aux1Value;
    };
    if (dive.lines.isEmpty())
        return std::nullopt;
    const auto [lowest, highest] = std::minmax_element(dive.lines.begin(), dive.lines.end(), less);
    if (lowest->aux1Value == 0 && highest->aux1Value == 0)
        return std::nullopt;
    return TemperatureRange{lowest->aux1Value, highest->aux1Value};
}

QList<GasSwitch> gasSwitches(const Dive &dive)
{
    QList<GasSwitch> switches;
    if (dive.gases.isEmpty())
        return switches;
    for (const DiveLine &line : dive.lines) {
        if (switches.isEmpty() || switches.back().gasIndex != line.gasIndex)
            switches.append({line.time, line.gasIndex});
    }
    return switches;
}

QChar gasMark(int gasIndex)
{
    constexpr QStringView kMarks = u"123456789abc";
    return gasIndex >= 0 && gasIndex < kMarks.size() ? kMarks[gasIndex] : QChar(u'?');
}

QString gasNameOf(const Dive &dive, int gasIndex)
{
    if (gasIndex < 0 || gasIndex >= dive.gases.size())
        return u"-"_s;
    return nameOf(dive.gases[gasIndex]);
}

QString gasNames(const QList<DiveGas> &gases)
{
    QStringList names;
    for (const DiveGas &gas : gases)
        names.append(nameOf(gas));
    return names.isEmpty() ? u"-"_s : names.join(u", "_s);
}

QString beginText(const DiveHeaderBlock &header)
{
    constexpr quint64 kEarliest = 946684800; // 2000-01-01
    constexpr quint64 kLatest = 4102444800;  // 2100-01-01
    if (header.stamp < kEarliest || header.stamp >= kLatest)
        return {};
    return clockText(qint64(header.stamp));
}

QString circuitText(const DiveHeaderBlock &header)
{
    return header.kindByte == 0 ? u"open"_s : u"closed"_s;
}
