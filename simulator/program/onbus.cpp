// SPDX-License-Identifier: MIT
#include "program/onbus.h"

#include "bluez/bluezdaemon.h"
#include "bluez/control.h"
#include "bluez/privatebus.h"
#include "device/replay/replay.h"
#include "program/failure.h"
#include "program/recording.h"

#include <QtCore/qcoreapplication.h>
#include <QtCore/qprocess.h>
#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbuserror.h>

#include <sys/prctl.h>

#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

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

} // namespace

int serve(const Options &options, const Scenario &scenario, const StopSignals &stopSignals)
{
    QString error;
    PrivateBus bus;
    if (!bus.start(&error))
        return fail(error);
    QObject::connect(&bus, &PrivateBus::died, qApp, [] {
        fail(u"the message bus has ended"_s);
        QCoreApplication::exit(kOwnError);
    });

    const QDBusConnection connection = QDBusConnection::connectToBus(bus.address(), u"simulator"_s);
    if (!connection.isConnected())
        return fail(u"cannot reach the message bus: "_s + connection.lastError().message());

    int differences = 0;
    const auto replay = scenario.devices.isEmpty() ? nullptr : scenario.devices.first().replay;
    if (replay) {
        replay->setSpeed(options.speed);
        replay->setReport([&differences](const QString &text) {
            ++differences;
            fail(u"replay: "_s + text);
        });
    }

    BluezDaemon daemon(connection);
    if (!startRecord(daemon.recorder(), options.recordFile))
        return kOwnError;
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
    int status = statusWith(daemon.recorder(), QCoreApplication::exec());
    if (replay && options.strict) {
        replay->reportUnasked();
        if (status == 0 && differences > 0)
            status = kOwnError;
    }
    if (replay)
        replay->setReport({});
    QDBusConnection::disconnectFromBus(u"simulator"_s);
    return status;
}

} // namespace simulator
