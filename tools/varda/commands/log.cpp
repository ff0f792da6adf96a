// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "line/commandline.h"
#include "output/records.h"
#include "output/safetext.h"
#include "output/terminal.h"
#include "output/text.h"
#include "run/runner.h"

using namespace Qt::StringLiterals;

namespace {

Fields fieldsOf(const SyslogBinRecord &record)
{
    return {{"time"_L1, record.time},
            {"type"_L1, record.type},
            {"arg1"_L1, record.arg1},
            {"arg2"_L1, record.arg2},
            {"text"_L1, convertSyslogRecord(record, true).trimmed()}};
}

/** Runs what reads a log. */
template <typename Log> Log read(Runner &runner, VardaReply<Log> *job)
{
    return runner.resultOf(job, u"Reading the log"_s, [job] {
        showStatus(u"Reading the log, "_s + bytesText(double(job->bytes())));
    });
}

void textLog(const Options &options)
{
    Runner runner(options);
    const QStringList lines = read(runner, runner.computer().readLog());
    if (options.json) {
        print({{"device"_L1, ::fieldsOf(runner.device())}, {"syslog"_L1, listOf(lines)}});
        return;
    }
    for (const QString &line : lines)
        print(safeText(line) + u'\n');
}

void binaryLog(const Options &options)
{
    Runner runner(options);
    const auto records = read(runner, runner.computer().readBinaryLog());
    if (options.json) {
        print({{"device"_L1, ::fieldsOf(runner.device())},
               {"syslogBin"_L1,
                listOf(records, [](const SyslogBinRecord &each) { return fieldsOf(each); })}});
        return;
    }
    // The library's own timestamp counts the months from 0.
    for (const SyslogBinRecord &record : records)
        print(clockText(record.time) + u' ' + convertSyslogRecord(record, true).trimmed() + u'\n');
}

} // namespace

void addLog(CommandLine &line)
{
    const auto binary = std::make_shared<bool>(false);
    CLI::App *const command = line.add(
        "log", "Show the system log",
        [binary](const Options &options) { (*binary ? binaryLog : textLog)(options); });
    command->add_flag("--binary", *binary, "The log of records, rendered, instead of the text");
}
