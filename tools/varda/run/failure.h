// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstringlist.h>

/** What the process ends with; scripts rely on the numbers. */
enum class ExitCode : int {
    Ok = 0,
    JobFailed = 1,   ///< the computer refused, or its answer was damaged
    UsageError = 2,  ///< also a file or a scenario that cannot be used
    NotFound = 3,    ///< no computer in range
    LinkFailed = 4,  ///< could not connect, or the link was lost
    TimedOut = 5,    ///< found, but it did not answer in time
    NoBluetooth = 6, ///< no adapter, no service, switched off, or not allowed
    StoreFailed = 7, ///< the file of the saved dives cannot be opened, read or written
    Signal = 128,    ///< plus the number of the signal that interrupted
};

/** Thrown where a command cannot go on, caught where the process ends. */
struct Failure {
    ExitCode code = ExitCode::JobFailed;
    QString what;   ///< what happened, one line without a full stop; empty: it is not printed
    QString advice; ///< what to do about it, if there is something
    // GCC wants it where a list of initializers leaves the member out
    QStringList choices = {}; ///< below it. NOLINT(readability-redundant-member-init)
};
