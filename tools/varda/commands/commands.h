// SPDX-License-Identifier: MIT
#pragma once

#include "line/command.h"

/** Every command, in the order of the help. */
[[nodiscard]] Commands allCommands();

// One for each file of commands

void addScan(Commands &commands);
void addInfo(Commands &commands);
void addDoctor(Commands &commands);
void addConfig(Commands &commands);
void addSync(Commands &commands);
void addLogbook(Commands &commands);
void addDives(Commands &commands);
void addExport(Commands &commands);
void addImport(Commands &commands);
void addReadings(Commands &commands);
void addLog(Commands &commands);
void addClock(Commands &commands);
void addOwner(Commands &commands);
void addSettings(Commands &commands);
void addLayouts(Commands &commands);
void addControl(Commands &commands);
void addFirmware(Commands &commands);
void addServe(Commands &commands);
void addTrace(Commands &commands);
void addDefaults(Commands &commands);
