// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtCore/qstring.h>

#include <functional>

/** Which computers of this process have a link, or are about to: each only one. */
namespace Claims {

/** Whether @p owner has that address now. Its former one is let go. */
[[nodiscard]] bool claim(const QString &address, const QObject *owner);
void release(const QObject *owner);
[[nodiscard]] bool isOthers(const QString &address, const QObject *owner);

} // namespace Claims

/**
 * Connection attempts of this process, one after the other: systems fail attempts that overlap, or
 * let them wait without an end.
 */
namespace ConnectingTurn {

/** Calls @p go from the event loop of @p who when it is its turn; only while @p who waits. */
void ask(QObject *who, std::function<void()> go);
/** The attempt is over, or nobody wants it any more. Nothing if @p who never asked. */
void release(const QObject *who);

} // namespace ConnectingTurn
