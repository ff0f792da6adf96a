// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <varda/vardajob.h>

#include "case.h"

/** How a job ended. */
struct JobOutcome {
    VardaJob::Error error = VardaJob::NoError;
    VardaJob::Reason reason = VardaJob::Reason::None;
    bool outcomeUnknown = false;
    Report report;
};

/** Where two results differ; empty if they do not. */
[[nodiscard]] QString difference(const Report &is, const Report &should, bool withAbout);
/** The computer said something else, which nobody can know to be wrong. */
[[nodiscard]] bool isOtherAnswer(const Case &each, const Healthy &healthy);

[[nodiscard]] QString nameOf(VardaJob::Error error, VardaJob::Reason reason);

/**
 * What is wrong with the end of such a case; empty if nothing is. Written from what each fault is,
 * not from the library.
 */
[[nodiscard]] QString judge(const Case &each, const Setting &setting, const Healthy &healthy,
                            const JobOutcome &outcome);
