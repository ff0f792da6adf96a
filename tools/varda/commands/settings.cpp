// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "commands/sensorvalues.h"
#include "commands/surfacepressure.h"
#include "line/arguments.h"
#include "line/choices/confirmation.h"
#include "output/documents.h"
#include "output/terminal.h"
#include "run/runner.h"

using namespace Qt::StringLiterals;

namespace {

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
        if (m_force || isSurfacePressure(m_mbar))
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
            print(documents::withDevice(runner.device(), documents::settings(m_settings)));
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
