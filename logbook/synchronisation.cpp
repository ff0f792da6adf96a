// SPDX-License-Identifier: MIT
#include "synchronisation_p.h"

#include "computers_p.h"
#include "database_p.h"
#include "dives_p.h"

using namespace Qt::StringLiterals;

namespace {

QList<Synchronisation::DiveKey> keys(Database &database, const QString &sql, qint64 computer)
{
    QList<Synchronisation::DiveKey> found;
    QSqlQuery query = database.run(sql, {computer});
    while (database.next(query))
        found.append(
            {std::uint16_t(query.value(0).toUInt()), std::uint64_t(query.value(1).toLongLong())});
    return found;
}

} // namespace

Synchronisation::Start Synchronisation::start(Database &database, const VardaIdentity &identity,
                                              const QString &address, const QString &name)
{
    Transaction transaction(database);
    Start start;
    start.computer = Computers::identify(database, identity, address, name);
    start.stored = keys(database,
                        R"(SELECT number, "begin" FROM dive WHERE computer = ? AND )"_L1
                            + Dives::kIsDownloaded,
                        start.computer);
    start.current = keys(database,
                         R"(SELECT number, "begin" FROM dive JOIN computer
                            ON computer.id = dive.computer WHERE computer = ?
                            AND dive.generation = computer.generation AND dive.generation > 0
                            AND %1 ORDER BY number, dive.id)"_L1.arg(Dives::kIsDownloaded),
                         start.computer);
    transaction.commit();
    return start;
}

void Synchronisation::note(Database &database, qint64 computer, const QList<DiveKey> &shown,
                           bool isNew)
{
    Transaction transaction(database);
    if (isNew)
        database.run(u"UPDATE computer SET generation = generation + 1 WHERE id = ?"_s, {computer});
    QSqlQuery update = database.prepare(uR"(UPDATE dive SET generation = CASE WHEN "begin" = ? THEN
        (SELECT generation FROM computer WHERE id = dive.computer) ELSE 0 END
        WHERE computer = ? AND number = ?)"_s);
    for (const auto &[number, begin] : shown)
        database.run(update, {qint64(begin), computer, number});
    transaction.commit();
}

LogbookStore::Added Synchronisation::add(Database &database, qint64 computer,
                                         const LogbookDive &dive)
{
    Transaction transaction(database);
    const LogbookStore::Added added = Dives::addDownloaded(database, computer, dive);
    database.run(u"UPDATE dive SET generation = (SELECT generation FROM computer "
                 u"WHERE id = dive.computer) WHERE id = ?"_s,
                 {added.id});
    transaction.commit();
    return added;
}

void Synchronisation::finish(Database &database, qint64 computer)
{
    Transaction transaction(database);
    database.run(u"UPDATE computer SET lastSynchronised = ? WHERE id = ?"_s,
                 {nowAsText(), computer});
    transaction.commit();
}
