// SPDX-License-Identifier: MIT
#include "output/divetext.h"

#include "output/plot.h"
#include "output/records.h"
#include "output/tables.h"
#include "output/terminal.h"
#include "output/text.h"

#include <varda/diveprofile.h>

using namespace Qt::StringLiterals;

namespace {

// What the first columns of the table of samples show in another way.
constexpr std::array kInFirstColumns = {"time"_L1, "depth"_L1, "gasIndex"_L1};

QString temperatureText(const DiveProfile::TemperatureRange &range, Units units)
{
    const QString degree = usesUtf8() ? u"°"_s : QString();
    const QString unit = degree + (units == Units::Imperial ? u'F' : u'C');
    const QString lowest = QString::number(temperatureIn(units, range.lowest));
    if (range.lowest == range.highest)
        return u"%1 %2"_s.arg(lowest, unit);
    const QString highest = QString::number(temperatureIn(units, range.highest));
    return u"%1 to %2 %3"_s.arg(lowest, highest, unit);
}

/** "1 Air, 2 EAN50", by the marks in the plot. */
QString gasesText(const Dive &dive)
{
    QStringList names;
    for (int i = 0; i < int(dive.gases.size()); ++i)
        names.append(gasMark(i) + u' ' + gasNameOf(dive, i));
    return names.join(u", "_s);
}

/** "to EAN50 at 23:10"; empty when the gas at the beginning is the only one. */
QString switchesText(const Dive &dive, const QList<DiveProfile::GasSwitch> &switches)
{
    constexpr qsizetype kMost = 12;
    QStringList parts;
    for (qsizetype i = 1; i < switches.size(); ++i) {
        if (parts.size() == kMost) {
            parts.append(u"%1 more"_s.arg(switches.size() - i));
            break;
        }
        parts.append(u"to %1 at %2"_s.arg(gasNameOf(dive, switches[i].gasIndex),
                                          durationText(switches[i].time)));
    }
    return parts.join(u", "_s);
}

/** Fields that something fills; the records have more. */
bool isFilled(QLatin1StringView name)
{
    return !name.startsWith("value"_L1) || name == "valueTenths"_L1 || name == "valueNegated"_L1;
}

bool isInFirstColumns(QLatin1StringView name)
{
    return std::find(kInFirstColumns.begin(), kInFirstColumns.end(), name) != kInFirstColumns.end();
}

/** Wide enough for what comes, for each row is printed when it is there. */
Columns divesColumns(Units units)
{
    using enum Columns::Side;
    const int depthWidth = units == Units::Imperial ? 8 : 7;
    return Columns({{.title = u"NUMBER"_s, .width = 6},
                    {.title = u"BEGIN"_s, .side = Left, .width = 19},
                    {.title = u"DURATION"_s, .rank = 2, .width = 8},
                    {.title = u"DEPTH"_s, .rank = 1, .width = depthWidth},
                    {.title = u"AVERAGE"_s, .rank = 4, .width = depthWidth},
                    {.title = u"GASES"_s,
                     .side = Left,
                     .rank = 3,
                     .width = kEnoughGases,
                     .enough = kEnoughGases}});
}

} // namespace

QString gasNameOf(const Dive &dive, int gasIndex)
{
    if (gasIndex < 0 || gasIndex >= dive.gases.size())
        return u"-"_s;
    return DiveProfile::gasName(dive.gases[gasIndex]);
}

QString gasNames(const QList<DiveGas> &gases)
{
    QStringList names;
    for (const DiveGas &gas : gases)
        names.append(DiveProfile::gasName(gas));
    return names.isEmpty() ? u"-"_s : names.join(u", "_s);
}

QString beginText(const DiveHeaderBlock &header)
{
    return beginText(header.stamp);
}

QString beginText(std::uint64_t stamp)
{
    constexpr quint64 kEarliest = 946684800; // 2000-01-01
    constexpr quint64 kLatest = 4102444800;  // 2100-01-01
    if (stamp < kEarliest || stamp >= kLatest)
        return {};
    return clockText(qint64(stamp));
}

QString circuitText(const DiveHeaderBlock &header)
{
    return header.kindByte == 0 ? u"open"_s : u"closed"_s;
}

QString diveSummary(const Dive &dive, Units units, const QList<Labelled> &more)
{
    const DiveProfile profile = DiveProfile::fromDive(dive);
    Table table;
    table.add(u"Dive"_s, dive.numberText);
    if (const QString begin = beginText(dive); !begin.isEmpty())
        table.add(u"Begin"_s, begin);
    if (!dive.lines.isEmpty()) {
        table.add(u"Duration"_s, durationText(profile.duration));
        table.add(u"Maximum depth"_s, depthText(profile.maximumDepth, units));
        table.add(u"Average depth"_s, depthText(profile.meanDepth, units));
    }
    if (profile.temperature)
        table.add(u"Temperature"_s, temperatureText(*profile.temperature, units));
    table.add(u"Circuit"_s, circuitText(dive));
    table.add(u"Gases"_s, gasesText(dive));
    if (const QString switches = switchesText(dive, profile.switches); !switches.isEmpty())
        table.add(u"Switches"_s, switches);
    table.add(u"Samples"_s,
              dive.lines.isEmpty()
                  ? u"none"_s
                  : u"%1, every %2 s"_s.arg(dive.lines.size()).arg(dive.sampleInterval));
    for (const auto &[label, value] : more)
        table.add(label, value);
    return table.text(outputStyle());
}

QString samplesTable(const Dive &dive, Units units)
{
    if (dive.lines.isEmpty())
        return {};
    QList<Columns::Column> titles{{u"TIME"_s},
                                  {units == Units::Imperial ? u"DEPTH/FT"_s : u"DEPTH"_s},
                                  {u"GAS"_s, Columns::Side::Left}};
    for (const auto &[name, value] : fieldsOf(DiveLine())) {
        if (isFilled(name) && !isInFirstColumns(name))
            titles.append({name});
    }
    Columns columns(titles);
    for (const DiveLine &line : dive.lines) {
        QStringList cells{durationText(line.time), tenthsText(depthIn(units, line.depth)),
                          gasNameOf(dive, line.gasIndex)};
        for (const auto &[name, value] : fieldsOf(line)) {
            if (isFilled(name) && !isInFirstColumns(name))
                cells.append(value.plain());
        }
        columns.add(cells);
    }
    return columns.text(outputStyle());
}

QString noDivesText(bool someAreKnown)
{
    return someAreKnown ? u"There are no new dives in the logbook.\n"_s
                        : u"There are no dives in the logbook.\n"_s;
}

QString divesHeading(Units units)
{
    return divesColumns(units).text(outputStyle());
}

QString divesRow(const Dive &dive, Units units)
{
    const QString begin = beginText(dive);
    const bool isClosed = dive.kindByte != 0;
    const DiveProfile profile = DiveProfile::fromDive(dive);
    Columns columns = divesColumns(units);
    columns.add({dive.numberText, begin.isEmpty() ? u"-"_s : begin, durationText(profile.duration),
                 depthText(profile.maximumDepth, units), depthText(profile.meanDepth, units),
                 gasNames(dive.gases) + (isClosed ? u" (closed circuit)"_s : QString())});
    return columns.rows(outputStyle());
}
