// SPDX-License-Identifier: MIT
#include "bluez/bluezdaemon.h"
#include "bluez/control.h"
#include "bluez/privatebus.h"
#include "device/scenario.h"
#include "radio/peripheral.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QSocketNotifier>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusError>

#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;
using namespace simulator;

namespace {

constexpr int kUsageError = 2;
constexpr int kCannotRun = 127; // as a shell says it

int fail(const QString &text)
{
    std::fprintf(stderr, "varda-simulator: %s\n", qPrintable(text));
    return kUsageError;
}

struct Options {
    QString scenarioFile;
    QString recordFile;
    Scenario::Overrides overrides;
    QStringList command;
    bool exitWithStdin = false;
    std::optional<QString> radio; // the adapter's address; empty for the first one
};

// "--radio" may stand without the address, which the parser does not know of any option.
QStringList arguments()
{
    QStringList list = QCoreApplication::arguments();
    const qsizetype radio = list.indexOf(u"--radio"_s);
    const qsizetype command = list.indexOf(u"--"_s);
    if (radio < 0 || (command >= 0 && command < radio))
        return list;
    const bool hasAddress = radio + 1 < list.size() && !list[radio + 1].startsWith(u'-');
    list[radio] += u'=' + (hasAddress ? list.takeAt(radio + 1) : QString());
    return list;
}

// Nothing if the arguments ask for no more than a text; the status is then that of the program.
std::optional<Options> parseArguments(int *status)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"A simulated diving computer: BlueZ's D-Bus API on a message bus of its own.\n\n"
        "With a COMMAND, runs it on that bus and exits with its status. Without one, prints\n"
        "DBUS_SYSTEM_BUS_ADDRESS=<address> and serves until it is stopped.\n\n"
        "With --radio, is a computer on the air instead, on one of this machine's adapters.\n\n"
        "Exit status: that of COMMAND; 2 after an error of its own; 127 when COMMAND cannot\n"
        "be started."_s);
    const QCommandLineOption help({u"h"_s, u"help"_s}, u"Show this text."_s);
    const QCommandLineOption scenario(
        u"scenario"_s, u"The devices to simulate; one healthy computer if not given."_s, u"FILE"_s);
    const QCommandLineOption model(u"model"_s, u"Make every computer a varda, tidemar or vskm."_s,
                                   u"MODEL"_s);
    const QCommandLineOption mode(u"mode"_s, u"Make every computer speak over gatt or sps."_s,
                                  u"MODE"_s);
    const QCommandLineOption record(
        u"record"_s, u"Write what happens to this file, one JSON object a line."_s, u"FILE"_s);
    const QCommandLineOption exitWithStdin(u"exit-with-stdin"_s,
                                           u"Stop when standard input is closed."_s);
    const QCommandLineOption radio(u"radio"_s,
                                   u"Go on the air, on the adapter of that address or the first."_s,
                                   u"[ADAPTER]"_s);
    const QCommandLineOption daemonVersion(u"version"_s,
                                           u"Print the version of the BlueZ that is simulated."_s);
    const QCommandLineOption ownVersion(u"simulator-version"_s,
                                        u"Print the version of the simulator."_s);
    parser.addOptions(
        {help, scenario, model, mode, record, exitWithStdin, radio, daemonVersion, ownVersion});
    parser.addPositionalArgument(u"COMMAND"_s, u"A program and its arguments."_s,
                                 u"[-- COMMAND…]"_s);
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);

    *status = 0;
    if (!parser.parse(arguments())) {
        *status = fail(parser.errorText());
        return std::nullopt;
    }
    if (parser.isSet(help)) {
        std::fputs(parser.helpText().toUtf8().constData(), stdout);
        return std::nullopt;
    }
    if (parser.isSet(ownVersion)) {
        std::puts(VARDA_SIMULATOR_VERSION);
        return std::nullopt;
    }
    Options options{parser.value(scenario),
                    parser.value(record),
                    {parser.value(model), parser.value(mode)},
                    parser.positionalArguments(),
                    parser.isSet(exitWithStdin),
                    std::nullopt};
    if (parser.isSet(radio))
        options.radio = parser.value(radio);
    if (options.radio && !options.command.isEmpty()) {
        *status = fail(u"--radio has no bus of its own for a COMMAND"_s);
        return std::nullopt;
    }
    return options;
}

std::optional<Scenario> readScenario(const Options &options, QString *error)
{
    QByteArray json = QByteArrayLiteral("{\"devices\":[{}]}");
    if (!options.scenarioFile.isEmpty()) {
        QFile file(options.scenarioFile);
        if (!file.open(QIODevice::ReadOnly)) {
            *error = options.scenarioFile + u": "_s + file.errorString();
            return std::nullopt;
        }
        json = file.readAll();
    }
    const std::optional<Scenario> scenario = Scenario::parse(json, error, options.overrides);
    if (!scenario && !options.scenarioFile.isEmpty())
        error->prepend(options.scenarioFile + u": "_s);
    return scenario;
}

// SIGTERM and SIGINT as events, so that everything is taken down in order.
class StopSignals
{
public:
    StopSignals()
    {
        sigset_t stopping = set();
        ::pthread_sigmask(SIG_BLOCK, &stopping, nullptr);
        m_fd = ::signalfd(-1, &stopping, SFD_CLOEXEC | SFD_NONBLOCK);
    }
    ~StopSignals() { ::close(m_fd); }
    Q_DISABLE_COPY_MOVE(StopSignals)

    int fd() const { return m_fd; }

    int take() const
    {
        signalfd_siginfo info{};
        return ::read(m_fd, &info, sizeof info) == ssize_t(sizeof info) ? int(info.ssi_signo) : 0;
    }

    // For children: a blocked signal stays blocked over exec.
    static void unblock()
    {
        sigset_t stopping = set();
        ::pthread_sigmask(SIG_UNBLOCK, &stopping, nullptr);
    }

private:
    static sigset_t set()
    {
        sigset_t signals;
        sigemptyset(&signals);
        sigaddset(&signals, SIGTERM);
        sigaddset(&signals, SIGINT);
        return signals;
    }

    int m_fd = -1;
};

void runCommand(QProcess &process, const QStringList &command, const QString &address)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DBUS_SYSTEM_BUS_ADDRESS"_s, address);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setInputChannelMode(QProcess::ForwardedInputChannel);
    process.setChildProcessModifier([] {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        StopSignals::unblock();
    });

    QObject::connect(
        &process, &QProcess::finished, &process, [&process](int status, QProcess::ExitStatus how) {
            QCoreApplication::exit(how == QProcess::NormalExit ? status : 128 + process.exitCode());
        });
    QObject::connect(&process, &QProcess::errorOccurred, &process,
                     [&process](QProcess::ProcessError error) {
                         if (error != QProcess::FailedToStart)
                             return;
                         fail(process.program() + u": "_s + process.errorString());
                         QCoreApplication::exit(kCannotRun);
                     });
    process.start(command.first(), command.mid(1));
}

std::unique_ptr<QSocketNotifier> endWithStdin()
{
    auto input = std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(input.get(), &QSocketNotifier::activated, qApp, [] {
        char ignored[256];
        if (::read(STDIN_FILENO, ignored, sizeof ignored) <= 0)
            QCoreApplication::exit(0);
    });
    return input;
}

int broadcast(const Options &options, const Scenario &scenario, const StopSignals &stopSignals)
{
    QString error = Peripheral::problemWith(scenario);
    if (!error.isEmpty())
        return fail(error);
    Recorder recorder;
    recorder.setWithTraffic(scenario.recordTraffic);
    if (!options.recordFile.isEmpty() && !recorder.openFile(options.recordFile, &error))
        return fail(options.recordFile + u": "_s + error);

    const DeviceScenario &device = scenario.devices.first();
    Peripheral peripheral(device, recorder);
    QObject::connect(&peripheral, &Peripheral::failed, qApp,
                     [](const QString &text) { QCoreApplication::exit(fail(text)); });
    bool told = false;
    QObject::connect(&peripheral, &Peripheral::onAir, qApp, [&](const QString &address) {
        if (std::exchange(told, true))
            return;
        const QStringList limits = Peripheral::limits(device);
        for (const QString &each : limits)
            std::fprintf(stderr, "varda-simulator: %s\n", qPrintable(each));
        std::printf("%s is on the air as %s\n", qPrintable(address),
                    qPrintable(device.name.value_or(u"a computer without a name"_s)));
        std::fflush(stdout);
    });

    const QSocketNotifier stop(stopSignals.fd(), QSocketNotifier::Read);
    QObject::connect(&stop, &QSocketNotifier::activated, qApp, [&] {
        stopSignals.take();
        QCoreApplication::exit(0);
    });
    const auto input = options.exitWithStdin ? endWithStdin() : nullptr;
    QMetaObject::invokeMethod(
        &peripheral, [&] { peripheral.start(*options.radio); }, Qt::QueuedConnection);
    return QCoreApplication::exec();
}

int serve(const Options &options, const Scenario &scenario, const StopSignals &stopSignals)
{
    QString error;
    PrivateBus bus;
    if (!bus.start(&error))
        return fail(error);
    QObject::connect(&bus, &PrivateBus::died, qApp, [] {
        fail(u"the message bus ended"_s);
        QCoreApplication::exit(kUsageError);
    });

    const QDBusConnection connection = QDBusConnection::connectToBus(bus.address(), u"simulator"_s);
    if (!connection.isConnected())
        return fail(u"cannot reach the message bus: "_s + connection.lastError().message());

    BluezDaemon daemon(connection);
    if (!options.recordFile.isEmpty() && !daemon.recorder().openFile(options.recordFile, &error))
        return fail(options.recordFile + u": "_s + error);
    daemon.load(scenario);
    Control control(daemon);
    if (!control.start(connection, &error) || !daemon.start(&error))
        return fail(error);

    QProcess command;
    QSocketNotifier stop(stopSignals.fd(), QSocketNotifier::Read);
    QObject::connect(&stop, &QSocketNotifier::activated, qApp, [&] {
        const int signal = stopSignals.take();
        if (command.state() != QProcess::NotRunning)
            ::kill(pid_t(command.processId()), signal); // it ends, and we with it
        else
            QCoreApplication::exit(0);
    });

    const auto input = options.exitWithStdin ? endWithStdin() : nullptr;
    if (options.command.isEmpty()) {
        std::printf("DBUS_SYSTEM_BUS_ADDRESS=%s\n", qPrintable(bus.address()));
        std::fflush(stdout);
    } else {
        runCommand(command, options.command, bus.address());
    }
    const int status = QCoreApplication::exec();
    QDBusConnection::disconnectFromBus(u"simulator"_s);
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    // To learn which BlueZ it talks to, Qt runs the program behind the bus name org.bluez with
    // this option and wants a plain number of at least 5.42.
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        std::puts("5.82");
        return 0;
    }

    const StopSignals stopSignals; // before Qt starts threads, so that they block them as well
    const QCoreApplication app(argc, argv);
    int status = 0;
    const std::optional<Options> options = parseArguments(&status);
    if (!options)
        return status;
    QString error;
    const std::optional<Scenario> scenario = readScenario(*options, &error);
    if (!scenario)
        return fail(error);
    return options->radio ? broadcast(*options, *scenario, stopSignals)
                          : serve(*options, *scenario, stopSignals);
}
