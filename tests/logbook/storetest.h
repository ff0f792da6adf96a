// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qdir.h>
#include <QtCore/qstring.h>
#include <QtCore/qtemporarydir.h>
#include <QtSql/qsqldatabase.h>
#include <QtSql/qsqlquery.h>
#include <QtTest/qtest.h>

#include <optional>

#include <varda/logbookstore.h>

/** Waits for the end of a call: ended([&](auto... call) { store.check(call...); }). */
template <typename Call> [[nodiscard]] LogbookError ended(const Call &call)
{
    const QObject context;
    std::optional<LogbookError> end;
    int ends = 0;
    call(&context, [&](const LogbookError &error) {
        end = error;
        ++ends;
    });
    // Never from inside a call.
    if (end || !QTest::qWaitFor([&] { return end.has_value(); }, 60'000) || ends != 1)
        return {LogbookError::Failed, QStringLiteral("it did not end once"), {}};
    return *end;
}

/** The same with a result. */
template <typename T, typename Call> [[nodiscard]] LogbookResult<T> result(const Call &call)
{
    const QObject context;
    std::optional<LogbookResult<T>> end;
    call(&context, [&](const LogbookResult<T> &given) { end = given; });
    if (!QTest::qWaitFor([&] { return end.has_value(); }, 60'000))
        return {{}, {LogbookError::Failed, QStringLiteral("it did not end"), {}}};
    return *end;
}

/** A store whose calls wait for their ends. */
struct Store {
    LogbookStore store;

    [[nodiscard]] LogbookError open(const QString &file)
    {
        return ended([&](auto... end) { store.open(file, end...); });
    }
    [[nodiscard]] LogbookError close()
    {
        return ended([&](auto... end) { store.close(end...); });
    }
    [[nodiscard]] LogbookError check()
    {
        return ended([&](auto... end) { store.check(end...); });
    }
    [[nodiscard]] QList<LogbookComputer> computers()
    {
        return result<QList<LogbookComputer>>([&](auto... end) { store.computers(end...); }).value;
    }
    [[nodiscard]] QList<LogbookEntry> dives(const LogbookQuery &query = {})
    {
        return result<QList<LogbookEntry>>([&](auto... end) { store.dives(query, end...); }).value;
    }
    /** "number@begin", the earliest first. */
    [[nodiscard]] QStringList names(const LogbookQuery &query = {})
    {
        QStringList found;
        const QList<LogbookEntry> entries = dives(query);
        for (const LogbookEntry &entry : entries)
            found << QStringLiteral("%1@%2").arg(entry.number).arg(entry.begin);
        return found;
    }
    [[nodiscard]] LogbookResult<LogbookDive> dive(qint64 id)
    {
        return result<LogbookDive>([&](auto... end) { store.dive(id, end...); });
    }
    [[nodiscard]] LogbookResult<LogbookStore::Added> add(const LogbookComputer &computer,
                                                         const LogbookDive &dive)
    {
        return result<LogbookStore::Added>(
            [&](auto... end) { store.addDive(computer, dive, end...); });
    }
};

/** SQLite without the store, to look at a file or to keep it to oneself. */
class Sqlite
{
public:
    explicit Sqlite(const QString &file)
    {
        auto database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), kName);
        database.setDatabaseName(file);
        if (!database.open())
            qFatal("cannot open %s", qPrintable(file));
    }
    ~Sqlite()
    {
        QSqlDatabase::database(kName).close();
        QSqlDatabase::removeDatabase(kName);
    }
    Q_DISABLE_COPY_MOVE(Sqlite)

    /** All rows, the columns with a bar between them. */
    QStringList run(const QString &sql)
    {
        QSqlQuery query(QSqlDatabase::database(kName));
        if (!query.exec(sql))
            qFatal("cannot run %s", qPrintable(sql));
        QStringList rows;
        while (query.next()) {
            QStringList row;
            for (int i = 0; query.value(i).isValid(); ++i)
                row << query.value(i).toString();
            rows << row.join(u'|');
        }
        return rows;
    }

private:
    static constexpr auto kName = QLatin1StringView("sqlite");
};

/** Stops the test if a call has ended with an error. */
#define WORKS(CALL)                                                                                \
    do {                                                                                           \
        const LogbookError workError = (CALL);                                                     \
        QCOMPARE(workError.text, QString());                                                       \
        QCOMPARE(workError.kind, LogbookError::NoError);                                           \
    } while (false)
