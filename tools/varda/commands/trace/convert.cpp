// SPDX-License-Identifier: MIT
#include "commands/trace/trace.h"
#include "line/options.h"
#include "output/json.h"
#include "output/terminal.h"
#include "run/failure.h"
#include "run/files.h"
#include "traces/tracefiles.h"

#include <varda/vardatraceframe.h>

#include <QtCore/qfileinfo.h>

using namespace Qt::StringLiterals;

namespace {

TraceFormat formatOf(const QString &file, const QString &format)
{
    const QString name = format.isEmpty() ? QFileInfo(file).suffix().toLower() : format;
    if (name == "trace"_L1 || name == "jsonl"_L1 || name == "json"_L1)
        return TraceFormat::Trace;
    if (name == "btsnoop"_L1 || name == "log"_L1 || name == "cfa"_L1)
        return TraceFormat::BtSnoop;
    throw Failure{ExitCode::UsageError, u"\"%1\" does not say in what format to write"_s.arg(file),
                  u"Let it end with .jsonl or .btsnoop, or use --format."_s};
}

} // namespace

void convertTrace(const QString &from, const QString &to, const QString &format,
                  const Options &options)
{
    const TraceFormat wanted = formatOf(to, format);
    const VardaTraceFile trace = readTrace(from, options.device);
    writeTrace(to, trace, wanted);
    if (!trace.header.redacted)
        printWarning(u"what is private stays in the new file"_s);
    if (isStandardOutput(to))
        return;
    const auto frames = VardaTraceFrame::in(trace).size();
    if (options.json)
        print({{"file"_L1, to}, {"events"_L1, trace.events.size()}, {"frames"_L1, frames}});
    else
        print(u"%1 frames are in %2.\n"_s.arg(QString::number(frames), to));
}
