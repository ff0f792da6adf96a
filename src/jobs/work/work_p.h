// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qvariant.h>

#include "jobs/jobend_p.h"
#include "jobs/work/request_p.h"

class Exchange;

/**
 * What a job asks of a computer: one request after the other, each from the same place again until
 * it is answered, over as many links as it takes.
 */
class Work
{
public:
    virtual ~Work() = default;

    /** The request to send now; null when all is done. The same until done() or failed(). */
    [[nodiscard]] virtual const Request *next() = 0;
    /** Nothing is left to ask; a link is not needed any more. */
    [[nodiscard]] virtual bool isComplete() const = 0;
    /** next() has been answered, whole and sound. */
    virtual void done(VardaSession &session, Exchange &exchange) = 0;
    /** next() is given up. Whether the job goes on without it. */
    [[nodiscard]] virtual bool failed(const JobEnd & /*end*/) { return false; }
    /**
     * The link was lost under next(), which will be sent again on another. Whether the computer
     * keeps more of it than the last time, so that its tries count anew.
     */
    [[nodiscard]] virtual bool interrupted(const JobEnd & /*end*/) { return false; }
    /** Why the job cannot run, before anything is sent; None if it can. */
    [[nodiscard]] virtual JobEnd check() { return {}; }
    /** What it consists of does not go on now, as the application wants it. */
    [[nodiscard]] virtual bool isHeld() const { return false; }
    [[nodiscard]] virtual QVariant result() = 0;

    /** The computer's model and versions have to be known; and its bootloader's. */
    bool needsIdentity = false;
    bool needsBootloader = false;
    /** It is not to reach another computer than the one that is meant. */
    bool writes = false;
    /** The silence ends it, however long it takes. */
    bool isLong = false;
    /** The link may go down afterwards, and what was known of the computer is out of date. */
    bool endsLink = false;
};
