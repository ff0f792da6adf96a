// SPDX-License-Identifier: MIT
#include <varda/varda.h>

#include <QtCore/qcoreapplication.h>
#include <QtCore/qfile.h>
#include <QtCore/qtextstream.h>
#include <QtCore/qtimer.h>
#include <csignal>

static volatile std::sig_atomic_t interrupted;

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QTextStream out(stdout), err(stderr);
    QFile file(QStringLiteral("known.txt"));
    if (!file.open(QIODevice::ReadWrite))
        qFatal("known.txt: %s", qPrintable(file.errorString()));
    QList<std::uint16_t> known;
    while (!file.atEnd())
        known.append(file.readLine().trimmed().toUShort());
    VardaComputer computer;
    auto *const job = computer.downloadDives(known);
    QObject::connect(job, &DownloadJob::diveRead, &computer, [&](const Dive &dive) {
        const double depth = DiveProfile::fromDive(dive).maximumDepth;
        out << dive.numberText << ' ' << depth << " m" << Qt::endl;
        if (file.write(dive.numberText.toUtf8() + '\n') < 0 || !file.flush())
            job->cancel();
    });
    QObject::connect(job, &VardaJob::progressed, &computer,
                     [&](qint64 done, qint64 total) { err << done << '/' << total << Qt::endl; });
    QObject::connect(job, &VardaJob::finished, &computer, [&] {
        err << (job->error() ? job->errorText() : QStringLiteral("all dives are here")) << Qt::endl;
        application.exit(job->error());
    });
    std::signal(SIGINT, [](int) { interrupted = 1; });
    QTimer watch; // a signal handler may do no more than take a note
    watch.callOnTimeout(job, [job] { return interrupted ? job->cancel() : void(); });
    watch.start(100);
    return application.exec();
}
