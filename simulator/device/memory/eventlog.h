// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>

namespace simulator {

class ObjectReader;

/** What the firmware noted of its doings. It gives them away as records or as lines of text. */
struct EventLog {
    QList<QByteArray> records; ///< payloads, the oldest first
    QList<QByteArray> lines;
};

/** Reads "log" and "logText"; a plausible log if there is neither. */
EventLog readEventLog(ObjectReader &reader);

} // namespace simulator
