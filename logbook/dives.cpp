// SPDX-License-Identifier: MIT
#include "dives_p.h"

#include <varda/diveprofile.h>

#include "columns_p.h"
#include "computers_p.h"
#include "database_p.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kEntry = R"(id, computer, number, "begin", duration, greatestDepth, meanDepth,
    lines, place, notes, hidden, stored)"_L1;

QString places(qsizetype count)
{
    return QStringList(count, u"?"_s).join(u',');
}

/** The rows of @p table that belong to a dive; @p keys are the columns before the record's. */
template <typename Record>
void addRows(Database &database, QLatin1StringView table, const QStringList &keys,
             const QVariantList &values, const QList<Record> &records)
{
    if (records.isEmpty())
        return;
    const QStringList columns = keys + QStringList(u"position"_s) + Columns::names<Record>();
    QSqlQuery query = database.prepare(R"(INSERT INTO "%1" (%2) VALUES (%3))"_L1.arg(
        table, columns.join(u','), places(columns.size())));
    for (qsizetype i = 0; i < records.size(); ++i) {
        QVariantList row = values;
        row.append(i);
        Columns::append(row, records.at(i));
        database.run(query, row);
    }
}

/** The lists of a dive that share a table are numbered in the order of their declaration. */
template <typename Record>
void addLists(Database &database, QLatin1StringView table, qint64 id,
              const QList<const QList<Record> *> &lists)
{
    for (qsizetype i = 0; i < lists.size(); ++i)
        addRows(database, table, {u"dive"_s, u"list"_s}, {id, i}, *lists.at(i));
}

template <typename Record>
void addRecord(Database &database, QLatin1StringView table, qint64 id, const Record &record)
{
    const QStringList columns = QStringList(u"dive"_s) + Columns::names<Record>();
    QVariantList values{id};
    Columns::append(values, record);
    database.run(R"(INSERT INTO "%1" (%2) VALUES (%3))"_L1.arg(table, columns.join(u','),
                                                               places(columns.size())),
                 values);
}

template <typename Record>
QList<Record> readRows(Database &database, QLatin1StringView table, const QString &where,
                       const QVariantList &values)
{
    QList<Record> records;
    QSqlQuery query = database.run(R"(SELECT %1 FROM "%2" WHERE %3 ORDER BY position)"_L1.arg(
                                       Columns::names<Record>().join(u','), table, where),
                                   values);
    while (database.next(query))
        records.append(Columns::read<Record>(query, 0));
    return records;
}

template <typename Record>
QList<Record> readList(Database &database, QLatin1StringView table, qint64 id, int list)
{
    return readRows<Record>(database, table, u"dive = ? AND list = ?"_s, {id, list});
}

template <typename Record> Record readRecord(Database &database, QLatin1StringView table, qint64 id)
{
    QSqlQuery query = database.run(
        R"(SELECT %1 FROM "%2" WHERE dive = ?)"_L1.arg(Columns::names<Record>().join(u','), table),
        {id});
    if (!database.next(query))
        throw logbookError(LogbookError::Damaged, database.file());
    return Columns::read<Record>(query, 0);
}

LogbookEntry readEntry(const QSqlQuery &query)
{
    LogbookEntry entry;
    int at = 0;
    entry.id = query.value(at++).toLongLong();
    entry.computer = query.value(at++).toLongLong();
    entry.number = std::uint16_t(query.value(at++).toUInt());
    entry.begin = std::uint64_t(query.value(at++).toLongLong());
    entry.duration = query.value(at++).toDouble();
    entry.greatestDepth = query.value(at++).toDouble();
    entry.meanDepth = query.value(at++).toDouble();
    entry.lines = query.value(at++).toInt();
    entry.place = query.value(at++).toString();
    entry.notes = query.value(at++).toString();
    entry.hidden = query.value(at++).toBool();
    entry.stored = timeFromText(query.value(at).toString());
    return entry;
}

QVariantList identityOf(qint64 computer, const Dive &dive)
{
    return {computer, qint64(dive.diveNumber), qint64(dive.stamp)};
}

/** 0 if there is none. */
qint64 find(Database &database, const QVariantList &identity)
{
    return database
        .value(uR"(SELECT id FROM dive WHERE computer = ? AND number = ? AND "begin" = ?)"_s,
               identity)
        .toLongLong();
}

// The times in this century
constexpr qint64 kEarliest = 946'684'800; // 2000-01-01
constexpr qint64 kLatest = 4'102'444'800; // 2100-01-01

/** A dive with this number whose begin is no time in this century; 0 if there is none. */
qint64 findUnknownBegin(Database &database, qint64 computer, std::uint16_t number)
{
    return database
        .value(uR"(SELECT id FROM dive WHERE computer = ? AND number = ?
            AND ("begin" < ? OR "begin" >= ?) ORDER BY id)"_s,
               {computer, qint64(number), kEarliest, kLatest})
        .toLongLong();
}

/** What a file had of this dive, whose begin it could not carry; 0 if there is none. */
qint64 findCopyWithoutBegin(Database &database, qint64 computer, const Dive &dive)
{
    const auto begin = qint64(dive.stamp);
    if (begin >= kEarliest && begin < kLatest)
        return 0;
    return database
        .value(R"(SELECT id FROM dive WHERE computer = ? AND number = ? AND "begin" = 0
            AND NOT %1 ORDER BY id)"_L1.arg(Dives::kIsDownloaded),
               {computer, qint64(dive.diveNumber)})
        .toLongLong();
}

/** What is in tables of its own. */
void addParts(Database &database, qint64 id, const LogbookDive &dive)
{
    addRecord(database, "record"_L1, id, dive.dive);
    addRecord(database, "header"_L1, id, dive.header);
    addRows(database, "sample"_L1, {u"dive"_s}, {id}, dive.samples);
    const Dive &all = dive.dive;
    addLists<DiveLine>(database, "line"_L1, id,
                       {&all.lines, &all.lines2, &all.lines3, &all.lines4});
    addLists<DiveGas>(database, "gas"_L1, id, {&all.gases});
    addLists<DiveMark>(database, "mark"_L1, id, {&all.marks, &all.marks2});
}

} // namespace

LogbookStore::Added Dives::add(Database &database, qint64 computer, const LogbookDive &dive)
{
    const QVariantList identity = identityOf(computer, dive.dive);
    const qint64 known = find(database, identity);
    if (known != 0)
        return {known, false};
    const DiveProfile profile = DiveProfile::fromDive(dive.dive);
    const QVariantList more{0,
                            nowAsText(),
                            profile.duration,
                            profile.maximumDepth,
                            profile.meanDepth,
                            dive.dive.lines.size(),
                            Columns::toColumn(dive.place),
                            Columns::toColumn(dive.notes),
                            dive.hidden};
    const qint64 id =
        database
            .run(R"(INSERT INTO dive (computer, number, "begin", generation, stored, duration,
                                   greatestDepth, meanDepth, lines, place, notes, hidden)
                                   VALUES (%1))"_L1.arg(places(identity.size() + more.size())),
                 identity + more)
            .lastInsertId()
            .toLongLong();
    addParts(database, id, dive);
    return {id, true};
}

LogbookStore::Added Dives::addImported(Database &database, qint64 computer, const LogbookDive &dive)
{
    if (dive.dive.stamp == 0) {
        const qint64 known = findUnknownBegin(database, computer, dive.dive.diveNumber);
        if (known != 0)
            return {known, false};
    }
    return add(database, computer, dive);
}

LogbookStore::Added Dives::addDownloaded(Database &database, qint64 computer,
                                         const LogbookDive &dive)
{
    const qint64 copy = findCopyWithoutBegin(database, computer, dive.dive);
    if (copy != 0 && find(database, identityOf(computer, dive.dive)) == 0)
        database.run(uR"(UPDATE dive SET "begin" = ? WHERE id = ?)"_s,
                     {qint64(dive.dive.stamp), copy});
    const LogbookStore::Added added = add(database, computer, dive);
    if (added.isNew || isDownloaded(database, added.id))
        return added;
    replace(database, added.id, dive);
    return {added.id, true};
}

bool Dives::isDownloaded(Database &database, qint64 id)
{
    return database.value("SELECT 1 FROM dive WHERE id = ? AND "_L1 + kIsDownloaded, {id})
        .isValid();
}

void Dives::replace(Database &database, qint64 id, const LogbookDive &dive)
{
    for (const QLatin1StringView table :
         {"record"_L1, "header"_L1, "sample"_L1, "line"_L1, "gas"_L1, "mark"_L1})
        database.run(R"(DELETE FROM "%1" WHERE dive = ?)"_L1.arg(table), {id});
    const DiveProfile profile = DiveProfile::fromDive(dive.dive);
    database.run(
        u"UPDATE dive SET duration = ?, greatestDepth = ?, meanDepth = ?, lines = ? "
        u"WHERE id = ?"_s,
        {profile.duration, profile.maximumDepth, profile.meanDepth, dive.dive.lines.size(), id});
    addParts(database, id, dive);
}

QList<LogbookEntry> Dives::list(Database &database, const LogbookQuery &query)
{
    QStringList conditions{u"1"_s};
    QVariantList values;
    const auto add = [&](const QString &condition, const QVariant &value) {
        conditions.append(condition);
        values.append(value);
    };
    if (query.computer != 0)
        add(u"computer = ?"_s, query.computer);
    if (query.number)
        add(u"number = ?"_s, qint64(*query.number));
    if (query.since)
        add(uR"("begin" >= ?)"_s, qint64(*query.since));
    if (query.until)
        add(uR"("begin" <= ?)"_s, qint64(*query.until));
    if (!query.withHidden)
        conditions.append(u"NOT hidden"_s);
    QSqlQuery rows = database.run(R"(SELECT %1 FROM dive WHERE %2 ORDER BY "begin", id)"_L1.arg(
                                      kEntry, conditions.join(" AND "_L1)),
                                  values);
    QList<LogbookEntry> entries;
    while (database.next(rows))
        entries.append(readEntry(rows));
    return entries;
}

LogbookDive Dives::read(Database &database, qint64 id)
{
    QSqlQuery query = database.run("SELECT %1 FROM dive WHERE id = ?"_L1.arg(kEntry), {id});
    if (!database.next(query))
        throw logbookError(LogbookError::NoSuchDive);
    LogbookDive dive;
    static_cast<LogbookEntry &>(dive) = readEntry(query);
    query.finish();
    dive.dive = readRecord<Dive>(database, "record"_L1, id);
    dive.header = readRecord<TidemarDiveHeader>(database, "header"_L1, id);
    dive.samples = readRows<DiveSample>(database, "sample"_L1, u"dive = ?"_s, {id});
    QList<DiveLine> *const lines[] = {&dive.dive.lines, &dive.dive.lines2, &dive.dive.lines3,
                                      &dive.dive.lines4};
    for (int i = 0; i < int(std::size(lines)); ++i)
        *lines[i] = readList<DiveLine>(database, "line"_L1, id, i);
    if (dive.dive.lines.size() != dive.lines)
        throw logbookError(LogbookError::Damaged, database.file());
    // Over a small MTU it had not arrived.
    if (dive.dive.serialNumber.isEmpty())
        dive.dive.serialNumber = database
                                     .value(u"SELECT serialNumber FROM computer WHERE id = ?"_s,
                                            {dive.computer})
                                     .toString();
    dive.dive.gases = readList<DiveGas>(database, "gas"_L1, id, 0);
    dive.dive.marks = readList<DiveMark>(database, "mark"_L1, id, 0);
    dive.dive.marks2 = readList<DiveMark>(database, "mark"_L1, id, 1);
    return dive;
}

void Dives::set(Database &database, qint64 id, QLatin1StringView column, const QVariant &value)
{
    const QSqlQuery query = database.run("UPDATE dive SET %1 = ? WHERE id = ?"_L1.arg(column),
                                         {value, id});
    if (query.numRowsAffected() != 1)
        throw logbookError(LogbookError::NoSuchDive);
}
