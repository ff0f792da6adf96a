// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qjsonobject.h>
#include <QtCore/qstring.h>

struct Failure;

/** Results go to stdout: in UTF-8, or in ASCII where the locale knows no more. */
void print(const QString &text);
/** The one document of a command; JSON is UTF-8 in every locale. */
void print(const QJsonObject &document);
/** Makes sure that all has been written. @throws Failure */
void flushOutput();

/** Whether people see more than ASCII here. */
[[nodiscard]] bool speaksUtf8();

/** "varda: ..." on stderr. */
void printError(const Failure &failure);

/** One line on stderr that says what is going on, where stderr is a terminal. */
void showStatus(const QString &text);
void clearStatus();

/**
 * Sends the diagnostics of the library and of Qt to stderr when they are wanted, frames included,
 * and nowhere otherwise. QT_LOGGING_RULES has its say as always.
 */
void routeDiagnostics(bool verbose);
