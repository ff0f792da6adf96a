// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <cstdint>

#include <varda/computermodel.h>
#include <varda/currentmode.h>

/** What a computer is. If a value could not be read, its text is empty and its version 0. */
struct VardaIdentity {
    ComputerModel::ComputerModelIn model = ComputerModel::Unknown;
    CurrentMode::CurrentModeIn mode = CurrentMode::Unknown;
    std::uint8_t recordVersion = 0;      ///< version of the record layouts
    std::uint32_t firmwareVersion = 0;   ///< packed; see VardaData::firmwareVersionToString()
    std::uint32_t bootloaderVersion = 0; ///< packed as well
    QString firmwareVersionStr;
    QString bootloaderVersionStr;
    QString serialNumber; ///< empty if it cannot be received, at an MTU of 23
};
