// SPDX-License-Identifier: MIT
#include <varda/blecomputer.h>

using namespace Qt::StringLiterals;

QString BleComputer::getBatteryStr() const
{
    switch (batteryType) {
    case 0:
        return u"Alcaline"_s;
    case 1:
        return u"NiMH"_s;
    case 2:
        return u"Lion36"_s;
    default:
        return u"Unknown"_s;
    }
}
