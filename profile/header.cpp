// SPDX-License-Identifier: MIT
#include "header_p.h"

#include <algorithm>

#include "style_p.h"
#include "texts_p.h"

using namespace Qt::StringLiterals;

namespace {

QString titleOf(const Dive &dive)
{
    return u"Dive %1"_s.arg(dive.diveNumber);
}

/** For those who cannot see the picture. */
QString descriptionOf(const Dive &dive, const Readings &readings, PictureOptions::Units units)
{
    const DiveProfile &profile = readings.profile;
    if (readings.depths.isEmpty())
        return u"There are no samples."_s;
    QString text = u"Depth over time. Greatest depth %1, duration %2."_s.arg(
        depthText(units, profile.maximumDepth), durationText(profile.duration));
    if (profile.temperature)
        text += u" Temperature %1."_s.arg(
            temperatureText(units, profile.temperature->lowest, profile.temperature->highest));
    // More cannot be followed by ear.
    constexpr qsizetype kMostSwitches = 24;
    QStringList gases;
    for (const DiveProfile::GasSwitch &change :
         profile.switches.first(qMin(profile.switches.size(), kMostSwitches))) {
        if (change.gasIndex >= 0 && change.gasIndex < dive.gases.size())
            gases.append(u"%1 from %2"_s.arg(DiveProfile::gasName(dive.gases[change.gasIndex]),
                                             durationText(change.time)));
    }
    if (!gases.isEmpty())
        text += u" Gases: %1."_s.arg(gases.join(u", "_s));
    return text;
}

} // namespace

Drawing emptyDrawing(const QString &title, const QString &description,
                     const PictureOptions &options, QSizeF size)
{
    Drawing drawing;
    drawing.size = size;
    drawing.title = title;
    drawing.description = description;
    drawing.fontFamily = shown(options.fontFamily);
    drawing.background = options.background.isValid() ? options.background
                                                      : Style::of(options).background;
    if (drawing.background.alpha() > 0)
        drawing.items.emplace_back(
            Box{.place = QRectF(QPointF(0, 0), size), .fill = drawing.background});
    return drawing;
}

Drawing emptyDrawing(const Dive &dive, const Readings &readings, const PictureOptions &options,
                     QSizeF size)
{
    return emptyDrawing(titleOf(dive) + u", "_s + beginText(dive),
                        descriptionOf(dive, readings, options.units), options, size);
}

QString titleOf(std::span<const Dive> dives)
{
    return u"%1 dives"_s.arg(dives.size());
}

QString descriptionOf(std::span<const Dive> dives, std::span<const Readings> readings,
                      const PictureOptions &options)
{
    constexpr std::size_t kMostDives = 24;
    QString text = u"Depth over time."_s;
    for (std::size_t i = 0; i < std::min(dives.size(), kMostDives); ++i) {
        const DiveProfile &profile = readings[i].profile;
        text += u" %1: greatest depth %2, duration %3."_s.arg(
            nameOf(dives[i], options.names.value(qsizetype(i))),
            depthText(options.units, profile.maximumDepth), durationText(profile.duration));
    }
    return text;
}

void drawTitle(Drawing &drawing, const QString &title, const QString &below,
               const PictureOptions &options, const QRectF &place)
{
    const Style style = Style::of(options);
    drawing.items.emplace_back(Text{.at = place.topLeft() + QPointF(0, 18),
                                    .text = title,
                                    .size = 20,
                                    .colour = style.text,
                                    .anchor = Text::Anchor::Start,
                                    .bold = true});
    drawing.items.emplace_back(Text{
        .at = place.topLeft() + QPointF(0, 38), .text = below, .size = 13, .colour = style.muted});
}

void drawHeader(Drawing &drawing, const Dive &dive, const Readings &readings,
                const PictureOptions &options, const QRectF &place)
{
    const Style style = Style::of(options);
    drawTitle(drawing, titleOf(dive), beginText(dive), options, place);
    if (readings.depths.isEmpty())
        return;
    const DiveProfile &profile = readings.profile;
    QList<std::pair<QString, QString>> figures;
    figures.append({u"duration"_s, durationText(profile.duration)});
    figures.append({u"greatest depth"_s, depthText(options.units, profile.maximumDepth)});
    if (profile.temperature)
        figures.append(
            {u"temperature"_s, temperatureText(options.units, profile.temperature->lowest,
                                               profile.temperature->highest)});
    const double titleEnd = place.left()
                            + std::max(widthOf(titleOf(dive), 22), widthOf(beginText(dive), 13))
                            + 8;
    double x = place.right();
    for (const auto &[name, value] : figures) {
        const double width = std::max(widthOf(value, 20), widthOf(name, 12));
        if (x - width < titleEnd)
            break;
        drawing.items.emplace_back(Text{.at = {x, place.top() + 18},
                                        .text = value,
                                        .size = 18,
                                        .colour = style.text,
                                        .anchor = Text::Anchor::End,
                                        .bold = true});
        drawing.items.emplace_back(Text{.at = {x, place.top() + 38},
                                        .text = name,
                                        .size = 12,
                                        .colour = style.muted,
                                        .anchor = Text::Anchor::End});
        x -= width + 22;
    }
}
