// SPDX-License-Identifier: MIT
#pragma once

#include <varda/firmwareimage.h>

#include <QtCore/qbytearray.h>
#include <QtCore/qstring.h>

/** A file with firmware. */
struct ImageFile {
    QString fileName; ///< without folders
    QByteArray bytes;
    FirmwareImage image;
};

/** @throws Failure  also if it is no image */
[[nodiscard]] ImageFile readImage(const QString &path);
