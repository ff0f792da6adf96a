// SPDX-License-Identifier: MIT
#pragma once

#include "line/choices/divenumbers.h"
#include "line/choices/savedchoice.h"
#include "output/json.h"
#include "output/units.h"
#include "run/store.h"

/** The saved dives that a command means. */
class SavedDives
{
public:
    /** Opens their file. @throws Failure */
    SavedDives(const SavedChoice &choice, const Options &options);

    [[nodiscard]] Store &store() { return m_store; }
    [[nodiscard]] const QList<LogbookComputer> &computers() const { return m_computers; }
    /** "Varda 00420017-3138510D-37373934". */
    [[nodiscard]] QString computerName(qint64 id) const;

    /** All that the options mean, the earliest first. @throws Failure */
    [[nodiscard]] QList<LogbookEntry> all();
    /** Those of these names. @throws Failure  if one is missing, or if a number is not enough */
    [[nodiscard]] QList<LogbookEntry> named(const DiveNames &names);

    /** The members of a document above the dives. */
    [[nodiscard]] Fields head() const;

private:
    [[nodiscard]] qint64 computerNamed(const QString &name) const;
    [[nodiscard]] QStringList linesOf(const QList<LogbookEntry> &entries) const;

    Store m_store;
    QList<LogbookComputer> m_computers;
    LogbookQuery m_query;
};

/** What the store adds to the fields of a dive. */
[[nodiscard]] Fields fieldsOf(const LogbookEntry &entry);

/** What stands for an empty list of them. */
[[nodiscard]] QString noSavedDivesText();
/** A table of them. */
[[nodiscard]] QString savedDivesText(const QList<LogbookEntry> &entries, const SavedDives &saved,
                                     Units units);
