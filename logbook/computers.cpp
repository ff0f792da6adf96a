// SPDX-License-Identifier: MIT
#include "computers_p.h"

#include "columns_p.h"
#include "database_p.h"
#include "dives_p.h"

using namespace Qt::StringLiterals;

namespace {

/** What the diver has written about one dive at two places. */
QString together(const QString &one, const QString &other)
{
    if (other.isEmpty() || one == other)
        return one;
    return one.isEmpty() ? other : one + u'\n' + other;
}

/** The dives of @p old become dives of @p id; what both have is kept once. */
void join(Database &database, qint64 old, qint64 id)
{
    const QString both = uR"(SELECT o.id, n.id FROM dive o JOIN dive n ON n.computer = ?
        AND n.number = o.number AND n."begin" = o."begin" WHERE o.computer = ?)"_s;
    QSqlQuery pairs = database.run(both, {id, old});
    QList<std::pair<QVariant, QVariant>> found;
    while (database.next(pairs))
        found.append({pairs.value(0), pairs.value(1)});
    for (const auto &[from, to] : std::as_const(found)) {
        for (const QString &column : {u"place"_s, u"notes"_s}) {
            const QString text = "SELECT %1 FROM dive WHERE id = ?"_L1.arg(column);
            const QString merged = together(database.value(text, {to}).toString(),
                                            database.value(text, {from}).toString());
            database.run("UPDATE dive SET %1 = ? WHERE id = ?"_L1.arg(column),
                         {Columns::toColumn(merged), to});
        }
        database.run(u"UPDATE dive SET hidden = max(hidden, (SELECT hidden FROM dive "
                     u"WHERE id = ?)) WHERE id = ?"_s,
                     {from, to});
        const qint64 kept = to.toLongLong();
        const qint64 other = from.toLongLong();
        if (Dives::isDownloaded(database, other) && !Dives::isDownloaded(database, kept))
            Dives::replace(database, kept, Dives::read(database, other));
        database.run(u"DELETE FROM dive WHERE id = ?"_s, {from});
    }
    database.run(u"UPDATE dive SET computer = ?, generation = 0 WHERE computer = ?"_s, {id, old});
    database.run(u"DELETE FROM computer WHERE id = ?"_s, {old});
}

qint64 find(Database &database, const QString &serialNumber, const QString &address)
{
    // Without a serial number it is the one that was seen there last.
    if (serialNumber.isEmpty())
        return database
            .value(u"SELECT id FROM computer WHERE address = ? AND (address <> '' OR "
                   u"serialNumber = '') ORDER BY lastSeen DESC, id DESC LIMIT 1"_s,
                   {Columns::toColumn(address)})
            .toLongLong();
    const qint64 id = database
                          .value(u"SELECT id FROM computer WHERE serialNumber = ?"_s,
                                 {serialNumber})
                          .toLongLong();
    const qint64 old = database
                           .value(u"SELECT id FROM computer WHERE serialNumber = '' "
                                  u"AND address = ? AND address <> ''"_s,
                                  {Columns::toColumn(address)})
                           .toLongLong();
    if (id != 0 && old != 0)
        join(database, old, id);
    return id != 0 ? id : old;
}

} // namespace

qint64 Computers::identify(Database &database, const VardaIdentity &identity,
                           const QString &address, const QString &name)
{
    qint64 id = find(database, identity.serialNumber, address);
    if (id == 0)
        id = database
                 .run(u"INSERT INTO computer (serialNumber, address, name, model, mode, "
                      u"recordVersion, firmwareVersion, firmwareVersionStr, bootloaderVersion, "
                      u"bootloaderVersionStr) VALUES (?, ?, '', 0, 0, 0, 0, '', 0, '')"_s,
                      {Columns::toColumn(identity.serialNumber), Columns::toColumn(address)})
                 .lastInsertId()
                 .toLongLong();
    const std::pair<const char *, QVariant> columns[] = {
        {"serialNumber", identity.serialNumber},
        {"address", address},
        {"name", name},
        {"model", qint64(identity.model)},
        {"mode", qint64(identity.mode)},
        {"recordVersion", qint64(identity.recordVersion)},
        {"firmwareVersion", qint64(identity.firmwareVersion)},
        {"firmwareVersionStr", identity.firmwareVersionStr},
        {"bootloaderVersion", qint64(identity.bootloaderVersion)},
        {"bootloaderVersionStr", identity.bootloaderVersionStr},
    };
    for (const auto &[column, value] : columns) {
        const bool isKnown = value.typeId() == QMetaType::QString ? !value.toString().isEmpty()
                                                                  : value.toLongLong() != 0;
        if (isKnown)
            database.run("UPDATE computer SET %1 = ? WHERE id = ?"_L1.arg(QLatin1String(column)),
                         {value, id});
    }
    database.run(u"UPDATE computer SET lastSeen = ? WHERE id = ?"_s, {nowAsText(), id});
    return id;
}

QList<LogbookComputer> Computers::all(Database &database)
{
    QList<LogbookComputer> computers;
    QSqlQuery query = database.run(
        u"SELECT id, serialNumber, address, name, model, mode, recordVersion, firmwareVersion, "
        u"firmwareVersionStr, bootloaderVersion, bootloaderVersionStr, lastSynchronised, "
        u"(SELECT count(*) FROM dive WHERE computer = computer.id) FROM computer ORDER BY id"_s);
    while (database.next(query)) {
        LogbookComputer computer;
        VardaIdentity &identity = computer.identity;
        int at = 0;
        computer.id = query.value(at++).toLongLong();
        identity.serialNumber = query.value(at++).toString();
        computer.address = query.value(at++).toString();
        computer.name = query.value(at++).toString();
        identity.model = ComputerModel::ComputerModelIn(query.value(at++).toInt());
        identity.mode = CurrentMode::CurrentModeIn(query.value(at++).toInt());
        identity.recordVersion = std::uint8_t(query.value(at++).toUInt());
        identity.firmwareVersion = query.value(at++).toUInt();
        identity.firmwareVersionStr = query.value(at++).toString();
        identity.bootloaderVersion = query.value(at++).toUInt();
        identity.bootloaderVersionStr = query.value(at++).toString();
        computer.lastSynchronised = timeFromText(query.value(at++).toString());
        computer.dives = query.value(at).toInt();
        computers.append(computer);
    }
    return computers;
}

QString nowAsText()
{
    return QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs);
}

QDateTime timeFromText(const QString &text)
{
    return QDateTime::fromString(text, Qt::ISODateWithMs);
}
