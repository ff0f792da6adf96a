// SPDX-License-Identifier: MIT
#include <QtBluetooth/qlowenergycontroller.h>

#include <algorithm>
#include <memory>
#include <numeric>

#include <varda/vardacomputer.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;

namespace {

int toldMtu = -1;

QList<std::uint16_t> numbersFrom(std::uint16_t first, int count)
{
    QList<std::uint16_t> numbers(count);
    std::iota(numbers.begin(), numbers.end(), first);
    return numbers;
}

/** How many numbers each request for the logbook has named that arrived. */
QList<int> namedNumbers()
{
    QList<int> named;
    const QStringList frames = Simulator::frames();
    for (const QString &frame : frames) {
        if (frame.mid(16, 2) == "13"_L1)
            named << int(frame.size() - 18) / 4;
    }
    return named;
}

} // namespace

// The program's own definition comes before that of Qt Bluetooth, which never knows it on Linux.
int QLowEnergyController::mtu() const
{
    return toldMtu;
}

/** An application knows any number of dives; a request names as many as one write carries. */
class TestKnownDives : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void threeHundred_data();
    void threeHundred();
    void refusedLogbook();
    void longOwner();
};

void TestKnownDives::threeHundred_data()
{
    QTest::addColumn<int>("told");
    QTest::addColumn<QByteArray>("mtu");
    QTest::addColumn<int>("named");
    QTest::addColumn<int>("links");
    QTest::newRow("unknown") << -1 << QByteArray("131") << 59 << 1;
    QTest::newRow("refused") << -1 << QByteArray("23") << 5 << 2;
    QTest::newRow("23") << 23 << QByteArray("23") << 5 << 1;
    QTest::newRow("131") << 131 << QByteArray("131") << 59 << 1;
    QTest::newRow("517") << 517 << QByteArray("517") << 251 << 1;
}

void TestKnownDives::threeHundred()
{
    QFETCH(const int, told);
    QFETCH(const QByteArray, mtu);
    QFETCH(const int, named);
    QFETCH(const int, links);
    LOAD(Simulator::loadKnown(R"("dives":{"count":303,"samples":10},"mtu":)" + mtu));
    toldMtu = told;
    VardaComputer computer;
    // In no order, and some twice.
    QList<std::uint16_t> known = numbersFrom(2, 300);
    std::reverse(known.begin(), known.end());
    known += numbersFrom(100, 20);
    auto *const job = computer.downloadDives(known);
    QList<int> numbers;
    connect(job, &DownloadJob::diveRead, this,
            [&](const Dive &, const TidemarDiveHeader &header, const QList<DiveSample> &) {
                numbers << header.diveNumber;
            });
    JobSpy spy(job);
    ENDS_WELL(spy);
    QCOMPARE(numbers, (QList<int>{1, 302, 303}));
    QCOMPARE(namedNumbers(), QList<int>{named});
    // The newest of them: 301 is the last.
    QVERIFY(Simulator::frames().join(u' ').contains(u"2d01 "_s));
    QCOMPARE(Simulator::count(u"connected"_s), links);
    QCOMPARE(computer.mtu(), std::max(0, told));
}

/** What was too long for the system is asked for with fewer numbers. */
void TestKnownDives::refusedLogbook()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":303,"samples":10},"mtu":23)"));
    toldMtu = -1;
    VardaComputer computer;
    JobSpy spy(computer.readLogbook(numbersFrom(2, 300)));
    ENDS_WELL(spy);
    QList<int> numbers;
    for (const auto &header : spy.value.value<QList<TidemarDiveHeader>>())
        numbers << header.diveNumber;
    QCOMPARE(numbers, (QList<int>{1, 302, 303}));
    QCOMPARE(namedNumbers(), QList<int>{5});
}

/** Where the MTU is known, what does not fit into one write is not sent. */
void TestKnownDives::longOwner()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada","mtu":23)"));
    toldMtu = 23;
    VardaComputer computer;
    JobSpy spy(computer.writeOwner(u"Ada of Lovelace"_s));
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Rejected);
    QCOMPARE(spy.reason, VardaJob::Reason::TooLong);
    JobSpy fits(computer.writeOwner(u"Ada of Love"_s));
    ENDS_WELL(fits);
}

QTEST_MAIN(TestKnownDives)
#include "tst_knowndives.moc"
