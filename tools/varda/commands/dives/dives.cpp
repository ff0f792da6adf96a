// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "commands/dives/divelist.h"
#include "commands/dives/divewriter.h"
#include "commands/dives/download.h"
#include "commands/dives/numbergaps.h"
#include "commands/dives/saveddives.h"
#include "line/arguments.h"
#include "line/choices/divenumbers.h"
#include "output/divetext.h"
#include "output/documents.h"
#include "output/plot.h"
#include "output/records.h"
#include "output/safetext.h"
#include "output/terminal.h"
#include "run/runner.h"

#include <QtCore/qfileinfo.h>

#include <algorithm>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Numbers = QList<std::uint16_t>;

/** Dives as they come, below what is there before them. */
class DiveDocument
{
public:
    void begin(const Fields &head) { m_document.emplace(head, "dives"_L1); }
    /** @param more  in front of the dive's own fields */
    void add(const Dive &dive, const Fields &more = {})
    {
        if (!m_document)
            return;
        Fields fields = more;
        append(fields, fieldsOf(dive));
        m_document->add(fields);
        flushOutput();
    }

private:
    std::optional<GrowingDocument> m_document;
};

// dive

/** As high as leaves room for the summary above and for the prompt. */
PlotStyle plotStyle(qsizetype summaryLines, Units units)
{
    constexpr int kWidest = 120;
    constexpr int kUsualWidth = 80;
    constexpr int kLowest = 6;
    constexpr int kHighest = 40;
    constexpr int kOtherLines = 5; // above the plot, its axis and labels, the prompt
    const TextStyle text = outputStyle();
    PlotStyle style{.utf8 = text.utf8, .units = units};
    style.width = text.width == TextStyle::kAnyWidth ? kUsualWidth : std::min(text.width, kWidest);
    if (const int height = outputHeight(); height > 0)
        style.height = std::clamp(height - int(summaryLines) - kOtherLines, kLowest, kHighest);
    return style;
}

/** A saved dive has what the diver added. */
QList<Labelled> addedTo(const LogbookEntry &entry)
{
    QList<Labelled> added;
    for (const auto &[label, text] :
         {std::pair(u"Place"_s, entry.place), {u"Notes"_s, entry.notes}}) {
        if (!text.isEmpty())
            added.append({label, safeText(text.simplified())});
    }
    return added;
}

/** Dives as they are shown one below the other, or drawn into files. */
class DiveReport
{
public:
    DiveReport(const Options &options, bool samples, const QString &plot);

    /** @throws Failure  if it is known already that it cannot be done */
    void check() const;
    void begin(const Fields &head, qsizetype dives);
    void add(const Dive &dive, const LogbookEntry *saved = nullptr);

private:
    [[nodiscard]] QString text(const Dive &dive, const QList<Labelled> &more) const;

    Units m_units;
    bool m_json;
    bool m_samples;
    QString m_plot;
    std::optional<DiveWriter> m_pictures;
    DiveDocument m_document;
    bool m_isFirst = true;
};

DiveReport::DiveReport(const Options &options, bool samples, const QString &plot)
    : m_units(options.units.value_or(Units::Metric)),
      m_json(options.json),
      m_samples(samples),
      m_plot(plot)
{
    if (m_plot.isEmpty())
        return;
    const FileFormat format = formatOfFile(m_plot).value_or(FileFormat::Svg);
    m_pictures.emplace(DiveWriter::Target{.name = m_plot, .format = format, .units = m_units});
}

void DiveReport::check() const
{
    if (!m_pictures)
        return;
    const auto format = formatOfFile(m_plot);
    const bool isNamed = !QFileInfo(m_plot).suffix().isEmpty() && !m_plot.endsWith(u'/');
    if (isNamed && !(format && isPicture(*format)) && !m_pictures->isResult()) {
        throw Failure{ExitCode::UsageError, u"\"%1\" is no name of a picture"_s.arg(m_plot),
                      u"It has to end with .svg, .png or .pdf."_s};
    }
    m_pictures->check(m_json);
}

void DiveReport::begin(const Fields &head, qsizetype dives)
{
    if (m_pictures)
        m_pictures->checkCount(dives);
    if (m_json)
        m_document.begin(head);
}

QString DiveReport::text(const Dive &dive, const QList<Labelled> &more) const
{
    QString summary = diveSummary(dive, m_units, more);
    if (m_pictures)
        return summary;
    const QString picture = m_samples ? samplesTable(dive, m_units)
                                      : profilePlot(dive, plotStyle(summary.count(u'\n'), m_units));
    return summary + (picture.isEmpty() ? QString() : u'\n' + picture);
}

void DiveReport::add(const Dive &dive, const LogbookEntry *saved)
{
    QList<Labelled> more;
    if (saved)
        more = addedTo(*saved);
    if (m_pictures) {
        m_pictures->add(dive, saved ? saved->id : 0);
        if (m_pictures->isResult())
            return;
        more.append({u"Picture"_s, m_pictures->files().constLast()});
    }
    if (m_json)
        return m_document.add(dive, saved ? fieldsOf(*saved) : Fields());
    print((std::exchange(m_isFirst, false) ? QString() : u"\n"_s) + text(dive, more));
    flushOutput();
}

class ReadDives : public Command
{
public:
    ReadDives() : Command("dive", "Show dives and draw their profiles") { }

    void declare(Arguments &arguments) override
    {
        arguments.argument(
            "N", m_names,
            "Number of the dive, or several, such as 1,5-9; or ID of a saved one, @12",
            checkDiveNames);
        arguments.flag("--samples", m_samples, "Print a table of the samples instead of the plot");
        arguments.option("--plot", "FILE", m_plot,
                         "Draw a picture instead: .svg, .png or .pdf; in a folder, one each");
        m_choice.declareWithFlag(arguments);
    }

    [[nodiscard]] bool usesComputer() const override { return !m_choice.isSaved(); }
    [[nodiscard]] bool drawsPictures() const override { return !m_plot.isEmpty(); }

    void run(const Options &options) const override
    {
        DiveReport report(options, m_samples, m_plot);
        report.check();
        if (m_choice.isSaved())
            showSaved(report, options);
        else
            showLive(report, options);
    }

private:
    void showSaved(DiveReport &report, const Options &options) const
    {
        SavedDives saved(m_choice, options);
        const auto entries = saved.named(diveNamesIn(m_names));
        report.begin(saved.head(), entries.size());
        for (const LogbookEntry &each : entries)
            report.add(saved.store().dive(each.id).dive, &each);
    }

    void showLive(DiveReport &report, const Options &options) const
    {
        m_choice.requireNone(u"Add --saved."_s);
        const Numbers numbers = numbersToRead(m_names);
        Runner runner(options);
        Download download(runner);
        download.want(numbers);
        download.onBegin = [&](const auto &wanted) {
            const Fields head = documents::dives(runner.identity());
            report.begin(documents::withDevice(runner.device(), head), wanted.size());
        };
        download.onDive = [&](const Dive &dive) { report.add(dive); };
        download.run();
    }

    QStringList m_names;
    bool m_samples = false;
    QString m_plot;
    SavedChoice m_choice;
};

// dives

class ReadAllDives : public DiveList
{
public:
    ReadAllDives() : DiveList("dives", "List all dives with their depths") { }

private:
    void showSaved(const SavedChoice &choice, const Options &options) const override
    {
        SavedDives saved(choice, options);
        const auto entries = saved.all();
        if (!options.json) {
            print(savedDivesText(entries, saved, options.units.value_or(Units::Metric)));
            return;
        }
        DiveDocument document;
        document.begin(saved.head());
        for (const LogbookEntry &each : entries)
            document.add(saved.store().dive(each.id).dive, fieldsOf(each));
    }

    void showLive(const Numbers &known, const Options &options) const override
    {
        Runner runner(options);
        const Units units = options.units.value_or(Units::Metric);
        DiveDocument document;
        Download download(runner, known);
        download.onBegin = [&](const QList<TidemarDiveHeader> &wanted) {
            const auto gaps = gapsIn(download.job().headers(), known);
            if (options.json) {
                const Fields head = documents::dives(runner.identity(), jsonOf(gaps));
                return document.begin(documents::withDevice(runner.device(), head));
            }
            warnAbout(gaps);
            print(wanted.isEmpty() ? noDivesText(!known.isEmpty()) : divesHeading(units));
        };
        download.onDive = [&](const Dive &dive) {
            if (options.json)
                return document.add(dive);
            print(divesRow(dive, units));
            flushOutput();
        };
        download.run();
    }
};

} // namespace

void addDives(Commands &commands)
{
    commands.push_back(std::make_unique<ReadDives>());
    commands.push_back(std::make_unique<ReadAllDives>());
}
