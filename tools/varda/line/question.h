// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qstringlist.h>

/** Whether there is somebody to ask. */
[[nodiscard]] bool canAsk();

/**
 * Asks below the numbered lines of @p choices, if there are any.
 *
 * @return what was typed, without spaces around it; empty at the end of the input, or when nobody
 *         types
 * @throws Failure  after an interruption
 */
[[nodiscard]] QByteArray ask(const QString &question, const QStringList &choices = {});
