// SPDX-License-Identifier: MIT
#include "arguments.h"

#include <QtTest/qtest.h>

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
};

QTEST_GUILESS_MAIN(ArgumentsTest)
#include "tst_arguments.moc"
