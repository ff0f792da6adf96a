// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "commands.h"
#include "connection.h"
#include "gastable.h"
#include "records.h"
#include "sensorvalues.h"
#include "terminal.h"
#include "text.h"

using namespace Qt::StringLiterals;

namespace {

// tissues

QString tissuesText(const VardaSession &session)
{
    const auto load = [](float value) { return QString::number(double(value), 'f', 4); };
    Columns columns({{u"TISSUE"_s}, {u"N2"_s}, {u"HE"_s}});
    for (std::size_t i = 0; i < session.diverN2().size(); ++i)
        columns.add(
            {QString::number(i + 1), load(session.diverN2()[i]), load(session.diverHe()[i])});
    return columns.text(outputStyle()) + u"\nCNS  %1\n"_s.arg(Json(session.diverCns()).plain());
}

void tissues(const Options &options)
{
    Connection connection(options);
    connection.read(TidemarCommand::Diver, u"tissues"_s);
    const VardaSession &session = connection.session();
    if (options.json) {
        print({{"device"_L1, fieldsOf(connection.device())},
               {"diverN2"_L1, listOf(session.diverN2())},
               {"diverHe"_L1, listOf(session.diverHe())},
               {"diverCns"_L1, session.diverCns()}});
    } else {
        print(tissuesText(session));
    }
}

// sensors

void sensors(const Options &options)
{
    Connection connection(options);
    readSensors(connection);
    printSensors(connection, options.json);
}

// gases

void gases(const Options &options)
{
    Connection connection(options);
    for (const quint8 table : {quint8(0), quint8(1)}) {
        connection.run({.name = u"gas table %1"_s.arg(table + 1),
                        .end = TidemarCommand::GetGases,
                        .start = [table](VardaSession &session) { session.startGetGases(table); },
                        .verb = u"Reading"_s});
    }
    const BleConfig &config = connection.session().config();
    if (options.json) {
        print({{"device"_L1, fieldsOf(connection.device())},
               {"gasTable1"_L1, gasesOf(config.gasTable1)},
               {"gasTable2"_L1, gasesOf(config.gasTable2)}});
    } else {
        const TextStyle style = outputStyle();
        print(heading(u"Gas table 1"_s, style) + u'\n' + gasesText(config.gasTable1) + u'\n'
              + heading(u"Gas table 2"_s, style) + u'\n' + gasesText(config.gasTable2));
    }
}

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
        return u"The battery has no history.\n"_s;
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

void battery(const Options &options)
{
    Connection connection(options);
    connection.run({.name = u"battery history"_s,
                    .end = TidemarCommand::BatteryInformation,
                    .start = [](VardaSession &session) { session.startGetBatteryInformation(); }});
    const auto &records = connection.session().batteryInfo();
    if (options.json) {
        print({{"device"_L1, fieldsOf(connection.device())},
               {"batteryInfo"_L1,
                listOf(records, [](const BatteryInfoRecord &each) { return fieldsOf(each); })}});
    } else {
        print(batteryText(records));
    }
}

} // namespace

void addReadings(CommandLine &line)
{
    line.add("gases", "Show the gas tables", gases);
    line.add("tissues", "Show the load of the diver's tissues", tissues);
    line.add("sensors", "Show the pressures", sensors);
    line.add("battery", "Show the history of the battery", battery);
}
