// SPDX-License-Identifier: MIT
#include <varda/varda.h>

#include <QtCore/qcoreapplication.h>
#include <QtCore/qtextstream.h>

#include <qcorosignal.h>
#include <qcorotask.h>

QCoro::Task<> read(VardaComputer &computer)
{
    auto *const owner = computer.readOwner();
    co_await qCoro(static_cast<VardaJob *>(owner), &VardaJob::finished);
    QTextStream(stdout) << owner->result() << Qt::endl;
    QCoreApplication::exit(owner->error());
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    VardaComputer computer;
    read(computer);
    return application.exec();
}
