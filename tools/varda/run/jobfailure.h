// SPDX-License-Identifier: MIT
#pragma once

#include "run/failure.h"

#include <varda/vardajob.h>

/** What the process ends with where a job ended so. */
[[nodiscard]] ExitCode exitCodeOf(VardaJob::Error error);

/** What a job that has failed means to the user of the command. */
[[nodiscard]] Failure failureOf(const VardaJob &job);
