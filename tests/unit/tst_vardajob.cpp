// SPDX-License-Identifier: MIT
#include <QtCore/qmetaobject.h>
#include <QtCore/qpointer.h>
#include <QtTest/qsignalspy.h>
#include <QtTest/qtest.h>

#include <memory>

#include <varda/vardacomputer.h>

using namespace Qt::StringLiterals;
using Reason = VardaJob::Reason;

namespace {

/** A job that an application makes of others. */
class OwnJob : public VardaJob
{
public:
    using VardaJob::fail;
    using VardaJob::finish;
    using VardaJob::setProgress;
    using VardaJob::setState;
};

} // namespace

/** What jobs are and do where there is no Bluetooth at all. */
class TestVardaJob : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ownJob();
    void ownJobFails_data();
    void ownJobFails();
    void everyReasonHasAText();
    void ownJobIsCancelled();
    void ownJobDeletesItself();
    void noBluetooth();
    void computerGoesBeforeItsDisconnection();
    void names_data();
    void names();
};

void TestVardaJob::ownJob()
{
    OwnJob job;
    job.setAutoDelete(false);
    QSignalSpy finished(&job, &VardaJob::finished);
    QSignalSpy progressed(&job, &VardaJob::progressed);
    QCOMPARE(job.state(), VardaJob::Waiting);
    QCOMPARE(job.unit(), VardaJob::Unit::None);
    QCOMPARE(job.total(), -1);
    job.setState(VardaJob::Running);
    job.setState(VardaJob::Running);
    job.setProgress(2, 5);
    job.setProgress(1, 5); // never goes back
    QCOMPARE(progressed.size(), 1);
    QCOMPARE(job.done(), 2);
    job.finish(42);
    job.fail(VardaJob::Refused, Reason::ComputerRefused); // only the first call counts
    job.setState(VardaJob::Recovering);
    job.cancel();
    job.abort();
    QCOMPARE(job.state(), VardaJob::Running);
    QVERIFY(!job.value().isValid());
    QVERIFY(finished.wait());
    QCOMPARE(finished.size(), 1);
    QCOMPARE(progressed.size(), 2);
    QCOMPARE(job.state(), VardaJob::Finished);
    QCOMPARE(job.error(), VardaJob::NoError);
    QCOMPARE(job.value(), 42);
    QCOMPARE(job.errorText(), QString());
    QCOMPARE(job.remedy(), QString());
    QVERIFY(!job.outcomeUnknown());
}

void TestVardaJob::ownJobFails_data()
{
    QTest::addColumn<VardaJob::Error>("error");
    QTest::addColumn<VardaJob::Reason>("reason");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("is");
    QTest::addColumn<QString>("remedy");
    QTest::newRow("its own text") << VardaJob::Refused << Reason::ComputerRefused << u"so it is"_s
                                  << u"so it is"_s << QString();
    QTest::newRow("a reason's text")
        << VardaJob::NoBluetooth << Reason::AdapterOff << QString()
        << u"Bluetooth is switched off"_s << u"Switch it on. (bluetoothctl power on)"_s;
    QTest::newRow("could not connect")
        << VardaJob::NotConnected << Reason::LinkFailed << QString()
        << u"could not connect to the computer"_s << u"Is it still on and near?"_s;
}

void TestVardaJob::ownJobFails()
{
    QFETCH(const VardaJob::Error, error);
    QFETCH(const VardaJob::Reason, reason);
    QFETCH(const QString, text);
    QFETCH(const QString, is);
    QFETCH(const QString, remedy);
    OwnJob job;
    job.setAutoDelete(false);
    QSignalSpy finished(&job, &VardaJob::finished);
    job.fail(error, reason, text);
    QCOMPARE(job.error(), VardaJob::NoError); // not before its end
    QCOMPARE(job.errorText(), QString());
    QVERIFY(finished.wait());
    QCOMPARE(job.error(), error);
    QCOMPARE(job.reason(), reason);
    QCOMPARE(job.errorText(), is);
    QCOMPARE(job.remedy(), remedy);
    QVERIFY(!job.value().isValid());
}

void TestVardaJob::everyReasonHasAText()
{
    const auto reasons = QMetaEnum::fromType<VardaJob::Reason>();
    QStringList texts;
    for (int i = 0; i < reasons.keyCount(); ++i) {
        OwnJob job;
        job.setAutoDelete(false);
        QSignalSpy finished(&job, &VardaJob::finished);
        job.fail(VardaJob::Refused, Reason(reasons.value(i)));
        QVERIFY(finished.wait());
        QVERIFY2(!job.errorText().isEmpty(), reasons.key(i));
        QVERIFY2(!job.errorText().contains(u'%'), reasons.key(i));
        texts += job.errorText();
    }
    QCOMPARE(texts.constFirst(), u": failed"_s); // for no reason
    QCOMPARE(texts.removeDuplicates(), 0);
}

void TestVardaJob::ownJobIsCancelled()
{
    OwnJob job;
    job.setAutoDelete(false);
    QSignalSpy finished(&job, &VardaJob::finished);
    job.cancel();
    QVERIFY(finished.isEmpty());
    QVERIFY(finished.wait());
    QCOMPARE(job.error(), VardaJob::Cancelled);
    QCOMPARE(job.reason(), Reason::ByCaller);
}

void TestVardaJob::ownJobDeletesItself()
{
    const QPointer<OwnJob> job = new OwnJob;
    QSignalSpy finished(job, &VardaJob::finished);
    job->finish({});
    QVERIFY(finished.wait());
    QTRY_VERIFY(!job);
}

void TestVardaJob::noBluetooth()
{
    VardaComputer computer;
    auto *const job = computer.readOwner();
    job->setAutoDelete(false);
    QSignalSpy finished(job, &VardaJob::finished);
    auto *const search = computer.search();
    search->setAutoDelete(false);
    QSignalSpy searched(search, &VardaJob::finished);
    QTRY_COMPARE(finished.size(), 1);
    QCOMPARE(job->error(), VardaJob::NoBluetooth);
    QVERIFY(!job->errorText().isEmpty());
    QTRY_COMPARE(searched.size(), 1);
    QCOMPARE(search->error(), VardaJob::NoBluetooth);
    QCOMPARE(search->reason(), job->reason());
    QCOMPARE(computer.state(), VardaComputer::Unconnected);
    delete job;
    delete search;
}

void TestVardaJob::computerGoesBeforeItsDisconnection()
{
    auto computer = std::make_unique<VardaComputer>();
    auto *const job = computer->disconnectFromComputer();
    job->setAutoDelete(false);
    QSignalSpy finished(job, &VardaJob::finished);
    computer.reset();
    QVERIFY(finished.wait());
    QCOMPARE(job->error(), VardaJob::Cancelled);
    QCOMPARE(job->reason(), Reason::ComputerDeleted);
    delete job;
}

void TestVardaJob::names_data()
{
    QTest::addColumn<bool>("isComputer");
    for (const auto *name : {"Tidemar", "Varda", "VSK-0042", "RN4871-1234"})
        QTest::newRow(name) << true;
    for (const auto *name : {"", "varda", "Kettle", "VSK"})
        QTest::newRow(*name ? name : "none") << false;
}

void TestVardaJob::names()
{
    QFETCH(const bool, isComputer);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    QCOMPARE(VardaComputer::isComputerName(name == "none"_L1 ? QString() : name), isComputer);
}

QTEST_GUILESS_MAIN(TestVardaJob)
#include "tst_vardajob.moc"
