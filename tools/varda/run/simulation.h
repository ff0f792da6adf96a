// SPDX-License-Identifier: MIT
#pragma once

#include "line/options.h"

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
    /** Of the options' scenario, or of the trace that they want replayed. @throws Failure */
    explicit Simulation(const Options &options);
    ~Simulation();
    Q_DISABLE_COPY_MOVE(Simulation)

    /**
     * Ends it, and warns of what differed from the trace.
     *
     * @throws Failure  if that is to be an error
     */
    void finish();

    /** Whether there is such a scenario, for what needs no computer. @throws Failure */
    static void require(const QString &scenario);

private:
    void end();

    QProcess m_process;
};
