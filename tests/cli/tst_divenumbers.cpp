// SPDX-License-Identifier: MIT
#include "commands/dives/numbergaps.h"
#include "line/choices/divenumbers.h"

#include <QtTest/qtest.h>

using namespace Qt::StringLiterals;

using Numbers = QList<std::uint16_t>;

class DiveNumbersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numbers_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<Numbers>("numbers");
        QTest::newRow("one") << u"7"_s << Numbers{7};
        QTest::newRow("list") << u"3,1,2"_s << Numbers{1, 2, 3};
        QTest::newRow("range") << u"5-9"_s << Numbers{5, 6, 7, 8, 9};
        QTest::newRow("all of it") << u"4,1-2,2-3,4"_s << Numbers{1, 2, 3, 4};
        QTest::newRow("range of one") << u"6-6"_s << Numbers{6};
        QTest::newRow("the largest") << u"65534-65535"_s << Numbers{65534, 65535};
        QTest::newRow("zero") << u"0"_s << Numbers{0};
    }
    void numbers()
    {
        QFETCH(QString, text);
        const auto numbers = numbersIn(text);
        QVERIFY(numbers.has_value());
        QTEST(numbers.value_or(Numbers()), "numbers");
        QCOMPARE(checkNumbers(text), QString());
    }

    void noNumbers_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text : {"", ",", "1,", ",1", "1,,2", "a", "1a", "-1", "1-", "5-1", "1-2-3",
                                 "65536", "1 2", "+1", "0x10"})
            QTest::newRow(text) << QString::fromLatin1(text);
    }
    void noNumbers()
    {
        QFETCH(QString, text);
        QVERIFY(!numbersIn(text).has_value());
        QVERIFY(!checkNumbers(text).isEmpty());
    }

    void severalTexts()
    {
        QCOMPARE(numbersIn(QStringList{u"3,4"_s, u"1-3"_s}), (Numbers{1, 2, 3, 4}));
        QCOMPARE(numbersIn(QStringList()), Numbers());
    }

    void names()
    {
        const auto names = diveNamesIn(u"@12,5-6,@3"_s).value_or(DiveNames());
        QCOMPARE(names.numbers, (Numbers{5, 6}));
        QCOMPARE(names.ids, (QList<qint64>{12, 3}));
        QCOMPARE(checkDiveNames(u"@12"_s), QString());
        const DiveNames several = diveNamesIn(QStringList{u"7"_s, u"@1"_s, u"2"_s});
        QCOMPARE(several.numbers, (Numbers{2, 7}));
        QCOMPARE(several.ids, QList<qint64>{1});
        QVERIFY(diveNamesIn(QStringList()).isEmpty());
    }

    void noNames_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text : {"", "@", "@0", "@-1", "@1-2", "@1 ", "1,,@2", "@1,", "@x", "x"})
            QTest::newRow(text) << QString::fromLatin1(text);
    }
    void noNames()
    {
        QFETCH(QString, text);
        QVERIFY(!diveNamesIn(text).has_value());
        QVERIFY(!checkDiveNames(text).isEmpty());
    }

    void gaps_data()
    {
        QTest::addColumn<Numbers>("listed");
        QTest::addColumn<Numbers>("known");
        QTest::addColumn<QString>("gaps");
        QTest::newRow("nothing") << Numbers{} << Numbers{} << QString();
        QTest::newRow("one") << Numbers{7} << Numbers{} << QString();
        QTest::newRow("none") << Numbers{7, 8, 9} << Numbers{} << QString();
        QTest::newRow("two") << Numbers{7, 9, 12} << Numbers{} << u"8, 10-11"_s;
        QTest::newRow("known") << Numbers{7, 9, 12} << Numbers{8} << u"10-11"_s;
        QTest::newRow("all known") << Numbers{7, 9} << Numbers{8} << QString();
        QTest::newRow("since the last known") << Numbers{9} << Numbers{5, 6} << u"7-8"_s;
        QTest::newRow("up to a known one") << Numbers{5} << Numbers{8} << u"6-7"_s;
        QTest::newRow("among known ones") << Numbers{6} << Numbers{1, 5} << QString();
        QTest::newRow("nothing new") << Numbers{} << Numbers{1, 5} << QString();
        QTest::newRow("the widest") << Numbers{0, 65535} << Numbers{} << u"1-65534"_s;
        Numbers many;
        for (std::uint16_t number = 1; number < 30; number += 2)
            many.append(number);
        QTest::newRow("many") << many << Numbers{}
                              << u"2, 4, 6, 8, 10, 12, 14, 16, 18, 20 and more"_s;
    }
    void gaps()
    {
        QFETCH(Numbers, listed);
        QFETCH(Numbers, known);
        QTEST(gapsText(numberGaps(listed, known)), "gaps");
    }
};

QTEST_GUILESS_MAIN(DiveNumbersTest)
#include "tst_divenumbers.moc"
