// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "commands/download.h"
#include "commands/numbergaps.h"
#include "line/arguments.h"
#include "line/divenumbers.h"
#include "line/knowndives.h"
#include "output/divetext.h"
#include "output/plot.h"
#include "output/records.h"
#include "output/terminal.h"
#include "run/runner.h"

using namespace Qt::StringLiterals;

namespace {

using Numbers = QList<std::uint16_t>;

Fields headOf(const Runner &runner)
{
    return {{"device"_L1, fieldsOf(runner.device())},
            {"computerModel"_L1, modelText(runner.identity())}};
}

/** Dives as they come, below what is there before them. */
class DiveDocument
{
public:
    void begin(const Fields &head) { m_document.emplace(head, "dives"_L1); }
    void add(const Dive &dive)
    {
        if (!m_document)
            return;
        m_document->add(fieldsOf(dive));
        flushOutput();
    }

private:
    std::optional<GrowingDocument> m_document;
};

// dive

/** @throws Failure  if one of them is not in the logbook */
void requireAll(const Numbers &numbers, const QList<TidemarDiveHeader> &headers)
{
    for (const std::uint16_t number : numbers) {
        if (std::ranges::find(headers, number, &TidemarDiveHeader::diveNumber) == headers.end()) {
            throw Failure{ExitCode::JobFailed, u"there is no dive %1 in the logbook"_s.arg(number),
                          u"\"varda logbook\" lists the dives."_s};
        }
    }
}

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

QString wholeText(const Dive &dive, Units units, bool samples)
{
    const QString summary = diveSummary(dive, units);
    const QString picture = samples ? samplesTable(dive, units)
                                    : profilePlot(dive, plotStyle(summary.count(u'\n'), units));
    return summary + (picture.isEmpty() ? QString() : u'\n' + picture);
}

class ReadDives : public Command
{
public:
    ReadDives() : Command("dive", "Read dives and draw their profiles") { }

    void declare(Arguments &arguments) override
    {
        arguments.argument("N", m_numbers, "Number of the dive, or several, such as 1,5-9",
                           checkNumbers);
        arguments.flag("--samples", m_samples, "Print a table of the samples instead of the plot");
    }

    void run(const Options &options) const override
    {
        const Numbers numbers = numbersIn(m_numbers);
        Runner runner(options);
        const Units units = options.units.value_or(Units::Metric);
        bool isFirst = true;
        DiveDocument document;
        Download download(runner);
        download.job().setWanted([&numbers](const TidemarDiveHeader &header) {
            return std::ranges::binary_search(numbers, header.diveNumber);
        });
        download.onBegin = [&](const QList<TidemarDiveHeader> &wanted) {
            requireAll(numbers, wanted);
            if (options.json)
                document.begin(headOf(runner));
        };
        download.onDive = [&](const Dive &dive) {
            if (options.json)
                return document.add(dive);
            print((isFirst ? QString() : u"\n"_s) + wholeText(dive, units, m_samples));
            flushOutput();
            isFirst = false;
        };
        download.run();
    }

private:
    QStringList m_numbers;
    bool m_samples = false;
};

// dives

/** What the computer has but for the known ones, which it may have sent as well. */
QList<TidemarDiveHeader> unknown(QList<TidemarDiveHeader> headers, const Numbers &known)
{
    headers.removeIf([&known](const TidemarDiveHeader &each) {
        return std::ranges::binary_search(known, each.diveNumber);
    });
    return headers;
}

class ReadAllDives : public Command
{
public:
    ReadAllDives() : Command("dives", "Read all dives") { }

    void declare(Arguments &arguments) override { m_known.declare(arguments); }

    void run(const Options &options) const override
    {
        const Numbers known = m_known.numbers();
        Runner runner(options);
        const Units units = options.units.value_or(Units::Metric);
        DiveDocument document;
        Download download(runner, known);
        download.onBegin = [&](const QList<TidemarDiveHeader> &wanted) {
            const auto gaps = gapsIn(unknown(download.job().headers(), known), known);
            if (options.json) {
                Fields head = headOf(runner);
                head.emplace_back("gaps"_L1, jsonOf(gaps));
                return document.begin(head);
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

private:
    KnownDives m_known;
};

} // namespace

void addDives(Commands &commands)
{
    commands.push_back(std::make_unique<ReadDives>());
    commands.push_back(std::make_unique<ReadAllDives>());
}
