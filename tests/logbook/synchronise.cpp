// SPDX-License-Identifier: MIT
#include <QtCore/qcoreapplication.h>
#include <QtCore/qtimer.h>

#include <cstdio>

#include <varda/syncjob.h>

#include "killpoints.h"

/** Synchronises FILE with the computer of ADDRESS or any; reports "points N syncs N writes N added N". */
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc != 2 && argc != 3)
        return 2;
    LogbookStore store;
    VardaComputer computer;
    if (argc == 3)
        computer.setDevice(BleDeviceInfo::fromAddress(QString::fromLatin1(argv[2]), {}));
    store.open(QString::fromLocal8Bit(argv[1]), &store, [](const LogbookError &error) {
        if (error) {
            std::fprintf(stderr, "%s\n", qPrintable(error.text));
            QCoreApplication::exit(1);
        }
    });
    auto *const job = syncLogbook(computer, store);
    QObject::connect(job, &VardaJob::finished, &application, [job] {
        if (job->error())
            std::fprintf(stderr, "%s\n", qPrintable(job->errorText()));
        else
            std::printf("points %d syncs %d writes %d added %d\n", KillPoints::count(),
                        KillPoints::syncCount(), KillPoints::writeCount(), job->added());
        QCoreApplication::exit(job->error() ? 1 : 0);
    });
    return QCoreApplication::exec();
}
