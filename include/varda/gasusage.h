// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>

#include <varda/vardaexport.h>

/** Role of a gas in a dive. */
namespace GasUsage {
Q_NAMESPACE_EXPORT(VARDA_EXPORT)

enum GasUsageIn : quint8 {
    None = 0, ///< open circuit
    Oxygen = 1,
    Diluent = 2, ///< closed-circuit diluent
    Sidemount = 3,
};
Q_ENUM_NS(GasUsageIn)
} // namespace GasUsage
