// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qdatetime.h>
#include <QtCore/qstring.h>

#include <varda/vardaidentity.h>

/** A computer whose dives are stored. */
struct LogbookComputer {
    qint64 id = 0;              ///< in this file
    VardaIdentity identity;     ///< without a serial number until that could be read
    QString address;            ///< where it was seen last
    QString name;               ///< as it was advertised last
    QDateTime lastSynchronised; ///< UTC; invalid before the first complete synchronisation
    int dives = 0;              ///< stored, with hidden ones
};
