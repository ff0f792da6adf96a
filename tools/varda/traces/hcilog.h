// SPDX-License-Identifier: MIT
#pragma once

#include "traces/btsnoop.h"

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

/** One message about attributes, put together from its packets. */
struct AttributePdu {
    qint64 at;
    bool received;
    QByteArray bytes;
    qint64 offset; ///< of its last packet
};

/** One connection of a Bluetooth log. */
struct LoggedConnection {
    QString address; ///< empty if the log begins later
    QString name;    ///< as it was advertised; empty if it was not
    qint64 askedAt = 0;
    qint64 upAt = 0;
    qint64 endedAt = 0;
    bool ended = false;
    bool endedByUs = false;
    QList<AttributePdu> pdus;
};

/** All Bluetooth LE connections, in the order in which they came up. @throws Failure */
[[nodiscard]] QList<LoggedConnection> connectionsIn(const BtSnoop::Log &log);
