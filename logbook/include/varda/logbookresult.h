// SPDX-License-Identifier: MIT
#pragma once

#include <varda/logbookerror.h>

/** What a call to a LogbookStore gave. */
template <typename T> struct LogbookResult {
    T value{}; ///< a default T after an error
    LogbookError error;
};
