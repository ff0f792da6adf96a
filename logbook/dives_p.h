// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <varda/logbookdive.h>
#include <varda/logbookquery.h>
#include <varda/logbookstore.h>

class Database;

/** Dives in the store. What changes them wants a transaction. */
namespace Dives {

/**
 * Holds for a dive that was read from its computer: its header names it. One from a file has no
 * header.
 */
constexpr QLatin1StringView kIsDownloaded(R"(EXISTS (SELECT 1 FROM header
    WHERE header.dive = dive.id
    AND header.diveNumber = dive.number AND header.stamp = dive."begin"))");

/** Adds it to this computer, unless it is there already, and then it is left as it is. */
LogbookStore::Added add(Database &database, qint64 computer, const LogbookDive &dive);
/** The same; without a begin, it is any with its number whose begin is no time in this century. */
LogbookStore::Added addImported(Database &database, qint64 computer, const LogbookDive &dive);
/**
 * The same as add(), but takes the place of one that is from a file, also if the file could not say
 * when it began; this counts as new.
 */
LogbookStore::Added addDownloaded(Database &database, qint64 computer, const LogbookDive &dive);
[[nodiscard]] bool isDownloaded(Database &database, qint64 id);
/** Keeps the id and what the diver has added. */
void replace(Database &database, qint64 id, const LogbookDive &dive);
[[nodiscard]] QList<LogbookEntry> list(Database &database, const LogbookQuery &query);
/** The whole dive, or Damaged. It wants a transaction, for its parts are in several tables. */
[[nodiscard]] LogbookDive read(Database &database, qint64 id);
/** Sets what the diver adds; @p column is "place", "notes" or "hidden". */
void set(Database &database, qint64 id, QLatin1StringView column, const QVariant &value);

} // namespace Dives
