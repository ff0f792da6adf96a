// SPDX-License-Identifier: MIT
// When a profile is painted, which QML cannot see.
#include <QtQuick/qquickwindow.h>
#include <QtTest/qtest.h>

#include "diveprofileitem.h"
#include "dives.h"

class TestProfileItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void initTestCase();
    void paintedOnlyForChanges();
    void sharp();
};

namespace {

class CountingProfile : public DiveProfileItem
{
public:
    using DiveProfileItem::DiveProfileItem;

    void paint(QPainter *painter) override
    {
        ++paints;
        DiveProfileItem::paint(painter);
    }

    void complete() { componentComplete(); }

    int paints = 0;
};

/** A profile in a window. */
struct Shown {
    QQuickWindow window;
    CountingProfile profile{window.contentItem()};

    explicit Shown(const Dive &dive)
    {
        window.resize(640, 400);
        profile.setSize({600, 350.5});
        profile.setDive(dive);
        profile.complete();
    }

    /** How often it is painted for the next picture of the window. */
    int paints()
    {
        profile.paints = 0;
        return window.grabWindow().isNull() ? -1 : profile.paints;
    }
};

} // namespace

void TestProfileItem::initTestCase()
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

void TestProfileItem::paintedOnlyForChanges()
{
    Shown shown(deepDive());
    DiveProfileItem &profile = shown.profile;
    QCOMPARE(shown.paints(), 1);
    QCOMPARE(shown.paints(), 0);
    profile.setCursorTime(500);
    QCOMPARE(shown.paints(), 0);
    profile.setCursorTime(700);
    profile.forceActiveFocus(Qt::TabFocusReason);
    QCOMPARE(shown.paints(), 0);
    profile.setUnits(DiveProfileItem::Metric);
    profile.setTheme(DiveProfileItem::Light);
    profile.setRange(0, 9000);
    profile.setPosition({20, 30});
    QCOMPARE(shown.paints(), 0);
    profile.setRange(600, 1200);
    profile.setUnits(DiveProfileItem::Imperial);
    QCOMPARE(shown.paints(), 1);
    profile.setSize({500, 300});
    QCOMPARE(shown.paints(), 1);
}

/** The size of an item need not be whole; a picture that is stretched to it is blurred. */
void TestProfileItem::sharp()
{
    Shown shown(shallowDive());
    const QImage image = shown.window.grabWindow();
    // The bar of the gas is above the water, which begins at 30.
    QCOMPARE(shown.profile.pointAt(0, 0).y(), 30.0);
    QCOMPARE(image.pixelColor(200, 24), QColor(Qt::white));
    QCOMPARE(image.pixelColor(200, 25), QColor(0x2B, 0x8A, 0x3E));
    QCOMPARE(image.pixelColor(200, 28), QColor(0x2B, 0x8A, 0x3E));
}

QTEST_MAIN(TestProfileItem)
#include "tst_profileitem.moc"
