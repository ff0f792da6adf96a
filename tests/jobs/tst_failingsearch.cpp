// SPDX-License-Identifier: MIT
#include <QtBluetooth/qbluetoothdevicediscoveryagent.h>

#include <varda/vardacomputer.h>
#include <varda/vardadoctor.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;
using Agent = QBluetoothDeviceDiscoveryAgent;
using Reason = VardaJob::Reason;

Q_DECLARE_METATYPE(QBluetoothDeviceDiscoveryAgent::Error)

namespace {

Agent::Error failure = Agent::NoError;

} // namespace

// The program's own definition comes before that of Qt Bluetooth, which has most of these on other
// systems only.
void QBluetoothDeviceDiscoveryAgent::start(DiscoveryMethods /*methods*/)
{
    Q_EMIT errorOccurred(failure);
}

/** A search that the system does not carry out, though its Bluetooth seems to be sound. */
class TestFailingSearch : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void failed_data();
    void failed();
};

void TestFailingSearch::failed_data()
{
    QTest::addColumn<Agent::Error>("error");
    QTest::addColumn<VardaJob::Reason>("reason");
    QTest::newRow("input or output") << Agent::InputOutputError << Reason::NoAdapter;
    QTest::newRow("adapter") << Agent::InvalidBluetoothAdapterError << Reason::NoAdapter;
    QTest::newRow("off") << Agent::PoweredOffError << Reason::AdapterOff;
    QTest::newRow("permission") << Agent::MissingPermissionsError << Reason::PermissionDenied;
    QTest::newRow("platform") << Agent::UnsupportedPlatformError << Reason::NotSupported;
    QTest::newRow("method") << Agent::UnsupportedDiscoveryMethod << Reason::NotSupported;
    QTest::newRow("unknown") << Agent::UnknownError << Reason::ServiceGone;
}

void TestFailingSearch::failed()
{
    QFETCH(const Agent::Error, error);
    QFETCH(const VardaJob::Reason, reason);
    LOAD(Simulator::loadDevice(""));
    failure = error;
    VardaComputer computer;
    JobSpy reading(computer.readOwner());
    JobSpy search(computer.search());
    QVERIFY(reading.wait());
    QCOMPARE(reading.error, VardaJob::NoBluetooth);
    QCOMPARE(reading.reason, reason);
    QVERIFY(search.wait());
    QCOMPARE(search.error, VardaJob::NoBluetooth);
    QCOMPARE(search.reason, reason);
    VardaDoctor *const doctor = VardaDoctor::examine(computer);
    VardaCheck fault;
    connect(doctor, &VardaJob::finished, this, [&] { fault = doctor->fault(); });
    JobSpy examination(doctor);
    ENDS_WELL(examination);
    QCOMPARE(fault.subject, VardaCheck::Subject::Reach);
    QCOMPARE(fault.reason, reason);
}

QTEST_MAIN(TestFailingSearch)
#include "tst_failingsearch.moc"
