// SPDX-License-Identifier: MIT
#include <QtTest/qsignalspy.h>

#include <chrono>
#include <memory>

#include <varda/vardacomputer.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Reason = VardaJob::Reason;

namespace {

constexpr auto kInReach = R"({"devices":[{"name":"Varda","rssi":-80},
    {"name":"VSK-0042","model":"vskm","address":"00:AA:01:01:00:42","rssi":-51},
    {"name":"Kettle","model":"none","address":"00:AA:01:01:00:43"}]})";

QStringList namesOf(const QList<BleDeviceInfo> &devices)
{
    QStringList names;
    for (const BleDeviceInfo &device : devices)
        names += device.name();
    names.sort();
    return names;
}

} // namespace

/** Lists of what is in reach, beside the queue. */
class TestSearch : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_computer = std::make_unique<VardaComputer>(); }
    void computers();
    void allDevices();
    void newSignalStrength();
    void cancelled();
    void cancelledAtOnce();
    void onlyComputer_data();
    void onlyComputer();

private:
    std::unique_ptr<VardaComputer> m_computer;
};

void TestSearch::computers()
{
    LOAD(Simulator::loadScenario(kInReach));
    auto *const search = m_computer->search();
    QSignalSpy found(search, &SearchJob::deviceFound);
    JobSpy spy(search);
    QTRY_COMPARE(found.size(), 2);
    QCOMPARE(namesOf(search->devices()), (QStringList{u"VSK-0042"_s, u"Varda"_s}));
    search->finishNow();
    search->finishNow();
    ENDS_WELL(spy);
    QCOMPARE(namesOf(spy.value.value<QList<BleDeviceInfo>>()),
             (QStringList{u"VSK-0042"_s, u"Varda"_s}));
    QCOMPARE(spy.ends, 1);
}

void TestSearch::allDevices()
{
    LOAD(Simulator::loadScenario(kInReach));
    JobSpy spy(m_computer->search(2s, true));
    ENDS_WELL(spy);
    QCOMPARE(namesOf(spy.value.value<QList<BleDeviceInfo>>()),
             (QStringList{u"Kettle"_s, u"VSK-0042"_s, u"Varda"_s}));
}

void TestSearch::newSignalStrength()
{
    LOAD(Simulator::loadDevice(R"("rssi":-80)"));
    auto *const search = m_computer->search();
    QSignalSpy found(search, &SearchJob::deviceFound);
    QSignalSpy changed(search, &SearchJob::deviceChanged);
    QTRY_COMPARE(found.size(), 1);
    Simulator::advertise(-42);
    QTRY_VERIFY(!search->devices().isEmpty() && search->devices().constFirst().rssi() == -42);
    QVERIFY(!changed.isEmpty());
    QCOMPARE(found.size(), 1);
    search->finishNow();
}

void TestSearch::cancelled()
{
    LOAD(Simulator::loadScenario(kInReach));
    auto *const search = m_computer->search();
    JobSpy spy(search);
    QSignalSpy found(search, &SearchJob::deviceFound);
    QTRY_VERIFY(!found.isEmpty());
    search->cancel();
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
    QVERIFY(!spy.value.isValid());
}

/** Before the service has said that it is there. */
void TestSearch::cancelledAtOnce()
{
    LOAD(Simulator::loadScenario(kInReach));
    auto *const early = m_computer->search();
    JobSpy unstarted(early);
    early->cancel();
    QVERIFY(unstarted.wait());
    QCOMPARE(unstarted.error, VardaJob::Cancelled);
    auto *const search = m_computer->search();
    JobSpy spy(search);
    connect(search, &VardaJob::stateChanged, search, &VardaJob::cancel);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
    QVERIFY(!spy.value.isValid());
    Simulator::settle();
    QCOMPARE(Simulator::count(u"StartDiscovery"_s), 0);
}

void TestSearch::onlyComputer_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<VardaJob::Error>("error");
    QTest::newRow("one") << QByteArray(R"({"devices":[{"name":"Varda"}]})") << VardaJob::NoError;
    QTest::newRow("two") << QByteArray(kInReach) << VardaJob::Ambiguous;
}

void TestSearch::onlyComputer()
{
    QFETCH(const QByteArray, scenario);
    QFETCH(const VardaJob::Error, error);
    LOAD(Simulator::loadScenario(scenario));
    JobSpy spy(m_computer->connectToOnlyComputer());
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, error);
    QCOMPARE(spy.reason, error == VardaJob::Ambiguous ? Reason::ManyInReach : Reason::None);
}

QTEST_MAIN(TestSearch)
#include "tst_search.moc"
