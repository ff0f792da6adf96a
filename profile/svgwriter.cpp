// SPDX-License-Identifier: MIT
#include "svgwriter_p.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/** To a hundredth, without what is not needed of it. */
QString number(double value)
{
    QString text = QString::number(std::round(value * 100) / 100 + 0.0, 'f', 2);
    while (text.endsWith(u'0'))
        text.chop(1);
    if (text.endsWith(u'.'))
        text.chop(1);
    return text;
}

QString attribute(const char *name, const QString &value)
{
    return u' ' + QLatin1StringView(name) + u"=\""_s + value.toHtmlEscaped() + u'"';
}

QString attribute(const char *name, double value)
{
    return attribute(name, number(value));
}

QString paint(const char *name, const QColor &colour)
{
    if (!colour.isValid())
        return attribute(name, u"none"_s);
    QString text = attribute(name, colour.name());
    if (colour.alpha() < 255)
        text += attribute(QLatin1StringView(name) == "fill"_L1 ? "fill-opacity" : "stroke-opacity",
                          colour.alphaF());
    return text;
}

QString svg(const Path &path)
{
    QStringList points;
    points.reserve(path.points.size());
    for (const QPointF &point : path.points)
        points.append(number(point.x()) + u',' + number(point.y()));
    QString text = path.fill.isValid() ? u"<polygon"_s : u"<polyline"_s;
    text += attribute("points", points.join(u' ')) + paint("fill", path.fill);
    if (path.line.isValid()) {
        text += paint("stroke", path.line) + attribute("stroke-width", path.width)
                + attribute("stroke-linejoin", u"round"_s);
        text += attribute("stroke-linecap", path.dashes.isEmpty() ? u"round"_s : u"butt"_s);
        QStringList dashes;
        for (const double each : path.dashes)
            dashes.append(number(each));
        if (!dashes.isEmpty())
            text += attribute("stroke-dasharray", dashes.join(u' '));
    }
    return text + u"/>"_s;
}

QString svg(const Box &box)
{
    QString text = u"<rect"_s + attribute("x", box.place.x()) + attribute("y", box.place.y())
                   + attribute("width", box.place.width())
                   + attribute("height", box.place.height());
    if (box.radius > 0)
        text += attribute("rx", box.radius);
    return text + paint("fill", box.fill) + u"/>"_s;
}

QString svg(const Dot &dot)
{
    return u"<circle"_s + attribute("cx", dot.centre.x()) + attribute("cy", dot.centre.y())
           + attribute("r", dot.radius) + paint("fill", dot.fill) + paint("stroke", dot.line)
           + attribute("stroke-width", 1.5) + u"/>"_s;
}

QString svg(const Text &text)
{
    QString element = u"<text"_s + attribute("x", text.at.x()) + attribute("y", text.at.y())
                      + attribute("font-size", text.size) + paint("fill", text.colour);
    if (text.anchor != Text::Anchor::Start)
        element += attribute("text-anchor",
                             text.anchor == Text::Anchor::End ? u"end"_s : u"middle"_s);
    if (text.bold)
        element += attribute("font-weight", u"bold"_s);
    return element + u'>' + text.text.toHtmlEscaped() + u"</text>"_s;
}

} // namespace

QByteArray svgOf(const Drawing &drawing)
{
    const QString width = number(drawing.size.width());
    const QString height = number(drawing.size.height());
    const QString family = drawing.fontFamily.isEmpty()
                               ? u"system-ui, 'Helvetica Neue', Arial, 'DejaVu Sans', sans-serif"_s
                               : drawing.fontFamily + u", sans-serif"_s;
    QString text = u"<svg"_s + attribute("xmlns", u"http://www.w3.org/2000/svg"_s)
                   + attribute("width", width) + attribute("height", height)
                   + attribute("viewBox", u"0 0 %1 %2"_s.arg(width, height))
                   + attribute("role", u"img"_s) + attribute("font-family", family) + u">\n"_s;
    text += u"<title>"_s + drawing.title.toHtmlEscaped() + u"</title>\n"_s;
    text += u"<desc>"_s + drawing.description.toHtmlEscaped() + u"</desc>\n"_s;
    for (const auto &item : drawing.items)
        text += std::visit([](const auto &each) { return svg(each); }, item) + u'\n';
    return (text + u"</svg>\n"_s).toUtf8();
}
