// SPDX-License-Identifier: MIT
#include "run/simulation.h"

#include "output/terminal.h"
#include "run/failure.h"

#include <QtCore/qcoreapplication.h>
#include <QtCore/qdir.h>
#include <QtCore/qfileinfo.h>
#include <QtCore/qstandardpaths.h>

#include <unistd.h>

#include <tuple>

using namespace Qt::StringLiterals;

namespace {

constexpr int kStartMs = 10000;
constexpr int kStopMs = 2000;

// Both hold for a build folder as for an installed tree.
constexpr auto kOtherFolder = "/" VARDA_LIBEXEC_FROM_BIN ""_L1;
constexpr auto kScenarioFolder = "/" VARDA_SCENARIOS_FROM_BIN ""_L1;

[[noreturn]] void fail(const QString &what, const QString &advice = {})
{
    throw Failure{ExitCode::UsageError, what, advice};
}

QString simulatorProgram()
{
    const QString name = u"varda-simulator"_s;
    const QString here = QCoreApplication::applicationDirPath();
    QString program = QStandardPaths::findExecutable(name, {here, here + kOtherFolder});
    if (program.isEmpty())
        program = QStandardPaths::findExecutable(name);
    if (program.isEmpty())
        fail(u"%1 was not found"_s.arg(name), u"Install it, or put it in the PATH."_s);
    return program;
}

QString scenarioFile(const QString &scenario)
{
    const QDir shipped(QCoreApplication::applicationDirPath() + kScenarioFolder);
    QString file = shipped.filePath(scenario + u".json"_s);
    if (!scenario.contains(u'/') && QFileInfo(file).isFile())
        return file;
    if (QFileInfo(scenario).isFile())
        return scenario;
    if (scenario.contains(u'/'))
        fail(u"there is no file \"%1\""_s.arg(scenario));
    QStringList names;
    const auto files = shipped.entryInfoList({u"*.json"_s}, QDir::Files, QDir::Name);
    for (const QFileInfo &each : files)
        names.append(each.completeBaseName());
    fail(u"there is no scenario \"%1\""_s.arg(scenario),
         names.isEmpty() ? u"Give the path of a file."_s
                         : u"Give the path of a file, or one of: "_s + names.join(u", "_s));
}

} // namespace

Simulation::Simulation(const Options &options)
{
    QStringList arguments{u"--exit-with-stdin"_s};
    if (!options.replay.isEmpty()) {
        arguments += {u"--replay"_s, options.replay};
        if (options.strict)
            arguments += u"--strict"_s;
        if (!options.speed.isEmpty())
            arguments += {u"--speed"_s, options.speed};
    } else if (const QString scenario = options.simulate.value_or(QString()); !scenario.isEmpty()) {
        arguments += {u"--scenario"_s, scenarioFile(scenario)};
    }
    showStatus(u"Starting the simulation"_s);
    // Ctrl-C is for this process; the simulation has to stay until the link is down.
    m_process.setChildProcessModifier([] { ::setsid(); });
    m_process.start(simulatorProgram(), arguments);
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(kStartMs)) {
            const QString errors = QString::fromUtf8(m_process.readAllStandardError()).trimmed();
            fail(u"the simulation did not start: "_s
                 + (errors.isEmpty() ? m_process.errorString() : errors));
        }
    }
    const QByteArray line = m_process.readLine().trimmed();
    const auto equals = line.indexOf('=');
    qputenv(line.left(equals).constData(), line.mid(equals + 1));
    // The machine's own switches are not those of the simulated adapter.
    if (!qEnvironmentVariableIsSet("VARDA_RFKILL"))
        qputenv("VARDA_RFKILL", {});
}

void Simulation::require(const QString &scenario)
{
    if (!scenario.isEmpty())
        std::ignore = scenarioFile(scenario);
}

Simulation::~Simulation()
{
    end();
}

void Simulation::end()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(kStopMs))
        m_process.kill();
    constexpr auto kReplay = "varda-simulator: replay: "_L1;
    const QStringList lines =
        QString::fromUtf8(m_process.readAllStandardError()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        if (line.startsWith(kReplay))
            printWarning(u"replay: "_s + line.mid(kReplay.size()));
    }
}

void Simulation::finish()
{
    end();
    if (m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() != 0)
        throw Failure{ExitCode::JobFailed, u"this was not the dialogue of the recording"_s, {}};
}
