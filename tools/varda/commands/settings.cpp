// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "commands/sensorvalues.h"
#include "line/arguments.h"
#include "line/choices/confirmation.h"
#include "output/records.h"
#include "output/terminal.h"
#include "run/runner.h"

using namespace Qt::StringLiterals;

namespace {

// What there is from the highest lakes down to the Dead Sea
constexpr std::uint32_t kLowestPressure = 500;
constexpr std::uint32_t kHighestPressure = 1100;

class SetPressure : public Command
{
public:
    SetPressure() : Command("pressure", "Set the surface pressure") { }

    void declare(Arguments &arguments) override
    {
        arguments.argument("MBAR", m_mbar, "Pressure in millibar");
        m_confirmation.declare(arguments);
        arguments.flag("--force", m_force, "Allow less than 500 or more than 1100 mbar");
    }

    void run(const Options &options) const override
    {
        requirePlausible();
        m_confirmation.require();
        Runner runner(options, Purpose::Writing);
        m_confirmation.ask(u"Set the surface pressure of %1 to %2 mbar?"_s.arg(
            runner.computerName(), QString::number(m_mbar)));
        const VardaSensors sensors = runner.resultOf(runner.computer().writeSurfacePressure(m_mbar),
                                                     u"Setting the surface pressure"_s);
        printSensors(runner.device(), sensors, options.json, runner.heading());
    }

private:
    /** @throws Failure */
    void requirePlausible() const
    {
        if (m_force || (m_mbar >= kLowestPressure && m_mbar <= kHighestPressure))
            return;
        throw Failure{ExitCode::UsageError,
                      u"%1 mbar is not a surface pressure, which is %2 to %3"_s.arg(m_mbar)
                          .arg(kLowestPressure)
                          .arg(kHighestPressure),
                      u"Use --force to set it anyway."_s};
    }

    std::uint32_t m_mbar = 0;
    bool m_force = false;
    Confirmation m_confirmation;
};

Fields fieldsOf(const MarloSettings &settings)
{
    return {{"byte1"_L1, settings.byte1},   {"byte2"_L1, settings.byte2},
            {"float1"_L1, settings.float1}, {"byte3"_L1, settings.byte3},
            {"float2"_L1, settings.float2}, {"byte4"_L1, settings.byte4},
            {"byte5"_L1, settings.byte5},   {"byte6"_L1, settings.byte6}};
}

class WriteSettings : public Command
{
public:
    WriteSettings()
        : Command("settings", "Write settings to the computer; they cannot be read back")
    {
    }

    void declare(Arguments &arguments) override
    {
        m_confirmation.declare(arguments);
        arguments.argument("BYTE1", m_settings.byte1, kByte);
        arguments.argument("BYTE2", m_settings.byte2, kByte);
        arguments.argument("FLOAT1", m_settings.float1, kReal);
        arguments.argument("BYTE3", m_settings.byte3, kByte);
        arguments.argument("FLOAT2", m_settings.float2, kReal);
        arguments.argument("BYTE4", m_settings.byte4, kByte);
        arguments.argument("BYTE5", m_settings.byte5, kByte);
        arguments.argument("BYTE6", m_settings.byte6, kByte);
    }

    void run(const Options &options) const override
    {
        m_confirmation.require();
        Runner runner(options, Purpose::Writing);
        m_confirmation.ask(u"Write these settings to %1?"_s.arg(runner.computerName()));
        runner.run(runner.computer().writeSettings(m_settings), u"Writing the settings"_s);
        if (options.json) {
            print({{"device"_L1, ::fieldsOf(runner.device())},
                   {"marloSettings"_L1, fieldsOf(m_settings)}});
        } else {
            print(runner.heading() + u"The computer has accepted the settings.\n"_s);
        }
    }

private:
    static constexpr auto kByte = "0 to 255";
    static constexpr auto kReal = "a number";

    MarloSettings m_settings;
    Confirmation m_confirmation;
};

} // namespace

void addSettings(Commands &commands)
{
    commands.push_back(std::make_unique<SetPressure>());
    commands.push_back(std::make_unique<WriteSettings>());
}
