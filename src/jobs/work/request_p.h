// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <functional>
#include <optional>

#include <varda/tidemarcommand.h>
#include <varda/vardasession.h>

#include "session/sessiondoor_p.h"

/** One request to the computer and what ends it. */
struct Request {
    enum class Ending {
        Answer,   ///< endCommand() of `end`
        AnyFrame, ///< a frame of `end`, which the session does not report; or 2 s without
        LinkDown, ///< the computer goes
    };

    QString what; ///< for people: "owner"
    TidemarCommand::TidemarCommandIn end = TidemarCommand::Sync;
    /** Sends it; what is kept from an earlier answer is emptied before. 0, or why not. */
    std::function<VardaJob::Reason(VardaSession &, SessionDoor &)> send;
    /** Code of the answer's frames, where it is not that of `end`. */
    // GCC wants it where a list of initializers leaves the member out
    // NOLINTNEXTLINE(readability-redundant-member-init)
    std::optional<TidemarCommand::TidemarCommandIn> answer = {};
    Ending ending = Ending::Answer;
    /** Without it the job goes on; it is never asked again. */
    bool optional = false;
    /** It may be sent again though the computer may have carried it out. */
    bool repeatable = true;
    /** The computer is changed by it. */
    bool writes = false;
    /** It finds out what became of the request before, which has to be answered in its own tries. */
    bool isCheck = false;
};
