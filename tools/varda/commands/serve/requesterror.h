// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <varda/vardajob.h>

/** Why a request has no result. Thrown while it is read. */
struct RequestError {
    QString code; ///< of VardaJob::Reason, or one of this protocol's own
    QString text; ///< one line for people
    // GCC wants them where a list of initializers leaves the members out
    QString remedy = {}; // NOLINT(readability-redundant-member-init)
    VardaJob::Error kind = VardaJob::Rejected;
    bool outcomeUnknown = false;
};
