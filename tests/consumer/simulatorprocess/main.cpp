// SPDX-License-Identifier: MIT
// An application's test: it brings its own simulated computer, and looks at what reached it.
#include <varda/simulatorprocess.h>
#include <varda/varda.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QTextStream>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    SimulatorProcess simulator;
    if (!simulator.isRunning()) {
        qCritical("the simulator does not run");
        return 1;
    }
    const QString error = simulator.loadDevice(R"({"owner": "Grace Hopper"})");
    if (!error.isEmpty()) {
        qCritical("%s", qPrintable(error));
        return 1;
    }

    VardaSession session;
    QObject::connect(&session, &VardaSession::connectControllerStatus, &session,
                     [&](ConnectControllerStatus::ConnectControllerStatusIn status) {
                         if (status == ConnectControllerStatus::Connected)
                             session.startCommand(TidemarCommand::Owner);
                     });
    QObject::connect(&session, &VardaSession::endCommand, &application, &QCoreApplication::quit);
    session.autoConnect();
    QCoreApplication::exec();

    QTextStream(stdout) << session.owner() << '\n';
    return simulator.values(QStringLiteral("frame")).isEmpty() ? 1 : 0;
}
