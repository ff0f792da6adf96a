// SPDX-License-Identifier: MIT
#include "firmwareimage.h"

#include <QtCore/qendian.h>
#include <QtCore/qstringlist.h>

namespace {

// The update header: what kind of image it is, and two words further its version.
constexpr qsizetype kKindOffset = 512;
constexpr qsizetype kVersionOffset = 520;
constexpr std::uint32_t kNoHeader = 0;
constexpr std::uint32_t kApplication = 0xDEADBEEF;
constexpr std::uint32_t kBootloader = 0x424F4F54;

/** What an image is too short for reads as 0. */
std::uint32_t wordAt(const QByteArray &bytes, qsizetype offset)
{
    QByteArray word = bytes.mid(offset, 4);
    word.append(4 - word.size(), '\0');
    return qFromLittleEndian<std::uint32_t>(word.constData());
}

/** "NAME.1.2.3.a.bin"; the library sends the same version, sign and all. */
std::uint32_t versionIn(const QString &fileName)
{
    const QStringList fields = fileName.split(u'.');
    const auto number = [&fields](int i) { return std::uint32_t(fields.value(i).toInt()); };
    const QString last = fields.value(4);
    const auto character = last.isEmpty() ? qint8(0) : qint8(last.front().toLatin1());
    return number(1) << 24 | number(2) << 16 | number(3) << 8
           | std::uint32_t(std::int32_t(character));
}

/** CRC-16/SPI-FUJITSU. */
std::uint16_t crcOf(const QByteArray &bytes)
{
    unsigned crc = 0x1D0F;
    for (const char byte : bytes) {
        crc ^= unsigned(std::uint8_t(byte)) << 8;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc << 1 ^ (crc & 0x8000 ? 0x1021U : 0U)) & 0xFFFF;
    }
    return std::uint16_t(crc);
}

} // namespace

std::optional<FirmwareImage> FirmwareImage::of(const QByteArray &bytes, const QString &fileName)
{
    FirmwareImage image;
    image.size = bytes.size();
    image.crc = crcOf(bytes);
    switch (wordAt(bytes, kKindOffset)) {
    case kNoHeader:
        image.name = fileName.section(u'.', 0, 0);
        image.version = versionIn(fileName);
        break;
    case kApplication:
        image.family = Family::Application;
        image.version = wordAt(bytes, kVersionOffset);
        break;
    case kBootloader:
        image.family = Family::Bootloader;
        image.version = wordAt(bytes, kVersionOffset);
        break;
    default:
        return std::nullopt;
    }
    if (bytes.isEmpty())
        return std::nullopt;
    return image;
}
