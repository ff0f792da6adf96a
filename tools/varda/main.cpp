// SPDX-License-Identifier: MIT
#include "line/commandline.h"
#include "output/terminal.h"

#include <QtCore/qcoreapplication.h>

int main(int argc, char *argv[])
{
    CommandLine line;
    if (const auto status = line.parse(argc, argv))
        return *status;
    routeDiagnostics(line.options().verbose);
    const QCoreApplication app(argc, argv);
    return line.run();
}
