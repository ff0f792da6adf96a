// SPDX-License-Identifier: MIT
#include <varda/firmwareimage.h>

#include <varda/vardadata.h>

#include <QtCore/qendian.h>

#include "protocol/crc16_p.h"

namespace {

constexpr qsizetype kHeaderOffset = 512;
constexpr qsizetype kHeaderSize = 32;
constexpr qsizetype kVersionOffset = 8; // within the header

constexpr quint32 kNoHeader = 0;
constexpr quint32 kFirmwareMagic = 0xDEADBEEF;
constexpr quint32 kBootloaderMagic = 0x424F4F54;

QByteArray headerOf(const QByteArray &data)
{
    QByteArray header = data.mid(kHeaderOffset, kHeaderSize);
    header.append(kHeaderSize - header.size(), '\0');
    return header;
}

quint32 wordAt(const QByteArray &bytes, qsizetype offset)
{
    return qFromLittleEndian<quint32>(bytes.constData() + offset);
}

FirmwareImage::Kind kindOf(quint32 magic)
{
    switch (magic) {
    case kNoHeader:
        return FirmwareImage::Kind::WithoutHeader;
    case kFirmwareMagic:
        return FirmwareImage::Kind::Firmware;
    case kBootloaderMagic:
        return FirmwareImage::Kind::Bootloader;
    default:
        return FirmwareImage::Kind::Unknown;
    }
}

/** @param text  the part of a file's name behind its first dot */
quint32 versionFrom(const QString &text)
{
    const QStringList fields = text.split(u'.');
    const auto number = [&fields](int i) { return quint32(fields.value(i).toInt()); };
    const QString last = fields.value(3);
    const auto character = last.isEmpty() ? qint8(0) : qint8(last.front().toLatin1());
    return number(0) << 24 | number(1) << 16 | number(2) << 8 | quint32(qint32(character));
}

} // namespace

FirmwareImage FirmwareImage::fromData(const QByteArray &data, const QString &fileName)
{
    FirmwareImage image;
    if (data.isEmpty())
        return image;
    image.size = data.size();
    image.checksum = Crc16::computeCrc(data);
    const QByteArray header = headerOf(data);
    image.kind = kindOf(wordAt(header, 0));
    switch (image.kind) {
    case Kind::Empty:
    case Kind::Unknown:
        return image;
    case Kind::WithoutHeader:
        image.name = fileName.section(u'.', 0, 0);
        image.version = versionFrom(fileName.section(u'.', 1));
        break;
    case Kind::Firmware:
    case Kind::Bootloader:
        image.header = header;
        image.version = wordAt(header, kVersionOffset);
        break;
    }
    image.versionStr = VardaData::firmwareVersionToString(image.version);
    return image;
}

bool FirmwareImage::isValid() const
{
    return kind != Kind::Empty && kind != Kind::Unknown;
}

QString FirmwareImage::errorString() const
{
    if (kind == Kind::Empty)
        return QStringLiteral("The image is empty.");
    if (kind == Kind::Unknown)
        return QStringLiteral("Unknown image type (word at byte 512).");
    return {};
}
