// SPDX-License-Identifier: MIT
#include "commands/numbergaps.h"
#include "line/arguments.h"

#include <QtTest/qtest.h>

using namespace Qt::StringLiterals;

using Numbers = QList<std::uint16_t>;

class ArgumentsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numbers_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<Numbers>("numbers");
        QTest::newRow("one") << QByteArray("7") << Numbers{7};
        QTest::newRow("list") << QByteArray("3,1,2") << Numbers{1, 2, 3};
        QTest::newRow("range") << QByteArray("5-9") << Numbers{5, 6, 7, 8, 9};
        QTest::newRow("all of it") << QByteArray("4,1-2,2-3,4") << Numbers{1, 2, 3, 4};
        QTest::newRow("range of one") << QByteArray("6-6") << Numbers{6};
        QTest::newRow("the largest") << QByteArray("65534-65535") << Numbers{65534, 65535};
        QTest::newRow("zero") << QByteArray("0") << Numbers{0};
    }
    void numbers()
    {
        QFETCH(QByteArray, text);
        const auto numbers = numbersIn(text.toStdString());
        QVERIFY(numbers.has_value());
        QTEST(numbers.value_or(Numbers()), "numbers");
        QCOMPARE(numberList()(text.toStdString()), std::string());
    }

    void noNumbers_data()
    {
        QTest::addColumn<QByteArray>("text");
        for (const char *text : {"", ",", "1,", ",1", "1,,2", "a", "1a", "-1", "1-", "5-1", "1-2-3",
                                 "65536", "1 2", "+1", "0x10"})
            QTest::newRow(text) << QByteArray(text);
    }
    void noNumbers()
    {
        QFETCH(QByteArray, text);
        QVERIFY(!numbersIn(text.toStdString()).has_value());
        QVERIFY(!numberList()(text.toStdString()).empty());
    }

    void severalTexts()
    {
        QCOMPARE(numbersIn(std::vector<std::string>{"3,4", "1-3"}), (Numbers{1, 2, 3, 4}));
        QCOMPARE(numbersIn(std::vector<std::string>{}), Numbers());
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

QTEST_GUILESS_MAIN(ArgumentsTest)
#include "tst_arguments.moc"
