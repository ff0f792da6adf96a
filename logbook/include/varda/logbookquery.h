// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qglobal.h>

#include <cstdint>
#include <optional>

/** Which stored dives are meant; by default all that are not hidden. */
struct LogbookQuery {
    qint64 computer = 0; ///< LogbookComputer::id; 0: any
    // GCC wants it where a list of initializers leaves the member out
    // NOLINTBEGIN(readability-redundant-member-init)
    std::optional<std::uint16_t> number = {};
    std::optional<std::uint64_t> since = {}; ///< LogbookEntry::begin is this or later
    std::optional<std::uint64_t> until = {}; ///< LogbookEntry::begin is this or earlier
    // NOLINTEND(readability-redundant-member-init)
    bool withHidden = false;
};
