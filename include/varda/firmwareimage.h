// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qstring.h>

#include <cstdint>

#include <varda/vardaexport.h>

/**
 * What a firmware image says about itself. This needs no computer and sends nothing.
 *
 * Newer images have an update header: 32 bytes at byte 512, eight little-endian words. Word 0 gives
 * the kind and word 2 the version; the others are for the computer. If an image is too short, the
 * missing bytes read as 0. If word 0 is 0, the image has no header, and the name of its file gives
 * name and version, "NAME.1.2.3.a.bin".
 */
struct VARDA_EXPORT FirmwareImage {
    enum class Kind : int {
        Empty,         ///< no bytes
        Unknown,       ///< word 0 has another value; such an image is never sent
        WithoutHeader, ///< 0: firmware, described by its file name
        Firmware,      ///< 0xDEADBEEF: firmware with an update header
        Bootloader,    ///< 0x424F4F54: a bootloader, always with an update header
    };

    Kind kind = Kind::Empty;
    QString name;               ///< the file's name up to its first dot; empty with a header
    std::uint32_t version = 0;  ///< packed, as the computer reports versions; 0 if unknown
    QString versionStr;         ///< VardaData::firmwareVersionToString(); empty if unknown
    std::int64_t size = 0;      ///< bytes
    std::uint16_t checksum = 0; ///< of all bytes: CRC-16/SPI-FUJITSU
    QByteArray header;          ///< the 32 bytes of the update header; empty without one

    /**
     * Reads an image.
     *
     * A file name gives the version in four parts after the first dot: three decimal numbers (0 for
     * a part that is not a number) and the first character of the fourth part. A character from
     * 0x80 to 0xFF also sets the upper 24 bits, and one beyond 0xFF counts as 0, because the
     * computers do the same.
     *
     * @param data      the whole image
     * @param fileName  the name of its file, without folders; needed only if there is no header
     */
    [[nodiscard]] static FirmwareImage fromData(const QByteArray &data, const QString &fileName);

    /** Whether the image can be uploaded. */
    [[nodiscard]] bool isValid() const;
    /** Why the image cannot be uploaded, as a sentence; empty if it can. */
    [[nodiscard]] QString errorString() const;
    /** Whether it has an update header. */
    [[nodiscard]] bool hasHeader() const { return !header.isEmpty(); }
    /**
     * Whether a computer can continue an interrupted upload. It can if the image has a header;
     * without one the upload starts again.
     */
    [[nodiscard]] bool canResume() const { return hasHeader(); }
};
