// SPDX-License-Identifier: MIT
#include "commands/commands.h"

Commands allCommands()
{
    Commands commands;
    for (const auto add :
         {addScan,    addInfo,    addDoctor,   addConfig, addSync,  addLogbook, addDives,
          addExport,  addImport,  addReadings, addLog,    addClock, addOwner,   addSettings,
          addLayouts, addControl, addFirmware, addServe,  addTrace, addDefaults})
        add(commands);
    return commands;
}
