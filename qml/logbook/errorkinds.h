// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtQml/qqml.h>

#include <varda/logbookerror.h>

/** LogbookError::Kind as LogbookError.DiskFull: Qt 6.4 describes no enumeration of a value type. */
class ErrorKinds : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(LogbookError)
    QML_UNCREATABLE("It has the kinds of errors.")

public:
    enum Kind {
        NoError = LogbookError::NoError,
        NotOpen = LogbookError::NotOpen,
        Closed = LogbookError::Closed,
        CannotOpen = LogbookError::CannotOpen,
        ReadOnly = LogbookError::ReadOnly,
        DiskFull = LogbookError::DiskFull,
        Damaged = LogbookError::Damaged,
        NotADatabase = LogbookError::NotADatabase,
        NotALogbook = LogbookError::NotALogbook,
        NewerSchema = LogbookError::NewerSchema,
        Busy = LogbookError::Busy,
        NoDriver = LogbookError::NoDriver,
        NoSuchDive = LogbookError::NoSuchDive,
        Failed = LogbookError::Failed,
    };
    Q_ENUM(Kind)

    using QObject::QObject;
};
