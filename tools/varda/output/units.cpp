// SPDX-License-Identifier: MIT
#include "output/units.h"

#include "output/text.h"

#include <cmath>

using namespace Qt::StringLiterals;

double depthIn(Units units, double metres)
{
    constexpr double kMetresInFoot = 0.3048;
    return units == Units::Imperial ? metres / kMetresInFoot : metres;
}

QString depthUnit(Units units)
{
    return units == Units::Imperial ? u"ft"_s : u"m"_s;
}

QString depthText(double metres, Units units)
{
    return tenthsText(depthIn(units, metres)) + u' ' + depthUnit(units);
}

double temperatureIn(Units units, double celsius)
{
    return units == Units::Imperial ? std::round(celsius * 9 / 5 + 32) : celsius;
}
