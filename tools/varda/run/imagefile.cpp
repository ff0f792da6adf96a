// SPDX-License-Identifier: MIT
#include "run/imagefile.h"

#include "run/failure.h"
#include "run/files.h"

#include <QtCore/qfileinfo.h>

using namespace Qt::StringLiterals;

ImageFile readImage(const QString &path)
{
    const QString fileName = QFileInfo(path).fileName();
    const QByteArray bytes = readFile(path);
    const FirmwareImage image = FirmwareImage::fromData(bytes, fileName);
    if (!image.isValid()) {
        throw Failure{ExitCode::UsageError, u"\"%1\" is not a firmware image"_s.arg(path),
                      image.errorString()};
    }
    return {fileName, bytes, image};
}
