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
    void download();

private:
    std::unique_ptr<VardaComputer> m_computer;
};

void TestComputer::owner()
{
    LOAD(Simulator::loadDevice(R"("owner": "Ada")"));
    auto *const job = m_computer->readOwner();
    QCOMPARE(job->state(), VardaJob::Waiting);
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

void TestComputer::download()
{
    LOAD(Simulator::loadDevice(""));
    auto *const job = m_computer->downloadDives({1});
    QList<int> numbers;
    connect(job, &DownloadJob::diveRead, this,
            [&](const Dive &dive, const TidemarDiveHeader &header, const QList<DiveSample> &) {
                numbers << header.diveNumber;
                QVERIFY(!dive.lines.isEmpty());
            });
    JobSpy spy(job);
    ENDS_WELL(spy);
    qInfo() << numbers << spy.done << spy.total;
    QVERIFY(!numbers.isEmpty());
    QVERIFY(!numbers.contains(1));
    JobSpy gone(m_computer->disconnectFromComputer());
    ENDS_WELL(gone);
    QCOMPARE(m_computer->state(), VardaComputer::Unconnected);
}

QTEST_MAIN(TestComputer)
#include "tst_computer.moc"
