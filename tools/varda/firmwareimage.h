// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qstring.h>

#include <optional>

/** What can be said of a firmware image without a computer. */
struct FirmwareImage {
    enum class Family {
        Headerless,  ///< the older one: name and version are those of the file's name
        Application, ///< has an update header
        Bootloader,  ///< has an update header
    };

    Family family = Family::Headerless;
    QString name; ///< empty with a header
    std::uint32_t version = 0;
    qsizetype size = 0;
    std::uint16_t crc = 0; ///< of all of it, as the computers count

    /** @return nothing for what is no image */
    static std::optional<FirmwareImage> of(const QByteArray &bytes, const QString &fileName);
};
