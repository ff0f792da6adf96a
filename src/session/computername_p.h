// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

/** Names under which the computers advertise: their own, or that of their radio module. */
inline bool isComputerName(const QString &name)
{
    using namespace Qt::StringLiterals;
    return name == "Tidemar"_L1 || name == "Varda"_L1 || name.startsWith("VSK-"_L1)
           || name.startsWith("RN4871"_L1);
}
