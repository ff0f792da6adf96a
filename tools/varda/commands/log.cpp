// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "line/arguments.h"
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
template <typename Result> Result read(Runner &runner, VardaReply<Result> *job)
{
    return runner.resultOf(job, u"Reading the log"_s, [job] {
        showStatus(u"Reading the log, "_s + bytesText(double(job->bytes())));
    });
}

void showTextLog(const Options &options)
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

void showBinaryLog(const Options &options)
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

class Log : public Command
{
public:
    Log() : Command("log", "Show the system log") { }

    void declare(Arguments &arguments) override
    {
        arguments.flag("--binary", m_binary, "Show the log of records instead of the text log");
    }

    void run(const Options &options) const override
    {
        if (m_binary)
            showBinaryLog(options);
        else
            showTextLog(options);
    }

private:
    bool m_binary = false;
};

} // namespace

void addLog(Commands &commands)
{
    commands.push_back(std::make_unique<Log>());
}
