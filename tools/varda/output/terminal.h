// SPDX-License-Identifier: MIT
#pragma once

#include "output/json.h"
#include "output/tables.h"

#include <QtCore/qstringlist.h>

struct Failure;

/** Results go to stdout: in UTF-8, or in ASCII where the locale knows no more. */
void print(const QString &text);
/** As they are. */
void printBytes(const QByteArray &bytes);
/** The one document of a command. */
void print(const Fields &document);

/** A document whose last member is a list that is printed while it grows. */
class GrowingDocument
{
public:
    explicit GrowingDocument(const Fields &members);
    GrowingDocument(const Fields &members, QLatin1StringView list);
    /** What has been printed is a whole document in any case. */
    ~GrowingDocument();
    Q_DISABLE_COPY_MOVE(GrowingDocument)

    void add(const Json &element);
    void end();

private:
    bool m_hasList = false;
    bool m_isEmpty = true;
    bool m_ended = false;
};

/**
 * Makes sure that all has been written. @throws Failure, once; one without a text if nobody reads it
 */
void flushOutput();

/**
 * How the result is laid out: as wide as COLUMNS says, or else the terminal; as wide as it likes
 * if there is neither. Bold on a terminal only.
 */
[[nodiscard]] TextStyle outputStyle();
/** Rows to show it, as LINES says, or else the terminal; 0 if nobody knows. */
[[nodiscard]] int outputHeight();
/** Whether people see more than ASCII here. */
[[nodiscard]] bool usesUtf8();

/** "varda: ..." on stderr; nothing for a failure without a text. */
void printError(const Failure &failure);
/** The same of what does not keep the command from going on. */
void printWarning(const QString &text);

/** What helps after a message, on stderr. */
void printHint(const QString &text);

/** On stderr, below the lines of the choices; the answer is typed behind it. */
void printQuestion(const QString &question, const QStringList &choices = {});

/** Columns for showStatus(). */
[[nodiscard]] int statusWidth();
/** One line on stderr that says what is going on, where stderr is a terminal. */
void showStatus(const QString &text);
void clearStatus();

/**
 * Sends the diagnostics of the library and of Qt to stderr when they are wanted, frames included,
 * and nowhere otherwise. QT_LOGGING_RULES has its say as always.
 */
void routeDiagnostics(bool verbose);
