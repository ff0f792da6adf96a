// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "commandline.h"
#include "commands.h"
#include "connection.h"
#include "records.h"
#include "sensorvalues.h"
#include "terminal.h"

using namespace Qt::StringLiterals;

namespace {

void setPressure(const Options &options, std::uint32_t pressure)
{
    Connection connection(options);
    connection.run(
        {.name = u"surface pressure"_s,
         .end = TidemarCommand::Set_sensors,
         .start = [pressure](VardaSession &session) { session.startSetPressure(pressure); },
         .verb = u"Setting the"_s});
    readSensors(connection);
    printSensors(connection, options.json);
}

void sendSettings(const Options &options, const MarloSettings &settings)
{
    Connection connection(options);
    connection.run(
        {.name = u"settings"_s,
         .end = TidemarCommand::MarloSet,
         .start = [&settings](VardaSession &session) { session.startMarloSettings(settings); },
         .verb = u"Writing the"_s});
    if (options.json) {
        print({{"device"_L1, fieldsOf(connection.device())},
               {"marloSettings"_L1, Fields{{"byte1"_L1, settings.byte1},
                                           {"byte2"_L1, settings.byte2},
                                           {"float1"_L1, settings.float1},
                                           {"byte3"_L1, settings.byte3},
                                           {"float2"_L1, settings.float2},
                                           {"byte4"_L1, settings.byte4},
                                           {"byte5"_L1, settings.byte5},
                                           {"byte6"_L1, settings.byte6}}}});
    } else {
        print(u"The computer has accepted the settings.\n"_s);
    }
}

void addPressure(CommandLine &line)
{
    const auto pressure = std::make_shared<std::uint32_t>();
    CLI::App *const command = line.add(
        "pressure", "Set the surface pressure",
        [pressure](const Options &options) { setPressure(options, *pressure); });
    command->add_option("MBAR", *pressure, "The pressure in millibar")
        ->type_name("MBAR")
        ->required();
}

void addMarlo(CommandLine &line)
{
    const auto settings = std::make_shared<MarloSettings>();
    CLI::App *const command = line.add(
        "settings", "Write settings into the computer; they cannot be read back",
        [settings](const Options &options) { sendSettings(options, *settings); });
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
