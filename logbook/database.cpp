// SPDX-License-Identifier: MIT
#include "database_p.h"

#include <QtCore/qcoreapplication.h>
#include <QtCore/qdeadlinetimer.h>
#include <QtCore/qdir.h>
#include <QtCore/qendian.h>
#include <QtCore/qfileinfo.h>
#include <QtCore/qstorageinfo.h>
#include <QtCore/qthread.h>
#include <QtCore/qurl.h>
#include <QtCore/quuid.h>
#include <QtSql/qsqlerror.h>

#include "schema_p.h"

using namespace Qt::StringLiterals;
using Kind = LogbookError::Kind;

namespace {

// From the description of SQLite's file format.
constexpr int kHeaderSize = 100;
constexpr int kUserVersionAt = 60;
constexpr int kApplicationIdAt = 68;
constexpr QByteArrayView kMagic("SQLite format 3\0", 16);

/** SQLite's primary result codes; the extended ones have them in the low byte. */
enum Code {
    Busy = 5,
    Locked = 6,
    ReadOnlyCode = 8,
    IoError = 10,
    Corrupt = 11,
    Full = 13,
    CannotOpenCode = 14,
    NotADatabaseCode = 26,
};

/** Less than this is no room for a dive. */
constexpr qint64 kNoRoom = 32'768;

struct Line {
    Kind kind;
    const char *text;
    const char *remedy;
};

/** %1 is the file, %2 what the system said. */
constexpr Line kLines[] = {
    {LogbookError::NotOpen, QT_TRANSLATE_NOOP("LogbookStore", "no logbook file is open"),
     QT_TRANSLATE_NOOP("LogbookStore", "Open one first.")},
    {LogbookError::Closed, QT_TRANSLATE_NOOP("LogbookStore", "the logbook was closed"), ""},
    {LogbookError::CannotOpen, QT_TRANSLATE_NOOP("LogbookStore", "%1: cannot be opened (%2)"),
     QT_TRANSLATE_NOOP("LogbookStore", "Is there such a folder, and may you read the file?")},
    {LogbookError::ReadOnly, QT_TRANSLATE_NOOP("LogbookStore", "%1: cannot be written"),
     QT_TRANSLATE_NOOP("LogbookStore",
                       "Make the file and its folder writable, or use a copy elsewhere.")},
    {LogbookError::DiskFull, QT_TRANSLATE_NOOP("LogbookStore", "%1: the disk is full"),
     QT_TRANSLATE_NOOP("LogbookStore", "Make room on it and try again. Nothing was lost.")},
    {LogbookError::Damaged, QT_TRANSLATE_NOOP("LogbookStore", "%1: the file is damaged"),
     QT_TRANSLATE_NOOP("LogbookStore", "Use a backup, or rescue it with \"sqlite3 FILE .recover\". "
                                       "Do not delete it before.")},
    {LogbookError::NotADatabase, QT_TRANSLATE_NOOP("LogbookStore", "%1: not a logbook file"),
     QT_TRANSLATE_NOOP("LogbookStore", "Choose another file.")},
    {LogbookError::NotALogbook,
     QT_TRANSLATE_NOOP("LogbookStore", "%1: a database of another program"),
     QT_TRANSLATE_NOOP("LogbookStore", "Choose another file.")},
    {LogbookError::NewerSchema,
     QT_TRANSLATE_NOOP("LogbookStore", "%1: made by a newer version of this program"),
     QT_TRANSLATE_NOOP("LogbookStore", "Update this program. Nothing in the file was changed.")},
    {LogbookError::Busy, QT_TRANSLATE_NOOP("LogbookStore", "%1: another program is using it"),
     QT_TRANSLATE_NOOP("LogbookStore", "Close that program, or wait for it, and try again.")},
    {LogbookError::NoDriver, QT_TRANSLATE_NOOP("LogbookStore", "Qt's SQLite driver is missing"),
     QT_TRANSLATE_NOOP("LogbookStore", "Install it. (On Debian and Ubuntu: libqt6sql6-sqlite)")},
    {LogbookError::NoSuchDive, QT_TRANSLATE_NOOP("LogbookStore", "there is no such dive"), ""},
    {LogbookError::Failed, QT_TRANSLATE_NOOP("LogbookStore", "%1: %2"), ""},
};

QString translated(const char *text)
{
    return *text ? QCoreApplication::translate("LogbookStore", text) : QString();
}

std::uint32_t bigEndianAt(const QByteArray &header, int place)
{
    return qFromBigEndian<std::uint32_t>(header.constData() + place);
}

bool isFull(const QString &file)
{
    const QStorageInfo storage(QFileInfo(file).absolutePath());
    return storage.isValid() && storage.bytesAvailable() < kNoRoom;
}

} // namespace

LogbookError logbookError(Kind kind, const QString &file, const QString &detail)
{
    for (const Line &line : kLines) {
        if (line.kind == kind) {
            // Together: a file's name may hold place markers too.
            QString text = translated(line.text);
            text = text.contains("%2"_L1)   ? text.arg(file, detail)
                   : text.contains("%1"_L1) ? text.arg(file)
                                            : text;
            return {kind, text, translated(line.remedy)};
        }
    }
    return {};
}

Database::Database(const QString &file, std::chrono::milliseconds busyLimit)
    : m_file(QFileInfo(file).absoluteFilePath()),
      m_busyLimit(busyLimit),
      m_connection("varda-logbook-"_L1 + QUuid::createUuid().toString(QUuid::WithoutBraces))
{
    checkFile();
    const QFileInfo info(m_file);
    const QFileInfo folder(info.absolutePath());
    m_readOnly = info.exists() && !(info.isWritable() && folder.isWritable());
    connectTo(false);
    try {
        if (!canRead()) {
            disconnect();
            connectTo(true);
        }
        checkContent();
        setUp();
    } catch (...) {
        disconnect();
        throw;
    }
}

Database::~Database()
{
    disconnect();
}

void Database::disconnect()
{
    m_database.close();
    m_database = {};
    QSqlDatabase::removeDatabase(m_connection);
}

/**
 * False if the file could be read only without locks: there is no place for them beside it, and all
 * of it is in the file itself.
 */
bool Database::canRead()
{
    try {
        run(u"SELECT 1 FROM sqlite_master"_s);
        return true;
    } catch (const LogbookError &error) {
        const bool noPlace = error.kind == LogbookError::CannotOpen
                             || error.kind == LogbookError::ReadOnly
                             || error.kind == LogbookError::DiskFull;
        const bool isWhole = QFileInfo(m_file + "-wal"_L1).size() == 0 && !hasJournal();
        if (!m_readOnly || !noPlace || !isWhole)
            throw;
        return false;
    }
}

/** What need not be ours is not even opened: SQLite itself may write to it. */
void Database::checkFile() const
{
    QFile file(m_file);
    if (!file.exists()) {
        const QString folder = QFileInfo(m_file).absolutePath();
        if (!QDir().mkpath(folder))
            throw logbookError(isFull(QFileInfo(folder).absolutePath()) ? LogbookError::DiskFull
                                                                        : LogbookError::CannotOpen,
                               m_file, QCoreApplication::translate("LogbookStore", "no folder"));
        if (!QFileInfo(folder).isWritable())
            throw logbookError(LogbookError::ReadOnly, m_file, {});
        return;
    }
    if (!QFileInfo(m_file).isFile() || !file.open(QIODevice::ReadOnly))
        throw logbookError(LogbookError::CannotOpen, m_file, file.errorString());
    // One that was being made when its program was killed
    if (file.size() == 0)
        return;
    // What stands in it is not what it was before; SQLite puts it back, then checkContent() looks.
    if (hasJournal())
        return;
    const QByteArray header = file.read(kHeaderSize);
    if (header.size() < kHeaderSize || !header.startsWith(kMagic))
        throw logbookError(LogbookError::NotADatabase, m_file, {});
    if (bigEndianAt(header, kApplicationIdAt) != kApplicationId)
        throw logbookError(LogbookError::NotALogbook, m_file, {});
    if (bigEndianAt(header, kUserVersionAt) > newestSchema())
        throw logbookError(LogbookError::NewerSchema, m_file, {});
}

bool Database::hasJournal() const
{
    return QFileInfo(m_file + "-journal"_L1).size() > 0;
}

void Database::checkContent()
{
    // In this order: a file that another process is making has no pages until it is a logbook.
    const bool isEmpty = value(u"PRAGMA page_count"_s).toLongLong() == 0;
    if (!isEmpty && value(u"PRAGMA application_id"_s).toUInt() != kApplicationId)
        throw logbookError(LogbookError::NotALogbook, m_file, {});
}

void Database::connectTo(bool asImmutable)
{
    m_database = QSqlDatabase::addDatabase(u"QSQLITE"_s, m_connection);
    QString options = "QSQLITE_BUSY_TIMEOUT="_L1 + QString::number(m_busyLimit.count());
    QString name = m_file;
    if (m_readOnly)
        options += ";QSQLITE_OPEN_READONLY"_L1;
    if (asImmutable) {
        options += ";QSQLITE_OPEN_URI"_L1;
        name = QUrl::fromLocalFile(m_file).toString(QUrl::FullyEncoded) + "?immutable=1"_L1;
    }
    m_database.setConnectOptions(options);
    m_database.setDatabaseName(name);
    if (m_database.isValid() && m_database.open())
        return;
    const bool hasDriver = m_database.isValid();
    const QSqlError error = m_database.lastError();
    disconnect();
    throw hasDriver ? errorOf(error) : logbookError(LogbookError::NoDriver, m_file);
}

void Database::setUp()
{
    run(u"PRAGMA foreign_keys = ON"_s);
    run(u"PRAGMA synchronous = FULL"_s);
    migrate(*this);
    if (!m_readOnly)
        keepTrying(u"PRAGMA journal_mode = WAL"_s);
}

/** For what SQLite itself does not wait with. */
void Database::keepTrying(const QString &sql)
{
    constexpr unsigned long kPauseMs = 20;
    const QDeadlineTimer deadline(m_busyLimit);
    while (true) {
        try {
            run(sql);
            return;
        } catch (const LogbookError &error) {
            if (error.kind != LogbookError::Busy || deadline.hasExpired())
                throw;
        }
        QThread::msleep(kPauseMs);
    }
}

QSqlQuery Database::prepare(const QString &sql)
{
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!query.prepare(sql))
        throw errorOf(query.lastError());
    return query;
}

void Database::run(QSqlQuery &query, const QVariantList &values)
{
    for (qsizetype i = 0; i < values.size(); ++i)
        query.bindValue(int(i), values.at(i));
    if (!query.exec())
        throw errorOf(query.lastError());
}

QSqlQuery Database::run(const QString &sql, const QVariantList &values)
{
    QSqlQuery query = prepare(sql);
    run(query, values);
    return query;
}

QVariant Database::value(const QString &sql, const QVariantList &values)
{
    QSqlQuery query = run(sql, values);
    return next(query) ? query.value(0) : QVariant();
}

bool Database::next(QSqlQuery &query) const
{
    if (query.next())
        return true;
    if (query.lastError().isValid())
        throw errorOf(query.lastError());
    return false;
}

LogbookError Database::errorOf(const QSqlError &error) const
{
    const int code = error.nativeErrorCode().toInt() & 0xFF;
    const auto kind = [&] {
        switch (code) {
        case Busy:
        case Locked:
            return LogbookError::Busy;
        case ReadOnlyCode:
            return LogbookError::ReadOnly;
        case Corrupt:
            return LogbookError::Damaged;
        case Full:
            return LogbookError::DiskFull;
        case NotADatabaseCode:
            return LogbookError::NotADatabase;
        case CannotOpenCode:
            return isFull(m_file) ? LogbookError::DiskFull : LogbookError::CannotOpen;
        case IoError: // also where there is no room for the files beside it
            return isFull(m_file) ? LogbookError::DiskFull : LogbookError::Failed;
        default:
            return LogbookError::Failed;
        }
    }();
    const QString said = error.databaseText();
    return logbookError(kind, m_file, said.isEmpty() ? error.driverText() : said);
}

Transaction::Transaction(Database &database, Kind kind) : m_database(database)
{
    // At once: a lock that is asked for only at the first write could not be waited for.
    database.run(kind == Read ? u"BEGIN DEFERRED"_s : u"BEGIN IMMEDIATE"_s);
}

Transaction::~Transaction()
{
    if (!m_open)
        return;
    try {
        m_database.run(u"ROLLBACK"_s);
    } catch (const LogbookError &) {
        // SQLite has done it already.
        return;
    }
}

void Transaction::commit()
{
    m_database.run(u"COMMIT"_s);
    m_open = false;
}
