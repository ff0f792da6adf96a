// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobjectdefs.h>
#include <QtCore/qstring.h>

#include <varda/logbookexport.h>

/** Why a call to a LogbookStore failed. Whatever the reason, what was stored before is still there. */
struct VARDA_LOGBOOK_EXPORT LogbookError {
    Q_GADGET
    Q_PROPERTY(Kind kind MEMBER kind)
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(QString remedy MEMBER remedy)

public:
    enum Kind {
        NoError,
        NotOpen,      ///< open() was not called, or it failed
        Closed,       ///< the store was deleted before the call began
        CannotOpen,   ///< no such folder, or no right to read the file
        ReadOnly,     ///< the file or its folder cannot be written; reading works
        DiskFull,     ///< nothing of the call was stored
        Damaged,      ///< the file was damaged from outside
        NotADatabase, ///< a file of another kind
        NotALogbook,  ///< a database of another program
        NewerSchema,  ///< a newer version of this library made it; nothing in it was changed
        Busy,         ///< another process kept the file to itself for too long
        NoDriver,     ///< Qt's SQLite driver is not installed
        NoSuchDive,   ///< there is no dive with this id
        Failed,       ///< anything else; the text has what the system said
    };
    Q_ENUM(Kind)

    Kind kind = NoError;
    QString text;   ///< one line for people
    QString remedy; ///< what the user can do about it, in one line

    /** Whether it is an error. */
    explicit operator bool() const { return kind != NoError; }
};
