// SPDX-License-Identifier: MIT
#include <QtCore/qfile.h>
#include <QtGui/qfontdatabase.h>
#include <QtGui/qpainter.h>
#include <QtTest/qtest.h>

#include <varda/divepicture.h>

#include "dives.h"

class TestDivePicture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void pixels_data();
    void pixels();
    void scaled();
    void wholeBackground();
    void fitsIntoItsTarget();
    void pdf();
    void hostile();
    void transparent();
};

namespace {

/** From the package fonts-dejavu-core. */
QString family()
{
    return QStringLiteral("DejaVu Sans");
}

PictureOptions optionsOf(PictureOptions::Theme theme)
{
    PictureOptions options;
    options.theme = theme;
    options.fontFamily = family();
    return options;
}

/**
 * The part of two pictures that differs, in percent. Smaller pictures are compared, which hides how
 * a version of Qt smooths edges.
 */
double difference(const QImage &one, const QImage &other)
{
    if (one.size() != other.size())
        return 100;
    const QSize size = one.size() / 4;
    const auto reduced = [&](const QImage &image) {
        return image.convertToFormat(QImage::Format_RGB32)
            .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    };
    const QImage first = reduced(one);
    const QImage second = reduced(other);
    int different = 0;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const QRgb a = first.pixel(x, y);
            const QRgb b = second.pixel(x, y);
            if (qAbs(qRed(a) - qRed(b)) > 24 || qAbs(qGreen(a) - qGreen(b)) > 24
                || qAbs(qBlue(a) - qBlue(b)) > 24)
                ++different;
        }
    }
    return different * 100.0 / (size.width() * size.height());
}

} // namespace

void TestDivePicture::initTestCase()
{
    QVERIFY2(QFontDatabase::families().contains(family()),
             "the package fonts-dejavu-core is missing");
}

void TestDivePicture::pixels_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QImage>("image");

    const auto row = [](const char *name, const DivePicture &picture) {
        QTest::newRow(name) << QStringLiteral(VARDA_PROFILE_GOLDEN) + QString::fromUtf8(name)
                            << picture.toImage();
    };
    row("dive-light.png",
        DivePicture::profile(deepDive(), optionsOf(PictureOptions::Theme::Light)));
    row("dive-dark.png", DivePicture::profile(deepDive(), optionsOf(PictureOptions::Theme::Dark)));
    row("sheet.png", DivePicture::sheet(twelveGases(), optionsOf(PictureOptions::Theme::Light)));
}

void TestDivePicture::pixels()
{
    QFETCH(QString, file);
    QFETCH(QImage, image);
    if (qEnvironmentVariableIsSet("VARDA_UPDATE_GOLDEN")) {
        QVERIFY(image.save(file));
        return;
    }
    const double percent = difference(image, QImage(file));
    QVERIFY2(percent < 0.5, qPrintable(QStringLiteral("%1 % differs").arg(percent)));
}

void TestDivePicture::scaled()
{
    const DivePicture picture = DivePicture::profile(shallowDive());
    QCOMPARE(picture.toImage(2).size(), QSize(1920, 1080));
    QCOMPARE(picture.toImage(-1).size(), QSize(96, 54));
    QCOMPARE(picture.toImage(1e300).size(), QSize(9600, 5400));
    QVERIFY(picture.toPng().startsWith("\x89PNG"));
}

/** Half of a sheet's 595 points is no whole number: the outer columns are only half covered. */
void TestDivePicture::wholeBackground()
{
    for (const auto theme : {PictureOptions::Theme::Light, PictureOptions::Theme::Dark}) {
        const DivePicture sheet = DivePicture::sheet(shallowDive(), optionsOf(theme));
        const QImage image = sheet.toImage(0.5);
        const QRgb background = sheet.toImage().pixel(4, 4);
        QCOMPARE(image.size(), QSize(298, 421));
        for (int y = 0; y < image.height(); ++y) {
            QCOMPARE(image.pixel(0, y), background);
            QCOMPARE(image.pixel(297, y), background);
        }
    }
}

void TestDivePicture::fitsIntoItsTarget()
{
    QImage image(1000, 1000, QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter painter(&image);
    DivePicture::profile(shallowDive()).paint(&painter, QRectF(20, 0, 960, 1000));
    painter.end();
    // 960 x 540 in the middle of it, and nothing beside that.
    QCOMPARE(image.pixelColor(19, 500), QColor(Qt::red));
    QCOMPARE(image.pixelColor(500, 228), QColor(Qt::red));
    QCOMPARE(image.pixelColor(500, 772), QColor(Qt::red));
    QCOMPARE(image.pixelColor(22, 232), QColor(Qt::white));
    QCOMPARE(image.pixelColor(977, 767), QColor(Qt::white));
}

void TestDivePicture::pdf()
{
    const QByteArray sheet = DivePicture::sheet(deepDive()).toPdf();
    QVERIFY(sheet.startsWith("%PDF-1."));
    QCOMPARE(sheet.count("/Type /Page\n"), 1);
    QVERIFY2(sheet.contains("/MediaBox [0 0 595"),
             sheet.mid(sheet.indexOf("/MediaBox"), 60).constData());
    QVERIFY(DivePicture::profile(deepDive()).toPdf().contains("/MediaBox [0 0 960"));
}

void TestDivePicture::hostile()
{
    for (const Dive &dive : hostileDives()) {
        QVERIFY(!DivePicture::profile(dive).toImage(0.5).isNull());
        QVERIFY(!DivePicture::sheet(dive).toImage(0.5).isNull());
    }
}

void TestDivePicture::transparent()
{
    PictureOptions options;
    options.size = {96, 32};
    options.background = Qt::transparent;
    const QImage image = DivePicture::thumbnail(shallowDive(), options).toImage();
    QCOMPARE(image.pixelColor(1, 30).alpha(), 0);
    QVERIFY(image.pixelColor(20, 4).alpha() > 0);
    QCOMPARE(DivePicture::thumbnail(shallowDive()).toImage().pixelColor(0, 539), QColor(Qt::white));
}

QTEST_MAIN(TestDivePicture)
#include "tst_divepicture.moc"
