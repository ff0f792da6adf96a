// SPDX-License-Identifier: MIT
#pragma once

#include "device/scenario/scenario.h"
#include "program/ending.h"
#include "program/options.h"

namespace simulator {

/** Is a BlueZ on a bus of its own until it is stopped, or its command ends; returns the status. */
int serve(const Options &options, const Scenario &scenario, const StopSignals &stopSignals);

} // namespace simulator
