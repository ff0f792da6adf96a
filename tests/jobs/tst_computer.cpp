// SPDX-License-Identifier: MIT
#include <memory>

#include <varda/vardacomputer.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;

/** Connecting, the queue, and each job once. */
class TestComputer : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_computer = std::make_unique<VardaComputer>(); }
    void owner();
    void identity();
    void identityWithoutSerialNumber_data();
    void identityWithoutSerialNumber();
    void download();
    void readings();
    void writings();

private:
    std::unique_ptr<VardaComputer> m_computer;
};

void TestComputer::owner()
{
    LOAD(Simulator::loadDevice(R"("owner": "Ada")"));
    auto *const job = m_computer->readOwner();
    QCOMPARE(job->state(), VardaJob::Waiting);
    QCOMPARE(job->reason(), VardaJob::Reason::None);
    QVERIFY(!job->outcomeUnknown());
    QCOMPARE(job->remedy(), QString());
    QCOMPARE(m_computer->mtu(), 0);
    JobSpy spy(job);
    ENDS_WELL(spy);
    QCOMPARE(spy.value.toString(), u"Ada"_s);
    QCOMPARE(m_computer->device().address(), QString::fromLatin1(kAddress));
    QCOMPARE(m_computer->state(), VardaComputer::Connected);
    QCOMPARE(spy.ends, 1);
}

void TestComputer::identity()
{
    LOAD(Simulator::loadDevice(""));
    JobSpy spy(m_computer->readIdentity());
    ENDS_WELL(spy);
    const auto identity = spy.value.value<VardaIdentity>();
    QCOMPARE(identity.model, ComputerModel::Varda);
    QCOMPARE(identity.mode, CurrentMode::Normal);
    QVERIFY(!identity.serialNumber.isEmpty());
    QCOMPARE(identity.bootloaderVersionStr, u"1.0.3.a"_s);
}

void TestComputer::identityWithoutSerialNumber_data()
{
    QTest::addColumn<QByteArray>("model");
    QTest::addColumn<QString>("bootloader");
    // Asked for by itself, or part of the identification.
    QTest::newRow("varda") << QByteArray("varda") << u"1.0.3.a"_s;
    QTest::newRow("tidemar") << QByteArray("tidemar") << u"2.0.1.a"_s;
    QTest::newRow("vskm") << QByteArray("vskm") << u"3.0.2.b"_s;
}

void TestComputer::identityWithoutSerialNumber()
{
    QFETCH(const QByteArray, model);
    QFETCH(const QString, bootloader);
    LOAD(Simulator::loadDevice(R"("model":")" + model
                               + R"(","faults":[{"step":"answer",)"
                                 R"("command":"Serialnumber","kind":"wrongCrc"}])"));
    auto *const job = m_computer->readIdentity();
    job->setRetries(0);
    JobSpy spy(job);
    ENDS_WELL(spy);
    const auto identity = spy.value.value<VardaIdentity>();
    QCOMPARE(identity.serialNumber, QString());
    QCOMPARE(identity.bootloaderVersionStr, bootloader);
}

void TestComputer::download()
{
    LOAD(Simulator::loadDevice(""));
    auto *const job = m_computer->downloadDives({1});
    QList<int> numbers;
    connect(job, &DownloadJob::diveRead, this,
            [&](const Dive &dive, const TidemarDiveHeader &header, const QList<DiveSample> &) {
                numbers << header.diveNumber;
                QVERIFY(!dive.lines.isEmpty());
                QVERIFY(job->diveBytes() > 0);
            });
    QList<int> listed;
    connect(job, &VardaJob::finished, this, [&] {
        for (const TidemarDiveHeader &header : job->headers())
            listed << header.diveNumber;
    });
    QCOMPARE(job->unit(), VardaJob::Unit::Dives);
    JobSpy spy(job);
    ENDS_WELL(spy);
    qInfo() << numbers << spy.done << spy.total;
    QVERIFY(!numbers.isEmpty());
    QVERIFY(!numbers.contains(1));
    for (const int number : std::as_const(numbers))
        QVERIFY(listed.contains(number));
    JobSpy gone(m_computer->disconnectFromComputer());
    ENDS_WELL(gone);
    QCOMPARE(m_computer->state(), VardaComputer::Unconnected);
}

/** Each of the others that read, one after the other over one link. */
void TestComputer::readings()
{
    LOAD(Simulator::loadDevice(R"("owner": "Ada")"));
    QList<JobSpy *> spies;
    for (VardaJob *const job : QList<VardaJob *>{
             m_computer->readConfiguration(), m_computer->readGasTables(),
             m_computer->readSensors(), m_computer->readTissues(), m_computer->readBinaryLog(),
             m_computer->readBatteryHistory(), m_computer->readLogbook({1}),
             m_computer->readSamples(1), m_computer->readLayouts(), m_computer->readLayout(0),
             m_computer->readActiveLayouts(), m_computer->readClock()})
        spies.append(new JobSpy(job));
    for (JobSpy *const spy : std::as_const(spies)) {
        ENDS_WELL(*spy);
        QVERIFY(spy->value.isValid());
    }
    QCOMPARE(spies[2]->value.value<VardaSensors>().psurf, 1013U);
    QCOMPARE(spies[5]->value.value<QList<BatteryInfoRecord>>().size(), 5);
    QCOMPARE(spies[6]->value.value<QList<TidemarDiveHeader>>().size(), 11);
    QVERIFY(!spies[7]->value.value<QList<DiveSample>>().isEmpty());
    qDeleteAll(spies);
}

/** Each that writes; afterwards the computer has it. */
void TestComputer::writings()
{
    LOAD(Simulator::loadDevice(""));
    QList<JobSpy *> spies;
    for (VardaJob *const job : QList<VardaJob *>{
             m_computer->writeOwner(u"Grace"_s), m_computer->setClock(),
             m_computer->writeSurfacePressure(987), m_computer->writeSettings({}),
             m_computer->setSuperUserMode(true), m_computer->addLayout(QByteArray(300, 'x')),
             m_computer->activateLayout(1, 2), m_computer->removeLayout(2),
             m_computer->removeAllLayouts(), m_computer->deleteLastDive(), m_computer->eraseDives(),
             m_computer->readOwner()})
        spies.append(new JobSpy(job));
    for (JobSpy *const spy : std::as_const(spies)) {
        ENDS_WELL(*spy);
    }
    QCOMPARE(spies[2]->value.value<VardaSensors>().psurf, 987U);
    QCOMPARE(spies.constLast()->value.toString(), u"Grace"_s);
    qDeleteAll(spies);
}

QTEST_MAIN(TestComputer)
#include "tst_computer.moc"
