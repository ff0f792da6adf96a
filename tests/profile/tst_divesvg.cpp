// SPDX-License-Identifier: MIT
// Without a QGuiApplication: an SVG needs neither a font nor a screen.
#include <QtCore/qfile.h>
#include <QtCore/qregularexpression.h>
#include <QtCore/qxmlstream.h>
#include <QtTest/qtest.h>

#include <limits>

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
    void range();
    void rangeOutsideTheDive_data();
    void rangeOutsideTheDive();
    void timesOfAShortRange();
    void dotOnlyInItsRange();
    void withoutHeader();
    void background();
    void nothing();
    void places();
    void readings();
    void nearestReading();
    void comparison();
    void comparisonOfOne();
    void manyCompared();
    void thumbnail();
    void hostileInEachForm();
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
    PictureOptions part;
    part.from = 1400;
    part.to = 1700;
    part.header = false;
    row(VARDA_PROFILE_GOLDEN, "part.svg", svgOf(deepDive(), part));
    row(VARDA_PROFILE_GOLDEN, "comparison.svg",
        DivePicture::comparison({deepDive(), shallowDive(), twelveGases()}).toSvg());
    PictureOptions small;
    small.size = {96, 32};
    small.background = Qt::transparent;
    row(VARDA_PROFILE_GOLDEN, "thumbnail.svg", DivePicture::thumbnail(deepDive(), small).toSvg());
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

void TestDiveSvg::range()
{
    PictureOptions options;
    options.from = 600;
    options.to = 1205;
    const DivePicture picture = DivePicture::profile(deepDive(), options);
    QCOMPARE(picture.from(), 600.0);
    QCOMPARE(picture.to(), 1205.0);
    // A sample each ten seconds, and at the end the line up to the next one.
    const QList<QPointF> points = pointsOf(picture.toSvg(), kDepthLine);
    QCOMPARE(points.size(), 62);
    QCOMPARE(points.front().x(), 72.0);
    QCOMPARE(points[60].x(), 924.89);
    QCOMPARE(points.back().x(), 932.0);
    const QStringList texts = textsOf(picture.toSvg());
    for (const char *text : {"10 min", "14 min", "20 min", "21/35"})
        QVERIFY2(texts.contains(QString::fromUtf8(text)), text);
    for (const char *text : {"0", "8 min", "22 min", "EAN50", "Oxygen"})
        QVERIFY2(!texts.contains(QString::fromUtf8(text)), text);
}

void TestDiveSvg::rangeOutsideTheDive_data()
{
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");
    QTest::addColumn<double>("shownFrom");
    QTest::addColumn<double>("shownTo");

    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    QTest::newRow("all") << 0.0 << 0.0 << 0.0 << 1800.0;
    QTest::newRow("to the end") << 600.0 << 0.0 << 600.0 << 1800.0;
    QTest::newRow("too long") << -50.0 << 9000.0 << 0.0 << 1800.0;
    QTest::newRow("too short") << 600.0 << 601.0 << 600.0 << 610.0;
    QTest::newRow("backwards") << 600.0 << 300.0 << 600.0 << 610.0;
    QTest::newRow("after it") << 5000.0 << 6000.0 << 1790.0 << 1800.0;
    QTest::newRow("no numbers") << kNaN << kNaN << 0.0 << 1800.0;
    QTest::newRow("endless") << -kInfinity << kInfinity << 0.0 << 1800.0;
}

void TestDiveSvg::rangeOutsideTheDive()
{
    QFETCH(double, from);
    QFETCH(double, to);
    PictureOptions options;
    options.from = from;
    options.to = to;
    const DivePicture picture = DivePicture::profile(shallowDive(), options);
    QTEST(picture.from(), "shownFrom");
    QTEST(picture.to(), "shownTo");
    QVERIFY(isOnPage(picture.toSvg(), picture.size()));
}

void TestDiveSvg::timesOfAShortRange()
{
    PictureOptions options;
    options.from = 2385;
    options.to = 2600;
    const QStringList texts = textsOf(svgOf(deepDive(), options));
    QVERIFY(texts.contains(QStringLiteral("40:00")));
    QVERIFY(texts.contains(QStringLiteral("40:30")));
    options.from = 0;
    options.to = 120;
    QVERIFY(textsOf(svgOf(deepDive(), options)).contains(QStringLiteral("30 s")));
}

void TestDiveSvg::dotOnlyInItsRange()
{
    // The deepest of all is at 7:10.
    PictureOptions options;
    options.to = 430;
    QCOMPARE(svgOf(deepDive(), options).count("<circle"), 1);
    options.from = 431;
    options.to = 0;
    QCOMPARE(svgOf(deepDive(), options).count("<circle"), 0);
}

void TestDiveSvg::withoutHeader()
{
    PictureOptions options;
    options.header = false;
    options.size = {1, 1};
    const DivePicture smallest = DivePicture::profile(deepDive(), options);
    QCOMPARE(smallest.size(), QSizeF(120, 80));
    QVERIFY(isOnPage(smallest.toSvg(), smallest.size()));
    options.size = {400, 200};
    const QStringList texts = textsOf(svgOf(deepDive(), options));
    QVERIFY(!texts.contains(QStringLiteral("Dive 3")));
    QVERIFY(!texts.contains(QStringLiteral("52:00")));
    QVERIFY(texts.contains(QStringLiteral("EAN50")));
    for (const QSize size : {QSize(120, 80), QSize(160, 90), QSize(320, 120), QSize(200, 400)}) {
        options.size = size;
        const DivePicture picture = DivePicture::profile(twelveGases(), options);
        QVERIFY(isOnPage(picture.toSvg(), picture.size()));
        QVERIFY(picture.plot().height() >= 40);
    }
}

void TestDiveSvg::background()
{
    PictureOptions options;
    QVERIFY(svgOf(shallowDive(), options).contains("height=\"540\" fill=\"#ffffff\""));
    options.background = QColor(0xF0, 0xE0, 0xD0);
    QVERIFY(svgOf(shallowDive(), options).contains("height=\"540\" fill=\"#f0e0d0\""));
    options.background = Qt::transparent;
    QVERIFY(!svgOf(shallowDive(), options).contains("height=\"540\" fill"));
}

void TestDiveSvg::nothing()
{
    PictureOptions options;
    options.nothing = QStringLiteral("rien");
    QVERIFY(textsOf(svgOf(Dive(), options)).contains(QStringLiteral("rien")));
}

void TestDiveSvg::places()
{
    const DivePicture picture = DivePicture::profile(deepDive());
    QCOMPARE(picture.plot(), QRectF(72, 104, 860, 314));
    QCOMPARE(picture.temperaturePlot(), QRectF(72, 438, 860, 64));
    QVERIFY(DivePicture::comparison({deepDive(), shallowDive()}).temperaturePlot().isEmpty());
    QCOMPARE(picture.timeAt(72), 0.0);
    QCOMPARE(picture.timeAt(502), 1560.0);
    QCOMPARE(picture.timeAt(932), 3120.0);
    QCOMPARE(picture.pointAt(1560, 45), QPointF(502, 418));
    QCOMPARE(picture.pointAt(0, 0), QPointF(72, 104));
    PictureOptions options;
    options.units = Units::Imperial;
    options.from = 1560;
    const DivePicture part = DivePicture::profile(deepDive(), options);
    QCOMPARE(part.timeAt(72), 1560.0);
    // The grid ends at 160 feet.
    QCOMPARE(part.pointAt(3120, 48.768), QPointF(932, 418));
    QVERIFY(DivePicture::sheet(deepDive()).plot().isEmpty());
    QCOMPARE(DivePicture::sheet(deepDive()).timeAt(100), 0.0);
}

void TestDiveSvg::readings()
{
    const DivePicture picture = DivePicture::profile(deepDive());
    const QList<DiveReading> readings = picture.readings();
    QCOMPARE(readings.size(), 313);
    QCOMPARE(readings[43].time, 430.0);
    QCOMPARE(readings[43].depth, 43.9);
    QCOMPARE(readings[43].temperature.value_or(-1), 6.0);
    QCOMPARE(readings[43].gasIndex, 0);
    QCOMPARE(readings[151].gasIndex, 1);
    QVERIFY(!DivePicture::profile(shallowDive()).readings().back().temperature);
    QVERIFY(picture.readings(1).isEmpty());
    QVERIFY(picture.readings(-1).isEmpty());
    Dive unknown = shallowDive();
    unknown.gases.clear();
    QCOMPARE(DivePicture::profile(unknown).readings().front().gasIndex, -1);
}

void TestDiveSvg::nearestReading()
{
    const DivePicture picture = DivePicture::profile(deepDive());
    const auto timeAt = [&picture](double seconds) {
        return picture.readingAt(seconds).value_or(DiveReading{.time = -1}).time;
    };
    QCOMPARE(timeAt(420), 420.0);
    QCOMPARE(timeAt(424.9), 420.0);
    QCOMPARE(timeAt(425), 420.0);
    QCOMPARE(timeAt(425.1), 430.0);
    QCOMPARE(timeAt(-1e300), 0.0);
    QCOMPARE(timeAt(1e300), 3120.0);
    QCOMPARE(timeAt(std::numeric_limits<double>::quiet_NaN()), -1.0);
    QVERIFY(!DivePicture::profile(Dive()).readingAt(0));
}

void TestDiveSvg::comparison()
{
    PictureOptions options;
    options.names = {QString(), QStringLiteral("House <reef>")};
    const DivePicture picture = DivePicture::comparison({deepDive(), shallowDive(), oneSample()},
                                                        options);
    const QByteArray svg = picture.toSvg();
    QVERIFY(isOnPage(svg, picture.size()));
    const QList<Element> elements = elementsOf(svg);
    QCOMPARE(elements[1].text, QStringLiteral("3 dives"));
    QCOMPARE(elements[2].text,
             QStringLiteral("Depth over time. #3, 2024-03-02: greatest depth 43.9 m, duration "
                            "52:00. House <reef>: greatest depth 11.9 m, duration 30:00. #5, "
                            "2024-03-02: greatest depth 4.2 m, duration 0:00."));
    QStringList lines;
    for (const Element &element : elements) {
        if (element.value("stroke-width") == QStringLiteral("2")
            && element.value("points").count(QLatin1Char(',')) > 2)
            lines.append(element.value("stroke") + QLatin1Char(' ')
                         + element.value("stroke-dasharray"));
    }
    QCOMPARE(lines, (QStringList{QStringLiteral("#de6a08 9 4"), QStringLiteral("#1565a8 ")}));
    QCOMPARE(svg.count("<circle"), 1);
    const QStringList texts = textsOf(svg);
    for (const char *text : {"#3, 2024-03-02", "House <reef>", "#5, 2024-03-02"})
        QVERIFY2(texts.contains(QString::fromUtf8(text)), text);
    QVERIFY(!texts.contains(QStringLiteral("EAN50")));
    QVERIFY(pointsOf(svg, kTemperatureLine).isEmpty());
    QCOMPARE(picture.to(), 3120.0);
    QCOMPARE(picture.readings(1).size(), 181);
    QCOMPARE(picture.readingAt(300, 1).value_or(DiveReading()).depth, 11.6);
    QCOMPARE(picture.lineColor(1), QColor(0xDE, 0x6A, 0x08));
    QCOMPARE(picture.lineColor(7), QColor(0xDE, 0x6A, 0x08));
}

void TestDiveSvg::comparisonOfOne()
{
    QCOMPARE(DivePicture::comparison({deepDive()}).toSvg(), svgOf(deepDive()));
    QCOMPARE(DivePicture::comparison({}).toSvg(), svgOf(Dive()));
}

void TestDiveSvg::manyCompared()
{
    const QList<Dive> dives(40, shallowDive());
    PictureOptions options;
    options.header = false;
    options.size = {320, 160};
    const DivePicture picture = DivePicture::comparison(dives, options);
    QVERIFY(isOnPage(picture.toSvg(), picture.size()));
    QVERIFY(picture.plot().height() >= 40);
    const QStringList texts = textsOf(picture.toSvg());
    // As many names as there is room for.
    QCOMPARE(texts.count(QStringLiteral("#1, 2024-03-02")), 3);
    QVERIFY(texts.contains(QStringLiteral("+37")));
}

void TestDiveSvg::thumbnail()
{
    PictureOptions options;
    options.size = {96, 32};
    const DivePicture picture = DivePicture::thumbnail(shallowDive(), options);
    QCOMPARE(picture.size(), QSizeF(96, 32));
    QVERIFY(textsOf(picture.toSvg()).isEmpty());
    const QList<QPointF> points = pointsOf(picture.toSvg(), kDepthLine);
    QCOMPARE(points.front(), QPointF(1, 1));
    QCOMPARE(points.back(), QPointF(95, 1));
    const auto deepest = std::max_element(points.begin(), points.end(),
                                          [](QPointF a, QPointF b) { return a.y() < b.y(); });
    QCOMPARE(deepest->y(), 31.0);
    // Two for each of 48 columns of two pixels.
    const QByteArray many = DivePicture::thumbnail(manySamples(), options).toSvg();
    QCOMPARE(pointsOf(many, kDepthLine).size(), 96);
    options.size = {0, 0};
    QCOMPARE(DivePicture::thumbnail(Dive(), options).size(), QSizeF(16, 8));
}

void TestDiveSvg::hostileInEachForm()
{
    PictureOptions options;
    options.from = 990;
    options.to = 1010;
    const QList<Dive> dives = hostileDives();
    for (const DivePicture &picture :
         {DivePicture::comparison(dives), DivePicture::comparison(dives, options)})
        QVERIFY(isOnPage(picture.toSvg(), picture.size()));
    for (const Dive &dive : dives) {
        const DivePicture part = DivePicture::profile(dive, options);
        QVERIFY(isOnPage(part.toSvg(), part.size()));
        const DivePicture small = DivePicture::thumbnail(dive);
        QVERIFY(isOnPage(small.toSvg(), small.size()));
    }
}

QTEST_APPLESS_MAIN(TestDiveSvg)
#include "tst_divesvg.moc"
