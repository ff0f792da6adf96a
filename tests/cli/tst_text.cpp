// SPDX-License-Identifier: MIT
#include "text.h"

#include <QtTest/qtest.h>

using namespace Qt::StringLiterals;

class TextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void safeText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("safe");
        QTest::newRow("plain") << u"Ada Lindqvist"_s << u"Ada Lindqvist"_s;
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("letters") << u"Åsa 深海 \U0001F93F"_s << u"Åsa 深海 \U0001F93F"_s;
        QTest::newRow("escape") << u"\u001b[2Jx"_s << u"\uFFFD[2Jx"_s;
        QTest::newRow("line ends") << u"a\r\nb\tc"_s << u"a\uFFFD\uFFFDb\uFFFDc"_s;
        QTest::newRow("nul") << QString(QChar(QChar::Null)) << u"\uFFFD"_s;
        QTest::newRow("delete") << QString(QChar(0x7F)) << u"\uFFFD"_s;
        QTest::newRow("C1 escape") << QString(QChar(0x9B)) + u"31m"_s << u"\uFFFD31m"_s;
        QTest::newRow("other directions")
            << u"\u202Egnp\u2066\u200F\u061C"_s << u"\uFFFDgnp\uFFFD\uFFFD\uFFFD"_s;
        QTest::newRow("separators") << u"\u2028\u2029"_s << u"\uFFFD\uFFFD"_s;
        QTest::newRow("half a character") << u"a"_s + QChar(0xD83E) << u"a\uFFFD"_s;
        QTest::newRow("joined people")
            << u"\U0001F468\u200D\U0001F469"_s << u"\U0001F468\u200D\U0001F469"_s;
    }
    void safeText()
    {
        QFETCH(QString, text);
        QTEST(::safeText(text), "safe");
    }

    void safeJson()
    {
        QCOMPARE(::safeJson(u"{\n \"a\": \"Å\"\n}\n"_s), u"{\n \"a\": \"Å\"\n}\n"_s);
        QCOMPARE(::safeJson(u"\""_s + QChar(0x9B) + QChar(0x7F) + u"\u202E\""_s),
                 u"\"\\u009b\\u007f\\u202e\""_s);
        QCOMPARE(::safeJson(u"\U000E0041"_s), u"\\udb40\\udc41"_s); // a tag, in two units
    }

    void safeFileName_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << u"Deep wall 2"_s << u"Deep wall 2"_s;
        QTest::newRow("letters") << u"Åse-深海"_s << u"Åse-深海"_s;
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("upwards") << u"../../etc/passwd"_s << u"______etc_passwd"_s;
        QTest::newRow("other roots") << u"C:\\x\\~"_s << u"C__x__"_s;
        QTest::newRow("controls") << u"a\0b\n\u001b[2J\u202E"_s << u"a_b___2J_"_s;
        QTest::newRow("wildcards") << u"*?\"<>|$`';&"_s << u"___________"_s;
        QTest::newRow("long") << QString(300, u'x') << QString(50, u'x');
        QTest::newRow("long, in four bytes each")
            << u"\U00020000"_s.repeated(60) << u"\U00020000"_s.repeated(50);
    }
    void safeFileName()
    {
        QFETCH(QString, text);
        QTEST(::safeFileName(text), "name");
    }

    void versionText()
    {
        QCOMPARE(::versionText(u"1.4.2.b"_s), u"1.4.2.b"_s);
        QCOMPARE(::versionText(u"1.4.2."_s + QChar(QChar::Null)), u"1.4.2"_s);
        QCOMPARE(::versionText(u"Unknown"_s), u"Unknown"_s);
        QCOMPARE(::versionText(QString()), QString());
    }

    void clockText()
    {
        QCOMPARE(::clockText(1715934600), u"2024-05-17 08:30:00"_s);
        QCOMPARE(::clockText(0), u"1970-01-01 00:00:00"_s);
        QCOMPARE(::clockText(253402300799), u"9999-12-31 23:59:59"_s);
        QCOMPARE(::clockText(253402300800), u"253402300800"_s);
        QCOMPARE(::clockText(-1), u"-1"_s);
        QCOMPARE(::clockText(std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808"_s);
    }

    void gasName()
    {
        QCOMPARE(::gasName(21, 0), u"Air"_s);
        QCOMPARE(::gasName(32, 0), u"EAN32"_s);
        QCOMPARE(::gasName(100, 0), u"Oxygen"_s);
        QCOMPARE(::gasName(18, 45), u"18/45"_s);
        QCOMPARE(::gasName(0, 255), u"0/255"_s);
    }

    void durationText()
    {
        QCOMPARE(::durationText(0), u"0:00"_s);
        QCOMPARE(::durationText(59.4), u"0:59"_s);
        QCOMPARE(::durationText(59.5), u"1:00"_s);
        QCOMPARE(::durationText(3599), u"59:59"_s);
        QCOMPARE(::durationText(3723), u"1:02:03"_s);
        QCOMPARE(::durationText(-5), u"0:00"_s);
        QCOMPARE(::durationText(1e300), u"277777:46:40"_s);
    }

    void bytesText()
    {
        QCOMPARE(::bytesText(0), u"0 B"_s);
        QCOMPARE(::bytesText(999), u"999 B"_s);
        QCOMPARE(::bytesText(1000), u"1.0 kB"_s);
        QCOMPARE(::bytesText(12345), u"12 kB"_s);
        QCOMPARE(::bytesText(2345678), u"2.3 MB"_s);
    }

    void columns()
    {
        Columns columns({{u"N"_s}, {u"NAME"_s, Columns::Side::Left}, {u"M"_s}});
        columns.add({u"1"_s, u"Air"_s, u"2.5"_s});
        columns.add({u"10"_s, u"Oxygen"_s, u"3"_s});
        QCOMPARE(columns.text(), u" N  NAME      M\n 1  Air     2.5\n10  Oxygen    3\n"_s);
    }

    void table()
    {
        Table table;
        table.add(u"Name"_s, u"Varda"_s);
        table.add(u"Serial number"_s, QString());
        QCOMPARE(table.text(1), u" Name           Varda\n Serial number  -\n"_s);
        QCOMPARE(Table().text(), QString());
    }
};

QTEST_GUILESS_MAIN(TextTest)
#include "tst_text.moc"
