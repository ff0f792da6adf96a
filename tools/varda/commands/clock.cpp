// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "line/commandline.h"
#include "output/records.h"
#include "output/terminal.h"
#include "output/text.h"
#include "run/runner.h"

using namespace Qt::StringLiterals;

namespace {

void printClock(const Runner &runner, std::int64_t time, bool json, const QString &heading)
{
    if (json)
        print({{"device"_L1, fieldsOf(runner.device())}, {"computerTime"_L1, time}});
    else
        print(heading + clockText(time) + u'\n');
}

void showClock(const Options &options)
{
    Runner runner(options);
    const auto time = runner.resultOf(runner.computer().readClock(), u"Reading the clock"_s);
    printClock(runner, time, options.json, {});
}

void setClock(const Options &options)
{
    Runner runner(options, Purpose::Writing);
    const auto time = runner.resultOf(runner.computer().setClock(), u"Setting the clock"_s);
    printClock(runner, time, options.json, runner.heading());
}

} // namespace

void addClock(CommandLine &line)
{
    CLI::App *const time = line.add("time", "Show or set the computer's clock", showClock);
    line.addTo(time, "set", "Set it to the local time of this machine", setClock);
}
