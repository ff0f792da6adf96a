// SPDX-License-Identifier: MIT
#include <varda/divepicture.h>

#include <QtCore/qbuffer.h>
#include <QtGui/qpagesize.h>
#include <QtGui/qpainter.h>
#include <QtGui/qpdfwriter.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <span>
#include <vector>

#include "drawing_p.h"
#include "header_p.h"
#include "painting_p.h"
#include "profileplot_p.h"
#include "sheet_p.h"
#include "style_p.h"
#include "svgwriter_p.h"
#include "texts_p.h"
#include "thumbnail_p.h"

namespace {

constexpr QSize kLeast(480, 300);
constexpr QSize kLeastWithoutHeader(120, 80);
constexpr QSize kMost(10000, 10000);
constexpr double kMargin = 28;
constexpr double kHeader = 58;

QSize sizeOf(const PictureOptions &options)
{
    return options.size.expandedTo(options.header ? kLeast : kLeastWithoutHeader).boundedTo(kMost);
}

/** Below the header, if there is one. */
QRectF placeOfPlot(const PictureOptions &options)
{
    const QRectF all(QPointF(0, 0), sizeOf(options));
    return options.header ? all.adjusted(kMargin - 8, 24 + kHeader, -kMargin, -14)
                          : all.adjusted(0, 8, -14, 0);
}

QRectF placeOfHeader(const PictureOptions &options)
{
    return QRectF(QPointF(0, 0), sizeOf(options)).adjusted(kMargin, 24, -kMargin, -14);
}

} // namespace

struct DivePicture::Private {
    explicit Private(Drawing drawn) : drawing(std::move(drawn)) { }
    Private(std::span<const Dive> dives, std::span<const Readings> all, Drawing drawn,
            const PictureOptions &options)
        : drawing(std::move(drawn)), style(Style::of(options)), units(options.units)
    {
        ProfilePlot plot(dives, all, options, placeOfPlot(options));
        plot.draw(drawing);
        water = plot.water();
        temperature = plot.temperature();
        time = plot.time();
        depth = plot.depth();
        for (const Readings &each : all)
            readings.append(each.samples);
    }

    [[nodiscard]] static Private ofDive(const Dive &dive, const PictureOptions &options)
    {
        const Readings readings = Readings::of(dive);
        Drawing drawing = emptyDrawing(dive, readings, options, sizeOf(options));
        if (options.header)
            drawHeader(drawing, dive, readings, options, placeOfHeader(options));
        return {{&dive, 1}, {&readings, 1}, std::move(drawing), options};
    }

    [[nodiscard]] static Private ofDives(const QList<Dive> &dives, const PictureOptions &options)
    {
        std::vector<Readings> readings;
        std::transform(dives.begin(), dives.end(), std::back_inserter(readings), Readings::of);
        Drawing drawing = emptyDrawing(titleOf(dives), descriptionOf(dives, readings, options),
                                       options, sizeOf(options));
        if (options.header)
            drawTitle(drawing, drawing.title, QStringLiteral("depth over time"), options,
                      placeOfHeader(options));
        return {dives, readings, std::move(drawing), options};
    }

    Drawing drawing;
    Style style;
    PictureOptions::Units units = PictureOptions::Units::Metric;
    QRectF water; ///< empty if it is no profile, as are those below
    QRectF temperature;
    Scale time;
    Scale depth;
    QList<QList<DiveReading>> readings;
};

DivePicture::DivePicture(std::shared_ptr<const Private> drawn) : d(std::move(drawn)) { }

DivePicture DivePicture::profile(const Dive &dive, const PictureOptions &options)
{
    return DivePicture(std::make_shared<const Private>(Private::ofDive(dive, options)));
}

DivePicture DivePicture::comparison(const QList<Dive> &dives, const PictureOptions &options)
{
    if (dives.size() < 2)
        return profile(dives.value(0), options);
    return DivePicture(std::make_shared<const Private>(Private::ofDives(dives, options)));
}

DivePicture DivePicture::thumbnail(const Dive &dive, const PictureOptions &options)
{
    return DivePicture(std::make_shared<const Private>(thumbnailOf(dive, options)));
}

DivePicture DivePicture::sheet(const Dive &dive, const PictureOptions &options)
{
    return DivePicture(std::make_shared<const Private>(sheetOf(dive, options)));
}

QSizeF DivePicture::size() const
{
    return d->drawing.size;
}

QRectF DivePicture::plot() const
{
    return d->water;
}

QRectF DivePicture::temperaturePlot() const
{
    return d->temperature;
}

double DivePicture::from() const
{
    return d->time.from;
}

double DivePicture::to() const
{
    return d->time.to;
}

double DivePicture::timeAt(double x) const
{
    if (d->water.isEmpty())
        return 0;
    return from() + (x - d->water.left()) / d->water.width() * (to() - from());
}

QPointF DivePicture::pointAt(double seconds, double metres) const
{
    return {d->water.left() + d->time.place(seconds) * d->water.width(),
            d->water.top() + d->depth.place(depthIn(d->units, metres)) * d->water.height()};
}

QList<DiveReading> DivePicture::readings(qsizetype dive) const
{
    return d->readings.value(dive);
}

std::optional<DiveReading> DivePicture::readingAt(double seconds, qsizetype dive) const
{
    const QList<DiveReading> all = readings(dive);
    if (all.isEmpty() || std::isnan(seconds))
        return std::nullopt;
    const auto after = std::lower_bound(
        all.begin(), all.end(), seconds,
        [](const DiveReading &reading, double time) { return reading.time < time; });
    if (after == all.begin())
        return *after;
    const auto before = std::prev(after);
    const bool isBefore = after == all.end() || seconds - before->time <= after->time - seconds;
    return isBefore ? *before : *after;
}

QColor DivePicture::lineColor(qsizetype dive) const
{
    return d->style.dive(std::max<qsizetype>(dive, 0));
}

void DivePicture::paint(QPainter *painter, const QRectF &target) const
{
    const QSizeF fitting = size().scaled(target.size(), Qt::KeepAspectRatio);
    const double scale = fitting.width() / size().width();
    painter->save();
    painter->translate(target.center() - QPointF(fitting.width() / 2, fitting.height() / 2));
    painter->scale(scale, scale);
    paintDrawing(*painter, d->drawing);
    painter->restore();
}

QImage DivePicture::toImage(double scale) const
{
    // Written so that what is not a number becomes the least.
    const double bounded = scale >= 0.1 ? std::min(scale, 10.0) : 0.1;
    const bool isOpaque = d->drawing.background.alpha() == 255;
    QImage image((size() * bounded).toSize(),
                 isOpaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    // The picture covers the outer pixels in part only, if its scaled size is not whole.
    image.fill(d->drawing.background);
    QPainter painter(&image);
    paint(&painter, image.rect());
    return image;
}

QByteArray DivePicture::toPng(double scale) const
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return toImage(scale).save(&buffer, "PNG") ? bytes : QByteArray();
}

QByteArray DivePicture::toSvg() const
{
    return svgOf(d->drawing);
}

QByteArray DivePicture::toPdf() const
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setTitle(d->drawing.title);
        writer.setCreator(QStringLiteral("libvarda"));
        writer.setPageSize(QPageSize(size(), QPageSize::Point));
        writer.setPageMargins(QMarginsF());
        QPainter painter(&writer);
        paint(&painter, painter.viewport());
    }
    return bytes;
}
