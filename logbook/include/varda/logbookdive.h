// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <varda/dive.h>
#include <varda/divesample.h>
#include <varda/logbookentry.h>
#include <varda/tidemardiveheader.h>

/** A stored dive with all that the computer said about it. */
struct LogbookDive : LogbookEntry {
    Dive dive; ///< with the computer's serial number if it had none of its own
    TidemarDiveHeader header;
    QList<DiveSample> samples; ///< what Dive::lines was made of
};
