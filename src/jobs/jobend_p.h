// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <varda/vardajob.h>

/** How a job, a request or a connection ended. */
struct JobEnd {
    VardaJob::Error error = VardaJob::NoError;
    VardaJob::Reason reason = VardaJob::Reason::None;
    QString detail = {}; ///< what the system said, for the text

    [[nodiscard]] bool isGood() const { return error == VardaJob::NoError; }
};
