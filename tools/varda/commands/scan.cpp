// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "line/arguments.h"
#include "line/options.h"
#include "output/documents.h"
#include "output/safetext.h"
#include "output/tables.h"
#include "output/terminal.h"
#include "run/finding.h"
#include "run/jobrun.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kScanTime = 10s;

/** Wide enough for what comes, for each row is printed when it is there. */
Columns columns()
{
    using enum Columns::Side;
    constexpr int kEnoughName = 10;
    return Columns(
        {{.title = u"ADDRESS"_s, .side = Left, .width = 17},
         {.title = u"SIGNAL"_s, .rank = 1, .width = 7},
         {.title = u"NAME"_s, .side = Left, .width = kEnoughName, .enough = kEnoughName}});
}

void printDevice(const BleDeviceInfo &device)
{
    Columns row = columns();
    row.add({device.address(), signalText(device), safeText(device.name())});
    print(row.rows(outputStyle()));
    flushOutput();
}

class Scan : public Command
{
public:
    Scan() : Command("scan", "List the computers in range") { }

    void declare(Arguments &arguments) override
    {
        arguments.flag("--all", m_all, "Also list other devices that have a name");
    }

    void run(const Options &options) const override
    {
        VardaComputer computer;
        const auto duration = options.timeout.value_or(kScanTime);
        SearchJob *const search = computer.search(duration, m_all);
        JobRun jobRun(search);
        showStatus(u"Scanning"_s);
        if (!options.json) {
            QObject::connect(search, &SearchJob::deviceFound, &jobRun,
                             [&](const BleDeviceInfo &device) {
                                 jobRun.attempt([&] {
                                     if (search->devices().size() == 1)
                                         print(columns().text(outputStyle()));
                                     printDevice(device);
                                     showStatus(u"Scanning"_s);
                                 });
                             });
        }
        jobRun.wait();
        if (options.json)
            print(documents::devices(search->devices()));
        if (search->devices().isEmpty()) {
            throw Failure{ExitCode::NotFound, u"nothing found within %1 s"_s.arg(duration.count()),
                          u"Is the computer switched on, in its Bluetooth mode and near?"_s};
        }
    }

private:
    bool m_all = false;
};

} // namespace

void addScan(Commands &commands)
{
    commands.push_back(std::make_unique<Scan>());
}
