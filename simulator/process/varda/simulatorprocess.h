// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qjsonarray.h>
#include <QtCore/qjsonobject.h>
#include <QtCore/qlist.h>
#include <QtCore/qprocess.h>
#include <QtCore/qstring.h>
#include <QtCore/qstringlist.h>
#include <QtCore/qvariant.h>

/** The simulator: the one installed with this header if CMake found it, else one in the PATH. */
#ifndef VARDA_SIMULATOR
#    define VARDA_SIMULATOR "varda-simulator"
#endif

/**
 * Starts a simulator for one test program and controls it.
 *
 * Make it before anything in the program uses the system bus: Qt connects to that only once, and
 * this puts the simulator's bus into the environment. The simulator ends with this object.
 */
class SimulatorProcess
{
public:
    /**
     * Starts it and waits until it is ready.
     *
     * @param arguments  options of varda-simulator, such as {"--scenario", "dives.json"}
     */
    explicit SimulatorProcess(const QStringList &arguments = {},
                              const QString &program = QString::fromLocal8Bit(VARDA_SIMULATOR));
    ~SimulatorProcess();
    Q_DISABLE_COPY_MOVE(SimulatorProcess)

    bool isRunning() const { return m_process.state() == QProcess::Running; }
    /** The address of its bus, empty if it did not start; standard error has the reason. */
    QString address() const { return m_address; }
    QProcess &process() { return m_process; }

    /** Loads a scenario, which replaces everything. Returns the error, empty if there is none. */
    QString load(const QByteArray &scenario);
    /** load() of a scenario with only this device, a JSON object. */
    QString loadDevice(const QByteArray &device);
    /** Calls any method. Returns name and text of the error, empty if there is none. */
    QString call(const QString &method, const QVariantList &arguments = {});

    /** All events since the scenario was loaded. */
    QJsonArray record();
    QJsonObject state(const QString &address);
    /** The last firmware image that was accepted. */
    QByteArray firmware(const QString &address);
    /** The events of this kind. */
    QList<QJsonObject> events(const QString &event);
    /** One value of each event of this kind. */
    QStringList values(const QString &event, const QString &key = QStringLiteral("hex"));

private:
    QProcess m_process;
    QString m_address;
};
