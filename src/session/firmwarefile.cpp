// SPDX-License-Identifier: MIT
#include "session/vardasession_p.h"

#include <QtCore/qfile.h>
#include <QtCore/qfileinfo.h>

int VardaSession::uploadFirmware(const QString &path, bool force)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return uploadFirmware(file.readAll(), QFileInfo(path).fileName(), force);
}
