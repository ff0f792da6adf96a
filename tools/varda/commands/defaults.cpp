// SPDX-License-Identifier: MIT
#include "line/defaults.h"
#include "commands/commands.h"
#include "line/arguments.h"
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

void declareName(Arguments &arguments, QString &name)
{
    arguments.argument("NAME", name, {"device", "units"}, "device or units");
}

class SetDefault : public Command
{
public:
    SetDefault() : Command("set", "Set the usual computer or units") { }

    void declare(Arguments &arguments) override
    {
        declareName(arguments, m_name);
        arguments.argument("VALUE", m_value, "An address or a name, or metric or imperial");
    }

    void run(const Options &options) const override
    {
        const QString text = m_value.trimmed();
        if (!Defaults::isValid(m_name, text)) {
            throw Failure{ExitCode::UsageError,
                          m_name == Defaults::kUnits
                              ? u"\"%1\" is neither metric nor imperial"_s.arg(m_value)
                              : u"\"%1\" is not an address or a name"_s.arg(m_value),
                          {}};
        }
        Defaults().change(m_name, text);
        show(options);
    }

private:
    QString m_name;
    QString m_value;
};

class UnsetDefault : public Command
{
public:
    UnsetDefault() : Command("unset", "Remove a default") { }

    void declare(Arguments &arguments) override { declareName(arguments, m_name); }

    void run(const Options &options) const override
    {
        Defaults().change(m_name, std::nullopt);
        show(options);
    }

private:
    QString m_name;
};

class ShowDefaults : public Command
{
public:
    ShowDefaults() : Command("defaults", "Show or set the usual computer and units")
    {
        add<SetDefault>();
        add<UnsetDefault>();
    }

    void run(const Options &options) const override { show(options); }
};

} // namespace

void addDefaults(Commands &commands)
{
    commands.push_back(std::make_unique<ShowDefaults>());
}
