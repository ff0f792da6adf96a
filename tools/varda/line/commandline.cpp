// SPDX-License-Identifier: MIT
#include "line/commandline.h"

#include "commands/commands.h"
#include "line/arguments.h"
#include "line/command.h"
#include "line/defaults.h"
#include "line/exitstatuses.h"
#include "line/grammar/completion.h"
#include "line/grammar/grammar.h"
#include "line/helptext.h"
#include "line/usage.h"
#include "output/terminal.h"
#include "run/failure.h"
#include "run/interrupt.h"
#include "run/recording.h"
#include "run/simulation.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLongestTimeout = 3600;
constexpr int kMostRetries = 1000;
constexpr auto kVersion = "varda " VARDA_VERSION;

std::string validDevice(const std::string &text)
{
    const bool valid = !QString::fromLocal8Bit(text.c_str()).trimmed().isEmpty();
    return valid ? std::string() : "an address or a name is missing";
}

QString checkSpeed(const QString &text)
{
    bool isNumber = false;
    const double speed = text.toDouble(&isNumber);
    return isNumber && speed >= 0 ? QString() : u"\"%1\" is not a number from 0 on"_s.arg(text);
}

/** As CLI11 wants them, the last one first. To CLI11 the value of "--known=" is the next one. */
std::vector<std::string> argumentsOf(int argc, const char *const *argv)
{
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) {
        std::string text = argv[i];
        const bool isEmpty = text.size() > 3 && text.starts_with("--") && text.back() == '='
                             && text.find('=') == text.size() - 1;
        if (isEmpty)
            text.pop_back();
        arguments.push_back(text);
        if (isEmpty)
            arguments.emplace_back();
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

/** In lines that fit everywhere. */
std::string exitStatusText()
{
    constexpr std::size_t kWidth = 80;
    std::string text;
    std::string line = "Exit status:";
    for (const ExitStatus &status : kExitStatuses) {
        const bool isLast = &status == &kExitStatuses.back();
        const std::string part = std::to_string(int(status.code)) + ' ' + status.meaning
                                 + (isLast ? "." : ";");
        if (line.size() + 1 + part.size() > kWidth) {
            text += line + '\n';
            line = part;
        } else {
            line += ' ' + part;
        }
    }
    return text + line;
}

/** What the process ends with after @p work, whose failure is printed. */
int exitStatusOf(const std::function<void()> &work)
{
    try {
        work();
        return int(ExitCode::Ok);
    } catch (const Failure &failure) {
        printError(failure);
        return int(failure.code);
    }
}

} // namespace

class CommandLine::Private
{
public:
    Private();

    std::optional<int> parse(int argc, const char *const *argv);
    [[nodiscard]] Grammar grammar() { return grammarOf(m_app); }

    Options options;                 ///< as far as they are given
    const Command *chosen = nullptr; ///< the one to run

private:
    void addGlobalOptions();
    void takeGlobalOptions();
    void add(CLI::App &parent, Command &added);
    void addHelpAndVersion();
    [[nodiscard]] QString completion();
    [[nodiscard]] const CLI::App &commandOf(const std::vector<std::string> &names) const;
    void printUsageError(const CLI::ParseError &error) const;

    CLI::App m_app;
    Commands m_commands;
    // As written
    std::string m_device;
    QString m_mode;
    QString m_units;
    std::string m_scenario;
    int m_timeout = 0;
    int m_retries = 0;
    bool m_noRetry = false;
    QString m_shell;
    std::vector<std::string> m_helpOn;
};

CommandLine::Private::Private()
    : m_app("Talks to diving computers over Bluetooth Low Energy.", "varda"),
      m_commands(allCommands())
{
    m_app.formatter(helpFormatter());
    m_app.set_help_flag("-h,--help", "Show this text");
    m_app.set_version_flag("-V,--version", kVersion, "Show the version");
    m_app.require_subcommand(1);
    // So that an option may stand behind the command as well.
    m_app.fallthrough();
    addGlobalOptions();
    for (const auto &each : m_commands)
        add(m_app, *each);
    addHelpAndVersion();
    // The commands would take it over.
    m_app.footer(exitStatusText());
}

void CommandLine::Private::addGlobalOptions()
{
    m_app.add_option("--device", m_device, "The computer to talk to, by its address or name")
        ->type_name("DEVICE")
        ->check(CLI::Validator(validDevice, ""));
    Arguments arguments(m_app);
    arguments.choice("--mode", "MODE", m_mode, "gatt", "sps",
                     "Use this kind of serial link only, gatt or sps");
    m_app.add_option("--timeout", m_timeout, "Seconds to find and connect (default 60, scan 10)")
        ->type_name("SECONDS")
        ->check(CLI::Range(1, kLongestTimeout).description(""));
    m_app.add_option("--retries", m_retries, "How often to try again in a row (default 3)")
        ->type_name("N")
        ->check(CLI::Range(0, kMostRetries).description(""));
    m_app.add_flag("--no-retry", m_noRetry, "Do not try again, same as --retries 0");
    m_app.add_option("--simulate", m_scenario, "Talk to a simulated computer: a file or a name")
        ->type_name("[SCENARIO]")
        ->expected(0, 1);
    arguments.choice("--units", "UNITS", m_units, "metric", "imperial",
                     "Units of depths and temperatures, metric or imperial");
    arguments.option("--replay", "FILE", options.replay,
                     "Talk to a computer that answers as in a recorded FILE");
    arguments.option("--speed", "N", options.speed,
                     "How fast: 1 as it was (default), 0 without pauses", checkSpeed);
    m_app.add_flag("--strict", options.strict, "Fail if anything differs from that file");
    arguments.option("--record", "FILE", options.record,
                     "Write what happens on the link to FILE, for a report");
    m_app.add_flag("--unredacted", options.unredacted,
                   "Keep names, numbers and texts in that file");
    m_app.add_flag("--json", options.json, "Print JSON");
    m_app.add_flag("--verbose", options.verbose, "Show on stderr what is sent and received");
}

void CommandLine::Private::takeGlobalOptions()
{
    options.device = QString::fromLocal8Bit(m_device.c_str()).trimmed();
    if (!m_mode.isEmpty())
        options.mode = m_mode == "sps"_L1 ? BleMode::Sps : BleMode::Gatt;
    options.units = unitsIn(m_units);
    if (m_timeout > 0)
        options.timeout = std::chrono::seconds(m_timeout);
    if (m_noRetry)
        options.retries = 0;
    else if (m_app.count("--retries") > 0)
        options.retries = m_retries;
    if (options.unredacted && options.record.isEmpty()) {
        throw Failure{ExitCode::UsageError, u"\"--unredacted\" needs \"--record FILE\""_s, {}};
    }
    if (options.replay.isEmpty() && (options.strict || !options.speed.isEmpty())) {
        throw Failure{
            ExitCode::UsageError, u"\"--strict\" and \"--speed\" need \"--replay FILE\""_s, {}};
    }
    if (!options.replay.isEmpty() && !options.record.isEmpty()) {
        throw Failure{ExitCode::UsageError,
                      u"a replay cannot be recorded, because it is no recording of a computer"_s,
                      {}};
    }
    if (!options.replay.isEmpty() && m_app.count("--simulate") > 0) {
        throw Failure{ExitCode::UsageError, u"\"--replay\" excludes \"--simulate\""_s, {}};
    }
    if (m_app.count("--simulate") > 0)
        options.simulate = QString::fromLocal8Bit(m_scenario.c_str());
}

void CommandLine::Private::add(CLI::App &parent, Command &added)
{
    CLI::App *const app = parent.add_subcommand(added.name(), added.description());
    app->callback([this, app, &added] {
        // That of a command's command came before.
        if (app->get_subcommands().empty())
            chosen = &added;
    });
    Arguments arguments(*app);
    added.declare(arguments);
    for (const auto &each : added.subcommands())
        add(*app, *each);
    if (added.needsSubcommand())
        app->require_subcommand(1);
}

void CommandLine::Private::addHelpAndVersion()
{
    Arguments completion(
        *m_app.add_subcommand("completion", "Print what makes a shell complete the command line"));
    completion.argument("SHELL", m_shell, {"bash", "zsh", "fish"}, "bash, zsh or fish");
    m_app.add_subcommand("help", "Show this text, or how to use a command")
        ->add_option("COMMAND", m_helpOn, "The command, such as dives or layouts get")
        ->type_name("[COMMAND]");
    m_app.add_subcommand("version", "Show the version");
}

QString CommandLine::Private::completion()
{
    if (m_shell == "bash"_L1)
        return bashCompletion(grammar());
    return m_shell == "zsh"_L1 ? zshCompletion(grammar()) : fishCompletion(grammar());
}

/** @throws Failure */
const CLI::App &CommandLine::Private::commandOf(const std::vector<std::string> &names) const
{
    const CLI::App *command = &m_app;
    for (const std::string &name : names) {
        const auto found = command->get_subcommands(
            [&name](const CLI::App *each) { return each->get_name() == name; });
        if (found.empty())
            throw noSuchCommand(*command, QString::fromLocal8Bit(name.c_str()));
        command = found.front();
    }
    return *command;
}

void CommandLine::Private::printUsageError(const CLI::ParseError &error) const
{
    printError(usageFailure(m_app, error));
    const CLI::App &command = *typedCommand(m_app);
    const bool isMissing = dynamic_cast<const CLI::RequiredError *>(&error) != nullptr;
    if (isMissing && m_app.remaining(true).empty())
        printHint(QString::fromStdString(commandList(command, {})));
}

std::optional<int> CommandLine::Private::parse(int argc, const char *const *argv)
{
    try {
        m_app.parse(argumentsOf(argc, argv));
        takeGlobalOptions();
        if (m_app.got_subcommand("help"))
            print(QString::fromStdString(helpText(commandOf(m_helpOn))));
        else if (m_app.got_subcommand("version"))
            print(QString::fromLatin1(kVersion) + u'\n');
        else if (m_app.got_subcommand("completion"))
            print(completion());
        else
            return std::nullopt;
        flushOutput();
        return int(ExitCode::Ok);
    } catch (const CLI::Success &success) {
        std::ostringstream text;
        m_app.exit(success, text);
        return exitStatusOf([&text] {
            print(QString::fromStdString(text.str()));
            flushOutput();
        });
    } catch (const CLI::ParseError &error) {
        printUsageError(error);
        return int(ExitCode::UsageError);
    } catch (const Failure &failure) {
        printError(failure);
        return int(failure.code);
    }
}

CommandLine::CommandLine() : d(std::make_unique<Private>()) { }
CommandLine::~CommandLine() = default;

const Options &CommandLine::options() const
{
    return d->options;
}

Grammar CommandLine::grammar() const
{
    return d->grammar();
}

std::optional<int> CommandLine::parse(int argc, const char *const *argv)
{
    return d->parse(argc, argv);
}

bool CommandLine::drawsPictures() const
{
    return d->chosen->drawsPictures();
}

int CommandLine::run() const
{
    const Interrupt interrupt;
    const int status = exitStatusOf([this] {
        Options options = d->options;
        Defaults().complete(options);
        if (!options.record.isEmpty() && !d->chosen->usesComputer()) {
            throw Failure{ExitCode::UsageError,
                          u"there is nothing to record, because no computer is used"_s,
                          {}};
        }
        const Recording recording(options);
        std::unique_ptr<Simulation> simulation;
        if (options.simulates() && d->chosen->usesComputer())
            simulation = std::make_unique<Simulation>(options);
        else if (options.simulate) // it could be a misplaced number of a dive
            Simulation::require(*options.simulate);
        d->chosen->run(options);
        clearStatus();
        flushOutput();
        if (simulation)
            simulation->finish();
    });
    // After a failure, what there was of a result is still to be written.
    if (status != int(ExitCode::Ok))
        std::ignore = exitStatusOf(flushOutput);
    return status;
}
