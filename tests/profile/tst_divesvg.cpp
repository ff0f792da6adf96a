// SPDX-License-Identifier: MIT
// Without a QGuiApplication: an SVG needs neither a font nor a screen.
#include <QtCore/qfile.h>
#include <QtCore/qregularexpression.h>
#include <QtCore/qxmlstream.h>
#include <QtTest/qtest.h>

#include <varda/divepicture.h>

#include "dives.h"

class TestDiveSvg : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void golden_data();
    void golden();
    void titleAndDescription();
    void unknownBegin();
    void units();
    void noTemperature();
    void figuresBesideTheTitle();
    void oneSampleIsADot();
    void noSamples();
    void extremesStay();
    void costOfSamples();
    void allNames();
    void hostile();
    void oddSizes();
};

namespace {

using Theme = PictureOptions::Theme;
using Units = PictureOptions::Units;

struct Element {
    QString name;
    QXmlStreamAttributes attributes;
    QString text;

    [[nodiscard]] QString value(const char *attribute) const
    {
        return attributes.value(QLatin1StringView(attribute)).toString();
    }
};

/** Empty if it is no XML. */
QList<Element> elementsOf(const QByteArray &svg)
{
    QXmlStreamReader xml(svg);
    QList<Element> elements;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement())
            elements.append({xml.name().toString(), xml.attributes(), {}});
        else if (xml.isCharacters() && !elements.isEmpty() && elements.back().text.isEmpty())
            elements.back().text = xml.text().toString();
    }
    return xml.hasError() ? QList<Element>() : elements;
}

QStringList textsOf(const QByteArray &svg)
{
    QStringList texts;
    for (const Element &element : elementsOf(svg)) {
        if (element.name == QStringLiteral("text"))
            texts.append(element.text);
    }
    return texts;
}

/** The points of the line with this colour. */
QList<QPointF> pointsOf(const QByteArray &svg, const char *stroke)
{
    QList<QPointF> points;
    for (const Element &element : elementsOf(svg)) {
        if (element.value("stroke") != QLatin1StringView(stroke) || !points.isEmpty())
            continue;
        for (const QString &pair : element.value("points").split(QLatin1Char(' '))) {
            const QStringList numbers = pair.split(QLatin1Char(','));
            points.append({numbers.value(0).toDouble(), numbers.value(1).toDouble()});
        }
    }
    return points;
}

QByteArray svgOf(const Dive &dive, const PictureOptions &options = {})
{
    return DivePicture::profile(dive, options).toSvg();
}

QByteArray sheetOf(const Dive &dive)
{
    return DivePicture::sheet(dive).toSvg();
}

/** Whether each number in it lies on the page. */
bool isOnPage(const QByteArray &svg, QSizeF page)
{
    const QRectF place(QPointF(-1, -1), page + QSizeF(2, 2));
    for (const Element &element : elementsOf(svg)) {
        for (const QString &pair : element.value("points").split(QLatin1Char(' '))) {
            const QStringList numbers = pair.split(QLatin1Char(','));
            if (numbers.size() == 2
                && !place.contains(QPointF(numbers[0].toDouble(), numbers[1].toDouble())))
                return false;
        }
        const QPointF at(element.value("x").toDouble() + element.value("cx").toDouble(),
                         element.value("y").toDouble() + element.value("cy").toDouble());
        if (!place.contains(at))
            return false;
    }
    return true;
}

const char *const kDepthLine = "#1565a8";
const char *const kTemperatureLine = "#c24e0c";

} // namespace

void TestDiveSvg::golden_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("svg");

    const PictureOptions dark{.size = {960, 540}, .units = Units::Metric, .theme = Theme::Dark};
    const PictureOptions feet{.size = {800, 600}, .units = Units::Imperial, .theme = Theme::Dark};
    const auto row = [](const char *folder, const char *name, const QByteArray &svg) {
        QTest::newRow(name) << QString::fromUtf8(folder) + QString::fromUtf8(name) << svg;
    };
    row(VARDA_PROFILE_IMAGES, "dive-light.svg", svgOf(deepDive()));
    row(VARDA_PROFILE_IMAGES, "dive-dark.svg", svgOf(deepDive(), dark));
    row(VARDA_PROFILE_GOLDEN, "shallow.svg", svgOf(shallowDive()));
    row(VARDA_PROFILE_GOLDEN, "twelve-gases-feet.svg", svgOf(twelveGases(), feet));
    row(VARDA_PROFILE_GOLDEN, "one-sample.svg", svgOf(oneSample()));
    row(VARDA_PROFILE_GOLDEN, "no-samples.svg", svgOf(Dive()));
    row(VARDA_PROFILE_GOLDEN, "sheet.svg", sheetOf(shallowDive()));
}

void TestDiveSvg::golden()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, svg);
    QFile golden(file);
    if (qEnvironmentVariableIsSet("VARDA_UPDATE_GOLDEN")) {
        QVERIFY(golden.open(QIODevice::WriteOnly));
        QCOMPARE(golden.write(svg), qint64(svg.size()));
        return;
    }
    QVERIFY(golden.open(QIODevice::ReadOnly));
    QCOMPARE(svg, golden.readAll());
}

void TestDiveSvg::titleAndDescription()
{
    const QList<Element> elements = elementsOf(svgOf(deepDive()));
    QVERIFY(elements.size() > 3);
    QCOMPARE(elements[0].value("role"), QStringLiteral("img"));
    QCOMPARE(elements[1].name, QStringLiteral("title"));
    QCOMPARE(elements[1].text, QStringLiteral("Dive 3, 2024-03-02 10:15"));
    QCOMPARE(elements[2].name, QStringLiteral("desc"));
    QCOMPARE(elements[2].text,
             QStringLiteral("Depth over time. Greatest depth 43.9 m, duration 52:00. Temperature 6 "
                            "to 16 °C. Gases: 21/35 from 0:00, EAN50 from 25:10, Oxygen from "
                            "41:10."));
}

void TestDiveSvg::unknownBegin()
{
    Dive dive = shallowDive();
    dive.stamp = 946684799; // the last second of another century
    QVERIFY(textsOf(svgOf(dive)).contains(QStringLiteral("begin unknown")));
    dive.stamp = 946684800;
    QVERIFY(textsOf(svgOf(dive)).contains(QStringLiteral("2000-01-01 00:00")));
}

void TestDiveSvg::units()
{
    const QStringList metric = textsOf(svgOf(deepDive()));
    for (const char *text : {"43.9 m", "6 to 16 °C", "10 m", "10 °C", "52:00", "30 min"})
        QVERIFY2(metric.contains(QString::fromUtf8(text)), text);
    PictureOptions options;
    options.units = Units::Imperial;
    const QStringList imperial = textsOf(svgOf(deepDive(), options));
    for (const char *text : {"144.0 ft", "43 to 61 °F", "20 ft", "50 °F", "52:00", "30 min"})
        QVERIFY2(imperial.contains(QString::fromUtf8(text)), text);
    QVERIFY(textsOf(svgOf(longDive())).contains(QStringLiteral("30:00:00")));
    QVERIFY(textsOf(svgOf(longDive())).contains(QStringLiteral("12 h")));
}

void TestDiveSvg::noTemperature()
{
    Dive dive = shallowDive();
    QVERIFY(pointsOf(svgOf(dive), kTemperatureLine).isEmpty());
    QVERIFY(!svgOf(dive).contains("temperature"));
    dive.lines[7].aux1Value = -1;
    QCOMPARE(pointsOf(svgOf(dive), kTemperatureLine).size(), 181);
}

/** Those that have room. */
void TestDiveSvg::figuresBesideTheTitle()
{
    PictureOptions narrow;
    narrow.size = {480, 300};
    narrow.units = Units::Imperial;
    Dive dive = longDive();
    for (DiveLine &line : dive.lines)
        line.time *= 8;
    const QStringList figures{QStringLiteral("79 to 81 °F"), QStringLiteral("46.6 ft"),
                              QStringLiteral("240:00:00")};
    const auto shown = [&figures](const QByteArray &svg) {
        QStringList result;
        for (const QString &text : textsOf(svg)) {
            if (figures.contains(text))
                result.append(text);
        }
        return result;
    };
    QCOMPARE(shown(svgOf(dive, narrow)),
             (QStringList{QStringLiteral("240:00:00"), QStringLiteral("46.6 ft")}));
    narrow.size = {640, 300};
    QCOMPARE(shown(svgOf(dive, narrow)).size(), 3);
}

void TestDiveSvg::oneSampleIsADot()
{
    QStringList dots;
    for (const Element &element : elementsOf(svgOf(oneSample()))) {
        if (element.name == QStringLiteral("circle"))
            dots.append(element.value("fill"));
    }
    QCOMPARE(dots,
             (QStringList{QLatin1StringView(kTemperatureLine), QLatin1StringView(kDepthLine)}));
}

void TestDiveSvg::noSamples()
{
    QVERIFY(textsOf(svgOf(Dive())).contains(QStringLiteral("no samples")));
    QVERIFY(textsOf(sheetOf(Dive())).contains(QStringLiteral("no samples")));
    QVERIFY(pointsOf(svgOf(Dive()), kDepthLine).isEmpty());
}

void TestDiveSvg::extremesStay()
{
    // 0 m is at 82, the deepest line of the grid, 30 m, at 502.
    QList<double> heights;
    for (const QPointF &point : pointsOf(svgOf(spikes()), kDepthLine))
        heights.append(point.y());
    std::sort(heights.begin(), heights.end());
    QCOMPARE(heights.front(), 110.0);
    QCOMPARE(heights[1], 222.0);
    QCOMPARE(heights[heights.size() - 2], 222.0);
    QCOMPARE(heights.back(), 502.0);
}

void TestDiveSvg::costOfSamples()
{
    // Two for each of 860 columns of pixels, and the last sample.
    QCOMPARE(pointsOf(svgOf(manySamples()), kDepthLine).size(), 1721);
    QCOMPARE(pointsOf(svgOf(deepDive()), kDepthLine).size(), 313);
}

void TestDiveSvg::allNames()
{
    QStringList names;
    for (const QString &text : textsOf(svgOf(twelveGases()))) {
        if (text.contains(QLatin1Char('/')) || text.startsWith(QStringLiteral("EAN"))
            || text == QStringLiteral("Oxygen"))
            names.prepend(text);
    }
    QCOMPARE(
        names,
        (QStringList{QStringLiteral("10/70"), QStringLiteral("12/60"), QStringLiteral("14/55"),
                     QStringLiteral("16/50"), QStringLiteral("18/45"), QStringLiteral("21/35"),
                     QStringLiteral("25/25"), QStringLiteral("EAN32"), QStringLiteral("EAN36"),
                     QStringLiteral("EAN40"), QStringLiteral("EAN50"), QStringLiteral("Oxygen")}));
}

void TestDiveSvg::hostile()
{
    static const QRegularExpression kNoNumber(QStringLiteral("[\" ,-](nan|inf)[\" ,]"));
    for (const Dive &dive : hostileDives()) {
        for (const DivePicture &picture : {DivePicture::profile(dive), DivePicture::sheet(dive)}) {
            const QByteArray svg = picture.toSvg();
            QVERIFY(!elementsOf(svg).isEmpty());
            QVERIFY(!QString::fromUtf8(svg).contains(kNoNumber));
            QVERIFY(isOnPage(svg, picture.size()));
            QVERIFY(svg.size() < 400000);
        }
    }
}

void TestDiveSvg::oddSizes()
{
    for (const QSize size :
         {QSize(0, 0), QSize(-5, 100000), QSize(480, 300), QSize(), QSize(9999, 301)}) {
        PictureOptions options;
        options.size = size;
        const DivePicture picture = DivePicture::profile(twelveGases(), options);
        QVERIFY(isOnPage(picture.toSvg(), picture.size()));
    }
    PictureOptions options;
    options.size = {1, 100000};
    QCOMPARE(DivePicture::profile(deepDive(), options).size(), QSizeF(480, 10000));
}

QTEST_APPLESS_MAIN(TestDiveSvg)
#include "tst_divesvg.moc"
