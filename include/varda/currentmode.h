// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>

#include <varda/vardaexport.h>

/** What a computer is running, according to its identification. */
namespace CurrentMode {
Q_NAMESPACE_EXPORT(VARDA_EXPORT)

enum CurrentModeIn : int {
    Unknown = 0,
    Normal = 1,     ///< its application firmware
    BootLoader = 2, ///< its bootloader
};
Q_ENUM_NS(CurrentModeIn)
} // namespace CurrentMode
