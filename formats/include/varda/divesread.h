// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <varda/dive.h>

/** The dives of a file. */
struct DivesRead {
    QList<Dive> dives; ///< in the order of the file; none if there is an error
    QString error;     ///< what is wrong with the file, and where; empty if it was read
};
