// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "commands/dives/divelist.h"
#include "commands/dives/numbergaps.h"
#include "commands/dives/saveddives.h"
#include "output/divetext.h"
#include "output/documents.h"
#include "output/records.h"
#include "output/tables.h"
#include "output/terminal.h"
#include "output/text.h"
#include "run/runner.h"

#include <varda/tidemardiveconverter.h>

using namespace Qt::StringLiterals;

namespace {

class LogbookTable
{
public:
    explicit LogbookTable(bool hasIds) : m_hasIds(hasIds), m_columns(titles(hasIds)) { }

    void add(const DiveHeaderBlock &header, const QList<DiveGas> &gases, qint64 id = 0)
    {
        const QString begin = beginText(header);
        QStringList cells{QString::number(header.diveNumber), begin.isEmpty() ? u"-"_s : begin,
                          u"%1 s"_s.arg(header.sampleInterval), circuitText(header),
                          gasNames(gases)};
        if (m_hasIds)
            cells.prepend(u"@%1"_s.arg(id));
        m_columns.add(cells);
    }
    [[nodiscard]] QString text() const { return m_columns.text(outputStyle()); }

private:
    static QList<Columns::Column> titles(bool hasIds)
    {
        using enum Columns::Side;
        QList<Columns::Column> titles{
            {.title = u"NUMBER"_s},
            {.title = u"BEGIN"_s, .side = Left},
            {.title = u"INTERVAL"_s, .rank = 3},
            {.title = u"CIRCUIT"_s, .side = Left, .rank = 2},
            {.title = u"GASES"_s, .side = Left, .rank = 1, .enough = kEnoughGases}};
        if (hasIds)
            titles.prepend({.title = u"ID"_s, .rank = 1});
        return titles;
    }

    bool m_hasIds;
    Columns m_columns;
};

QString logbookText(const QList<TidemarDiveHeader> &headers)
{
    LogbookTable table(false);
    for (const TidemarDiveHeader &header : headers)
        table.add(header, TidemarDiveConverter::gases(header));
    return table.text();
}

/** What the computer sent; of a dive from a file, what that has of it. */
TidemarDiveHeader headerOf(const LogbookDive &dive)
{
    TidemarDiveHeader header = dive.header;
    DiveHeaderBlock &block = header;
    const DiveHeaderBlock &known = dive.dive;
    if (header.diveNumber != dive.number || header.stamp != dive.begin)
        block = known;
    return header;
}

class Logbook : public DiveList
{
public:
    Logbook() : DiveList("logbook", "List the dives in the logbook") { }

private:
    void showSaved(const SavedChoice &choice, const Options &options) const override
    {
        SavedDives saved(choice, options);
        const auto entries = saved.all();
        LogbookTable table(true);
        std::vector<Json> headers;
        for (const LogbookEntry &each : entries) {
            const LogbookDive dive = saved.store().dive(each.id);
            table.add(dive.dive, dive.dive.gases, each.id);
            Fields fields = fieldsOf(each);
            append(fields, fieldsOf(headerOf(dive)));
            headers.emplace_back(fields);
        }
        if (options.json) {
            Fields document = saved.head();
            document.emplace_back("diveHeaders"_L1, headers);
            print(document);
        } else {
            print(entries.isEmpty() ? noSavedDivesText() : table.text());
        }
    }

    void showLive(const QList<std::uint16_t> &known, const Options &options) const override
    {
        Runner runner(options);
        auto *const job = runner.computer().readLogbook(known);
        const auto headers = runner.resultOf(job, u"Reading the logbook"_s, [job] {
            showStatus(u"Reading the logbook, "_s + bytesText(double(job->bytes())));
        });
        const auto gaps = gapsIn(headers, known);
        if (options.json) {
            return print(documents::withDevice(
                runner.device(), documents::logbook(runner.identity(), headers, jsonOf(gaps))));
        }
        warnAbout(gaps);
        print(headers.isEmpty() ? noDivesText(!known.isEmpty()) : logbookText(headers));
    }
};

} // namespace

void addLogbook(Commands &commands)
{
    commands.push_back(std::make_unique<Logbook>());
}
