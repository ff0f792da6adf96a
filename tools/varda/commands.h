// SPDX-License-Identifier: MIT
#pragma once

class CommandLine;

// One for each file of commands; the order of the calls is that of the help.

void addScan(CommandLine &line);
void addInfo(CommandLine &line);
void addConfig(CommandLine &line);
