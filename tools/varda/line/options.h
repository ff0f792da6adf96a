// SPDX-License-Identifier: MIT
#pragma once

#include "output/units.h"

#include <varda/blemode.h>

#include <QtCore/qstring.h>

#include <chrono>
#include <optional>

/** What holds for every command. */
struct Options {
    QString device;                  ///< address or name; empty for any computer
    std::optional<BleMode> mode;     ///< found out if not given
    std::optional<QString> simulate; ///< a scenario; empty for the usual computer
    std::optional<Units> units;      ///< of texts
    QString replay;                  ///< file with a trace; empty for none
    bool strict = false;             ///< a difference to it is an error
    QString speed;                   ///< of the replay; empty for that of the trace
    QString record;                  ///< file for what happens on the link; empty for none
    bool unredacted = false;         ///< with what is private
    bool json = false;
    bool verbose = false;
    std::optional<std::chrono::seconds> timeout;
    std::optional<int> retries; ///< the library's if not given

    /** Whether there is no real computer. */
    [[nodiscard]] bool simulates() const { return simulate || !replay.isEmpty(); }
};
