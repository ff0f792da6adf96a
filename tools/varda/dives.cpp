// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "commandline.h"
#include "commands.h"
#include "divereader.h"
#include "divetext.h"
#include "files.h"
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
            return m_reader.dive(header, place());
        } catch (const Failure &failure) {
            if (failure.code != ExitCode::JobFailed || m_headers.size() == 1
                || !m_connection.isUsable())
                throw;
            printError(failure);
            return std::nullopt;
        }
    }

    [[nodiscard]] QString place() const
    {
        QString text = u"%1 of %2"_s.arg(m_at + 1).arg(m_headers.size());
        if (m_at > 0) {
            const double left = double(m_time.elapsed()) / 1000 / double(m_at)
                                * double(m_headers.size() - m_at);
            text += u", %1 left"_s.arg(durationText(left));
        }
        return text;
    }

    const Connection &m_connection;
    DiveReader m_reader;
    QList<TidemarDiveHeader> m_headers;
    qsizetype m_at = 0;
    QElapsedTimer m_time;
};

Fields headOf(const Connection &connection)
{
    return {{"device"_L1, fieldsOf(connection.device())},
            {"computerModel"_L1, connection.session().computerModelStr()}};
}

void downloadJson(Connection &connection, const QList<TidemarDiveHeader> &headers)
{
    GrowingDocument document(headOf(connection), "dives"_L1);
    Download(connection, headers).run([&](const Dive &dive) {
        document.add(fieldsOf(dive));
        flushOutput();
    });
}

// logbook

QString logbookText(const QList<TidemarDiveHeader> &headers, const VardaSession &session)
{
    Columns columns({{u"NUMBER"_s},
                     {u"BEGIN"_s, Columns::Side::Left},
                     {u"INTERVAL"_s},
                     {u"CIRCUIT"_s, Columns::Side::Left},
                     {u"GASES"_s, Columns::Side::Left}});
    for (const TidemarDiveHeader &header : headers) {
        const QString begin = beginText(header);
        columns.add({QString::number(header.diveNumber), begin.isEmpty() ? u"-"_s : begin,
                     u"%1 s"_s.arg(header.sampleInterval), circuitText(header),
                     gasNames(TidemarDiveConverter::toDive(header, {}, session).gases)});
    }
    return columns.text();
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
    if (options.json) {
        Fields fields = headOf(connection);
        fields.emplace_back("diveHeaders"_L1, listOf(headers, [](const TidemarDiveHeader &each) {
                                return fieldsOf(each);
                            }));
        print(fields);
    } else if (headers.isEmpty()) {
        print(nothingText(known));
    } else {
        print(logbookText(headers, connection.session()));
    }
}

// dives

void dives(const Options &options, const Numbers &known)
{
    Connection connection(options);
    DiveReader reader(connection);
    reader.identifyWhole();
    const auto headers = reader.headers(known);
    if (options.json)
        return downloadJson(connection, headers);
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

QString wholeText(const Dive &dive, Units units, bool samples)
{
    constexpr int kWidest = 120;
    const PlotStyle style{
        .width = std::min(outputWidth(), kWidest), .utf8 = speaksUtf8(), .units = units};
    const QString picture = samples ? samplesTable(dive, units) : profilePlot(dive, style);
    return diveSummary(dive, units) + (picture.isEmpty() ? QString() : u'\n' + picture);
}

void dive(const Options &options, const Numbers &numbers, bool samples)
{
    Connection connection(options);
    DiveReader reader(connection);
    reader.identifyWhole();
    const auto headers = chosen(reader.headers({}), numbers);
    if (options.json)
        return downloadJson(connection, headers);
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
