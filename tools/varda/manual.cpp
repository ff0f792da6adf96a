// SPDX-License-Identifier: MIT
// varda-manual FILE: prints the manual page of varda, from what is written by hand in FILE.
#include "line/commandline.h"
#include "line/grammar/grammar.h"
#include "line/grammar/manpage.h"
#include "output/terminal.h"
#include "run/failure.h"
#include "run/files.h"

int main(int argc, char *argv[])
{
    try {
        if (argc != 2)
            throw Failure{ExitCode::UsageError, QStringLiteral("usage: varda-manual FILE"), {}};
        const QString page = QString::fromUtf8(readFile(QString::fromLocal8Bit(argv[1])));
        printBytes(manPage(CommandLine().grammar(), page).toUtf8());
        flushOutput();
        return int(ExitCode::Ok);
    } catch (const Failure &failure) {
        printError(failure);
        return int(failure.code);
    }
}
