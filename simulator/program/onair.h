// SPDX-License-Identifier: MIT
#pragma once

#include "device/scenario/scenario.h"
#include "program/ending.h"
#include "program/options.h"

namespace simulator {

/** Is a computer on the air until it is stopped; returns the exit status. */
int broadcast(const Options &options, const Scenario &scenario, const StopSignals &stopSignals);

} // namespace simulator
