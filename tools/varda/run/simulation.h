// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qprocess.h>
#include <QtCore/qstring.h>

/**
 * A simulated computer behind the scenes; as long as this lives, Bluetooth is what it simulates.
 *
 * There must not have been any Bluetooth in this process before.
 */
class Simulation
{
public:
    /**
     * @param scenario  a file or the name of one that comes along; empty for the usual computer
     * @throws Failure
     */
    explicit Simulation(const QString &scenario);
    ~Simulation();
    Q_DISABLE_COPY_MOVE(Simulation)

    /** Whether there is such a scenario, for what needs no computer. @throws Failure */
    static void require(const QString &scenario);

private:
    QProcess m_process;
};
