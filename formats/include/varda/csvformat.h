// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <varda/dive.h>
#include <varda/divesread.h>
#include <varda/diveswritten.h>
#include <varda/formatsexport.h>

class QIODevice;

/**
 * CSV for spreadsheets (RFC 4180, UTF-8): commas, points in numbers, units in the first row. A text
 * that a spreadsheet might take for a formula gets an apostrophe in front. docs/formats.md lists
 * the columns and what they cannot carry.
 */
class VARDA_FORMATS_EXPORT CsvFormat
{
public:
    /** One line a dive. */
    [[nodiscard]] static DivesWritten writeSummary(QIODevice *device, const QList<Dive> &dives);
    /** One line a sample. */
    [[nodiscard]] static DivesWritten writeSamples(QIODevice *device, const QList<Dive> &dives);
    /** Reads what either of them wrote. */
    [[nodiscard]] static DivesRead read(QIODevice *device);
};
