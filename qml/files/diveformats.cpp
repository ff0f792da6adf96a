// SPDX-License-Identifier: MIT
#include "diveformats.h"

#include <QtCore/qbuffer.h>

#include <algorithm>

#include <varda/csvformat.h>
#include <varda/divepicture.h>
#include <varda/jsonformat.h>
#include <varda/logbookdive.h>
#include <varda/uddfformat.h>

#include "field.h"
#include "wholefile_p.h"

using namespace Qt::StringLiterals;

namespace {

// More dives than anybody has.
constexpr qint64 kLargestFile = qint64(1) << 30;

struct Written {
    QByteArray bytes;
    DivesWritten report;
};

/** None if anything among them is no dive. */
QList<Dive> divesIn(const QVariantList &values)
{
    QList<Dive> dives;
    for (const QVariant &each : values) {
        if (each.metaType() == QMetaType::fromType<Dive>())
            dives.append(each.value<Dive>());
        else if (each.metaType() == QMetaType::fromType<LogbookDive>())
            dives.append(each.value<LogbookDive>().dive);
        else
            return {};
    }
    return dives;
}

PictureOptions pictureOptionsIn(const QVariantMap &from)
{
    PictureOptions options;
    const int width = from.value(u"width"_s).toInt();
    const int height = from.value(u"height"_s).toInt();
    if (width > 0)
        options.size.setWidth(width);
    if (height > 0)
        options.size.setHeight(height);
    options.names = from.value(u"names"_s).toStringList();
    options.fontFamily = from.value(u"fontFamily"_s).toString();
    if (from.value(u"imperial"_s).toBool())
        options.units = PictureOptions::Units::Imperial;
    if (from.value(u"dark"_s).toBool())
        options.theme = PictureOptions::Theme::Dark;
    return options;
}

QByteArray pictureOf(const QList<Dive> &dives, DiveFormats::Format format,
                     const PictureOptions &options)
{
    const bool isComparison = dives.size() > 1;
    if (format == DiveFormats::Pdf && !isComparison)
        return DivePicture::sheet(dives.first(), options).toPdf();
    const DivePicture picture = isComparison ? DivePicture::comparison(dives, options)
                                             : DivePicture::profile(dives.first(), options);
    switch (format) {
    case DiveFormats::Pdf:
        return picture.toPdf();
    case DiveFormats::Png:
        return picture.toPng();
    default:
        return picture.toSvg();
    }
}

bool isPicture(DiveFormats::Format format)
{
    return format == DiveFormats::Svg || format == DiveFormats::Png || format == DiveFormats::Pdf;
}

DivesWritten writeTo(QIODevice *device, DiveFormats::Format format, const QList<Dive> &dives)
{
    switch (format) {
    case DiveFormats::CsvSummary:
        return CsvFormat::writeSummary(device, dives);
    case DiveFormats::CsvSamples:
        return CsvFormat::writeSamples(device, dives);
    case DiveFormats::Json:
        return JsonFormat::write(device, dives);
    default:
        return UddfFormat::write(device, dives);
    }
}

Written written(DiveFormats::Format format, const QVariantList &values, const QVariantMap &options)
{
    const QList<Dive> dives = divesIn(values);
    if (dives.isEmpty())
        return {{}, {u"there is no dive to write"_s, {}}};
    if (!isPicture(format)) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        const DivesWritten report = writeTo(&buffer, format, dives);
        return {buffer.data(), report};
    }
    const QByteArray bytes = pictureOf(dives, format, pictureOptionsIn(options));
    return {bytes,
            {bytes.isEmpty() ? u"there is not enough memory for the picture"_s : QString(), {}}};
}

/** By how it begins: whoever has renamed a file knows less. */
DivesRead divesOf(QByteArray bytes)
{
    constexpr qsizetype kEnough = 1000;
    QByteArray begin = bytes.left(kEnough);
    if (begin.startsWith("\xEF\xBB\xBF"))
        begin.remove(0, 3);
    begin = begin.trimmed();
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    if (begin.startsWith('<'))
        return UddfFormat::read(&buffer);
    return begin.startsWith('{') ? JsonFormat::read(&buffer) : CsvFormat::read(&buffer);
}

} // namespace

DiveFileResult DiveFormats::write(Format format, const QVariantList &dives, const QUrl &file,
                                  const QVariantMap &options)
{
    const Written result = written(format, dives, options);
    const QString error = result.report.error.isEmpty() ? WholeFile::write(file, result.bytes)
                                                        : result.report.error;
    return {error, result.report.messages, {}};
}

QByteArray DiveFormats::bytes(Format format, const QVariantList &dives, const QVariantMap &options)
{
    const Written result = written(format, dives, options);
    // A null one would be a buffer that QML takes for a detached one.
    return result.report.error.isEmpty() ? result.bytes : QByteArray("");
}

DiveFileResult DiveFormats::read(const QUrl &file)
{
    const WholeFile::Content content = WholeFile::read(file, kLargestFile);
    if (!content.error.isEmpty())
        return {content.error, {}, {}};
    const DivesRead read = divesOf(content.bytes);
    return {read.error, {}, asVariants(read.dives)};
}
