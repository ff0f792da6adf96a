// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qjsonobject.h>
#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <optional>

namespace simulator {

/** One line of a trace. */
struct TraceEvent {
    int line = 0;
    double ms = 0; ///< since the trace began
    QString name;
    QByteArray bytes;
    QJsonObject fields;
};

/** The events of a trace, or nothing and an error that says where and what. */
std::optional<QList<TraceEvent>> readTrace(const QByteArray &text, QString *error);

} // namespace simulator
