// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <cstdint>

#include <varda/vardaexport.h>

/**
 * One entry of the binary system log. convertSyslogRecord() knows what the arguments of each type
 * mean and puts them into the text.
 */
struct SyslogBinRecord {
    std::int64_t time = 0; ///< seconds since 1970-01-01 00:00:00 UTC
    std::uint8_t type = 0; ///< selects the text; types 0 to 72 have one
    std::int32_t arg1 = 0;
    std::int32_t arg2 = 0;
};

/**
 * The English text of one log entry, without a line break.
 *
 * @param noTimestamp  false: the date and time in UTC come before the text. Months are counted
 *                     from 0, so a record of 5 March begins with "2024-02-05".
 */
[[nodiscard]] VARDA_EXPORT QString convertSyslogRecord(const SyslogBinRecord &record,
                                                       bool noTimestamp);
