// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>
#include <QtCore/qstringlist.h>

#include "jobs.h"
#include "world.h"

/** Where a case leaves the link, which decides what letting go of the computer tells. */
enum class After {
    Up,   ///< connected: letting go tells disconnectController
    Down, ///< the computer is known still: letting go tells the message alone
    Gone, ///< let go already: silence
};

/** What a session tells, in order and nothing else; an entry may end in "*" for any text. */
struct Outcome {
    QStringList entries;
    After after = After::Up;
    /** More could follow if it was wrong, so it is watched for the whole time. */
    bool watched = false;
};

/** Any one of these; none of them: the job must end, in whatever way. */
using Expectation = QList<Outcome>;

[[nodiscard]] bool matches(const QStringList &log, const QStringList &entries);

// Ways in which a connection ends, as an application is told of them.
[[nodiscard]] Outcome told(const QStringList &entries);
[[nodiscard]] Outcome silence();
[[nodiscard]] Outcome linkWentDown();
[[nodiscard]] Outcome receiveTimeout();
[[nodiscard]] Outcome linkFailed();       ///< after it was up
[[nodiscard]] Outcome connectionFailed(); ///< before
[[nodiscard]] Outcome operator+(const QStringList &before, Outcome outcome);

/** Notifications and when they come, in ms from the request on. */
struct Arrival {
    int at = 0;
    QByteArray bytes;
};

/**
 * What the session must tell when the request number @p request of a job is answered like this,
 * and all others as they should be. Written from the description of frames and time-outs, not from
 * the library.
 */
[[nodiscard]] Expectation expected(const Job &job, const QList<Exchange> &healthy, int request,
                                   const QList<Arrival> &arrivals);
