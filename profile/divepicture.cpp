// SPDX-License-Identifier: MIT
#include <varda/divepicture.h>

#include <QtCore/qbuffer.h>
#include <QtGui/qpagesize.h>
#include <QtGui/qpainter.h>
#include <QtGui/qpdfwriter.h>

#include <algorithm>

#include "drawing_p.h"
#include "header_p.h"
#include "painting_p.h"
#include "profileplot_p.h"
#include "sheet_p.h"
#include "svgwriter_p.h"

namespace {

constexpr QSize kLeast(480, 300);
constexpr QSize kMost(10000, 10000);
constexpr double kMargin = 28;
constexpr double kHeader = 58;

Drawing profileOf(const Dive &dive, const PictureOptions &options)
{
    const Readings readings = Readings::of(dive);
    const QSize size = options.size.expandedTo(kLeast).boundedTo(kMost);
    Drawing drawing = emptyDrawing(dive, readings, options, size);
    const QRectF inside = QRectF(QPointF(0, 0), size).adjusted(kMargin, 24, -kMargin, -14);
    drawHeader(drawing, dive, readings, options, inside);
    ProfilePlot(dive, readings, options, inside.adjusted(-8, kHeader, 0, 0)).draw(drawing);
    return drawing;
}

} // namespace

struct DivePicture::Private {
    Drawing drawing;
};

DivePicture::DivePicture(std::shared_ptr<const Private> drawn) : d(std::move(drawn)) { }

DivePicture DivePicture::profile(const Dive &dive, const PictureOptions &options)
{
    return DivePicture(std::make_shared<const Private>(Private{profileOf(dive, options)}));
}

DivePicture DivePicture::sheet(const Dive &dive, const PictureOptions &options)
{
    return DivePicture(std::make_shared<const Private>(Private{sheetOf(dive, options)}));
}

QSizeF DivePicture::size() const
{
    return d->drawing.size;
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
    QImage image((size() * bounded).toSize(), QImage::Format_RGB32);
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
