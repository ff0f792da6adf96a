// SPDX-License-Identifier: MIT
#include "simulation.h"

#include <QtCore/qcoreapplication.h>
#include <QtCore/qprocess.h>
#include <QtCore/qstandardpaths.h>

using namespace Qt::StringLiterals;

namespace {

// Holds for a build folder as for an installed tree.
constexpr auto kOtherFolder = "/" VARDA_LIBEXEC_FROM_BIN ""_L1;
constexpr auto kBus = "DBUS_SYSTEM_BUS_ADDRESS";

QString simulator()
{
    const QString name = u"varda-simulator"_s;
    const QString here = QCoreApplication::applicationDirPath();
    const QString program = QStandardPaths::findExecutable(name, {here, here + kOtherFolder});
    return program.isEmpty() ? QStandardPaths::findExecutable(name) : program;
}

bool goOnAs(QProcess &other)
{
    if (!other.startDetached())
        return false;
    QCoreApplication::quit();
    return true;
}

} // namespace

bool Simulation::available()
{
    return !simulator().isEmpty();
}

bool Simulation::start()
{
    QProcess other;
    other.setProgram(simulator());
    other.setArguments({u"--"_s, QCoreApplication::applicationFilePath(), u"--simulated"_s});
    return goOnAs(other);
}

bool Simulation::leave()
{
    QProcess other;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QString::fromLatin1(kBus));
    other.setProcessEnvironment(environment);
    other.setProgram(QCoreApplication::applicationFilePath());
    return goOnAs(other);
}
