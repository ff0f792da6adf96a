// SPDX-License-Identifier: MIT
#include "sensorvalues.h"

#include "connection.h"
#include "records.h"
#include "terminal.h"
#include "text.h"

using namespace Qt::StringLiterals;

void readSensors(Connection &connection)
{
    connection.read(TidemarCommand::SimulParams, u"surface pressure"_s);
    connection.read(TidemarCommand::Sensors, u"sensors"_s);
}

void printSensors(const Connection &connection, bool json, const QString &heading)
{
    const VardaSession &session = connection.session();
    if (json) {
        print({{"device"_L1, fieldsOf(connection.device())},
               {"psurf"_L1, session.psurf()},
               {"pamb"_L1, session.pamb()},
               {"dstop"_L1, session.dstop()},
               {"density"_L1, session.density()}});
        return;
    }
    Table table;
    table.add(u"Surface pressure"_s, u"%1 mbar"_s.arg(session.psurf()));
    table.add(u"Ambient pressure"_s, u"%1 mbar"_s.arg(session.pamb()));
    // What these two count in is the computer's.
    table.add(u"dstop"_s, QString::number(session.dstop()));
    table.add(u"density"_s, QString::number(session.density()));
    print(heading + table.text(outputStyle()));
}
