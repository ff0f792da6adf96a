// SPDX-License-Identifier: MIT
// Jobs as futures: one continuation after the other.
#include <varda/varda.h>

#include <QtCore/qcoreapplication.h>
#include <QtCore/qfuture.h>
#include <QtCore/qtextstream.h>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QTextStream out(stdout);
    VardaComputer computer;
    auto *const clock = computer.readClock();
    auto *const battery = computer.readBatteryHistory();
    QtFuture::connect(clock, &VardaJob::finished)
        .then([&](VardaJob *) {
            out << "clock: " << clock->result() << Qt::endl;
            return QtFuture::connect(battery, &VardaJob::finished);
        })
        .unwrap()
        .then([&](VardaJob *) {
            out << "battery records: " << battery->result().size() << Qt::endl;
            application.exit(battery->error());
        });
    return application.exec();
}
