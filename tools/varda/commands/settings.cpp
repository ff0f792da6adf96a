// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "commands/sensorvalues.h"
#include "line/arguments.h"
#include "line/commandline.h"
#include "line/confirmation.h"
#include "output/records.h"
#include "output/terminal.h"
#include "run/runner.h"

using namespace Qt::StringLiterals;

namespace {

// What there is from the highest lakes down to the Dead Sea
constexpr std::uint32_t kLowestPressure = 500;
constexpr std::uint32_t kHighestPressure = 1100;

struct Pressure {
    std::uint32_t mbar = 0;
    bool force = false;
};

void setPressure(const Options &options, const Confirmation &confirmation, const Pressure &pressure)
{
    const std::uint32_t mbar = pressure.mbar;
    if (!pressure.force && (mbar < kLowestPressure || mbar > kHighestPressure)) {
        throw Failure{ExitCode::UsageError,
                      u"%1 mbar is no pressure at a surface, which is %2 to %3"_s.arg(mbar)
                          .arg(kLowestPressure)
                          .arg(kHighestPressure),
                      u"--force sets it all the same."_s};
    }
    confirmation.require();
    Runner runner(options, Purpose::Writing);
    confirmation.ask(u"Set the surface pressure of %1 to %2 mbar?"_s.arg(runner.computerName(),
                                                                         QString::number(mbar)));
    const VardaSensors sensors = runner.resultOf(runner.computer().writeSurfacePressure(mbar),
                                                 u"Setting the surface pressure"_s);
    printSensors(runner.device(), sensors, options.json, runner.heading());
}

void sendSettings(const Options &options, const Confirmation &confirmation,
                  const MarloSettings &settings)
{
    confirmation.require();
    Runner runner(options, Purpose::Writing);
    confirmation.ask(u"Write these settings into %1?"_s.arg(runner.computerName()));
    runner.run(runner.computer().writeSettings(settings), u"Writing the settings"_s);
    if (options.json) {
        print({{"device"_L1, fieldsOf(runner.device())},
               {"marloSettings"_L1, Fields{{"byte1"_L1, settings.byte1},
                                           {"byte2"_L1, settings.byte2},
                                           {"float1"_L1, settings.float1},
                                           {"byte3"_L1, settings.byte3},
                                           {"float2"_L1, settings.float2},
                                           {"byte4"_L1, settings.byte4},
                                           {"byte5"_L1, settings.byte5},
                                           {"byte6"_L1, settings.byte6}}}});
    } else {
        print(runner.heading() + u"The computer has accepted the settings.\n"_s);
    }
}

void addPressure(CommandLine &line)
{
    const auto pressure = std::make_shared<Pressure>();
    const auto confirmation = std::make_shared<std::optional<Confirmation>>();
    CLI::App *const command = line.add("pressure", "Set the surface pressure",
                                       [pressure, confirmation](const Options &options) {
                                           setPressure(options, **confirmation, *pressure);
                                       });
    command->add_option("MBAR", pressure->mbar, "The pressure in millibar")
        ->type_name("MBAR")
        ->required();
    confirmation->emplace(command);
    command->add_flag("--force", pressure->force, "Also outside 500 to 1100 mbar");
}

void addMarlo(CommandLine &line)
{
    const auto settings = std::make_shared<MarloSettings>();
    const auto confirmation = std::make_shared<std::optional<Confirmation>>();
    CLI::App *const command = line.add("settings",
                                       "Write settings into the computer; they cannot be read back",
                                       [settings, confirmation](const Options &options) {
                                           sendSettings(options, **confirmation, *settings);
                                       });
    confirmation->emplace(command);
    const auto byte = [&](const char *name, std::uint8_t &target) {
        command
            ->add_option_function<int>(
                name, [settings, &target](int value) { target = std::uint8_t(value); }, "0 to 255")
            ->type_name(name)
            ->required()
            ->check(between(0, 255));
    };
    const auto real = [&](const char *name, float &target) {
        command->add_option(name, target, "a number")->type_name(name)->required();
    };
    byte("BYTE1", settings->byte1);
    byte("BYTE2", settings->byte2);
    real("FLOAT1", settings->float1);
    byte("BYTE3", settings->byte3);
    real("FLOAT2", settings->float2);
    byte("BYTE4", settings->byte4);
    byte("BYTE5", settings->byte5);
    byte("BYTE6", settings->byte6);
}

} // namespace

void addSettings(CommandLine &line)
{
    addPressure(line);
    addMarlo(line);
}
