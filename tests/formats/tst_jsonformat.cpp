// SPDX-License-Identifier: MIT
#include <QtTest/qtest.h>

#include <varda/jsonformat.h>

#include "dives.h"

class TestJsonFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text();
    void everyField();
    void hostile();
    void noDives();
    void diskFull();
    void whatIsLeftOut();
    void refuses_data();
    void refuses();
};

namespace {

QByteArray written(const QList<Dive> &dives)
{
    return textOf(dives, JsonFormat::write);
}

DivesRead readBack(const QByteArray &text)
{
    return divesOf(text, JsonFormat::read);
}

} // namespace

void TestJsonFormat::text()
{
    QCOMPARE(differenceFromGolden(QStringLiteral("dive.json"), written({smallDive()})), QString());
}

void TestJsonFormat::everyField()
{
    const QList<Dive> dives = generatedDives();
    const DivesRead read = readBack(written(dives));
    QCOMPARE(read.error, QString());
    QCOMPARE(differences(read.dives, dives), QStringList());
}

void TestJsonFormat::hostile()
{
    QList<Dive> expected = hostileDives();
    const DivesRead read = readBack(written(expected));
    QCOMPARE(read.error, QString());
    for (Dive &dive : expected) {
        for (QString Dive::*field : {&Dive::ownerName, &Dive::serialNumber, &Dive::firmwareVersion})
            dive.*field = asUtf8(dive.*field);
        dive.text1 = asUtf8(dive.text1);
    }
    QCOMPARE(differences(read.dives, expected).join(QLatin1Char('\n')), QString());
}

void TestJsonFormat::noDives()
{
    QCOMPARE(written({}),
             "{\n  \"format\": \"varda-dives\",\n  \"version\": 1,\n  \"dives\": [\n  ]\n}\n");
    const DivesRead read = readBack(written({}));
    QCOMPARE(read.error, QString());
    QVERIFY(read.dives.isEmpty());
}

void TestJsonFormat::diskFull()
{
    FullDisk disk(1000);
    QCOMPARE(JsonFormat::write(&disk, {smallDive()}).error,
             QStringLiteral("No space left on device"));
}

void TestJsonFormat::whatIsLeftOut()
{
    const DivesRead read = readBack(R"({"format": "varda-dives", "version": 1, "dives": [
        {"diveNumber": 7, "later": [1], "lines": [{"time": 5}]}]})");
    QCOMPARE(read.error, QString());
    Dive expected;
    expected.diveNumber = 7;
    expected.lines.resize(1);
    expected.lines[0].time = 5;
    QCOMPARE(differences(read.dives, {expected}), QStringList());
}

void TestJsonFormat::refuses_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");

    const auto dive = [](const char *members) {
        return QByteArray(R"({"format": "varda-dives", "version": 1, "dives": [{)") + members
               + "}]}";
    };
    const auto row = [](const char *name, const QByteArray &text, const char *error) {
        QTest::newRow(name) << text << QString::fromUtf8(error);
    };
    const char *const foreign = "this is no file of dives: it has no \"format\": \"varda-dives\"";
    row("empty", "", "byte 0: illegal value");
    row("cut", R"({"format": "varda-dives", "version": 1, "dives": [)",
        "byte 50: unterminated array");
    row("list", "[]", foreign);
    row("foreign", R"({"dives": []})", foreign);
    row("no dives", R"({"format": "varda-dives", "version": 1, "dives": 3})", foreign);
    row("later version", R"({"format": "varda-dives", "version": 2, "dives": []})",
        "the file has a version that this program does not know");
    row("number is text", dive(R"("diveNumber": "x")"),
        "dives[0].diveNumber is not a whole number of its range");
    row("too large", dive(R"("diveNumber": 65536)"),
        "dives[0].diveNumber is not a whole number of its range");
    row("negative", dive(R"("stamp": -1)"), "dives[0].stamp is not a whole number of its range");
    row("fraction", dive(R"("diveNumber": 1.5)"),
        "dives[0].diveNumber is not a whole number of its range");
    row("null", dive(R"("tenths1": null)"), "dives[0].tenths1 is not a number");
    row("flag", dive(R"("flag": 1)"), "dives[0].flag is neither true nor false");
    row("text is number", dive(R"("ownerName": 1)"), "dives[0].ownerName is not a text");
    row("short array", dive(R"("tagBytes": [1, 2])"),
        "dives[0].tagBytes is not a list of 8 values");
    row("in a line", dive(R"("lines": [{"time": 0}, {"depth": "deep"}])"),
        "dives[0].lines[1].depth is not a number");
    row("line is number", dive(R"("lines": [1])"), "dives[0].lines[0] is not an object");
    row("lines is object", dive(R"("lines": {})"), "dives[0].lines is not a list");
    row("nested", QByteArray(100000, '['), "byte 1025: too deeply nested document");
}

void TestJsonFormat::refuses()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, error);
    const DivesRead read = readBack(text);
    QCOMPARE(read.error, error);
    QVERIFY(read.dives.isEmpty());
}

QTEST_APPLESS_MAIN(TestJsonFormat)
#include "tst_jsonformat.moc"
