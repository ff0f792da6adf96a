// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "commands/gastable.h"
#include "commands/sensorvalues.h"
#include "output/documents.h"
#include "output/records.h"
#include "output/tables.h"
#include "output/terminal.h"
#include "run/runner.h"

using namespace Qt::StringLiterals;

namespace {

// tissues

QString tissuesText(const VardaTissues &tissues)
{
    const auto load = [](float value) { return QString::number(double(value), 'f', 4); };
    Columns columns({{u"TISSUE"_s}, {u"N2"_s}, {u"HE"_s}});
    for (std::size_t i = 0; i < tissues.n2.size(); ++i)
        columns.add({QString::number(i + 1), load(tissues.n2[i]), load(tissues.he[i])});
    return columns.text(outputStyle()) + u"\nCNS  %1\n"_s.arg(Json(tissues.cns).plain());
}

class Tissues : public Command
{
public:
    Tissues() : Command("tissues", "Show the diver's tissue loads") { }

    void run(const Options &options) const override
    {
        Runner runner(options);
        const VardaTissues tissues = runner.resultOf(runner.computer().readTissues(),
                                                     u"Reading the tissues"_s);
        if (options.json) {
            print(documents::withDevice(runner.device(), documents::tissues(tissues)));
        } else {
            print(tissuesText(tissues));
        }
    }
};

// sensors

class Sensors : public Command
{
public:
    Sensors() : Command("sensors", "Show the pressures") { }

    void run(const Options &options) const override
    {
        Runner runner(options);
        const VardaSensors sensors = runner.resultOf(runner.computer().readSensors(),
                                                     u"Reading the sensors"_s);
        printSensors(runner.device(), sensors, options.json);
    }
};

// gases

class Gases : public Command
{
public:
    Gases() : Command("gases", "Show the gas tables") { }

    void run(const Options &options) const override
    {
        Runner runner(options);
        const VardaGasTables tables = runner.resultOf(runner.computer().readGasTables(),
                                                      u"Reading the gas tables"_s);
        if (options.json) {
            print(documents::withDevice(runner.device(), documents::gasTables(tables)));
        } else {
            const TextStyle style = outputStyle();
            print(heading(u"Gas table 1"_s, style) + u'\n' + gasesText(tables.table1) + u'\n'
                  + heading(u"Gas table 2"_s, style) + u'\n' + gasesText(tables.table2));
        }
    }
};

// battery

/** The two kinds of records have hardly a field in common; the others' are 0. */
bool belongsTo(const BatteryInfoRecord &record, QLatin1StringView field)
{
    constexpr std::array kKind1 = {"value20"_L1, "code2"_L1, "flag28"_L1, "flag29"_L1};
    if (field == "hasExtra"_L1)
        return false;
    if (field.startsWith("extra"_L1))
        return record.hasExtra != 0;
    if (field == "kind"_L1)
        return true;
    return (record.kind == 1) == (std::find(kKind1.begin(), kKind1.end(), field) != kKind1.end());
}

QString batteryText(const QList<BatteryInfoRecord> &records)
{
    if (records.isEmpty())
        return u"There is no battery history.\n"_s;
    constexpr int kNumberWidth = 4;
    const int width = outputStyle().width;
    QString text;
    for (qsizetype i = 0; i < records.size(); ++i) {
        QStringList values;
        for (const auto &[name, value] : fieldsOf(records[i])) {
            if (belongsTo(records[i], name))
                values.append(name + u' ' + value.plain());
        }
        text += u"%1  "_s.arg(i + 1, kNumberWidth)
                + folded(values, u"  "_s, kNumberWidth + 2, width) + u'\n';
    }
    return text;
}

class Battery : public Command
{
public:
    Battery() : Command("battery", "Show the battery history") { }

    void run(const Options &options) const override
    {
        Runner runner(options);
        const auto records = runner.resultOf(runner.computer().readBatteryHistory(),
                                             u"Reading the battery history"_s);
        if (options.json) {
            print(documents::withDevice(runner.device(), documents::battery(records)));
        } else {
            print(batteryText(records));
        }
    }
};

} // namespace

void addReadings(Commands &commands)
{
    commands.push_back(std::make_unique<Gases>());
    commands.push_back(std::make_unique<Tissues>());
    commands.push_back(std::make_unique<Sensors>());
    commands.push_back(std::make_unique<Battery>());
}
