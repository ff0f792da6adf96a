// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>

#include <varda/vardaexport.h>

/** Model of a computer; it decides on the layouts of its records. */
namespace ComputerModel {
Q_NAMESPACE_EXPORT(VARDA_EXPORT)

enum ComputerModelIn : int {
    Unknown = 0,
    Varda = 1,
    Tidemar = 2,
    VSKM = 3,
    ThirdParty = 4,
};
Q_ENUM_NS(ComputerModelIn)
} // namespace ComputerModel
