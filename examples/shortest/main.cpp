// SPDX-License-Identifier: MIT
#include <varda/varda.h>

#include <QtCore/qcoreapplication.h>
#include <QtCore/qdebug.h>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    VardaComputer computer;
    auto *const owner = computer.readOwner();
    QObject::connect(owner, &VardaJob::finished, &computer, [owner] {
        if (owner->error())
            qWarning().noquote() << owner->errorText();
        else
            qInfo().noquote() << owner->result();
        QCoreApplication::exit(owner->error());
    });
    return application.exec();
}
