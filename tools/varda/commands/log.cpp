// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "line/arguments.h"
#include "output/documents.h"
#include "output/safetext.h"
#include "output/terminal.h"
#include "output/text.h"
#include "run/runner.h"

using namespace Qt::StringLiterals;

namespace {

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
        print(documents::withDevice(runner.device(), documents::log(lines)));
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
        print(documents::withDevice(runner.device(), documents::binaryLog(records)));
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
