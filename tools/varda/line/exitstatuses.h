// SPDX-License-Identifier: MIT
#pragma once

#include "run/failure.h"

#include <array>

struct ExitStatus {
    ExitCode code;
    const char *meaning;
};

/** What the help and the manual page say about them. */
inline constexpr std::array kExitStatuses{
    ExitStatus{ExitCode::Ok, "done"},
    ExitStatus{ExitCode::JobFailed, "the computer refused or its answer was damaged"},
    ExitStatus{ExitCode::UsageError, "wrong usage"},
    ExitStatus{ExitCode::NotFound, "no computer found"},
    ExitStatus{ExitCode::LinkFailed, "not connected or link lost"},
    ExitStatus{ExitCode::TimedOut, "no answer in time"},
    ExitStatus{ExitCode::NoBluetooth, "no Bluetooth"},
    ExitStatus{ExitCode::StoreFailed, "the saved dives cannot be read or written"},
};
