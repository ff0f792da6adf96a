// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "commandline.h"
#include "commands.h"
#include "divereader.h"
#include "divetext.h"
#include "files.h"
#include "numbergaps.h"
#include "plot.h"
#include "records.h"
#include "terminal.h"
#include "text.h"

#include <varda/tidemardiveconverter.h>

#include <QtCore/qelapsedtimer.h>
#include <QtCore/qfileinfo.h>
#include <QtCore/qregularexpression.h>

using namespace Qt::StringLiterals;

namespace {

using Numbers = QList<std::uint16_t>;

/** One after the other, each told to @p onDive when it is there. */
class Download
{
public:
    Download(Connection &connection, const QList<TidemarDiveHeader> &headers)
        : m_connection(connection), m_reader(connection), m_headers(headers)
    {
        m_time.start();
    }

    /**
     * A dive that comes damaged does not keep the others from coming.
     *
     * @throws Failure
     */
    void run(const std::function<void(const Dive &)> &onDive)
    {
        qsizetype failures = 0;
        for (m_at = 0; m_at < m_headers.size(); ++m_at) {
            if (const auto dive = read(m_headers[m_at]))
                onDive(*dive);
            else
                ++failures;
        }
        if (failures > 0) {
            throw Failure{ExitCode::JobFailed,
                          u"%1 of %2 dives could not be read"_s.arg(failures).arg(m_headers.size()),
                          u"Try again, nearer to the computer."_s};
        }
    }

private:
    std::optional<Dive> read(const TidemarDiveHeader &header)
    {
        try {
            m_begin = seconds();
            return m_reader.dive(header, [this] { return place(); });
        } catch (const Failure &failure) {
            if (failure.code != ExitCode::JobFailed || m_headers.size() == 1
                || !m_connection.isUsable())
                throw;
            printError(failure);
            return std::nullopt;
        }
    }

    [[nodiscard]] double seconds() const { return double(m_time.elapsed()) / 1000; }

    [[nodiscard]] QString place() const
    {
        QString text = u"%1 of %2"_s.arg(m_at + 1).arg(m_headers.size());
        if (m_at > 0) {
            const double left = secondsLeft(m_begin, m_at, m_headers.size() - m_at,
                                            seconds() - m_begin);
            text += u", %1 left"_s.arg(durationText(left));
        }
        return text;
    }

    const Connection &m_connection;
    DiveReader m_reader;
    QList<TidemarDiveHeader> m_headers;
    qsizetype m_at = 0;
    double m_begin = 0; ///< of the dive that is read
    QElapsedTimer m_time;
};

Fields headOf(const Connection &connection)
{
    return {{"device"_L1, fieldsOf(connection.device())},
            {"computerModel"_L1, connection.session().computerModelStr()}};
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

void downloadJson(Connection &connection, const QList<TidemarDiveHeader> &headers,
                  const Fields &head)
{
    GrowingDocument document(head, "dives"_L1);
    Download(connection, headers).run([&](const Dive &dive) {
        document.add(fieldsOf(dive));
        flushOutput();
    });
}

// logbook

QString logbookText(const QList<TidemarDiveHeader> &headers, const VardaSession &session)
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
                     gasNames(TidemarDiveConverter::toDive(header, {}, session).gases)});
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
    Connection connection(options);
    DiveReader reader(connection);
    reader.identify();
    const auto headers = reader.headers(known);
    const auto gaps = gapsIn(headers, known);
    if (options.json) {
        Fields fields = headOf(connection);
        fields.push_back(fieldOf(gaps));
        fields.emplace_back("diveHeaders"_L1, listOf(headers, [](const TidemarDiveHeader &each) {
                                return fieldsOf(each);
                            }));
        return print(fields);
    }
    warnOf(gaps);
    print(headers.isEmpty() ? nothingText(known) : logbookText(headers, connection.session()));
}

// dives

void dives(const Options &options, const Numbers &known)
{
    Connection connection(options);
    DiveReader reader(connection);
    reader.identifyWhole();
    const auto headers = reader.headers(known);
    const auto gaps = gapsIn(headers, known);
    if (options.json) {
        Fields head = headOf(connection);
        head.push_back(fieldOf(gaps));
        return downloadJson(connection, headers, head);
    }
    warnOf(gaps);
    if (headers.isEmpty())
        return print(nothingText(known));
    const Units units = options.units.value_or(Units::Metric);
    print(divesHeading(units));
    Download(connection, headers).run([units](const Dive &dive) {
        print(divesRow(dive, units));
        flushOutput();
    });
}

// dive

QList<TidemarDiveHeader> chosen(const QList<TidemarDiveHeader> &headers, const Numbers &numbers)
{
    QList<TidemarDiveHeader> result;
    for (const std::uint16_t number : numbers) {
        const auto header = std::ranges::find(headers, number, &TidemarDiveHeader::diveNumber);
        if (header == headers.end()) {
            throw Failure{ExitCode::JobFailed, u"there is no dive %1 in the logbook"_s.arg(number),
                          u"\"varda logbook\" lists what there is."_s};
        }
        result.append(*header);
    }
    return result;
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
    Connection connection(options);
    DiveReader reader(connection);
    reader.identifyWhole();
    const auto headers = chosen(reader.headers({}), numbers);
    if (options.json)
        return downloadJson(connection, headers, headOf(connection));
    const Units units = options.units.value_or(Units::Metric);
    bool isFirst = true;
    Download(connection, headers).run([&](const Dive &each) {
        print((isFirst ? QString() : u"\n"_s) + wholeText(each, units, samples));
        flushOutput();
        isFirst = false;
    });
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
