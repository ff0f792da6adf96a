// SPDX-License-Identifier: MIT
#include "commands/gastable.h"

#include <varda/diveprofile.h>

using namespace Qt::StringLiterals;

QString gasesText(const std::array<BleConfig::Gas, 12> &table)
{
    QString text;
    for (std::size_t i = 0; i < table.size(); ++i) {
        const auto [oxygen, helium] = table[i];
        if (oxygen == 0 && helium == 0)
            continue;
        text += u"  %1  %2 % O2  %3 % He  %4\n"_s.arg(i, 2).arg(oxygen, 3).arg(helium, 3).arg(
            DiveProfile::gasName(oxygen, helium));
    }
    return text.isEmpty() ? u"  none\n"_s : text;
}
