// SPDX-License-Identifier: MIT
#pragma once

#include "run/failure.h"

#include <varda/logbookstore.h>

#include <QtCore/qstring.h>

/** The file with the saved dives. Each call waits for its end, unless it is interrupted. */
class Store
{
public:
    enum class Use {
        Read, ///< the file has to be there
        Write ///< the file is made if it is not there
    };

    /** Opens it. @throws Failure */
    Store(const QString &file, Use use);

    [[nodiscard]] LogbookStore &logbook() { return m_logbook; }
    [[nodiscard]] QString file() const { return m_logbook.file(); }

    // All of them throw Failure

    [[nodiscard]] QList<LogbookComputer> computers();
    [[nodiscard]] QList<LogbookEntry> dives(const LogbookQuery &query = {});
    [[nodiscard]] LogbookDive dive(qint64 id);
    LogbookStore::Added add(const Dive &dive);

private:
    LogbookStore m_logbook;
};
