// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qdatetime.h>

#include <varda/logbookcomputer.h>
#include <varda/logbookdive.h>
#include <varda/logbookentry.h>
#include <varda/logbookerror.h>
#include <varda/logbookstore.h>

#include "field.h"
#include "stamps.h"

// What an entry and a dive have in common.
// NOLINTNEXTLINE(cppcoreguidelines-macro-usage): moc knows no properties of a base without a meta-object
#define VARDA_LOGBOOK_ENTRY                                                                        \
    VARDA_WIDE(id)                                                                                 \
    VARDA_WIDE(computer)                                                                           \
    VARDA_FIELD(int, number)                                                                       \
    VARDA_WIDE(begin)                                                                              \
    VARDA_FIELD(double, duration)                                                                  \
    VARDA_FIELD(double, greatestDepth)                                                             \
    VARDA_FIELD(double, meanDepth)                                                                 \
    VARDA_FIELD(int, lines)                                                                        \
    VARDA_FIELD(QString, place)                                                                    \
    VARDA_FIELD(QString, notes)                                                                    \
    VARDA_FIELD(bool, hidden)                                                                      \
    VARDA_FIELD(QDateTime, stored)                                                                 \
    /** As the computer showed it; undefined if it is no time in this century. */                  \
    Q_PROPERTY(QVariant beginDate READ beginDate CONSTANT)                                         \
    /** Of its begin, "2026-11"; empty if that is no time in this century. */                      \
    Q_PROPERTY(QString month READ month CONSTANT)                                                  \
                                                                                                   \
public:                                                                                            \
    QVariant beginDate() const                                                                     \
    {                                                                                              \
        return Stamps::dateOf(begin);                                                              \
    }                                                                                              \
    QString month() const                                                                          \
    {                                                                                              \
        return Stamps::monthOf(begin);                                                             \
    }

struct LogbookEntryValue : LogbookEntry {
    VARDA_VALUE_TYPE(LogbookEntry, LogbookEntryValue, logbookEntry)

    VARDA_LOGBOOK_ENTRY
};

struct LogbookDiveValue : LogbookDive {
    VARDA_VALUE_TYPE(LogbookDive, LogbookDiveValue, logbookDive)

    VARDA_LOGBOOK_ENTRY
    VARDA_FIELD(Dive, dive)
    VARDA_FIELD(TidemarDiveHeader, header)
    VARDA_RECORDS(samples)
};

struct LogbookComputerValue : LogbookComputer {
    VARDA_VALUE_TYPE(LogbookComputer, LogbookComputerValue, logbookComputer)

    VARDA_WIDE(id)
    VARDA_FIELD(VardaIdentity, identity)
    VARDA_FIELD(QString, address)
    VARDA_FIELD(QString, name)
    VARDA_FIELD(QDateTime, lastSynchronised)
    VARDA_FIELD(int, dives)
};

/** Whether an added dive is new, and its id. */
struct LogbookAddedValue : LogbookStore::Added {
    VARDA_VALUE_TYPE(LogbookStore::Added, LogbookAddedValue, logbookAdded)

    VARDA_WIDE(id)
    VARDA_FIELD(bool, isNew)
};

/** What a store reported. */
struct LogbookErrorValue {
    Q_GADGET
    QML_FOREIGN(LogbookError)
    QML_VALUE_TYPE(logbookError)
};
