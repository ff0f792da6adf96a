// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "commands/gastable.h"
#include "line/arguments.h"
#include "output/documents.h"
#include "output/records.h"
#include "output/safetext.h"
#include "output/tables.h"
#include "output/terminal.h"
#include "output/text.h"
#include "run/runner.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

// Shown in words; only the computer knows what the others mean.
constexpr std::array kNamedFields = {
    "waterType"_L1, "surfacePressure"_L1, "gasTable1"_L1,
    "gasTable2"_L1, "rawBlock"_L1,        "batteryType"_L1,
};

QString waterText(const BleConfig &config)
{
    const QString density = u"%1 kg/l"_s.arg(double(config.getDensity()), 0, 'f', 2);
    switch (config.waterType) {
    case 0:
        return u"sea, "_s + density;
    case 1:
        return u"fresh, "_s + density;
    case 2:
        return u"between fresh and sea, "_s + density;
    default:
        return u"type %1, assumed %2"_s.arg(config.waterType).arg(density);
    }
}

QString otherFields(const Fields &fields)
{
    Table table;
    for (const auto &[name, value] : fields) {
        if (std::find(kNamedFields.begin(), kNamedFields.end(), name) == kNamedFields.end())
            table.add(name, safeText(value.plain()));
    }
    return table.text(outputStyle(), 2);
}

void printText(const Runner &runner, const VardaConfiguration &configuration)
{
    const auto &[config, computer] = configuration;
    Table table;
    table.add(u"Name"_s, safeText(runner.device().name()));
    table.add(u"Model"_s, modelText(runner.identity()));
    table.add(u"Firmware"_s, safeText(versionText(runner.identity().firmwareVersionStr)));
    table.add(u"Text"_s, safeText(textOf(computer)));
    table.add(u"Battery type"_s, computer.getBatteryStr());
    table.add(u"Water"_s, waterText(config));
    table.add(u"Surface pressure"_s, u"%1 mbar"_s.arg(config.surfacePressure));
    print(table.text(outputStyle()));
    const auto section = [](const QString &title, const QString &text) {
        print(u'\n' + heading(title, outputStyle()) + u'\n' + text);
    };
    section(u"Gas table 1"_s, gasesText(config.gasTable1));
    section(u"Gas table 2"_s, gasesText(config.gasTable2));
    section(u"Configuration"_s, otherFields(fieldsOf(config)));
    section(u"Settings"_s, otherFields(fieldsOf(computer)));
}

class Config : public Command
{
public:
    Config() : Command("config", "Show the computer's settings and gases") { }

    void declare(Arguments &arguments) override
    {
        arguments.flag("--basic", m_basic, "Skip what old firmware does not know");
    }

    void run(const Options &options) const override
    {
        Runner runner(options);
        const VardaConfiguration configuration = runner.resultOf(
            runner.computer().readConfiguration(m_basic), u"Reading the configuration"_s);
        if (options.json)
            print(documents::withDevice(runner.device(),
                                        documents::config(runner.identity(), configuration)));
        else
            printText(runner, configuration);
    }

private:
    bool m_basic = false;
};

} // namespace

void addConfig(Commands &commands)
{
    commands.push_back(std::make_unique<Config>());
}
