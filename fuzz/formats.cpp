// SPDX-License-Identifier: MIT
// A file with dives, whoever wrote it.
#include "fuzz.h"

#include <QtCore/qbuffer.h>

#include <varda/csvformat.h>
#include <varda/jsonformat.h>
#include <varda/uddfformat.h>

namespace {

using Read = DivesRead (*)(QIODevice *);
using Write = DivesWritten (*)(QIODevice *, const QList<Dive> &);

DivesRead divesOf(QByteArray text, Read read)
{
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    DivesRead dives = read(&buffer);
    check(dives.error.isEmpty() || dives.dives.isEmpty(), "a file is read, or has an error");
    return dives;
}

QByteArray textOf(const QList<Dive> &dives, Write write)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    check(write(&buffer, dives).error.isEmpty(), "what was read can be written");
    return buffer.data();
}

/** What was read can be written, and is then read as what it was. */
void checkReadsBack(const QList<Dive> &dives, Read read, Write write)
{
    const QByteArray text = textOf(dives, write);
    const DivesRead again = divesOf(text, read);
    check(again.error.isEmpty(), "what was written can be read");
    check(again.dives.size() == dives.size(), "as many dives as were written");
    check(textOf(again.dives, write) == text, "what is read is written as before");
}

/** JSON carries everything, so it says whether dives are the same. */
void checkSame(const QList<Dive> &one, const QList<Dive> &other)
{
    check(textOf(one, JsonFormat::write) == textOf(other, JsonFormat::write),
          "a dive comes back as it was");
}

void runUddf(const QByteArray &text)
{
    checkReadsBack(divesOf(text, UddfFormat::read).dives, UddfFormat::read, UddfFormat::write);
}

void runCsv(const QByteArray &text)
{
    const QList<Dive> dives = divesOf(text, CsvFormat::read).dives;
    const bool hasSamples = !dives.isEmpty() && !dives.front().lines.isEmpty();
    const Write write = hasSamples ? CsvFormat::writeSamples : CsvFormat::writeSummary;
    checkReadsBack(dives, CsvFormat::read, write);
    checkSame(divesOf(textOf(dives, write), CsvFormat::read).dives, dives);
}

void runJson(const QByteArray &text)
{
    checkReadsBack(divesOf(text, JsonFormat::read).dives, JsonFormat::read, JsonFormat::write);
}

} // namespace

/** The format, then the file. */
int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    constexpr std::uint8_t kFormats = 3;
    Input input(bytes, size);
    const std::uint8_t format = input.byte() % kFormats;
    const QByteArray text = input.rest();
    if (format == 0)
        runUddf(text);
    else if (format == 1)
        runCsv(text);
    else
        runJson(text);
    return 0;
}
