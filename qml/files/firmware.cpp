// SPDX-License-Identifier: MIT
#include "firmware.h"

#include "wholefile_p.h"

FirmwareFile Firmware::read(const QUrl &file)
{
    constexpr qint64 kLargestImage = 64 << 20; // many times what a computer has room for
    const WholeFile::Content content = WholeFile::read(file, kLargestImage);
    FirmwareFile read = fromData(content.bytes, WholeFile::nameOf(file));
    read.readError = content.error;
    return read;
}

FirmwareFile Firmware::fromData(const QByteArray &data, const QString &fileName)
{
    return {{}, data, fileName, FirmwareImage::fromData(data, fileName)};
}
