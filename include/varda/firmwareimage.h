// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qstring.h>

#include <cstdint>

#include <varda/vardaexport.h>

/**
 * What a firmware image says about itself. No computer is needed, and nothing is sent.
 *
 * Newer images carry an update header: 32 bytes at byte 512, eight little-endian words. Word 0
 * gives the kind, word 2 the version; the others are for the computer. Bytes that a short image
 * does not have read as 0. Images without a header (word 0 is 0) have their name and version in
 * the name of their file, "NAME.1.2.3.a.bin".
 */
struct VARDA_EXPORT FirmwareImage {
    enum class Kind : int {
        Empty,         ///< no bytes
        Unknown,       ///< word 0 is none of those below; no computer is sent such an image
        WithoutHeader, ///< 0: firmware, named by its file
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
     * A file's name gives the version in four parts behind the first dot: three decimal numbers
     * (0 for what is no number) and the first character of the fourth part. A character from 0x80
     * to 0xFF also sets the upper 24 bits, and one beyond 0xFF counts as 0: the computers
     * have it so.
     *
     * @param data      the whole image
     * @param fileName  the name of its file, without folders; only needed without a header
     */
    [[nodiscard]] static FirmwareImage fromData(const QByteArray &data, const QString &fileName);

    /** Whether the image can be uploaded. */
    [[nodiscard]] bool isValid() const;
    /** Why the image cannot be uploaded, as a sentence; empty if it can. */
    [[nodiscard]] QString errorString() const;
    /** Whether it has an update header. */
    [[nodiscard]] bool hasHeader() const { return !header.isEmpty(); }
    /**
     * Whether a computer can continue an upload that was interrupted. Only images with a header
     * can; others start again.
     */
    [[nodiscard]] bool canResume() const { return hasHeader(); }
};
