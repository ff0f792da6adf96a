// SPDX-License-Identifier: MIT
#include "commands/sensorvalues.h"

#include "output/documents.h"
#include "output/tables.h"
#include "output/terminal.h"

using namespace Qt::StringLiterals;

void printSensors(const BleDeviceInfo &device, const VardaSensors &sensors, bool json,
                  const QString &heading)
{
    if (json)
        return print(documents::withDevice(device, documents::sensors(sensors)));
    Table table;
    table.add(u"Surface pressure"_s, u"%1 mbar"_s.arg(sensors.psurf));
    table.add(u"Ambient pressure"_s, u"%1 mbar"_s.arg(sensors.pamb));
    // What these two count in is the computer's.
    table.add(u"dstop"_s, QString::number(sensors.dstop));
    table.add(u"density"_s, QString::number(sensors.density));
    print(heading + table.text(outputStyle()));
}
