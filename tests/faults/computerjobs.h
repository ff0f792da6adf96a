// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>

#include <functional>
#include <memory>

#include <varda/tidemarcommand.h>
#include <varda/vardacomputer.h>

/** All that a job reported; of a download also the dives that came before its end. */
struct Report {
    QByteArray data; ///< each field of each record
    QByteArray
        about; ///< what it says of the computer, which it does without if that cannot be read
    bool isPartial = false; ///< and the job names what is missing
};

/** Something that an application asks of a VardaComputer. */
struct ComputerJob {
    /** Asks for it; the report is complete when the job has ended. */
    std::function<VardaJob *(VardaComputer &, const std::shared_ptr<Report> &)> ask;
    /** Requests that it does without. */
    QList<TidemarCommand::TidemarCommandIn> optional = {};
    /** Once it has left, it is not sent again. */
    bool once = false;
    /** It ends well without an answer, and reports that there was none. */
    bool mayBeSilent = false;
    /** It writes: what the computer is afterwards counts as its data. */
    bool writes = false;
};

struct Job;

/** Every job of a VardaComputer; of Job's members those of sessions are empty. */
[[nodiscard]] const QList<Job> &allComputerJobs();
