// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qjsonobject.h>
#include <QtCore/qlist.h>
#include <QtCore/qmetatype.h>
#include <QtCore/qobjectdefs.h>
#include <QtCore/qstring.h>

#include <optional>

#include <varda/vardaexport.h>

class QIODevice;

/** What a trace says about itself, in its first line. */
struct VardaTraceHeader {
    int version = 1;      ///< of the format
    bool redacted = true; ///< what is private has been replaced
    QString library;      ///< version of this library, or the name of what else has made the trace
    QString qt;           ///< version
    QString system;       ///< such as "Debian GNU/Linux 12 (bookworm)"
};

/** One event of a trace. docs/traces.md lists what each has in its fields. */
struct VARDA_EXPORT VardaTraceEvent {
    Q_GADGET

public:
    enum Kind : int {
        Unknown,         ///< of a newer version
        Service,         ///< the system's Bluetooth service is known
        Others,          ///< how many other devices a search has seen
        Bluetooth,       ///< the system's Bluetooth cannot be used any more, or not yet
        Connect,         ///< a connection is asked for
        Up,              ///< the link is up
        Services,        ///< the services are known
        Characteristics, ///< those of the service that carries the data are known
        Subscribe,       ///< notifications are switched on
        Subscribed,      ///< the computer has acknowledged it
        Write,           ///< bytes to the computer
        Notification,    ///< bytes from it
        Silence,         ///< no answer, or no end of it
        Failure,         ///< the system reports an error
        Disconnect,      ///< this side ends the link
        Down,            ///< the link is down
        Computer,        ///< what the computer is, as soon as it has been asked
        Job,             ///< a job begins
        JobEnd,          ///< it ends
    };
    Q_ENUM(Kind)

    qint64 at = 0; ///< microseconds since the trace began
    Kind kind = Unknown;
    QByteArray bytes;   ///< of Write and Notification
    QJsonObject fields; ///< everything else
};

/** A whole trace, read from JSON lines: the header and then an event in each line. */
struct VARDA_EXPORT VardaTraceFile {
    VardaTraceHeader header;
    QList<VardaTraceEvent> events;
    /** The last line has no end: the program that wrote it has crashed. It is left out. */
    bool cutShort = false;

    /** The name of the kind in a file, such as "notification". */
    [[nodiscard]] static QString nameOf(VardaTraceEvent::Kind kind);

    /** @param error  becomes what is wrong, with the number of the line */
    [[nodiscard]] static std::optional<VardaTraceFile> read(QIODevice &device,
                                                            QString *error = nullptr);
    /** Writes header and events; false if the device does not take all of it. */
    bool write(QIODevice &device) const;
};
