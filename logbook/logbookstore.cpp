// SPDX-License-Identifier: MIT
#include <varda/logbookstore.h>

#include <QtCore/qstandardpaths.h>

#include "columns_p.h"
#include "computers_p.h"
#include "dives_p.h"
#include "logbookstore_p.h"

using namespace Qt::StringLiterals;

namespace {

/** What PRAGMA integrity_check reports is at most one row if all is well. */
void checkAll(Database &database)
{
    const QString found = database.value(u"PRAGMA integrity_check(1)"_s).toString();
    if (found != "ok"_L1 || database.value(u"PRAGMA foreign_key_check"_s).isValid())
        throw logbookError(LogbookError::Damaged, database.file());
}

} // namespace

LogbookStore::LogbookStore(QObject *parent)
    : QObject(parent), d(std::make_unique<LogbookStorePrivate>())
{
}

LogbookStore::~LogbookStore() = default;

QString LogbookStore::defaultFile(bool simulated)
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
           + (simulated ? "/varda/simulated.sqlite"_L1 : "/varda/logbook.sqlite"_L1);
}

void LogbookStore::open(const QString &file, const QObject *context, const Done &done)
{
    d->file = file;
    d->thread.open(file, d->busyLimit, context, done);
}

void LogbookStore::close(const QObject *context, const Done &done)
{
    d->file.clear();
    d->thread.close(context, done);
}

QString LogbookStore::file() const
{
    return d->file;
}

void LogbookStore::setBusyLimit(std::chrono::milliseconds limit)
{
    d->busyLimit = limit;
}

void LogbookStore::computers(const QObject *context,
                             const Callback<QList<LogbookComputer>> &callback)
{
    d->thread.post<QList<LogbookComputer>>(
        [](Database &database) { return Computers::all(database); }, context, callback);
}

void LogbookStore::dives(const LogbookQuery &query, const QObject *context,
                         const Callback<QList<LogbookEntry>> &callback)
{
    d->thread.post<QList<LogbookEntry>>(
        [query](Database &database) { return Dives::list(database, query); }, context, callback);
}

void LogbookStore::dive(qint64 id, const QObject *context, const Callback<LogbookDive> &callback)
{
    d->thread.post<LogbookDive>(
        [id](Database &database) {
            const Transaction transaction(database, Transaction::Read);
            return Dives::read(database, id);
        },
        context, callback);
}

void LogbookStore::addDive(const LogbookComputer &computer, const LogbookDive &dive,
                           const QObject *context, const Callback<Added> &callback)
{
    VardaIdentity identity = computer.identity;
    if (identity.serialNumber.isEmpty() && computer.address.isEmpty())
        identity.serialNumber = dive.dive.serialNumber;
    d->thread.post<Added>(
        [identity, computer, dive](Database &database) {
            Transaction transaction(database);
            const qint64 id = Computers::identify(database, identity, computer.address,
                                                  computer.name);
            const Added added = Dives::addImported(database, id, dive);
            transaction.commit();
            return added;
        },
        context, callback);
}

void LogbookStore::setPlace(qint64 id, const QString &place, const QObject *context,
                            const Done &done)
{
    d->set(id, "place"_L1, Columns::toColumn(place), context, done);
}

void LogbookStore::setNotes(qint64 id, const QString &notes, const QObject *context,
                            const Done &done)
{
    d->set(id, "notes"_L1, Columns::toColumn(notes), context, done);
}

void LogbookStore::setHidden(qint64 id, bool hidden, const QObject *context, const Done &done)
{
    d->set(id, "hidden"_L1, hidden, context, done);
}

void LogbookStore::check(const QObject *context, const Done &done)
{
    d->thread.post([](Database &database) { checkAll(database); }, context, done);
}

void LogbookStorePrivate::set(qint64 id, QLatin1StringView column, const QVariant &value,
                              const QObject *context, const LogbookStore::Done &done)
{
    thread.post([=](Database &database) { Dives::set(database, id, column, value); }, context,
                done);
}
