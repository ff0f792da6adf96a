// SPDX-License-Identifier: MIT
#include <varda/tidemardiveconverter.h>

#include <algorithm>

#include "headerbytes.h"
#include "jobtest.h"

using namespace Qt::StringLiterals;

/** A logbook with all of its dives, as an application downloads it: header by header, dive by dive. */
class TestWholeLogbook : public JobTest
{
    Q_OBJECT

private Q_SLOTS:
    void exact_data();
    void exact();
    void generated_data();
    void generated();
    void known();

private:
    void download(const QList<uint16_t> &known = {});

    QList<Dive> m_dives;
};

namespace {

/** Down to 10 m, to 30.5 m and back to 10 m. */
QByteArray profile(const QByteArray &mark, const QByteArray &at10, const QByteArray &at30)
{
    return mark + at10.repeated(20) + at30.repeated(5) + at10.repeated(15);
}

QByteArray dive(int number, const QByteArray &header, const QByteArray &samples)
{
    return R"({"number":)" + QByteArray::number(number) + R"(,"headerBytes":")" + header
           + R"(","sampleBytes":")" + samples + R"("})";
}

} // namespace

/** Reads the headers, then each dive, without ever waiting for anything else. */
void TestWholeLogbook::download(const QList<uint16_t> &known)
{
    m_dives.clear();
    m_log.react = [this](const QString &entry) {
        if (entry != u"endCommand Logbook"_s && entry != u"endCommand Fullsamples"_s)
            return;
        if (entry == u"endCommand Fullsamples"_s) {
            const TidemarDiveHeader header = m_session->diveHeaders()[m_dives.size()];
            m_dives.append(
                TidemarDiveConverter::toDive(header, m_session->diveSamples(), *m_session));
        }
        if (m_dives.size() < m_session->diveHeaders().size())
            m_session->startGetDiveSamples(m_session->diveHeaders()[m_dives.size()].diveNumber);
        else
            m_session->startCommand(TidemarCommand::Serialnumber);
    };
    m_session->startCommand(TidemarCommand::Identification);
    QVERIFY(m_log.await(u"endCommand Identification"_s));
    m_session->startGetLogbook(known);
    QVERIFY(m_log.await(u"endCommand Serialnumber"_s));
    m_log.react = nullptr;
    QCOMPARE(m_log.take().size(), 3 + m_dives.size());
}

void TestWholeLogbook::exact_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<BleMode>("mode");
    QTest::addColumn<ComputerModel::ComputerModelIn>("model");
    QTest::addColumn<double>("lastDepth");
    QTest::addColumn<double>("step");
    const auto rows = [](const char *name, ComputerModel::ComputerModelIn model,
                         const QByteArray &dives, double lastDepth, double step) {
        const QByteArray keys = R"("model":")" + QByteArray(name) + R"(","dives":[)" + dives + "]";
        QTest::addRow("%s, Gatt", name) << keys << BleMode::Gatt << model << lastDepth << step;
        QTest::addRow("%s, Sps", name) << keys << BleMode::Sps << model << lastDepth << step;
    };
    // In each the older dive has one sample, of a layout of its own.
    rows("varda", ComputerModel::Varda,
         dive(1, vardaHeader("0100"), "8001 00 3601 0000 14 0000") + ","
             + dive(2, vardaHeader("0200"),
                    profile("8003", "00 6400 0000 14 0000 00 00 c800 64 00",
                            "0c 3101 0a00 08 0100 00 00 b400 63 00")),
         31.0, 10.0);
    rows("tidemar", ComputerModel::Tidemar,
         dive(1, tidemarHeader("0100"), "00 3701 0000 14") + ","
             + dive(2, tidemarHeader("0200"),
                    profile("8003", "6400 0000 14 00 00 00 0000 c800 64 00",
                            "3131 0a00 08 00 00 00 0100 b400 63 00")),
         31.1, 10.0);
    rows("vskm", ComputerModel::VSKM,
         dive(1, vskmHeader("0100"), "8001 00 3801 0000 14 00 00 0000") + ","
             + dive(2, vskmHeader("0200"),
                    profile("8002", "00 6400 0000 14 00 00 0000 c800 ff 00",
                            "0c 3101 0a00 08 00 00 0100 b400 ff 01")),
         31.2, 5.0);
}

void TestWholeLogbook::exact()
{
    QFETCH(const QByteArray, keys);
    QFETCH(const BleMode, mode);
    QFETCH(const double, lastDepth);
    QFETCH(const double, step);
    CONNECT(connectTo(keys, mode));
    download();
    QCOMPARE(m_dives.size(), 2);

    const Dive newer = m_dives[0];
    QCOMPARE(newer.diveNumber, 2);
    QTEST(newer.model, "model");
    QCOMPARE(newer.serialNumber, QString());
    QCOMPARE(newer.value32d, 0x11223344U);
    QCOMPARE(newer.lines.size(), 40);
    double sum = 0;
    double deepest = 0;
    double stops = 0;
    int warmth = 0;
    int pressures = 0;
    for (const DiveLine &line : newer.lines) {
        sum += line.depth;
        deepest = std::max(deepest, line.depth);
        stops += line.valueTenths;
        warmth += int(line.aux1Value);
        pressures += line.aux8;
    }
    QCOMPARE(sum, 502.5);
    QCOMPARE(deepest, 30.5);
    QCOMPARE(stops, 5.0);
    QCOMPARE(warmth, 740);
    QCOMPARE(pressures, 7900);
    QCOMPARE(newer.lines[39].time, 39 * step);

    const Dive older = m_dives[1];
    QCOMPARE(older.diveNumber, 1);
    QCOMPARE(older.lines.size(), 1);
    QCOMPARE(older.lines[0].depth, lastDepth);
    QCOMPARE(older.lines[0].aux1Value, 20.0);
}

void TestWholeLogbook::generated_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::newRow("varda") << R"("model":"varda","dives":3)"_ba;
    QTest::newRow("tidemar, Gatt in small pieces")
        << R"("model":"tidemar","split":30,"dives":{"count":3,"first":400,"seed":7})"_ba;
    QTest::newRow("vskm, long dives") << R"("model":"vskm","dives":{"count":2,"samples":3000})"_ba;
}

// What the header says of a dive is true of its samples.
void TestWholeLogbook::generated()
{
    QFETCH(const QByteArray, keys);
    CONNECT(connectTo(keys));
    download();
    QVERIFY(m_dives.size() >= 2);
    for (const Dive &each : std::as_const(m_dives)) {
        QVERIFY(each.lines.size() > 100);
        QCOMPARE(double(each.lines.size()), each.count1);
        const auto deepest = std::max_element(
            each.lines.cbegin(), each.lines.cend(),
            [](const DiveLine &a, const DiveLine &b) { return a.depth < b.depth; });
        QCOMPARE(deepest->depth, each.tenths1);
        for (const DiveLine &line : each.lines)
            QVERIFY(line.gasIndex >= 0 && line.gasIndex < each.gases.size());
    }
    QCOMPARE(m_dives.first().diveNumber, m_dives.last().diveNumber + m_dives.size() - 1);
}

void TestWholeLogbook::known()
{
    CONNECT(connectTo(R"("dives":{"count":5,"first":65530})"));
    download({65534, 65530, 65531, 7});
    QCOMPARE(m_dives.size(), 2);
    QCOMPARE(m_dives[0].diveNumber, 65533);
    QCOMPARE(m_dives[1].diveNumber, 65532);
}

QTEST_GUILESS_MAIN(TestWholeLogbook)
#include "tst_wholelogbook.moc"
