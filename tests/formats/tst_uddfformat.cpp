// SPDX-License-Identifier: MIT
#include <QtCore/qprocess.h>
#include <QtCore/qset.h>
#include <QtCore/qtemporarydir.h>
#include <QtCore/qxmlstream.h>
#include <QtTest/qtest.h>

#include <varda/uddfformat.h>

#include "dives.h"

class TestUddfFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text();
    void readsBack();
    void hostileReadsBack();
    void matchesSchema();
    void schemaRefuses_data();
    void schemaRefuses();
    void ids();
    void groups();
    void sameMixTwice();
    void unknownBegin();
    void severalOwners();
    void unusableSamples();
    void noInterval();
    void diskFull();
    void refuses_data();
    void refuses();
};

namespace {

QByteArray written(const QList<Dive> &dives)
{
    return textOf(dives, UddfFormat::write);
}

DivesRead readBack(const QByteArray &text)
{
    return divesOf(text, UddfFormat::read);
}

QStringList messagesOf(const QList<Dive> &dives)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return UddfFormat::write(&buffer, dives).messages;
}

/** What UDDF carries of a dive whose samples are sound. */
Dive inUddf(const Dive &dive)
{
    Dive carried;
    carried.diveNumber = dive.diveNumber;
    carried.numberText = QString::number(dive.diveNumber);
    carried.stamp = dive.stamp >= 946684800 && dive.stamp < 4102444800 ? dive.stamp : 0;
    carried.model = dive.model;
    carried.serialNumber = dive.serialNumber;
    carried.ownerName = dive.ownerName;
    carried.sampleInterval = dive.lines.size() < 2 ? 5 : dive.sampleInterval;
    for (const DiveGas &gas : dive.gases) {
        DiveGas kept;
        kept.oxygen = gas.oxygen;
        kept.helium = gas.helium;
        kept.nitrogen = gas.nitrogen;
        carried.gases.append(kept);
    }
    for (const DiveLine &line : dive.lines) {
        DiveLine kept;
        kept.time = line.time;
        kept.depth = line.depth;
        kept.aux1Value = line.aux1Value;
        kept.gasIndex = line.gasIndex;
        carried.lines.append(kept);
    }
    return carried;
}

/** What xmllint complains about. */
QString lint(const QByteArray &text)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("dives.uddf")));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.flush())
        return file.errorString();
    QProcess xmllint;
    xmllint.setProcessChannelMode(QProcess::MergedChannels);
    xmllint.start(QStringLiteral(VARDA_XMLLINT),
                  {QStringLiteral("--noout"), QStringLiteral("--nonet"), QStringLiteral("--huge"),
                   QStringLiteral("--relaxng"), QStringLiteral(VARDA_FORMATS_SCHEMA),
                   file.fileName()});
    if (!xmllint.waitForFinished(-1))
        return xmllint.errorString();
    return xmllint.exitCode() == 0 ? QString() : QString::fromUtf8(xmllint.readAll());
}

QStringList valuesOf(const QByteArray &text, QLatin1StringView element)
{
    QXmlStreamReader xml(text);
    QStringList values;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == element)
            values.append(xml.readElementText(QXmlStreamReader::IncludeChildElements));
    }
    return values;
}

} // namespace

void TestUddfFormat::text()
{
    Dive second = smallDive();
    second.diveNumber = 4;
    second.stamp += 3600;
    second.lines.clear();
    QCOMPARE(differenceFromGolden(QStringLiteral("dives.uddf"), written({smallDive(), second})),
             QString());
}

void TestUddfFormat::readsBack()
{
    const QList<Dive> dives = generatedDives();
    const DivesRead read = readBack(written(dives));
    QCOMPARE(read.error, QString());
    QList<Dive> expected;
    for (const Dive &dive : dives)
        expected.append(inUddf(dive));
    QCOMPARE(differences(read.dives, expected), QStringList());
}

void TestUddfFormat::hostileReadsBack()
{
    for (const Dive &dive : hostileDives()) {
        const QByteArray text = written({dive});
        const DivesRead read = readBack(text);
        QVERIFY2(read.error.isEmpty(), qPrintable(read.error));
        QCOMPARE(read.dives.size(), 1);
        // Nothing is lost of what has been read once.
        QCOMPARE(differences(readBack(written(read.dives)).dives, read.dives), QStringList());
    }
}

void TestUddfFormat::matchesSchema()
{
    if (QByteArray(VARDA_XMLLINT).isEmpty())
        QSKIP("there is no xmllint");
    QCOMPARE(lint(written(generatedDives() + hostileDives())), QString());
    for (const Dive &dive : hostileDives())
        QCOMPARE(lint(written({dive})), QString());
    QCOMPARE(lint(written({})), QString());
}

void TestUddfFormat::schemaRefuses_data()
{
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");

    const auto row = [](const char *name, const char *from, const char *to) {
        QTest::newRow(name) << QByteArray(from) << QByteArray(to);
    };
    row("zone", "T10:15:10<", "T10:15:10Z<");
    row("depth below 0", "<depth>44.1<", "<depth>-44.1<");
    row("exponent", "<depth>44.1<", "<depth>4.41e1<");
    row("no time", "<divetime>10</divetime>", "");
    row("order", "<depth>44.1</depth>", "");
    row("begins in the depth", "<depth>0</depth>", "<depth>1</depth>");
    row("percent", "<o2>0.21<", "<o2>21<");
    row("id", "id=\"mix1\"", "id=\"1\"");
    row("temperature left out", "<temperature>279.15</temperature>", "");
    row("no mix at first", "<switchmix ref=\"mix1\"/>", "");
    row("no number", "<divenumber>3</divenumber>", "");
    row("version", "3.2.3", "3.1");
    row("namespace", "uddf/3.2/", "uddf/");
}

void TestUddfFormat::schemaRefuses()
{
    if (QByteArray(VARDA_XMLLINT).isEmpty())
        QSKIP("there is no xmllint");
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    QByteArray text = written({smallDive()});
    QVERIFY(text.contains(from));
    text.replace(text.indexOf(from), from.size(), to);
    QVERIFY(lint(text).contains(QStringLiteral("fails to validate")));
}

void TestUddfFormat::ids()
{
    QXmlStreamReader xml(written(generatedDives()));
    QSet<QString> ids;
    QSet<QString> references;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QString id = xml.attributes().value(QLatin1StringView("id")).toString();
        QVERIFY2(id.isEmpty() || !ids.contains(id), qPrintable(id));
        ids.insert(id);
        references.insert(xml.attributes().value(QLatin1StringView("ref")).toString());
    }
    QCOMPARE(xml.error(), QXmlStreamReader::NoError);
    QCOMPARE(references - ids, QSet<QString>());
}

void TestUddfFormat::groups()
{
    Dive first = smallDive();
    Dive second = smallDive();
    second.stamp += 3630;
    Dive other = second;
    other.serialNumber = QStringLiteral("another");
    Dive later = other;
    later.stamp += 172831; // one second more than two days after its end
    const QByteArray text = written({first, second, other, later});
    QCOMPARE(valuesOf(text, QLatin1StringView("passedtime")), QStringList{QStringLiteral("3600")});
    QCOMPARE(valuesOf(text, QLatin1StringView("infinity")).size(), 3);
    QCOMPARE(text.count("<repetitiongroup "), 3);
}

void TestUddfFormat::sameMixTwice()
{
    Dive dive = smallDive();
    dive.gases[1] = dive.gases[0];
    const DivesRead read = readBack(written({dive}));
    QCOMPARE(read.dives.value(0).gases.size(), 2);
    QCOMPARE(read.dives[0].lines[1].gasIndex, 1);
    QCOMPARE(read.dives[0].lines[3].gasIndex, 0);
}

void TestUddfFormat::unknownBegin()
{
    Dive dive = smallDive();
    dive.stamp = 946684799;
    QCOMPARE(valuesOf(written({dive}), QLatin1StringView("datetime")),
             QStringList{QStringLiteral("1970-01-01T00:00:00")});
    QCOMPARE(messagesOf({dive}),
             QStringList{QStringLiteral(
                 "Dive 3: its begin is unknown; 1970-01-01T00:00:00 is written instead")});
    QCOMPARE(messagesOf({smallDive()}), QStringList());
}

void TestUddfFormat::severalOwners()
{
    Dive other = smallDive();
    other.diveNumber = 9;
    other.ownerName = QStringLiteral("Grace Hopper");
    QCOMPARE(messagesOf({smallDive(), other}),
             QStringList{QStringLiteral(
                 "Dive 9: its owner is another than the first dive's, and is not written")});
}

void TestUddfFormat::unusableSamples()
{
    Dive dive = smallDive();
    dive.lines[1].depth = std::numeric_limits<double>::quiet_NaN();
    dive.lines[2].depth = -0.3;
    QCOMPARE(
        messagesOf({dive}),
        QStringList{QStringLiteral("Dive 3: samples without a usable time or depth are left out")});
    const DivesRead read = readBack(written({dive}));
    QCOMPARE(read.dives.value(0).lines.size(), 3);
    QCOMPARE(read.dives[0].lines[1].time, 20.0);
    QCOMPARE(read.dives[0].lines[1].depth, 0.0);
}

void TestUddfFormat::noInterval()
{
    Dive dive = smallDive();
    dive.sampleInterval = 0;
    for (DiveLine &line : dive.lines)
        line.time = 0;
    for (const double depth : {0.0, 1.2}) {
        dive.lines[0].depth = depth;
        QCOMPARE(differences(readBack(written({dive})).dives, {inUddf(dive)}), QStringList());
    }
}

void TestUddfFormat::diskFull()
{
    FullDisk disk(500);
    QCOMPARE(UddfFormat::write(&disk, {smallDive()}).error,
             QStringLiteral("No space left on device"));
}

void TestUddfFormat::refuses_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");

    const QByteArray sound = written({smallDive()});
    const auto row = [](const char *name, const QByteArray &text, const char *error) {
        QTest::newRow(name) << text << QString::fromUtf8(error);
    };
    const auto changed = [&sound](const char *from, const char *to) {
        QByteArray text = sound;
        return text.replace(from, to);
    };
    row("foreign", "<html/>", "line 1: this is no UDDF 3.2 file");
    row("other version", changed("uddf/3.2/", "uddf/"), "line 2: this is no UDDF 3.2 file");
    row("entities", "<!DOCTYPE uddf [<!ENTITY a \"aaaa\">]><uddf/>",
        "line 1: a document type declaration is not read");
    row("depth", changed("<depth>44.1<", "<depth>deep<"),
        "line 67: \"deep\" is not a number of its kind");
    row("time goes back", changed("<divetime>20<", "<divetime>5<"),
        "line 74: \"5\" is not a number of its kind");
    row("infinite", changed("<depth>44.1<", "<depth>inf<"),
        "line 67: \"inf\" is not a number of its kind");
    row("no depth", changed("<depth>44.1</depth>", ""),
        "line 71: a waypoint has no depth or no time");
    row("mix", changed("<switchmix ref=\"mix2\"/>", "<switchmix ref=\"mix9\"/>"),
        "line 69: there is no mix \"mix9\"");
    row("fraction", changed("<o2>0.21<", "<o2>21<"), "line 26: \"21\" is no fraction");
    row("number", changed("<divenumber>3<", "<divenumber>65536<"),
        "line 42: \"65536\" is no number of a dive");
    row("date", changed("2024-03-02T", "2024-13-02T"),
        "line 43: \"2024-13-02T10:15:10\" is no date and time");
}

void TestUddfFormat::refuses()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, error);
    const DivesRead read = readBack(text);
    QCOMPARE(read.error, error);
    QVERIFY(read.dives.isEmpty());
}

QTEST_APPLESS_MAIN(TestUddfFormat)
#include "tst_uddfformat.moc"
