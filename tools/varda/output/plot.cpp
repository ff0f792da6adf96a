// SPDX-License-Identifier: MIT
#include "output/plot.h"

#include <varda/diveprofile.h>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int kNarrowest = 10;
constexpr char32_t kBraille = 0x2800;

/** How a character is divided, and what its dots add up to. */
struct Raster {
    int columns;
    int rows;
};
constexpr Raster kBrailleRaster{2, 4};
constexpr Raster kAsciiRaster{1, 1};
constexpr std::array<std::array<int, 4>, 2> kBrailleDots{
    {{0x01, 0x02, 0x04, 0x40}, {0x08, 0x10, 0x20, 0x80}}};

class Canvas
{
public:
    Canvas(int width, int height, const Raster &raster)
        : m_width(width),
          m_height(height),
          m_raster(raster),
          m_cells(std::size_t(width) * std::size_t(height))
    {
    }

    [[nodiscard]] int dotColumns() const { return m_width * m_raster.columns; }
    [[nodiscard]] int dotRows() const { return m_height * m_raster.rows; }

    void set(int x, int y)
    {
        m_cells[cell(x / m_raster.columns, y / m_raster.rows)] |=
            kBrailleDots[std::size_t(x % m_raster.columns)][std::size_t(y % m_raster.rows)];
    }

    [[nodiscard]] QString row(int row) const
    {
        QString text;
        for (int x = 0; x < m_width; ++x) {
            const int dots = m_cells[cell(x, row)];
            if (dots == 0)
                text += u' ';
            else if (m_raster.rows == 1)
                text += u'*';
            else
                text += QChar::fromUcs4(kBraille + char32_t(dots));
        }
        return text;
    }

private:
    [[nodiscard]] std::size_t cell(int column, int row) const
    {
        return std::size_t(row) * std::size_t(m_width) + std::size_t(column);
    }

    int m_width;
    int m_height;
    Raster m_raster;
    std::vector<int> m_cells;
};

/** Each column of dots gets those between the depth at its left and at its right. */
void draw(Canvas &canvas, const QList<DiveLine> &lines, double duration, Units units, double bottom)
{
    const auto column = [&](double time) {
        return int(std::lround(time / duration * (canvas.dotColumns() - 1)));
    };
    const auto row = [&](double depth) {
        return int(std::lround(depthIn(units, depth) / bottom * (canvas.dotRows() - 1)));
    };
    int lastX = column(lines.front().time);
    int lastY = row(lines.front().depth);
    for (const DiveLine &line : lines) {
        const int x = column(line.time);
        const int y = row(line.depth);
        const int steps = std::max(x - lastX, 1);
        int from = lastY;
        for (int step = 1; step <= steps; ++step) {
            const int to = lastY + int(std::lround(double(y - lastY) * step / steps));
            for (int each = std::min(from, to); each <= std::max(from, to); ++each)
                canvas.set(std::min(lastX + step, x), each);
            from = to;
        }
        lastX = x;
        lastY = y;
    }
}

/** The smallest of 1, 2, 5, 10, 20, … of which no more than @p most fit in. */
double niceStep(double range, int most)
{
    for (double power = 1;; power *= 10) {
        for (const double factor : {1.0, 2.0, 5.0}) {
            if (range / (factor * power) <= most)
                return factor * power;
        }
    }
}

/** Where it does not fit, nothing is put. */
void put(QString &line, qsizetype at, const QString &text)
{
    const auto free = [&](qsizetype i) { return i < 0 || i >= line.size() || line[i] == u' '; };
    if (at < 0 || at + text.size() > line.size())
        return;
    for (qsizetype i = at - 1; i <= at + text.size(); ++i) {
        if (!free(i))
            return;
    }
    line.replace(at, text.size(), text);
}

QString trimmedEnd(QString text)
{
    while (text.endsWith(u' '))
        text.chop(1);
    return text + u'\n';
}

class Plot
{
public:
    Plot(const Dive &dive, const PlotStyle &style)
        : m_dive(dive),
          m_utf8(style.utf8),
          m_height(style.height),
          m_profile(DiveProfile::fromDive(dive)),
          m_duration(std::max(m_profile.duration, 1.0)),
          m_units(style.units),
          m_bottom(std::max(depthIn(m_units, m_profile.maximumDepth), 1.0)),
          m_depthStep(niceStep(m_bottom, std::max(m_height / 3, 1))),
          m_margin(QString::number(m_bottom, 'f', 0).size() + depthUnit(m_units).size() + 3),
          m_width(std::max(style.width - int(m_margin) - 1, kNarrowest))
    {
    }

    [[nodiscard]] QString text() const
    {
        Canvas canvas(m_width, m_height, m_utf8 ? kBrailleRaster : kAsciiRaster);
        draw(canvas, m_dive.lines, m_duration, m_units, m_bottom);
        QString text;
        for (int row = 0; row < m_height; ++row)
            text += trimmedEnd(depthLabel(row) + canvas.row(row));
        return text + timeAxis() + gasRow();
    }

private:
    [[nodiscard]] int columnOf(double time) const
    {
        return int(std::lround(time / m_duration * (m_width - 1)));
    }

    [[nodiscard]] QString depthLabel(int row) const
    {
        const int ticks = int(m_bottom / m_depthStep);
        for (int tick = 0; tick <= ticks; ++tick) {
            const double depth = tick * m_depthStep;
            if (int(std::lround(depth / m_bottom * (m_height - 1))) == row) {
                const QString unit = u' ' + depthUnit(m_units);
                return QString::number(depth, 'f', 0).rightJustified(m_margin - unit.size()) + unit
                       + (m_utf8 ? u'┤' : u'+');
            }
        }
        return QString(m_margin, u' ') + (m_utf8 ? u'│' : u'|');
    }

    [[nodiscard]] QString timeAxis() const
    {
        QString axis(m_width, m_utf8 ? u'─' : u'-');
        QString labels(m_margin + 1 + m_width, u' ');
        const double minutes = m_duration / 60;
        const double step = niceStep(minutes, std::max(m_width / 10, 1));
        const int ticks = int(minutes / step);
        for (int tick = 0; tick <= ticks; ++tick) {
            const double minute = tick * step;
            const int column = columnOf(minute * 60);
            axis[column] = m_utf8 ? u'┬' : u'+';
            const QString number = QString::number(minute, 'f', 0);
            const auto middle = m_margin + 1 + column - (number.size() - 1) / 2;
            put(labels, std::min(middle, labels.size() - number.size()), number);
        }
        const QString unit = u"min"_s;
        put(labels, m_margin - unit.size(), unit);
        return QString(m_margin, u' ') + (m_utf8 ? u'└' : u'+') + axis + u'\n' + trimmedEnd(labels);
    }

    [[nodiscard]] QString gasRow() const
    {
        if (m_dive.gases.isEmpty())
            return {};
        QString row(m_margin + 1 + m_width, u' ');
        put(row, m_margin - 3, u"gas"_s);
        for (const DiveProfile::GasSwitch &each : m_profile.switches)
            row[m_margin + 1 + columnOf(each.time)] = gasMark(each.gasIndex);
        return trimmedEnd(row);
    }

    const Dive &m_dive;
    const bool m_utf8;
    const int m_height;
    const DiveProfile m_profile;
    const double m_duration;
    const Units m_units;
    const double m_bottom;
    const double m_depthStep;
    const qsizetype m_margin; ///< columns of the labels of depth
    const int m_width;        ///< columns of the curve
};

} // namespace

QChar gasMark(int gasIndex)
{
    constexpr QStringView kMarks = u"123456789abc";
    return gasIndex >= 0 && gasIndex < kMarks.size() ? kMarks[gasIndex] : QChar(u'?');
}

QString profilePlot(const Dive &dive, const PlotStyle &style)
{
    return dive.lines.size() < 2 ? QString() : Plot(dive, style).text();
}
