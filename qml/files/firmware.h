// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qobject.h>
#include <QtCore/qurl.h>
#include <QtQml/qqml.h>

#include <varda/firmwareimage.h>

/** A firmware image and what it says about itself; VardaComputer.uploadFirmware() takes its data. */
struct FirmwareFile {
    Q_GADGET
    QML_VALUE_TYPE(firmwareFile)
    /** Why it cannot be read or uploaded, as a sentence; empty if it can. */
    Q_PROPERTY(QString error READ error CONSTANT)
    Q_PROPERTY(QByteArray data MEMBER data CONSTANT)
    /** Without folders; an image without header has name and version from it. */
    Q_PROPERTY(QString fileName MEMBER fileName CONSTANT)
    /** A Firmware.Kind. */
    Q_PROPERTY(int kind READ kind CONSTANT)
    Q_PROPERTY(QString name READ name CONSTANT)
    /** Packed, as a computer reports versions; 0 if unknown. */
    Q_PROPERTY(uint version READ version CONSTANT)
    Q_PROPERTY(QString versionStr READ versionStr CONSTANT)
    Q_PROPERTY(int size READ size CONSTANT)
    Q_PROPERTY(int checksum READ checksum CONSTANT)
    /** Whether a computer can continue an interrupted upload. */
    Q_PROPERTY(bool canResume READ canResume CONSTANT)

public:
    [[nodiscard]] QString error() const
    {
        return readError.isEmpty() ? image.errorString() : readError;
    }
    [[nodiscard]] int kind() const { return int(image.kind); }
    [[nodiscard]] QString name() const { return image.name; }
    [[nodiscard]] uint version() const { return image.version; }
    [[nodiscard]] QString versionStr() const { return image.versionStr; }
    [[nodiscard]] int size() const { return int(image.size); }
    [[nodiscard]] int checksum() const { return image.checksum; }
    [[nodiscard]] bool canResume() const { return image.canResume(); }

    QString readError;
    QByteArray data;
    QString fileName;
    FirmwareImage image;
};

/** Looks at firmware images; this needs no computer and sends nothing. */
class Firmware : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /** FirmwareImage::Kind of the library. */
    enum Kind {
        Empty = int(FirmwareImage::Kind::Empty),
        Unknown = int(FirmwareImage::Kind::Unknown),
        WithoutHeader = int(FirmwareImage::Kind::WithoutHeader),
        WithHeader = int(FirmwareImage::Kind::Firmware),
        Bootloader = int(FirmwareImage::Kind::Bootloader),
    };
    Q_ENUM(Kind)

    using QObject::QObject;

    /** @p file is a URL or a path. */
    Q_INVOKABLE static FirmwareFile read(const QUrl &file);
    /** An image whose bytes are there already. */
    Q_INVOKABLE static FirmwareFile fromData(const QByteArray &data, const QString &fileName);
};
