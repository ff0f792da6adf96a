// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <varda/vardajob.h>

/** How a job, a request or a connection ended. */
struct JobEnd {
    VardaJob::Error error = VardaJob::NoError;
    VardaJob::Reason reason = VardaJob::Reason::None;
    // GCC wants it where a list of initializers leaves the member out
    QString detail = {}; ///< for the text. NOLINT(readability-redundant-member-init)

    [[nodiscard]] bool isGood() const { return error == VardaJob::NoError; }
};
