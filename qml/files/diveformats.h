// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtCore/qurl.h>
#include <QtCore/qvariant.h>
#include <QtQml/qqml.h>

/** How a file with dives was written or read. */
struct DiveFileResult {
    Q_GADGET
    QML_VALUE_TYPE(diveFileResult)
    /** One line for people; empty if it worked. */
    Q_PROPERTY(QString error MEMBER error CONSTANT)
    /** After writing: what the format could not carry, one sentence each. */
    Q_PROPERTY(QStringList messages MEMBER messages CONSTANT)
    /** After reading: a list of dive. */
    Q_PROPERTY(QVariantList dives MEMBER dives CONSTANT)

public:
    QString error;
    QStringList messages;
    QVariantList dives;
};

/** Files with dives: see docs/formats.md and docs/pictures.md. */
class DiveFormats : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    enum Format {
        Uddf,
        CsvSummary, ///< one line a dive
        CsvSamples, ///< one line a sample
        Json,
        Svg, ///< the profile of one dive, or those of several over each other
        Png, ///< the same
        Pdf, ///< a page about one dive, or the profiles of several over each other
    };
    Q_ENUM(Format)

    using QObject::QObject;

    /**
     * Writes the dives (each a dive or a logbookDive) whole or not at all: what was there before
     * stays if anything fails. @p file is a URL or a path. @p options are for pictures: width,
     * height, fontFamily, imperial, dark and, for several dives, names, each of which may be left
     * out.
     */
    Q_INVOKABLE static DiveFileResult write(Format format, const QVariantList &dives,
                                            const QUrl &file, const QVariantMap &options = {});
    /** The same, without a file: an ArrayBuffer; empty if there is nothing to write. */
    Q_INVOKABLE static QByteArray bytes(Format format, const QVariantList &dives,
                                        const QVariantMap &options = {});
    /** Reads what write() and the varda command write as UDDF, CSV or JSON. */
    Q_INVOKABLE static DiveFileResult read(const QUrl &file);
};
