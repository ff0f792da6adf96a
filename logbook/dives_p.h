// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <varda/logbookdive.h>
#include <varda/logbookquery.h>
#include <varda/logbookstore.h>

class Database;

/** Dives in the store. What changes them wants a transaction. */
namespace Dives {

/** Adds it to this computer, unless it is there already, and then it is left as it is. */
LogbookStore::Added add(Database &database, qint64 computer, const LogbookDive &dive);
[[nodiscard]] QList<LogbookEntry> list(Database &database, const LogbookQuery &query);
/** The whole dive, or Damaged. It wants a transaction, for its parts are in several tables. */
[[nodiscard]] LogbookDive read(Database &database, qint64 id);
/** Sets what the diver adds; @p column is "place", "notes" or "hidden". */
void set(Database &database, qint64 id, QLatin1StringView column, const QVariant &value);

} // namespace Dives
