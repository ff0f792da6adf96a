// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>
#include <QtCore/qvariant.h>
#include <QtSql/qsqldatabase.h>
#include <QtSql/qsqlquery.h>

#include <chrono>

#include <varda/logbookerror.h>

/**
 * An open file, on the store's thread. What fails throws a LogbookError, which the thread hands to
 * the caller.
 */
class Database
{
public:
    /** Opens @p file, or makes it, and brings its schema up to date. */
    Database(const QString &file, std::chrono::milliseconds busyLimit);
    ~Database();
    Q_DISABLE_COPY_MOVE(Database)

    /** Runs one statement. */
    QSqlQuery run(const QString &sql, const QVariantList &values = {});
    /** For a statement that runs again and again. */
    [[nodiscard]] QSqlQuery prepare(const QString &sql);
    void run(QSqlQuery &query, const QVariantList &values);
    /** Goes to the next row; false after the last. A row that cannot be read is no end. */
    [[nodiscard]] bool next(QSqlQuery &query) const;
    /** The first column of the first row; invalid if there is none. */
    [[nodiscard]] QVariant value(const QString &sql, const QVariantList &values = {});
    [[nodiscard]] const QString &file() const { return m_file; }

private:
    void checkFile() const;
    void checkContent();
    [[nodiscard]] bool hasJournal() const;
    void connectTo(bool asImmutable);
    void disconnect();
    [[nodiscard]] bool canRead();
    void setUp();
    void keepTrying(const QString &sql);
    [[nodiscard]] LogbookError errorOf(const QSqlError &error) const;

    QString m_file;
    std::chrono::milliseconds m_busyLimit;
    bool m_readOnly = false;
    QString m_connection;
    QSqlDatabase m_database;
};

/**
 * All or nothing: what is not committed is undone. One that only reads sees the file as it is at
 * its first statement, and stops nobody from writing.
 */
class Transaction
{
public:
    enum Kind { Write, Read };

    explicit Transaction(Database &database, Kind kind = Write);
    ~Transaction();
    Q_DISABLE_COPY_MOVE(Transaction)

    void commit();

private:
    Database &m_database;
    bool m_open = true;
};

/** The text and the remedy of a kind. */
[[nodiscard]] LogbookError logbookError(LogbookError::Kind kind, const QString &file = {},
                                        const QString &detail = {});
