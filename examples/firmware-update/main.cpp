// SPDX-License-Identifier: MIT
// Uploads the image that is named on the command line.
#include <varda/varda.h>

#include <QtCore/qcoreapplication.h>
#include <QtCore/qfile.h>
#include <QtCore/qfileinfo.h>
#include <QtCore/qtextstream.h>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QTextStream err(stderr);
    QFile file(application.arguments().value(1));
    if (!file.open(QIODevice::ReadOnly)) {
        err << "usage: firmware-update IMAGE" << Qt::endl;
        return 2;
    }
    const QByteArray bytes = file.readAll();
    const QString name = QFileInfo(file).fileName();
    const FirmwareImage image = FirmwareImage::fromData(bytes, name);
    if (!image.isValid()) {
        err << image.errorString() << Qt::endl;
        return 1;
    }
    err << "version " << image.versionStr << ", " << image.size << " bytes" << Qt::endl;

    VardaComputer computer;
    auto *const upload = computer.uploadFirmware(bytes, name);
    QObject::connect(upload, &VardaJob::progressed, [&](qint64 done, qint64 total) {
        err << done << " of " << total << " bytes" << Qt::endl;
    });
    QObject::connect(upload, &VardaJob::finished, [&] {
        if (upload->error())
            err << upload->errorText() << Qt::endl << upload->remedy() << Qt::endl;
        application.exit(upload->error());
    });
    return application.exec();
}
