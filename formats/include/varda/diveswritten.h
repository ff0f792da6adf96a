// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>
#include <QtCore/qstringlist.h>

/** How the writing of dives ended. */
struct DivesWritten {
    /**
     * Why the device does not have everything; empty if it took everything. A file has its own
     * buffer: flush it, or commit a QSaveFile, before you trust it.
     */
    QString error;
    QStringList messages; ///< what the format could not carry, one sentence each, for people
};
