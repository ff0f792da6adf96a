// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <cstdint>
#include <utility>

#include <varda/logbookstore.h>

class Database;

/**
 * What a synchronisation asks of the store.
 *
 * A computer's numbers can start again. A generation is the dives that the computer had at the last
 * synchronisation, each number once; what was stored before the numbers started again is of an
 * earlier one.
 */
namespace Synchronisation {

/** A dive of one computer. */
using DiveKey = std::pair<std::uint16_t, std::uint64_t>; ///< number and begin

struct Start {
    qint64 computer = 0;
    QList<DiveKey> stored;  ///< all dives that were read from this computer
    QList<DiveKey> current; ///< those of the generation, in the order of their numbers
};

/** Finds or adds the computer. */
[[nodiscard]] Start start(Database &database, const VardaIdentity &identity, const QString &address,
                          const QString &name);
/**
 * What the computer has shown of its dives: those that are stored belong to the generation, and
 * others with their numbers do not. With @p isNew it is a new generation.
 */
void note(Database &database, qint64 computer, const QList<DiveKey> &shown, bool isNew);
LogbookStore::Added add(Database &database, qint64 computer, const LogbookDive &dive);
void finish(Database &database, qint64 computer);

} // namespace Synchronisation
