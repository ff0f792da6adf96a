// SPDX-License-Identifier: MIT
#include "thumbnail_p.h"

#include <algorithm>

#include "header_p.h"
#include "readings_p.h"
#include "style_p.h"

Drawing thumbnailOf(const Dive &dive, const PictureOptions &options)
{
    constexpr QSize kLeast(16, 8);
    constexpr QSize kMost(1000, 1000);
    constexpr double kLine = 1.5;
    constexpr double kColumn = 2; // half of the points, and the same look

    const Readings readings = Readings::of(dive);
    const QSize size = options.size.expandedTo(kLeast).boundedTo(kMost);
    Drawing drawing = emptyDrawing(dive, readings, options, size);
    if (readings.depths.isEmpty())
        return drawing;
    const QRectF place = QRectF(QPointF(0, 0), size).adjusted(1, 1, -1, -1);
    const double duration = std::max(readings.profile.duration, 60.0);
    const double depth = std::max(readings.profile.maximumDepth, 3.0);
    QList<QPointF> points;
    points.reserve(readings.depths.size() + 2);
    for (const QPointF &reading : readings.depths)
        points.append({place.left() + reading.x() / duration * place.width(),
                       place.top() + reading.y() / depth * place.height()});
    points = thinned(points, kColumn);
    const Style style = Style::of(options);
    QList<QPointF> outline = points;
    outline.append({points.back().x(), place.top()});
    outline.append({points.front().x(), place.top()});
    drawing.items.emplace_back(
        Path{.points = outline, .line = {}, .width = 0, .fill = style.water});
    drawing.items.emplace_back(
        Path{.points = points, .line = style.depth, .width = kLine, .fill = {}});
    return drawing;
}
