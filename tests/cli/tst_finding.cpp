// SPDX-License-Identifier: MIT
#include "run/finding.h"

#include <QtTest/qtest.h>

using namespace Qt::StringLiterals;

class FindingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void address_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text : {"0A:1B:2C:3D:4E:5F", "0a:1b:2c:3d:4e:5f", "0A-1B-2C-3D-4E-5F",
                                 "0a1b2c3d4e5f", "0A_1B_2C_3D_4E_5F", "0a 1b 2c 3d 4e 5f",
                                 "0a.1b.2c.3d.4e.5f", " 0A:1B:2C:3D:4E:5F\n"})
            QTest::newRow(text) << QString::fromLatin1(text);
    }
    void address()
    {
        QFETCH(QString, text);
        QCOMPARE(addressIn(text), u"0A:1B:2C:3D:4E:5F"_s);
    }

    void noAddress_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text :
             {"", "Varda", "VSK-0042", "0A:1B:2C:3D:4E", "0A:1B:2C:3D:4E:5F:60",
              "0A:1B-2C:3D:4E:5F", "0A:1B:2C:3D:4E:5G", "0A::1B:2C:3D:4E:5F", "0A1B2C3D4E5"})
            QTest::newRow(text) << QString::fromLatin1(text);
    }
    void noAddress()
    {
        QFETCH(QString, text);
        QVERIFY(!addressIn(text).has_value());
    }
};

QTEST_GUILESS_MAIN(FindingTest)
#include "tst_finding.moc"
