// SPDX-License-Identifier: MIT
#include "commands/dives/saveddives.h"

#include "output/divetext.h"
#include "output/records.h"
#include "output/safetext.h"
#include "output/tables.h"
#include "output/terminal.h"
#include "output/text.h"
#include "run/finding.h"

#include <QtCore/qset.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kListAdvice = R"("varda dives --saved" lists them.)"_L1;

QString idText(qint64 id)
{
    return u"@%1"_s.arg(id);
}

QString beginOrDash(const LogbookEntry &entry)
{
    const QString begin = beginText(entry.begin);
    return begin.isEmpty() ? u"-"_s : begin;
}

QString nameOf(const LogbookComputer &computer)
{
    const QString name = computer.name.isEmpty() ? modelText(computer.identity) : computer.name;
    const QString &serialNumber = computer.identity.serialNumber;
    return name + u' ' + (serialNumber.isEmpty() ? computer.address : serialNumber);
}

QStringList namesOf(const QList<LogbookComputer> &computers)
{
    QStringList names;
    for (const LogbookComputer &each : computers)
        names.append(nameOf(each));
    return names;
}

bool begins(const QString &text, const QString &beginning)
{
    return !text.isEmpty() && text.startsWith(beginning, Qt::CaseInsensitive);
}

/** Whether the user may mean it. */
bool isNamed(const LogbookComputer &computer, const QString &name)
{
    return begins(computer.identity.serialNumber, name) || begins(computer.name, name)
           || computer.address == addressIn(name);
}

Fields membersOf(const LogbookComputer &computer)
{
    const VardaIdentity &identity = computer.identity;
    return {{"id"_L1, computer.id},
            {"computerModel"_L1, modelText(identity)},
            {"serialNumber"_L1, identity.serialNumber},
            {"firmwareVersionStr"_L1, versionText(identity.firmwareVersionStr)},
            {"address"_L1, computer.address},
            {"name"_L1, computer.name},
            {"lastSynchronised"_L1, computer.lastSynchronised.toString(Qt::ISODateWithMs)}};
}

Failure noSuchDive(const QString &name)
{
    return {ExitCode::JobFailed, u"there is no saved dive %1"_s.arg(name), kListAdvice};
}

} // namespace

SavedDives::SavedDives(const SavedChoice &choice, const Options &options)
    : m_store(choice.file(options), Store::Use::Read),
      m_computers(m_store.computers()),
      m_query(choice.query())
{
    if (!choice.computer().isEmpty())
        m_query.computer = computerNamed(choice.computer());
}

qint64 SavedDives::computerNamed(const QString &name) const
{
    QList<LogbookComputer> found;
    for (const LogbookComputer &each : m_computers) {
        if (isNamed(each, name))
            found.append(each);
    }
    if (found.size() == 1)
        return found.first().id;
    if (found.isEmpty()) {
        throw Failure{ExitCode::JobFailed, u"there are no saved dives of \"%1\""_s.arg(name),
                      m_computers.isEmpty() ? QString() : u"There are those of:"_s,
                      namesOf(m_computers)};
    }
    throw Failure{ExitCode::UsageError, u"\"%1\" matches more than one computer"_s.arg(name),
                  u"Choose one by its serial number:"_s, namesOf(found)};
}

QString SavedDives::computerName(qint64 id) const
{
    const auto found = std::ranges::find(m_computers, id, &LogbookComputer::id);
    return found == m_computers.end() ? QString() : nameOf(*found);
}

QList<LogbookEntry> SavedDives::all()
{
    return m_store.dives(m_query);
}

QStringList SavedDives::linesOf(const QList<LogbookEntry> &entries) const
{
    QStringList lines;
    for (const LogbookEntry &each : entries) {
        lines.append(u"%1  %2  %3  %4"_s.arg(idText(each.id), beginOrDash(each),
                                             durationText(each.duration),
                                             computerName(each.computer)));
    }
    return lines;
}

QList<LogbookEntry> SavedDives::named(const DiveNames &names)
{
    // An ID is enough, whatever else is given.
    const QList<LogbookEntry> every = m_store.dives({.withHidden = true});
    QSet<qint64> meant;
    for (const qint64 id : names.ids) {
        if (std::ranges::find(every, id, &LogbookEntry::id) == every.end())
            throw noSuchDive(idText(id));
        meant.insert(id);
    }
    const QList<LogbookEntry> among = all();
    for (const std::uint16_t number : names.numbers) {
        QList<LogbookEntry> found;
        std::ranges::copy_if(among, std::back_inserter(found),
                             [number](const auto &each) { return each.number == number; });
        if (found.isEmpty())
            throw noSuchDive(QString::number(number));
        if (found.size() > 1) {
            throw Failure{ExitCode::UsageError,
                          u"more than one saved dive has the number %1"_s.arg(number),
                          u"Choose one by its ID, such as %1, or with --computer or --since:"_s.arg(
                              idText(found.first().id)),
                          linesOf(found)};
        }
        meant.insert(found.first().id);
    }
    QList<LogbookEntry> dives;
    std::ranges::copy_if(every, std::back_inserter(dives),
                         [&meant](const auto &each) { return meant.contains(each.id); });
    return dives;
}

Fields SavedDives::head() const
{
    return {{"file"_L1, m_store.file()},
            {"computers"_L1,
             listOf(m_computers, [](const LogbookComputer &each) { return membersOf(each); })}};
}

Fields fieldsOf(const LogbookEntry &entry)
{
    return {{"id"_L1, entry.id},
            {"computer"_L1, entry.computer},
            {"place"_L1, entry.place},
            {"notes"_L1, entry.notes}};
}

QString noSavedDivesText()
{
    return u"There are no such saved dives.\n"_s;
}

QString savedDivesText(const QList<LogbookEntry> &entries, const SavedDives &saved, Units units)
{
    using enum Columns::Side;
    constexpr int kEnoughText = 8; // of a name or a place
    if (entries.isEmpty())
        return noSavedDivesText();
    const bool hasPlaces = std::ranges::any_of(
        entries, [](const auto &each) { return !each.place.isEmpty(); });
    const bool hasComputers = saved.computers().size() > 1;
    QList<Columns::Column> titles{
        {.title = u"ID"_s, .rank = 1},       {.title = u"NUMBER"_s},
        {.title = u"BEGIN"_s, .side = Left}, {.title = u"DURATION"_s, .rank = 3},
        {.title = u"DEPTH"_s, .rank = 2},    {.title = u"AVERAGE"_s, .rank = 6}};
    if (hasPlaces)
        titles.append({.title = u"PLACE"_s, .side = Left, .rank = 5, .enough = kEnoughText});
    if (hasComputers)
        titles.append({.title = u"COMPUTER"_s, .side = Left, .rank = 4, .enough = kEnoughText});
    Columns columns(titles);
    for (const LogbookEntry &each : entries) {
        QStringList cells{idText(each.id),
                          QString::number(each.number),
                          beginOrDash(each),
                          durationText(each.duration),
                          depthText(each.greatestDepth, units),
                          depthText(each.meanDepth, units)};
        if (hasPlaces)
            cells.append(safeText(each.place.simplified()));
        if (hasComputers)
            cells.append(safeText(saved.computerName(each.computer)));
        columns.add(cells);
    }
    return columns.text(outputStyle());
}
