// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qdatetime.h>
#include <QtCore/qstring.h>

#include <cstdint>

/** What a list shows of a stored dive. */
struct LogbookEntry {
    qint64 id = 0;            ///< in this file; never used again
    qint64 computer = 0;      ///< LogbookComputer::id
    std::uint16_t number = 0; ///< DiveHeaderBlock::diveNumber; not unique
    std::uint64_t begin = 0;  ///< DiveHeaderBlock::stamp
    double duration = 0;      ///< seconds; see DiveProfile
    double greatestDepth = 0; ///< metres
    double meanDepth = 0;     ///< metres
    int lines = 0;            ///< points of its profile
    QString place;            ///< the diver's own; a synchronisation never touches it
    QString notes;            ///< the same
    bool hidden = false;      ///< not listed, and a synchronisation does not bring it back
    QDateTime stored;         ///< UTC
};
