// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>
#include <QtCore/qobjectdefs.h>

#include <varda/tidemarcommand.h>
#include <varda/vardaexport.h>
#include <varda/vardatracefile.h>

/** A request, or a frame of an answer, put together from the bytes of a trace. */
struct VARDA_EXPORT VardaTraceFrame {
    Q_GADGET

public:
    enum State : int {
        Sound,         ///< whole, and its checksum is right
        WrongChecksum, ///< whole, but not what was sent
        CutShort,      ///< its end has not come
        NoFrame,       ///< bytes that do not begin a frame
    };
    Q_ENUM(State)

    State state = Sound;
    bool isRequest = false;
    TidemarCommand::TidemarCommandIn command{}; ///< of Sound and WrongChecksum
    QByteArray payload;       ///< without the command; of CutShort and NoFrame all that has come
    qint64 at = 0;            ///< of its first byte: microseconds since the trace began
    qint64 endAt = 0;         ///< of its last byte
    qsizetype firstEvent = 0; ///< index of the event that its first byte is in
    qsizetype lastEvent = 0;  ///< and its last byte

    /** All that are in @p trace, in the order of their last bytes. */
    [[nodiscard]] static QList<VardaTraceFrame> in(const VardaTraceFile &trace);
};
