// SPDX-License-Identifier: MIT
#include "traces/tracefiles.h"

#include "output/safetext.h"
#include "output/terminal.h"
#include "run/failure.h"
#include "run/files.h"
#include "traces/btsnoop.h"
#include "traces/frombtsnoop.h"
#include "traces/tobtsnoop.h"

#include <QtCore/qbuffer.h>

using namespace Qt::StringLiterals;

namespace {

/** Phones log everything, music too. */
constexpr qint64 kLargest = qint64(1) << 30;

VardaTraceFile readLog(const QByteArray &bytes, const QString &computer)
{
    const BtSnoop::Log log = BtSnoop::read(bytes);
    VardaTraceFile trace = fromBtSnoop(log, computer);
    for (const QString &each : log.warnings)
        printWarning(each);
    trace.header.library = u"" VARDA_VERSION ""_s;
    trace.header.qt = QString::fromLatin1(qVersion());
    return trace;
}

VardaTraceFile readLines(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QString error;
    auto trace = VardaTraceFile::read(buffer, &error);
    if (!trace)
        throw Failure{ExitCode::UsageError, safeText(error), {}};
    if (trace->cutShort)
        printWarning(u"the trace ends in the middle of a line"_s);
    return *std::move(trace);
}

} // namespace

VardaTraceFile readTrace(const QString &name, const QString &computer)
{
    const QByteArray bytes = readFile(name, kLargest);
    try {
        return BtSnoop::isBtSnoop(bytes) ? readLog(bytes, computer) : readLines(bytes);
    } catch (Failure &failure) {
        failure.what = u"\"%1\": %2"_s.arg(name, failure.what);
        throw;
    }
}

void writeTrace(const QString &name, const VardaTraceFile &trace, TraceFormat format)
{
    QByteArray bytes;
    if (format == TraceFormat::BtSnoop) {
        bytes = BtSnoop::write(toBtSnoop(trace));
    } else {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        trace.write(buffer);
    }
    writeFile(name, bytes);
}
