// SPDX-License-Identifier: MIT
#pragma once

class CommandLine;

// One for each file of commands; the order of the calls is that of the help.

void addScan(CommandLine &line);
void addInfo(CommandLine &line);
void addConfig(CommandLine &line);
void addDives(CommandLine &line);
void addReadings(CommandLine &line);
void addLog(CommandLine &line);
void addClock(CommandLine &line);
void addOwner(CommandLine &line);
void addSettings(CommandLine &line);
void addLayouts(CommandLine &line);
void addControl(CommandLine &line);
void addFirmware(CommandLine &line);
void addDefaults(CommandLine &line);
