// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "commands.h"
#include "connection.h"
#include "records.h"
#include "terminal.h"
#include "text.h"

using namespace Qt::StringLiterals;

namespace {

QStringList linesOf(const QString &log)
{
    QStringList lines = log.split(u'\n');
    lines.removeLast(); // what follows the last line's end
    return lines;
}

Fields fieldsOf(const SyslogBinRecord &record)
{
    return {{"time"_L1, record.time},
            {"type"_L1, record.type},
            {"arg1"_L1, record.arg1},
            {"arg2"_L1, record.arg2},
            {"text"_L1, convertSyslogRecord(record, true).trimmed()}};
}

/** @return how much of @p log there was before: the session appends to it */
template <typename Log>
qsizetype readLog(Connection &connection, TidemarCommand::TidemarCommandIn command, const Log &log)
{
    qsizetype before = 0;
    connection.run({.name = u"log"_s,
                    .end = command,
                    .start =
                        [&](VardaSession &session) {
                            before = log.size();
                            session.startCommand(command);
                        },
                    .progress =
                        [&connection] {
                            showStatus(u"Reading the log, "_s
                                       + bytesText(double(connection.received())));
                        }});
    return before;
}

void textLog(const Options &options)
{
    Connection connection(options);
    const QString &log = connection.session().syslog();
    const qsizetype before = readLog(connection, TidemarCommand::Syslog, log);
    const QStringList lines = linesOf(log.mid(before));
    if (options.json) {
        print({{"device"_L1, ::fieldsOf(connection.device())}, {"syslog"_L1, listOf(lines)}});
        return;
    }
    for (const QString &line : lines)
        print(safeText(line) + u'\n');
}

void binaryLog(const Options &options)
{
    Connection connection(options);
    const auto &log = connection.session().syslogBin();
    const qsizetype before = readLog(connection, TidemarCommand::SyslogBin, log);
    const auto records = log.mid(before);
    if (options.json) {
        print({{"device"_L1, ::fieldsOf(connection.device())},
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
