// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "commands.h"
#include "connection.h"
#include "records.h"
#include "terminal.h"
#include "text.h"

using namespace Qt::StringLiterals;

namespace {

void printClock(const Connection &connection, bool json, const QString &heading)
{
    const auto time = connection.session().computerTime();
    if (json)
        print({{"device"_L1, fieldsOf(connection.device())}, {"computerTime"_L1, time}});
    else
        print(heading + clockText(time) + u'\n');
}

void showClock(const Options &options)
{
    Connection connection(options);
    connection.read(TidemarCommand::Time, u"clock"_s);
    printClock(connection, options.json, {});
}

void setClock(const Options &options)
{
    Connection connection(options, Purpose::Writing);
    connection.run({.name = u"clock"_s,
                    .end = TidemarCommand::Set_time,
                    .start = [](VardaSession &session) { session.startSetTime(); },
                    .verb = u"Setting the"_s});
    printClock(connection, options.json, connection.heading());
}

} // namespace

void addClock(CommandLine &line)
{
    CLI::App *const time = line.add("time", "Show or set the computer's clock", showClock);
    line.addTo(time, "set", "Set it to the local time of this machine", setClock);
}
