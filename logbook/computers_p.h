// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qdatetime.h>
#include <QtCore/qlist.h>

#include <varda/logbookcomputer.h>

class Database;

/** Computers in the store, and which of them one is. What changes them wants a transaction. */
namespace Computers {

/**
 * Finds the computer or adds it, and keeps what is known of it now; what is empty leaves what is
 * stored. If it had no serial number before, its dives become those of the computer that has it.
 */
qint64 identify(Database &database, const VardaIdentity &identity, const QString &address,
                const QString &name);
[[nodiscard]] QList<LogbookComputer> all(Database &database);

} // namespace Computers

/** Times in the store are texts that sort and that people can read. */
[[nodiscard]] QString nowAsText();
[[nodiscard]] QDateTime timeFromText(const QString &text);
