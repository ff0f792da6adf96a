// SPDX-License-Identifier: MIT
#include <QtTest/qtest.h>

#include <varda/csvformat.h>

#include "dives.h"

class TestCsvFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void texts();
    void samplesReadBack();
    void summaryReadsBack();
    void hostile();
    void formulas_data();
    void formulas();
    void mixesAsFormulas();
    void diskFull();
    void savedBySpreadsheet();
    void refuses_data();
    void refuses();
};

namespace {

using Write = DivesWritten (*)(QIODevice *, const QList<Dive> &);

QByteArray written(Write write, const QList<Dive> &dives)
{
    return textOf(dives, write);
}

DivesRead readBack(const QByteArray &text)
{
    return divesOf(text, CsvFormat::read);
}

/** What a line of the summary carries. */
Dive inSummary(const Dive &dive)
{
    Dive carried;
    carried.serialNumber = asUtf8(dive.serialNumber);
    carried.diveNumber = dive.diveNumber;
    carried.numberText = QString::number(dive.diveNumber);
    carried.stamp = dive.stamp;
    carried.model = dive.model > 4 ? ComputerModel::Unknown : dive.model;
    carried.firmwareVersion = asUtf8(dive.firmwareVersion);
    carried.ownerName = asUtf8(dive.ownerName);
    carried.sampleInterval = dive.sampleInterval;
    return carried;
}

double number(double value)
{
    return std::isfinite(value) ? value : std::numeric_limits<double>::quiet_NaN();
}

/** What the lines of the samples carry: of the gases those that are breathed. */
Dive inSamples(const Dive &dive)
{
    Dive carried;
    carried.serialNumber = asUtf8(dive.serialNumber);
    carried.diveNumber = dive.diveNumber;
    carried.numberText = QString::number(dive.diveNumber);
    carried.stamp = dive.stamp;
    QList<int> used;
    for (const DiveLine &line : dive.lines) {
        if (line.gasIndex >= 0 && line.gasIndex < dive.gases.size()
            && !used.contains(line.gasIndex))
            used.append(line.gasIndex);
    }
    std::sort(used.begin(), used.end());
    for (const int index : used) {
        DiveGas gas;
        gas.oxygen = float(number(double(dive.gases[index].oxygen)));
        gas.helium = float(number(double(dive.gases[index].helium)));
        gas.nitrogen = float(number(double(dive.gases[index].nitrogen)));
        carried.gases.append(gas);
    }
    for (const DiveLine &line : dive.lines) {
        DiveLine kept;
        kept.time = number(line.time);
        kept.depth = number(line.depth);
        kept.aux1Value = std::isfinite(line.aux1Value) ? line.aux1Value : 0;
        kept.gasIndex = int(used.indexOf(line.gasIndex));
        carried.lines.append(kept);
    }
    return carried;
}

/** Without those that the samples cannot carry. */
QList<Dive> withSamples(const QList<Dive> &dives)
{
    QList<Dive> kept;
    for (const Dive &dive : dives) {
        if (!dive.lines.isEmpty())
            kept.append(inSamples(dive));
    }
    return kept;
}

QList<Dive> summaries(const QList<Dive> &dives)
{
    QList<Dive> kept;
    for (const Dive &dive : dives)
        kept.append(inSummary(dive));
    return kept;
}

} // namespace

void TestCsvFormat::texts()
{
    Dive empty;
    empty.diveNumber = 4;
    empty.ownerName = QStringLiteral("=1+1, \"Ada\"");
    const QList<Dive> dives{smallDive(), empty};
    QCOMPARE(differenceFromGolden(QStringLiteral("summary.csv"),
                                  written(CsvFormat::writeSummary, dives)),
             QString());
    QCOMPARE(differenceFromGolden(QStringLiteral("samples.csv"),
                                  written(CsvFormat::writeSamples, dives)),
             QString());
}

void TestCsvFormat::samplesReadBack()
{
    const QList<Dive> dives = generatedDives();
    const DivesRead read = readBack(written(CsvFormat::writeSamples, dives));
    QCOMPARE(read.error, QString());
    QCOMPARE(differences(read.dives, withSamples(dives)), QStringList());
}

void TestCsvFormat::summaryReadsBack()
{
    const QList<Dive> dives = generatedDives();
    const DivesRead read = readBack(written(CsvFormat::writeSummary, dives));
    QCOMPARE(read.error, QString());
    QCOMPARE(differences(read.dives, summaries(dives)), QStringList());
}

void TestCsvFormat::hostile()
{
    const QList<Dive> dives = hostileDives();
    DivesRead read = readBack(written(CsvFormat::writeSamples, dives));
    QCOMPARE(read.error, QString());
    QCOMPARE(differences(read.dives, withSamples(dives)), QStringList());
    read = readBack(written(CsvFormat::writeSummary, dives));
    QCOMPARE(read.error, QString());
    QCOMPARE(differences(read.dives, summaries(dives)), QStringList());
}

void TestCsvFormat::formulas_data()
{
    QTest::addColumn<QString>("owner");
    QTest::addColumn<QByteArray>("field");

    QTest::newRow("equals") << QStringLiteral("=1+1") << QByteArray(",'=1+1,");
    QTest::newRow("plus") << QStringLiteral("+1") << QByteArray(",'+1,");
    QTest::newRow("minus") << QStringLiteral("-1") << QByteArray(",'-1,");
    QTest::newRow("at") << QStringLiteral("@SUM(A1)") << QByteArray(",'@SUM(A1),");
    QTest::newRow("tab") << QStringLiteral("\t=1") << QByteArray(",'\t=1,");
    QTest::newRow("quoted") << QStringLiteral("=A,B") << QByteArray(",\"'=A,B\",");
    QTest::newRow("apostrophe") << QStringLiteral("'x") << QByteArray(",''x,");
    QTest::newRow("harmless") << QStringLiteral("a=b") << QByteArray(",a=b,");
}

void TestCsvFormat::formulas()
{
    QFETCH(QString, owner);
    QFETCH(QByteArray, field);
    Dive dive = smallDive();
    dive.ownerName = owner;
    const QByteArray text = written(CsvFormat::writeSummary, {dive});
    QVERIFY2(text.contains(field), text.constData());
    QCOMPARE(readBack(text).dives.value(0).ownerName, owner);
}

/** A computer can claim a mix whose name begins like a formula. */
void TestCsvFormat::mixesAsFormulas()
{
    Dive dive = smallDive();
    dive.gases.resize(1);
    dive.gases[0].oxygen = -0.05F;
    dive.gases[0].helium = 0.3F;
    for (DiveLine &line : dive.lines)
        line.gasIndex = 0;
    const QByteArray summary = written(CsvFormat::writeSummary, {dive});
    QVERIFY2(summary.contains(",'-5/30\r\n"), summary.constData());
    const QByteArray samples = written(CsvFormat::writeSamples, {dive});
    QVERIFY2(samples.contains(",1,'-5/30,-0.05,0.3,"), samples.constData());
    QVERIFY2(!samples.contains(",-5/30"), samples.constData());
}

void TestCsvFormat::diskFull()
{
    FullDisk disk(300);
    QCOMPARE(CsvFormat::writeSamples(&disk, {smallDive()}).error,
             QStringLiteral("No space left on device"));
}

void TestCsvFormat::savedBySpreadsheet()
{
    // With a byte order mark, line feeds alone, and all texts quoted.
    QByteArray text = written(CsvFormat::writeSamples, {smallDive()});
    text.replace("\r\n", "\n").replace("Air", "\"Air\"").prepend("\xEF\xBB\xBF");
    const DivesRead read = readBack(text);
    QCOMPARE(read.error, QString());
    QCOMPARE(differences(read.dives, {inSamples(smallDive())}), QStringList());
}

void TestCsvFormat::refuses_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");

    const QByteArray summary = written(CsvFormat::writeSummary, {smallDive()});
    const QByteArray samples = written(CsvFormat::writeSamples, {smallDive()});
    const auto row = [](const char *name, const QByteArray &text, const char *error) {
        QTest::newRow(name) << text << QString::fromUtf8(error);
    };
    const auto changed = [](QByteArray text, const char *from, const char *to) {
        return text.replace(from, to);
    };
    const char *const foreign = "line 1: these are not the columns of a file of dives";
    row("empty", "", foreign);
    row("foreign", "a,b\r\n1,2\r\n", foreign);
    row("latin 1", "\xE5 b", "the file is not in UTF-8");
    row("too few", summary + "x,3\r\n", "line 3: 2 fields instead of 15");
    row("number", changed(summary, ",3,", ",three,"),
        "line 2: \"three\" is not a number of its column");
    row("out of range", changed(summary, ",3,", ",65536,"),
        "line 2: \"65536\" is not a number of its column");
    row("depth", changed(samples, ",44.1,", ",\"44,1\","),
        "line 3: \"44,1\" is not a number of its column");
    row("infinite", changed(samples, ",44.1,", ",inf,"),
        "line 3: \"inf\" is not a number of its column");
    row("open field", changed(summary, ",Ada", ",\"Ada"),
        "line 2: a quoted field does not end as it should");
    row("text behind quote", changed(summary, ",Ada ", ",\"Ada\" "),
        "line 2: a quoted field does not end as it should");
}

void TestCsvFormat::refuses()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, error);
    const DivesRead read = readBack(text);
    QCOMPARE(read.error, error);
    QVERIFY(read.dives.isEmpty());
}

QTEST_APPLESS_MAIN(TestCsvFormat)
#include "tst_csvformat.moc"
