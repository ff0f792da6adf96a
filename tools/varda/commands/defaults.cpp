// SPDX-License-Identifier: MIT
#include "line/defaults.h"

#include "commands/commands.h"
#include "line/commandline.h"
#include "output/safetext.h"
#include "output/tables.h"
#include "output/terminal.h"
#include "run/failure.h"

using namespace Qt::StringLiterals;

namespace {

void show(const Options &options)
{
    const Defaults defaults;
    if (options.json) {
        Fields set;
        for (const auto name : {Defaults::kDevice, Defaults::kUnits}) {
            if (const auto value = defaults.value(name))
                set.emplace_back(name, *value);
        }
        return print({{"file"_L1, Defaults::fileName()}, {"defaults"_L1, set}});
    }
    Table table;
    table.add(u"Device"_s, safeText(defaults.value(Defaults::kDevice).value_or(QString())));
    table.add(u"Units"_s, defaults.value(Defaults::kUnits).value_or(u"metric"_s));
    table.add(u"File"_s, safeText(Defaults::fileName()));
    print(table.text(outputStyle()));
}

std::string validName(const std::string &text)
{
    return text == "device" || text == "units" ? std::string()
                                               : "\"" + text + "\" is neither device nor units";
}

void set(const Options &options, const QString &name, const QString &value)
{
    const QString text = value.trimmed();
    if (!Defaults::isValid(name, text)) {
        throw Failure{ExitCode::UsageError,
                      name == Defaults::kUnits
                          ? u"\"%1\" is neither metric nor imperial"_s.arg(value)
                          : u"\"%1\" is no address or name"_s.arg(value),
                      {}};
    }
    Defaults().change(name, text);
    show(options);
}

void unset(const Options &options, const QString &name)
{
    Defaults().change(name, std::nullopt);
    show(options);
}

} // namespace

void addDefaults(CommandLine &line)
{
    const auto name = std::make_shared<std::string>();
    const auto value = std::make_shared<std::string>();
    const auto addName = [name](CLI::App *command) {
        command->add_option("NAME", *name, "device or units")
            ->type_name("NAME")
            ->required()
            ->check(CLI::Validator(validName, ""));
    };
    CLI::App *const defaults = line.add("defaults", "Show or set what all commands start from",
                                        show);
    CLI::App *const setting = line.addTo(defaults, "set", "Set the usual computer, or the units",
                                         [name, value](const Options &options) {
                                             set(options, QString::fromLocal8Bit(name->c_str()),
                                                 QString::fromLocal8Bit(value->c_str()));
                                         });
    addName(setting);
    setting->add_option("VALUE", *value, "An address or a name; metric or imperial")
        ->type_name("VALUE")
        ->required();
    addName(line.addTo(defaults, "unset", "Forget it again", [name](const Options &options) {
        unset(options, QString::fromLocal8Bit(name->c_str()));
    }));
}
