// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "commands/numbergaps.h"
#include "line/knowndives.h"
#include "output/divetext.h"
#include "output/records.h"
#include "output/tables.h"
#include "output/terminal.h"
#include "output/text.h"
#include "run/runner.h"

#include <varda/tidemardiveconverter.h>

using namespace Qt::StringLiterals;

namespace {

QString logbookText(const QList<TidemarDiveHeader> &headers)
{
    using enum Columns::Side;
    Columns columns({{.title = u"NUMBER"_s},
                     {.title = u"BEGIN"_s, .side = Left},
                     {.title = u"INTERVAL"_s, .rank = 3},
                     {.title = u"CIRCUIT"_s, .side = Left, .rank = 2},
                     {.title = u"GASES"_s, .side = Left, .rank = 1, .enough = kEnoughGases}});
    for (const TidemarDiveHeader &header : headers) {
        const QString begin = beginText(header);
        columns.add({QString::number(header.diveNumber), begin.isEmpty() ? u"-"_s : begin,
                     u"%1 s"_s.arg(header.sampleInterval), circuitText(header),
                     gasNames(TidemarDiveConverter::gases(header))});
    }
    return columns.text(outputStyle());
}

Fields documentOf(const Runner &runner, const QList<TidemarDiveHeader> &headers,
                  const QList<NumberGap> &gaps)
{
    return {{"device"_L1, fieldsOf(runner.device())},
            {"computerModel"_L1, modelText(runner.identity())},
            {"gaps"_L1, jsonOf(gaps)},
            {"diveHeaders"_L1,
             listOf(headers, [](const TidemarDiveHeader &each) { return fieldsOf(each); })}};
}

class Logbook : public Command
{
public:
    Logbook() : Command("logbook", "List the dives in the logbook") { }

    void declare(Arguments &arguments) override { m_known.declare(arguments); }

    void run(const Options &options) const override
    {
        const QList<std::uint16_t> known = m_known.numbers();
        Runner runner(options);
        auto *const job = runner.computer().readLogbook(known);
        const auto headers = runner.resultOf(job, u"Reading the logbook"_s, [job] {
            showStatus(u"Reading the logbook, "_s + bytesText(double(job->bytes())));
        });
        const auto gaps = gapsIn(headers, known);
        if (options.json)
            return print(documentOf(runner, headers, gaps));
        warnAbout(gaps);
        print(headers.isEmpty() ? noDivesText(!known.isEmpty()) : logbookText(headers));
    }

private:
    KnownDives m_known;
};

} // namespace

void addLogbook(Commands &commands)
{
    commands.push_back(std::make_unique<Logbook>());
}
