// SPDX-License-Identifier: MIT
#include "line/commandline.h"
#include "output/terminal.h"
#include "run/pictures.h"

int main(int argc, char *argv[])
{
    CommandLine line;
    if (const auto status = line.parse(argc, argv))
        return *status;
    routeDiagnostics(line.options().verbose);
    const auto application = makeApplication(argc, argv, line.drawsPictures());
    return line.run();
}
