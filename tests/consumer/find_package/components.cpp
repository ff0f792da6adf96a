// SPDX-License-Identifier: MIT
// Each library beside the core: its headers, its symbols and what it needs.
#include <varda/csvformat.h>
#include <varda/divepicture.h>
#include <varda/jsonformat.h>
#include <varda/logbookstore.h>
#include <varda/syncjob.h>
#include <varda/uddfformat.h>

#include <QtCore/QBuffer>
#include <QtCore/QCoreApplication>
#include <QtCore/QTemporaryDir>

static bool keepsDives()
{
    const QTemporaryDir folder;
    LogbookStore store;
    LogbookError::Kind end = LogbookError::Failed;
    store.open(folder.filePath(QStringLiteral("dives.sqlite")), &store,
               [&end](const LogbookError &error) {
                   end = error.kind;
                   QCoreApplication::quit();
               });
    QCoreApplication::exec();
    return end == LogbookError::NoError;
}

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (!keepsDives())
        return 1;
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    if (!JsonFormat::write(&buffer, {Dive()}).error.isEmpty())
        return 1;
    buffer.seek(0);
    if (JsonFormat::read(&buffer).dives.size() != 1)
        return 1;
    return DivePicture::profile(Dive()).toSvg().startsWith("<svg ") ? 0 : 1;
}
