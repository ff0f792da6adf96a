// SPDX-License-Identifier: MIT
#include "output/divetext.h"

#include <QtTest/qtest.h>

#include <limits>

using namespace Qt::StringLiterals;

class DiveTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void names()
    {
        Dive dive;
        dive.gases.resize(2);
        dive.gases[1].setO2(0.18);
        dive.gases[1].setHe(0.45);
        QCOMPARE(gasNames(dive.gases), u"Air, 18/45"_s);
        QCOMPARE(gasNames({}), u"-"_s);
        QCOMPARE(gasNameOf(dive, 1), u"18/45"_s);
        QCOMPARE(gasNameOf(dive, 2), u"-"_s);
        QCOMPARE(gasNameOf(dive, -1), u"-"_s);
    }

    void begin()
    {
        DiveHeaderBlock header;
        QCOMPARE(beginText(header), QString());
        header.stamp = 1715934600;
        QCOMPARE(beginText(header), u"2024-05-17 08:30:00"_s);
        header.stamp = 946684799;
        QCOMPARE(beginText(header), QString());
        header.stamp = std::numeric_limits<std::uint64_t>::max();
        QCOMPARE(beginText(header), QString());
    }
};

QTEST_GUILESS_MAIN(DiveTextTest)
#include "tst_divetext.moc"
