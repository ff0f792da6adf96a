// SPDX-License-Identifier: MIT
// An application's first lines: the library's version of Qt and its symbols are there.
#include <varda/varda.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QTextStream>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const VardaSession session;
    QTextStream(stdout) << session.metaObject()->className() << '\n';
    return 0;
}
