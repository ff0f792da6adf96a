// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>
#include <QtCore/qpoint.h>
#include <QtCore/qrect.h>
#include <QtCore/qsize.h>
#include <QtGui/qimage.h>

#include <memory>
#include <optional>

#include <varda/dive.h>
#include <varda/divereading.h>
#include <varda/pictureoptions.h>
#include <varda/profileexport.h>

class QPainter;

/**
 * A picture of a dive: for a window, as PNG, SVG or PDF. All of them show the same.
 *
 * Texts need fonts, so there has to be a QGuiApplication for everything but toSvg(). The platform
 * "offscreen" is enough.
 *
 * What is drawn are the readings of DiveLine::time, DiveLine::depth and DiveLine::aux1Value (the
 * temperature, unless it is 0 in all samples) and the changes of gas. A sample is left out if its
 * depth is not a number or is below 1000 m, or if its time goes back. The cost of a picture grows
 * with its width rather than with the number of samples.
 */
class VARDA_PROFILE_EXPORT DivePicture
{
public:
    /** Depth, temperature and gases over time, with the greatest depth and the duration. */
    [[nodiscard]] static DivePicture profile(const Dive &dive, const PictureOptions &options = {});
    /**
     * The depths of several dives over each other, each from its begin. Lines differ in colour and
     * in their dashes; both repeat after six. A line above the profile names each dive.
     */
    [[nodiscard]] static DivePicture comparison(const QList<Dive> &dives,
                                                const PictureOptions &options = {});
    /** Only the line of the depth, as high as the picture, for lists of dives. */
    [[nodiscard]] static DivePicture thumbnail(const Dive &dive,
                                               const PictureOptions &options = {});
    /** One page: the figures of the dive, its profile, its gases, the computer and its owner. */
    [[nodiscard]] static DivePicture sheet(const Dive &dive, const PictureOptions &options = {});

    /** In pixels for a profile, in points for a sheet. */
    [[nodiscard]] QSizeF size() const;
    /**
     * Where depths are drawn, from the surface to the deepest line of the grid, and from the first
     * to the last second that is shown.
     */
    [[nodiscard]] QRectF plot() const;
    /** Below it, where the temperatures of one dive are drawn; empty if they are not. */
    [[nodiscard]] QRectF temperaturePlot() const;
    /** The first second that is shown. */
    [[nodiscard]] double from() const;
    /** The last one. */
    [[nodiscard]] double to() const;
    /** The seconds since the first sample at this place, which may be beside the plot. */
    [[nodiscard]] double timeAt(double x) const;
    /** Where this depth at this time is drawn, or would be. */
    [[nodiscard]] QPointF pointAt(double seconds, double metres) const;
    /** The samples that can be drawn, by rising time; of one dive of a comparison. */
    [[nodiscard]] QList<DiveReading> readings(qsizetype dive = 0) const;
    /** The sample that is nearest to this time; of two the earlier one. */
    [[nodiscard]] std::optional<DiveReading> readingAt(double seconds, qsizetype dive = 0) const;
    /** The colour of the depths; of one dive of a comparison. */
    [[nodiscard]] QColor lineColor(qsizetype dive = 0) const;

    /** Draws the picture as large as fits into the middle of @p target. */
    void paint(QPainter *painter, const QRectF &target) const;
    /** @param scale  of the pixels, 0.1 to 10: 2 for a screen with twice as many */
    [[nodiscard]] QImage toImage(double scale = 1) const;
    /** Empty if there is no memory for it. */
    [[nodiscard]] QByteArray toPng(double scale = 1) const;
    /** The same text on every machine and with every Qt, with a title and a description. */
    [[nodiscard]] QByteArray toSvg() const;
    /** A single page of the size of the picture. */
    [[nodiscard]] QByteArray toPdf() const;

private:
    struct Private;
    explicit DivePicture(std::shared_ptr<const Private> drawn);

    std::shared_ptr<const Private> d; ///< never changes, so that pictures can share it
};
