// SPDX-License-Identifier: MIT
#include "program/ending.h"
#include "program/failure.h"
#include "program/onair.h"
#include "program/onbus.h"
#include "program/options.h"

#include <QtCore/qcoreapplication.h>

#include <cstdio>
#include <cstring>

using namespace simulator;

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
