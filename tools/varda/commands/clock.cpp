// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "output/documents.h"
#include "output/terminal.h"
#include "output/text.h"
#include "run/runner.h"

using namespace Qt::StringLiterals;

namespace {

void printClock(const Runner &runner, std::int64_t time, bool json, const QString &heading)
{
    if (json)
        print(documents::withDevice(runner.device(), documents::clock(time)));
    else
        print(heading + clockText(time) + u'\n');
}

class SetClock : public Command
{
public:
    SetClock() : Command("set", "Set it to the local time of this machine") { }

    void run(const Options &options) const override
    {
        Runner runner(options, Purpose::Writing);
        const auto time = runner.resultOf(runner.computer().setClock(), u"Setting the clock"_s);
        printClock(runner, time, options.json, runner.heading());
    }
};

class ShowClock : public Command
{
public:
    ShowClock() : Command("time", "Show or set the computer's clock") { add<SetClock>(); }

    void run(const Options &options) const override
    {
        Runner runner(options);
        const auto time = runner.resultOf(runner.computer().readClock(), u"Reading the clock"_s);
        printClock(runner, time, options.json, {});
    }
};

} // namespace

void addClock(Commands &commands)
{
    commands.push_back(std::make_unique<ShowClock>());
}
