// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "commands/dives/divewriter.h"
#include "commands/dives/download.h"
#include "commands/dives/saveddives.h"
#include "line/arguments.h"
#include "output/records.h"
#include "output/terminal.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

Failure noDives()
{
    return {ExitCode::JobFailed, u"there are no dives to export"_s, {}};
}

class Export : public Command
{
public:
    Export() : Command("export", "Write saved dives to files: UDDF, CSV, JSON, pictures") { }

    void declare(Arguments &arguments) override
    {
        arguments.optionalArgument("DIVES", m_names,
                                   "Numbers such as 1,5-9, and IDs such as @12; all if not given",
                                   checkDiveNames);
        arguments.choice("--format", "FORMAT", m_format,
                         {"uddf", "csv", "json", "svg", "png", "pdf"},
                         "uddf (default), csv, json, svg, png or pdf; else by the file's ending");
        arguments.option("-o,--output", "FILE", m_output,
                         "File, or folder for pictures (default and -: stdout)");
        arguments.flag("--summary", m_summary,
                       "In CSV, one line for each dive instead of each sample");
        arguments.flag("--live", m_live, "The dives in the computer instead of the saved ones");
        m_choice.declare(arguments);
    }

    [[nodiscard]] bool usesComputer() const override { return m_live; }
    [[nodiscard]] bool drawsPictures() const override { return isPicture(format()); }

    void run(const Options &options) const override
    {
        DiveWriter writer({.name = m_output,
                           .format = format(),
                           .units = options.units.value_or(Units::Metric),
                           .summary = m_summary});
        writer.check(options.json);
        if (m_summary && format() != FileFormat::Csv)
            throw Failure{ExitCode::UsageError, u"--summary is for CSV"_s, u"Add --format csv."_s};
        Fields head;
        if (m_live)
            head = exportLive(writer, options);
        else
            exportSaved(writer, options);
        writer.finish();
        for (const QString &message : writer.messages())
            printWarning(message);
        if (options.json)
            printDocument(head, writer);
        else if (!writer.isResult())
            print(writer.text());
    }

private:
    [[nodiscard]] FileFormat format() const
    {
        if (const auto named = formatNamed(m_format))
            return *named;
        return formatOfFile(m_output).value_or(FileFormat::Uddf);
    }

    void exportSaved(DiveWriter &writer, const Options &options) const
    {
        SavedDives saved(m_choice, options);
        const auto entries = m_names.isEmpty() ? saved.all() : saved.named(diveNamesIn(m_names));
        if (entries.isEmpty())
            throw noDives();
        writer.checkCount(entries.size());
        for (const LogbookEntry &each : entries) {
            showStatus(u"Exporting dive %1, %2 of %3"_s.arg(each.number)
                           .arg(writer.dives() + 1)
                           .arg(entries.size()));
            writer.add(saved.store().dive(each.id).dive, each.id);
        }
    }

    [[nodiscard]] Fields exportLive(DiveWriter &writer, const Options &options) const
    {
        m_choice.requireNone(u"Omit --live."_s);
        const auto numbers = numbersToRead(m_names);
        Runner runner(options);
        QList<Dive> dives;
        Download download(runner);
        if (!numbers.isEmpty())
            download.want(numbers);
        download.onBegin = [&](const auto &wanted) {
            if (wanted.isEmpty())
                throw noDives();
            writer.checkCount(wanted.size());
        };
        download.onDive = [&](const Dive &dive) { dives.append(dive); };
        download.run();
        for (const Dive &each : dives)
            writer.add(each);
        return {{"device"_L1, fieldsOf(runner.device())}};
    }

    static void printDocument(Fields document, const DiveWriter &writer)
    {
        append(document, {{"dives"_L1, writer.dives()},
                          {"files"_L1, listOf(writer.files())},
                          {"messages"_L1, listOf(writer.messages())}});
        print(document);
    }

    QStringList m_names;
    QString m_format;
    QString m_output;
    bool m_summary = false;
    bool m_live = false;
    SavedChoice m_choice;
};

} // namespace

void addExport(Commands &commands)
{
    commands.push_back(std::make_unique<Export>());
}
