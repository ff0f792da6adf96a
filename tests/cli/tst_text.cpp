// SPDX-License-Identifier: MIT
#include "output/displaywidth.h"
#include "output/progressbar.h"
#include "output/safetext.h"
#include "output/tables.h"
#include "output/text.h"

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
        QTest::newRow("fillers") << u"\u3164x\u115F\u1160\uFFA0"_s
                                 << u"\uFFFDx\uFFFD\uFFFD\uFFFD"_s;
        QTest::newRow("empty Braille") << u"\u2800\u2801"_s << u"\uFFFD\u2801"_s;
        QTest::newRow("four marks")
            << u"a\u0301\u0302\u0303\u0304b\u0301"_s << u"a\u0301\u0302\u0303\u0304b\u0301"_s;
        QTest::newRow("marks without end")
            << u'a' + u"\u0301"_s.repeated(6) << u"a\u0301\u0301\u0301\u0301\uFFFD\uFFFD"_s;
        QTest::newRow("joiners without end")
            << u"\u200D"_s.repeated(5) << u"\u200D\u200D\u200D\u200D\uFFFD"_s;
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
        QCOMPARE(::safeJson(u'a' + u"\u0301"_s.repeated(5)), u"a\u0301\u0301\u0301\u0301\\u0301"_s);
        QCOMPARE(::safeJson(u"\u3164"_s), u"\\u3164"_s);
    }

    void progress()
    {
        QCOMPARE(progressBar(0, 12), u"[----------]"_s);
        QCOMPARE(progressBar(0.55, 12), u"[#####-----]"_s);
        QCOMPARE(progressBar(1, 12), u"[##########]"_s);
        QCOMPARE(progressBar(2, 6), u"[####]"_s);
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
        QTest::newRow("unseen") << u"\u3164\u2800"_s << u"__"_s;
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

    void displayWidth_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("width");
        QTest::newRow("empty") << QString() << 0;
        QTest::newRow("letters") << u"Åsa"_s << 3;
        QTest::newRow("East Asian") << u"深海"_s << 4;
        QTest::newRow("Hangul") << u"\uAC00\uD7A3"_s << 4;
        QTest::newRow("fullwidth") << u"Ａ"_s << 2;
        QTest::newRow("halfwidth") << u"ｱ"_s << 1;
        QTest::newRow("picture") << u"\U0001F93F"_s << 2;
        QTest::newRow("marks") << u"e\u0301\u0302"_s << 1;
        QTest::newRow("heart as a picture") << u"\u2764\uFE0F"_s << 2;
        QTest::newRow("joined people") << u"\U0001F468\u200D\U0001F469"_s << 4;
        QTest::newRow("replaced") << u"\uFFFD"_s << 1;
        QTest::newRow("Braille") << u"\u28FF┤"_s << 2;
        QTest::newRow("behind the last") << u"\U000F0000"_s << 1;
    }
    void displayWidth()
    {
        QFETCH(QString, text);
        QTEST(::displayWidth(text), "width");
    }

    void clipped()
    {
        QCOMPARE(::clipped(u"Ada", 3), u"Ada"_s);
        QCOMPARE(::clipped(u"Ada", 2), u"Ad"_s);
        QCOMPARE(::clipped(u"Ada", 0), QString());
        QCOMPARE(::clipped(u"Ada", -1), QString());
        QCOMPARE(::clipped(u"深海", 3), u"深"_s);
        QCOMPARE(::clipped(u"深海", 1), QString());
        QCOMPARE(::clipped(u"e\u0301e\u0301", 1), u"e\u0301"_s);
        QCOMPARE(::clipped(u"Lindqvist", 5, u"…"), u"Lind…"_s);
        QCOMPARE(::clipped(u"深海深海", 6, u"..."), u"深..."_s);
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

    void secondsLeft()
    {
        QCOMPARE(::secondsLeft(20, 2, 3, 0), 30.0);
        QCOMPARE(::secondsLeft(20, 2, 3, 4), 26.0);
        QCOMPARE(::secondsLeft(20, 2, 3, 10), 20.0);
        QCOMPARE(::secondsLeft(20, 2, 3, 99), 20.0); // longer than the others
        QCOMPARE(::secondsLeft(0, 1, 1, 5), 0.0);
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

    void wideCells()
    {
        Columns columns({{u"NAME"_s, Columns::Side::Left}, {u"M"_s}});
        columns.add({u"深海"_s, u"2"_s});
        columns.add({u"e\u0301"_s, u"3"_s});
        QCOMPARE(columns.text(), u"NAME  M\n深海  2\ne\u0301     3\n"_s);
    }

    void fewerColumns_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<QString>("text");
        QTest::newRow("all") << 27 << u"N  DEPTH  TIME  GASES\n1     40   1:5  Air, Oxygen\n"_s;
        QTest::newRow("cut") << 25 << u"N  DEPTH  TIME  GASES\n1     40   1:5  Air, Oxy…\n"_s;
        QTest::newRow("least") << 22 << u"N  DEPTH  TIME  GASES\n1     40   1:5  Air, …\n"_s;
        QTest::newRow("one less") << 21 << u"N  DEPTH  GASES\n1     40  Air, Oxygen\n"_s;
        QTest::newRow("two less") << 15 << u"N  DEPTH\n1     40\n"_s;
        QTest::newRow("one") << 7 << u"N\n1\n"_s;
        QTest::newRow("none") << 0 << u"N\n1\n"_s;
    }
    void fewerColumns()
    {
        QFETCH(int, width);
        Columns columns(
            {{.title = u"N"_s},
             {.title = u"DEPTH"_s},
             {.title = u"TIME"_s, .rank = 2},
             {.title = u"GASES"_s, .side = Columns::Side::Left, .rank = 1, .enough = 6}});
        columns.add({u"1"_s, u"40"_s, u"1:5"_s, u"Air, Oxygen"_s});
        QTEST(columns.text({.width = width}), "text");
    }

    void headings()
    {
        const Columns columns({{u"N"_s}});
        QCOMPARE(columns.text({.bold = true}), u"\x1b[1mN\x1b[m\n"_s);
        QCOMPARE(columns.text({.width = 1, .utf8 = false}), u"N\n"_s);
    }

    void folded()
    {
        const QStringList parts{u"one"_s, u"two"_s, u"three"_s};
        QCOMPARE(::folded(parts, u" "_s, 2, 15), u"one two three"_s);
        QCOMPARE(::folded(parts, u" "_s, 2, 14), u"one two\n  three"_s);
        QCOMPARE(::folded(parts, u", "_s, 0, 8), u"one, two\nthree"_s);
        QCOMPARE(::folded(parts, u", "_s, 0, 7), u"one\ntwo\nthree"_s);
        QCOMPARE(::folded(parts, u" "_s, 1, 0), u"one\n two\n three"_s);
        QCOMPARE(::folded({u"深海"_s, u"深"_s}, u" "_s, 0, 6), u"深海\n深"_s);
        QCOMPARE(::folded({}, u" "_s, 2, 10), QString());
    }

    void foldedTable()
    {
        Table table;
        table.add(u"Gases"_s, u"18/45, EAN50, Oxygen"_s);
        QCOMPARE(table.text({.width = 22}, 1), u" Gases  18/45, EAN50,\n        Oxygen\n"_s);
    }

    void table()
    {
        Table table;
        table.add(u"Name"_s, u"Varda"_s);
        table.add(u"Serial number"_s, QString());
        QCOMPARE(table.text({}, 1), u" Name           Varda\n Serial number  -\n"_s);
        QCOMPARE(Table().text(), QString());
    }
};

QTEST_GUILESS_MAIN(TextTest)
#include "tst_text.moc"
