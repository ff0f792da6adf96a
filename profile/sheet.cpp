// SPDX-License-Identifier: MIT
#include "sheet_p.h"

#include <array>
#include <cmath>

#include "header_p.h"
#include "profileplot_p.h"
#include "style_p.h"
#include "texts_p.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QSizeF kPage(595, 842);
constexpr double kMargin = 44;
constexpr double kRow = 19;
/** As many as a computer has. */
constexpr qsizetype kMostGases = 12;

class Sheet
{
public:
    Sheet(const Dive &dive, const PictureOptions &options)
        : m_dive(dive),
          m_options(options),
          m_style(Style::of(options)),
          m_readings(Readings::of(dive)),
          m_drawing(emptyDrawing(dive, m_readings, options, kPage))
    {
    }

    Drawing draw()
    {
        drawHeader(m_drawing, m_dive, m_readings, m_options,
                   QRectF(kMargin, kMargin, kPage.width() - 2 * kMargin, 44));
        // What a short table of gases leaves.
        const double height =
            316 + 15 * double(qMax<qsizetype>(0, kMostGases / 2 - m_dive.gases.size()));
        ProfilePlot({&m_dive, 1}, {&m_readings, 1}, m_options,
                    QRectF(kMargin - 8, kMargin + 62, kPage.width() - 2 * kMargin + 8, height))
            .draw(m_drawing);
        m_y = kMargin + 98 + height;
        drawDive();
        drawGases();
        drawComputer();
        return std::move(m_drawing);
    }

private:
    void put(double x, const QString &text, const QColor &colour, bool bold = false,
             Text::Anchor anchor = Text::Anchor::Start)
    {
        m_drawing.items.emplace_back(Text{.at = {x, m_y},
                                          .text = text,
                                          .size = 11,
                                          .colour = colour,
                                          .anchor = anchor,
                                          .bold = bold});
    }

    void rule()
    {
        m_drawing.items.emplace_back(Path{.points = {{kMargin, m_y - 13}, {right(), m_y - 13}},
                                          .line = m_style.grid,
                                          .width = 1,
                                          .fill = {}});
    }

    void heading(const QString &text)
    {
        put(kMargin, text, m_style.depth, true);
        m_y += kRow;
        rule();
    }

    static double right() { return kPage.width() - kMargin; }

    /** Two names with their values on a line. */
    void facts(const QList<std::pair<QString, QString>> &list)
    {
        for (qsizetype i = 0; i < list.size(); ++i) {
            const double x = i % 2 == 0 ? kMargin : kMargin + 300;
            put(x, list[i].first, m_style.muted);
            put(x + 92, fitting(list[i].second, i % 2 == 0 ? 200 : 115), m_style.text);
            if (i % 2 == 1 || i + 1 == list.size())
                m_y += kRow;
        }
        m_y += kRow;
    }

    /** The begin of a text that is too long. */
    static QString fitting(QString text, double width)
    {
        if (widthOf(text, 11) <= width)
            return text;
        while (!text.isEmpty() && widthOf(text + u'…', 11) > width)
            text.chop(text.back().isLowSurrogate() ? 2 : 1);
        return text + u'…';
    }

    void drawDive()
    {
        heading(u"Dive"_s);
        QList<std::pair<QString, QString>> list;
        if (!m_readings.depths.isEmpty()) {
            list.append(
                {u"Average depth"_s, depthText(m_options.units, m_readings.profile.meanDepth)});
        }
        list.append({u"Circuit"_s, m_dive.kindByte == 0 ? u"open"_s : u"closed"_s});
        list.append({u"Samples"_s, samplesText()});
        facts(list);
    }

    [[nodiscard]] QString samplesText() const
    {
        QString count = QString::number(m_readings.depths.size());
        if (m_readings.depths.size() < 2)
            return count;
        return u"%1, every %2 s"_s.arg(count).arg(m_dive.sampleInterval);
    }

    void drawGases()
    {
        heading(u"Gases"_s);
        if (m_dive.gases.isEmpty()) {
            put(kMargin, u"none recorded"_s, m_style.muted);
            m_y += 2 * kRow;
            return;
        }
        constexpr std::array kColumns{kMargin + 260, kMargin + 350, kMargin + 507};
        put(kColumns[0], u"Oxygen"_s, m_style.muted, false, Text::Anchor::End);
        put(kColumns[1], u"Helium"_s, m_style.muted, false, Text::Anchor::End);
        put(kColumns[2], u"Breathed from"_s, m_style.muted, false, Text::Anchor::End);
        m_y += kRow - 2;
        for (qsizetype i = 0; i < qMin(m_dive.gases.size(), kMostGases); ++i) {
            const DiveGas &gas = m_dive.gases[i];
            m_drawing.items.emplace_back(Box{
                .place = QRectF(kMargin, m_y - 8, 8, 8), .fill = m_style.gas(int(i)), .radius = 2});
            put(kMargin + 16, shown(DiveProfile::gasName(gas)), m_style.text, true);
            put(kColumns[0], percent(gas.oxygen), m_style.text, false, Text::Anchor::End);
            put(kColumns[1], percent(gas.helium), m_style.text, false, Text::Anchor::End);
            put(kColumns[2], timesOf(int(i)), m_style.text, false, Text::Anchor::End);
            m_y += kRow - 4;
        }
        if (m_dive.gases.size() > kMostGases) {
            put(kMargin + 16, u"and %1 more"_s.arg(m_dive.gases.size() - kMostGases),
                m_style.muted);
            m_y += kRow - 4;
        }
        m_y += kRow;
    }

    static QString percent(float fraction)
    {
        if (!(fraction >= 0 && fraction <= 1))
            return u"?"_s;
        return QString::number(std::lround(fraction * 100)) + u" %"_s;
    }

    /** When a gas is begun; the first three times. */
    [[nodiscard]] QString timesOf(int gas) const
    {
        QStringList times;
        for (const DiveProfile::GasSwitch &change : m_readings.profile.switches) {
            if (change.gasIndex != gas)
                continue;
            if (times.size() == 3)
                return times.join(u", "_s) + u", …"_s;
            times.append(durationText(change.time));
        }
        return times.isEmpty() ? u"–"_s : times.join(u", "_s);
    }

    void drawComputer()
    {
        heading(u"Computer"_s);
        facts({{u"Model"_s, modelText(m_dive)},
               {u"Firmware"_s, orDash(m_dive.firmwareVersion)},
               {u"Serial number"_s, orDash(m_dive.serialNumber)},
               {u"Owner"_s, orDash(m_dive.ownerName)}});
    }

    static QString orDash(const QString &text)
    {
        const QString clean = shown(text);
        return clean.isEmpty() ? u"–"_s : clean;
    }

    const Dive &m_dive;
    const PictureOptions &m_options;
    Style m_style;
    Readings m_readings;
    Drawing m_drawing;
    double m_y = 0;
};

} // namespace

Drawing sheetOf(const Dive &dive, const PictureOptions &options)
{
    return Sheet(dive, options).draw();
}
