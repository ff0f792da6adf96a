// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "commands/numbergaps.h"
#include "line/arguments.h"
#include "line/commandline.h"
#include "output/divetext.h"
#include "output/plot.h"
#include "output/records.h"
#include "output/tables.h"
#include "output/terminal.h"
#include "output/text.h"
#include "run/files.h"
#include "run/jobfailure.h"
#include "run/runner.h"

#include <varda/tidemardiveconverter.h>

#include <QtCore/qelapsedtimer.h>
#include <QtCore/qfileinfo.h>
#include <QtCore/qregularexpression.h>

using namespace Qt::StringLiterals;

namespace {

using Numbers = QList<std::uint16_t>;

/** Reads dives, one after the other; what becomes of them is somebody else's. */
class Download
{
public:
    explicit Download(Runner &runner, const Numbers &known = {})
        : m_runner(runner), m_job(runner.computer().downloadDives(known)), m_run(m_job)
    {
        QObject::connect(m_job, &DownloadJob::headersRead, &m_run,
                         [this](const QList<TidemarDiveHeader> &wanted) {
                             m_count = wanted.size();
                             m_time.start();
                             m_run.attempt([&] { begin(wanted); });
                         });
        QObject::connect(m_job, &DownloadJob::diveRead, &m_run, [this](const Dive &dive) {
            next();
            m_run.attempt([&] { onDive(dive); });
        });
        QObject::connect(m_job, &DownloadJob::diveDamaged, &m_run,
                         [this](std::uint16_t, VardaJob::Error error, const QString &text) {
                             next();
                             onDamaged({exitCodeOf(error), text, kNearer});
                         });
    }

    /** The headers are there. */
    std::function<void(const QList<TidemarDiveHeader> &wanted)> onBegin;
    std::function<void(const Dive &)> onDive;

    [[nodiscard]] DownloadJob &job() { return *m_job; }

    /**
     * A dive that comes damaged does not keep the others from coming.
     *
     * @throws Failure
     */
    void run()
    {
        m_runner.prepare(*m_job);
        m_runner.setStatus(u"Reading the logbook"_s);
        m_run.wait([this] { showProgress(); });
        if (m_damaged > 0) {
            throw Failure{ExitCode::JobFailed,
                          u"%1 of %2 dives could not be read"_s.arg(m_damaged).arg(m_count),
                          kNearer};
        }
    }

private:
    static inline const QString kNearer = u"Try again, nearer to the computer."_s;

    void begin(const QList<TidemarDiveHeader> &wanted)
    {
        m_wanted = wanted;
        if (m_runner.identity().serialNumber.isEmpty())
            printWarning(u"the serial number could not be read"_s);
        onBegin(wanted);
    }

    void onDamaged(const Failure &failure)
    {
        ++m_damaged;
        if (m_count == 1)
            m_run.attempt([&] { throw Failure(failure); });
        else
            printError(failure);
    }

    void next()
    {
        ++m_at;
        m_begin = seconds();
    }

    [[nodiscard]] double seconds() const { return double(m_time.elapsed()) / 1000; }

    void showProgress() const
    {
        const QString bytes = bytesText(double(m_job->bytes()));
        if (m_count == 0) {
            showStatus(u"Reading the logbook, "_s + bytes);
        } else if (m_at < m_count) {
            showStatus(
                u"Reading dive %1, %2, %3"_s.arg(m_wanted[m_at].diveNumber).arg(place(), bytes));
        }
    }

    [[nodiscard]] QString place() const
    {
        QString text = u"%1 of %2"_s.arg(m_at + 1).arg(m_count);
        if (m_at > 0) {
            const double left = secondsLeft(m_begin, m_at, m_count - m_at, seconds() - m_begin);
            text += u", %1 left"_s.arg(durationText(left));
        }
        return text;
    }

    Runner &m_runner;
    DownloadJob *m_job;
    JobRun m_run;
    QList<TidemarDiveHeader> m_wanted;
    qsizetype m_count = 0;
    qsizetype m_damaged = 0;
    qsizetype m_at = 0;
    double m_begin = 0; ///< of the dive that is read
    QElapsedTimer m_time;
};

Fields headOf(const Runner &runner)
{
    return {{"device"_L1, fieldsOf(runner.device())},
            {"computerModel"_L1, modelText(runner.identity())}};
}

/** The numbers that are missing in the logbook. */
QList<NumberGap> gapsIn(const QList<TidemarDiveHeader> &headers, const Numbers &known)
{
    Numbers listed;
    for (const TidemarDiveHeader &header : headers)
        listed.append(header.diveNumber);
    return numberGaps(listed, known);
}

std::pair<QLatin1StringView, Json> fieldOf(const QList<NumberGap> &gaps)
{
    return {"gaps"_L1, listOf(gaps, [](const NumberGap &gap) {
                return Fields{{"first"_L1, gap.first}, {"last"_L1, gap.last}};
            })};
}

/** The computer does not say how many dives there are; a gap is all that one can see. */
void warnOf(const QList<NumberGap> &gaps)
{
    if (gaps.isEmpty())
        return;
    const bool isOne = gaps.size() == 1 && gaps.front().first == gaps.front().last;
    printWarning(u"the logbook has no %1 %2: deleted, or lost on the way"_s.arg(
        isOne ? u"dive"_s : u"dives"_s, gapsText(gaps)));
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

// logbook

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

QString nothingText(const Numbers &known)
{
    return known.isEmpty() ? u"There is no dive in the logbook.\n"_s
                           : u"There is no new dive in the logbook.\n"_s;
}

void logbook(const Options &options, const Numbers &known)
{
    Runner runner(options);
    auto *const job = runner.computer().readLogbook(known);
    const auto headers = runner.resultOf(job, u"Reading the logbook"_s, [job] {
        showStatus(u"Reading the logbook, "_s + bytesText(double(job->bytes())));
    });
    const auto gaps = gapsIn(headers, known);
    if (options.json) {
        Fields fields = headOf(runner);
        fields.push_back(fieldOf(gaps));
        fields.emplace_back("diveHeaders"_L1, listOf(headers, [](const TidemarDiveHeader &each) {
                                return fieldsOf(each);
                            }));
        return print(fields);
    }
    warnOf(gaps);
    print(headers.isEmpty() ? nothingText(known) : logbookText(headers));
}

// dives

/** What the computer has but for the known ones, which it may have sent as well. */
QList<TidemarDiveHeader> unknown(QList<TidemarDiveHeader> headers, const Numbers &known)
{
    headers.removeIf([&known](const TidemarDiveHeader &each) {
        return std::ranges::binary_search(known, each.diveNumber);
    });
    return headers;
}

void dives(const Options &options, const Numbers &known)
{
    Runner runner(options);
    const Units units = options.units.value_or(Units::Metric);
    DiveDocument document;
    Download download(runner, known);
    download.onBegin = [&](const QList<TidemarDiveHeader> &wanted) {
        const auto gaps = gapsIn(unknown(download.job().headers(), known), known);
        if (options.json) {
            Fields head = headOf(runner);
            head.push_back(fieldOf(gaps));
            return document.begin(head);
        }
        warnOf(gaps);
        print(wanted.isEmpty() ? nothingText(known) : divesHeading(units));
    };
    download.onDive = [&](const Dive &dive) {
        if (options.json)
            return document.add(dive);
        print(divesRow(dive, units));
        flushOutput();
    };
    download.run();
}

// dive

/** @throws Failure  if one of them is not in the logbook */
void requireAll(const Numbers &numbers, const QList<TidemarDiveHeader> &headers)
{
    for (const std::uint16_t number : numbers) {
        if (std::ranges::find(headers, number, &TidemarDiveHeader::diveNumber) == headers.end()) {
            throw Failure{ExitCode::JobFailed, u"there is no dive %1 in the logbook"_s.arg(number),
                          u"\"varda logbook\" lists what there is."_s};
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

void dive(const Options &options, const Numbers &numbers, bool samples)
{
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
    download.onDive = [&](const Dive &each) {
        if (options.json)
            return document.add(each);
        print((isFirst ? QString() : u"\n"_s) + wholeText(each, units, samples));
        flushOutput();
        isFirst = false;
    };
    download.run();
}

/** They may be in a file, or come from standard input; both are read only when it is their turn. */
std::string validKnown(const std::string &text)
{
    const QFileInfo file(QString::fromLocal8Bit(text.c_str()));
    if (text.empty() || text == "-" || numbersIn(text) || (file.exists() && !file.isDir()))
        return {};
    return "\"" + text + "\" is no list of dive numbers such as 1,2,5-9, and no file";
}

/** @throws Failure */
std::string listIn(const std::string &file)
{
    const QString name = file == "-" ? u"/dev/stdin"_s : QString::fromLocal8Bit(file.c_str());
    const QString text = QString::fromUtf8(readFile(name)).simplified();
    static const QRegularExpression kBetween(u"[ ,]+"_s);
    const std::string list = text.split(kBetween, Qt::SkipEmptyParts).join(u',').toStdString();
    if (!list.empty() && !numbersIn(list)) {
        throw Failure{ExitCode::UsageError,
                      u"--known: \"%1\" has no list of dive numbers such as 1,2,5-9"_s.arg(
                          QString::fromLocal8Bit(file.c_str())),
                      {}};
    }
    return list;
}

/** @throws Failure */
Numbers knownIn(std::vector<std::string> texts)
{
    for (std::string &text : texts) {
        if (!text.empty() && !numbersIn(text))
            text = listIn(text);
    }
    return numbersIn(texts);
}

void addKnown(CLI::App *command, std::vector<std::string> &known)
{
    command->add_option("--known", known, "Leave out these dives, such as 1,2,5-9; or a file, or -")
        ->type_name("NUMBERS")
        ->check(CLI::Validator(validKnown, ""));
}

} // namespace

void addDives(CommandLine &line)
{
    using Texts = std::vector<std::string>;
    const auto known = std::make_shared<Texts>();
    addKnown(line.add("logbook", "List the dives in the logbook",
                      [known](const Options &options) { logbook(options, knownIn(*known)); }),
             *known);

    const auto numbers = std::make_shared<Texts>();
    const auto samples = std::make_shared<bool>(false);
    CLI::App *const command = line.add("dive", "Read dives and draw their profiles",
                                       [numbers, samples](const Options &options) {
                                           dive(options, numbersIn(*numbers), *samples);
                                       });
    command->add_option("N", *numbers, "Its number, or several such as 3 or 1,5-9")
        ->type_name("N")
        ->required()
        ->check(numberList());
    command->add_flag("--samples", *samples, "A table of the samples instead of the plot");

    addKnown(line.add("dives", "Read all dives",
                      [known](const Options &options) { dives(options, knownIn(*known)); }),
             *known);
}
