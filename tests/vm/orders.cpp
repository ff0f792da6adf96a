// SPDX-License-Identifier: MIT
#include "orders.h"

#include <QtCore/qcoreapplication.h>
#include <QtCore/qsocketnotifier.h>

#include <unistd.h>

#include <cstdio>

void say(const QString &line)
{
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

int obeyOrders(const std::function<void(const QString &)> &obey)
{
    QByteArray input;
    const QSocketNotifier stdIn(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&stdIn, &QSocketNotifier::activated, qApp, [&] {
        char part[4096];
        const ssize_t size = ::read(STDIN_FILENO, part, sizeof part);
        if (size <= 0) {
            QCoreApplication::exit(0);
            return;
        }
        input.append(part, size);
        for (qsizetype end = input.indexOf('\n'); end >= 0; end = input.indexOf('\n')) {
            obey(QString::fromUtf8(input.left(end)));
            input.remove(0, end + 1);
        }
    });
    return QCoreApplication::exec();
}
