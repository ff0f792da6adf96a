// SPDX-License-Identifier: MIT
#include "bluetooth.h"
#include "commandline.h"
#include "commands.h"
#include "records.h"
#include "terminal.h"
#include "text.h"

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

void scan(const Options &options, bool all)
{
    std::vector<Json> list;
    const auto duration = options.timeout.value_or(kScanTime);
    showStatus(u"Scanning"_s);
    scanFor(duration, [&](const BleDeviceInfo &device) {
        const bool isComputer = isComputerName(device.name());
        if (!isComputer && !all)
            return ScanGoes::On;
        if (!options.json) {
            if (list.empty())
                print(columns().text(outputStyle()));
            printDevice(device);
            showStatus(u"Scanning"_s);
        }
        Fields fields = fieldsOf(device);
        fields.emplace_back("computer"_L1, isComputer);
        list.emplace_back(fields);
        return ScanGoes::On;
    });
    if (options.json)
        print(Fields{{"devices"_L1, list}});
    if (list.empty()) {
        throw Failure{ExitCode::NotFound, u"nothing found within %1 s"_s.arg(duration.count()),
                      u"Is the computer switched on, in its Bluetooth mode and near?"_s};
    }
}

} // namespace

void addScan(CommandLine &line)
{
    const auto all = std::make_shared<bool>(false);
    CLI::App *const command = line.add("scan", "List the computers in reach",
                                       [all](const Options &options) { scan(options, *all); });
    command->add_flag("--all", *all, "Also other devices that have a name");
}
