// SPDX-License-Identifier: MIT
// The simulated BlueZ on a bus that it does not own: it can be killed and started again while the
// bus, and everybody on it, lives on. Its clock is the tests' fast one.
#include "bluez/bluezdaemon.h"
#include "bluez/control.h"

#include <QtCore/qcoreapplication.h>
#include <QtDBus/qdbusconnection.h>

#include <cstdio>
#include <cstring>

using namespace Qt::StringLiterals;
using namespace simulator;

int main(int argc, char *argv[])
{
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        std::puts("5.82"); // Qt asks the program behind org.bluez
        return 0;
    }
    const QCoreApplication app(argc, argv);
    const QDBusConnection bus = QDBusConnection::connectToBus(
        QCoreApplication::arguments().value(1), u"simulator"_s);
    BluezDaemon daemon(bus);
    QString error;
    const std::optional<Scenario> empty = Scenario::parse("{}", &error);
    if (!bus.isConnected() || !empty)
        return 2;
    daemon.load(*empty);
    Control control(daemon);
    if (!control.start(bus, &error) || !daemon.start(&error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 2;
    }
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
