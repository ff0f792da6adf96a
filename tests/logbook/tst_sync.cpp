// SPDX-License-Identifier: MIT
#include <QtCore/qfile.h>
#include <QtCore/qpointer.h>
#include <QtCore/qprocess.h>
#include <QtTest/qsignalspy.h>

#include <unistd.h>

#include <chrono>
#include <memory>

#include <varda/syncjob.h>

#include "jobspy.h"
#include "linktest.h"
#include "storetest.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kLogbook = "13"_L1;
constexpr auto kSamples = "14"_L1;

/** A device with these dives, each a number and the second of its begin. */
QByteArray dives(const QList<std::pair<int, int>> &list, const QByteArray &more = {})
{
    QByteArrayList texts;
    for (const auto &[number, begin] : list)
        texts << R"({"number":)" + QByteArray::number(number)
                     + R"(,"samples":10,"header":{"stamp":)" + QByteArray::number(begin) + "}}";
    return more + R"("dives":[)" + texts.join(',') + ']';
}

/** The codes of the requests that have arrived, in hex. */
QStringList codes()
{
    QStringList found;
    const QStringList frames = Simulator::frames();
    for (const QString &frame : frames)
        found << frame.mid(16, 2);
    return found;
}

/** The numbers that each request of that code named. */
QList<QList<int>> numbersIn(QLatin1StringView code)
{
    QList<QList<int>> found;
    const QStringList frames = Simulator::frames();
    for (const QString &frame : frames) {
        if (frame.mid(16, 2) != code)
            continue;
        QList<int> numbers;
        for (qsizetype at = 18; at + 4 <= frame.size(); at += 4)
            numbers << (frame.mid(at + 2, 2) + frame.mid(at, 2)).toInt(nullptr, 16);
        found << numbers;
    }
    return found;
}

} // namespace

/** Synchronising: each dive once, whatever the computer, its link or the disk does. */
class TestSync : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void cleanupTestCase();
    void init();
    void firstTime();
    void secondTime();
    void imported();
    void importedCancelled();
    void startedAgain_data();
    void startedAgain();
    void startedAgainKnownNumbers();
    void lastDeletedAndReplaced();
    void damagedOfAnEarlierGeneration();
    void clockGoneBack();
    void twoComputers();
    void serialNumberLater();
    void hidden();
    void atMostFourWait();
    void storeFails();
    void storeFailsOnce();
    void fullDisk();
    void fullDiskInside();
    void lostLink();
    void cancelled();
    void damagedDive();
    void twoAtOnce();
    void notOpen();
    void storeDeleted();
    void computerDeleted();
    void jobDeleted();
    void noComputer();

private:
    /** Runs one synchronisation with what LOAD has made, on a link of its own. */
    void synchronise(Store &store, int added, int known = -1);
    [[nodiscard]] QString file() const { return m_folder->filePath(u"logbook.sqlite"_s); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestSync::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

#define SYNCHRONISE(...)                                                                           \
    do {                                                                                           \
        synchronise(__VA_ARGS__);                                                                  \
        if (QTest::currentTestFailed())                                                            \
            return;                                                                                \
    } while (false)

void TestSync::synchronise(Store &store, int added, int known)
{
    VardaComputer computer;
    auto *const job = syncLogbook(computer, store.store);
    int addedThen = -1;
    int knownThen = -1;
    connect(job, &VardaJob::finished, this, [&] {
        addedThen = job->added();
        knownThen = job->known();
    });
    QSignalSpy stored(job, &SyncJob::diveStored);
    JobSpy spy(job);
    ENDS_WELL(spy);
    QCOMPARE(addedThen, added);
    QCOMPARE(spy.value.toInt(), added);
    QCOMPARE(stored.size(), added);
    if (known >= 0)
        QCOMPARE(knownThen, known);
}

void TestSync::firstTime()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":4,"first":7,"samples":30})"));
    Store store;
    WORKS(store.open(file()));
    VardaComputer computer;
    QList<Dive> downloaded;
    QList<qint64> ids;
    auto *const job = syncLogbook(computer, store.store);
    QCOMPARE(job->unit(), VardaJob::Unit::Dives);
    connect(job->download(), &DownloadJob::diveRead, this,
            [&](const Dive &dive) { downloaded << dive; });
    connect(job, &SyncJob::diveStored, this, [&](qint64 id) { ids << id; });
    QSignalSpy wanted(job, &SyncJob::headersRead);
    JobSpy spy(job);
    ENDS_WELL(spy);
    QCOMPARE(spy.ends, 1);
    QCOMPARE(spy.done, 4);
    QCOMPARE(spy.total, 4);
    QCOMPARE(wanted.size(), 1);
    QCOMPARE(ids.size(), 4);
    QCOMPARE(downloaded.size(), 4);
    for (int i = 0; i < 4; ++i) {
        const LogbookDive read = store.dive(ids.at(i)).value;
        QCOMPARE(int(read.number), 7 + i);
        QCOMPARE(read.begin, downloaded.at(i).stamp);
        QCOMPARE(read.dive.lines.size(), 30);
        QCOMPARE(read.samples.size(), 30);
        QCOMPARE(read.header.diveNumber, 7 + i);
        QCOMPARE(read.dive.ownerName, downloaded.at(i).ownerName);
        QCOMPARE(read.dive.lines.at(17).depth, downloaded.at(i).lines.at(17).depth);
    }
    const LogbookComputer stored = store.computers().at(0);
    QCOMPARE(stored.identity.serialNumber, u"00420017-3138510D-37373934"_s);
    QCOMPARE(stored.identity.model, ComputerModel::Varda);
    QCOMPARE(stored.identity.firmwareVersionStr, computer.identity().firmwareVersionStr);
    QCOMPARE(stored.address, u"00:AA:01:01:00:01"_s);
    QVERIFY(!stored.name.isEmpty());
    QVERIFY(stored.lastSynchronised.isValid());
    WORKS(store.check());
}

/** The fewest requests: what computer it is, its owner, what it has, and each new dive. */
void TestSync::secondTime()
{
    Store store;
    WORKS(store.open(file()));
    QList<std::pair<int, int>> some;
    for (int number = 1; number <= 200; ++number) {
        some.append({number, 1000 * number});
        LogbookDive stored;
        stored.dive.serialNumber = u"00420017-3138510D-37373934"_s;
        stored.dive.diveNumber = std::uint16_t(number);
        stored.dive.stamp = 1000U * unsigned(number);
        stored.header.diveNumber = stored.dive.diveNumber;
        stored.header.stamp = stored.dive.stamp;
        WORKS(store.add({}, stored).error);
    }
    LOAD(Simulator::loadKnown(dives(some)));
    SYNCHRONISE(store, 0, 200);
    for (int number = 201; number <= 205; ++number)
        some.append({number, 1000 * number});
    LOAD(Simulator::loadKnown(dives(some)));
    SYNCHRONISE(store, 5, 200);
    QCOMPARE(codes().size(), 9);
    QCOMPARE(codes().count(kLogbook), 1);
    QCOMPARE(numbersIn(kSamples), (QList<QList<int>>{{201}, {202}, {203}, {204}, {205}}));
    // Nothing new: all but the dives.
    LOAD(Simulator::loadKnown(dives(some)));
    SYNCHRONISE(store, 0, 205);
    QCOMPARE(codes().size(), 4);
    // The newest is not among them: whether it comes back says what the others mean.
    const QList<int> told = numbersIn(kLogbook).constFirst();
    QCOMPARE(told.size(), 59);
    QCOMPARE(told.constLast(), 204);
    QCOMPARE(store.names().size(), 205);
}

/** A copy from a file, without samples, does not stand for the dive. */
void TestSync::imported()
{
    Store store;
    WORKS(store.open(file()));
    LogbookDive copy;
    copy.dive.serialNumber = u"00420017-3138510D-37373934"_s;
    copy.dive.diveNumber = 2;
    copy.dive.stamp = 200;
    copy.dive.ownerName = u"from a file"_s;
    copy.dive.lines.resize(1);
    copy.place = u"Lake"_s;
    copy.notes = u"cold"_s;
    copy.hidden = true;
    const qint64 id = store.add({}, copy).value.id;
    LOAD(Simulator::loadKnown(dives({{1, 100}, {2, 200}, {3, 300}})));
    SYNCHRONISE(store, 3, 0);
    const LogbookDive read = store.dive(id).value;
    QCOMPARE(int(read.number), 2);
    QCOMPARE(read.header.diveNumber, 2);
    QCOMPARE(read.samples.size(), 10);
    QCOMPARE(read.dive.lines.size(), 10);
    QCOMPARE(read.lines, 10);
    QVERIFY(read.duration > 0);
    QVERIFY(read.dive.ownerName != u"from a file"_s);
    QCOMPARE(read.place, u"Lake"_s);
    QCOMPARE(read.notes, u"cold"_s);
    QVERIFY(read.hidden);
    QCOMPARE(store.names({.withHidden = true}), (QStringList{u"1@100"_s, u"2@200"_s, u"3@300"_s}));
    WORKS(store.check());
    // Neither another synchronisation nor another import changes it.
    LOAD(Simulator::loadKnown(dives({{1, 100}, {2, 200}, {3, 300}})));
    SYNCHRONISE(store, 0, 3);
    QCOMPARE(codes().count(kSamples), 0);
    QVERIFY(!store.add({}, copy).value.isNew);
    QCOMPARE(store.dive(id).value.samples.size(), 10);
}

/** The computer has shown a copy's dive, but the dive has not arrived. */
void TestSync::importedCancelled()
{
    Store store;
    WORKS(store.open(file()));
    LogbookDive copy;
    copy.dive.serialNumber = u"00420017-3138510D-37373934"_s;
    copy.dive.diveNumber = 2;
    copy.dive.stamp = 200;
    const qint64 id = store.add({}, copy).value.id;
    const QList<std::pair<int, int>> some{{1, 100}, {2, 200}, {3, 300}};
    LOAD(Simulator::loadKnown(
        dives(some, R"("faults":[{"step":"answer","command":"Fullsamples","nth":2,"times":4,)"
                    R"("kind":"wrongCrc"}],)")));
    SYNCHRONISE(store, 2, 0);
    QVERIFY(store.dive(id).value.samples.isEmpty());
    LOAD(Simulator::loadKnown(dives(some)));
    SYNCHRONISE(store, 1, 2);
    QCOMPARE(numbersIn(kSamples), QList<QList<int>>{{2}});
    QCOMPARE(store.dive(id).value.samples.size(), 10);
}

void TestSync::startedAgain_data()
{
    QTest::addColumn<QByteArray>("later");
    QTest::addColumn<int>("added");
    QTest::newRow("fewer") << dives({{1, 500}, {2, 600}}) << 2;
    QTest::newRow("as many") << dives({{1, 500}, {2, 600}, {3, 700}}) << 3;
    QTest::newRow("more") << dives({{1, 500}, {2, 600}, {3, 700}, {4, 800}, {5, 900}}) << 5;
    QTest::newRow("none") << dives({}) << 0;
    QTest::newRow("clock set back") << dives({{1, 5}, {2, 6}, {3, 7}}) << 3;
}

/** All dives of the computer were erased, and its numbers begin at 1. */
void TestSync::startedAgain()
{
    QFETCH(const QByteArray, later);
    QFETCH(const int, added);
    Store store;
    WORKS(store.open(file()));
    LOAD(Simulator::loadKnown(dives({{1, 100}, {2, 200}, {3, 300}})));
    SYNCHRONISE(store, 3);
    LOAD(Simulator::loadKnown(later));
    SYNCHRONISE(store, added, 3);
    QCOMPARE(store.names().size(), 3 + added);
    // And nothing is read again.
    LOAD(Simulator::loadKnown(later));
    SYNCHRONISE(store, 0);
    QCOMPARE(codes().count(kSamples), 0);
}

/** A number of before that comes again later hides nothing. */
void TestSync::startedAgainKnownNumbers()
{
    Store store;
    WORKS(store.open(file()));
    LOAD(Simulator::loadKnown(dives({{1, 100}, {2, 200}, {3, 300}, {4, 400}})));
    SYNCHRONISE(store, 4);
    LOAD(Simulator::loadKnown(dives({{1, 1000}, {2, 2000}})));
    SYNCHRONISE(store, 2);
    LOAD(Simulator::loadKnown(dives({{1, 1000}, {2, 2000}, {3, 3000}})));
    SYNCHRONISE(store, 1, 6);
    QCOMPARE(numbersIn(kSamples), QList<QList<int>>{{3}});
    QCOMPARE(codes().count(kLogbook), 1);
    QCOMPARE(store.names(), (QStringList{u"1@100"_s, u"2@200"_s, u"3@300"_s, u"4@400"_s,
                                         u"1@1000"_s, u"2@2000"_s, u"3@3000"_s}));
}

void TestSync::lastDeletedAndReplaced()
{
    Store store;
    WORKS(store.open(file()));
    LOAD(Simulator::loadKnown(dives({{1, 100}, {2, 200}, {3, 300}})));
    SYNCHRONISE(store, 3);
    LOAD(Simulator::loadKnown(dives({{1, 100}, {2, 201}})));
    SYNCHRONISE(store, 1);
    QCOMPARE(codes().count(kLogbook), 2);
    LOAD(Simulator::loadKnown(dives({{1, 100}, {2, 201}, {3, 301}})));
    SYNCHRONISE(store, 1);
    QCOMPARE(codes().count(kLogbook), 1);
    QCOMPARE(store.names(),
             (QStringList{u"1@100"_s, u"2@200"_s, u"2@201"_s, u"3@300"_s, u"3@301"_s}));
}

/** A dive that could not be read is not taken for one of before with its number. */
void TestSync::damagedOfAnEarlierGeneration()
{
    Store store;
    WORKS(store.open(file()));
    LOAD(Simulator::loadKnown(dives({{1, 100}, {2, 200}, {3, 300}})));
    SYNCHRONISE(store, 3);
    const QList<std::pair<int, int>> later{{1, 1000}, {2, 2000}, {3, 3000}};
    LOAD(Simulator::loadKnown(
        dives(later, R"("faults":[{"step":"answer","command":"Fullsamples","nth":2,"times":4,)"
                     R"("kind":"wrongCrc"}],)")));
    SYNCHRONISE(store, 2);
    LOAD(Simulator::loadKnown(dives(later)));
    SYNCHRONISE(store, 1);
    QCOMPARE(store.names().size(), 6);
}

void TestSync::clockGoneBack()
{
    Store store;
    WORKS(store.open(file()));
    LOAD(Simulator::loadKnown(dives({{1, 1000}, {2, 2000}})));
    SYNCHRONISE(store, 2);
    LOAD(Simulator::loadKnown(dives({{1, 1000}, {2, 2000}, {3, 10}, {4, 20}})));
    SYNCHRONISE(store, 2);
    LOAD(Simulator::loadKnown(dives({{1, 1000}, {2, 2000}, {3, 10}, {4, 20}, {5, 15}})));
    SYNCHRONISE(store, 1);
    QCOMPARE(codes().count(kLogbook), 1);
    QCOMPARE(store.names(),
             (QStringList{u"3@10"_s, u"5@15"_s, u"4@20"_s, u"1@1000"_s, u"2@2000"_s}));
}

void TestSync::twoComputers()
{
    Store store;
    WORKS(store.open(file()));
    const QByteArray both = R"("dives":{"count":3,"samples":10})";
    LOAD(Simulator::loadKnown(both));
    SYNCHRONISE(store, 3);
    LOAD(Simulator::loadKnown(R"("serial":"00000001-00000002-00000003","address":)"
                              R"("00:AA:01:01:00:02",)"
                              + both));
    SYNCHRONISE(store, 3, 0);
    QCOMPARE(store.computers().size(), 2);
    QCOMPARE(store.computers().at(1).dives, 3);
    QCOMPARE(store.names().size(), 6);
}

/** At an MTU of 23 the serial number cannot arrive. */
void TestSync::serialNumberLater()
{
    Store store;
    WORKS(store.open(file()));
    const QByteArray some = dives({{1, 100}, {2, 200}});
    LOAD(Simulator::loadKnown(R"("mtu":23,)" + some));
    SYNCHRONISE(store, 2);
    QCOMPARE(store.computers().at(0).identity.serialNumber, QString());
    LOAD(Simulator::loadKnown(some));
    SYNCHRONISE(store, 0, 2);
    QCOMPARE(store.computers().size(), 1);
    QCOMPARE(store.computers().at(0).identity.serialNumber, u"00420017-3138510D-37373934"_s);
    LOAD(Simulator::loadKnown(R"("mtu":23,)" + some));
    SYNCHRONISE(store, 0, 2);
    QCOMPARE(store.computers().size(), 1);
}

void TestSync::hidden()
{
    Store store;
    WORKS(store.open(file()));
    LOAD(Simulator::loadKnown(dives({{1, 100}, {2, 200}})));
    SYNCHRONISE(store, 2);
    for (const LogbookEntry &each : store.dives()) {
        WORKS(ended([&](auto... end) { store.store.setHidden(each.id, true, end...); }));
        WORKS(ended([&](auto... end) { store.store.setPlace(each.id, u"Lake"_s, end...); }));
    }
    LOAD(Simulator::loadKnown(dives({{1, 100}, {2, 200}, {3, 300}})));
    SYNCHRONISE(store, 1, 2);
    QCOMPARE(store.names(), QStringList{u"3@300"_s});
    QCOMPARE(store.dives({.withHidden = true}).at(0).place, u"Lake"_s);
}

/** While the disk is not to be had, the download stops after the fourth dive. */
void TestSync::atMostFourWait()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":12,"samples":10})"));
    Store store;
    WORKS(store.open(file()));
    Sqlite other(file());
    VardaComputer computer;
    auto *const job = syncLogbook(computer, store.store);
    connect(job, &SyncJob::headersRead, this, [&] { other.run(u"BEGIN IMMEDIATE"_s); });
    JobSpy spy(job);
    QTRY_COMPARE_WITH_TIMEOUT(codes().count(kSamples), 4, 30'000);
    QTRY_COMPARE_WITH_TIMEOUT(job->state(), VardaJob::Paused, 30'000);
    Simulator::settle();
    QCOMPARE(codes().count(kSamples), 4);
    QCOMPARE(job->added(), 0);
    QCOMPARE(computer.state(), VardaComputer::Connected);
    other.run(u"COMMIT"_s);
    ENDS_WELL(spy);
    QCOMPARE(spy.done, 12);
    QCOMPARE(store.names().size(), 12);
}

void TestSync::storeFails()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":5,"samples":10})"));
    Store store;
    store.store.setBusyLimit(50ms);
    WORKS(store.open(file()));
    Sqlite other(file());
    VardaComputer computer;
    auto *const job = syncLogbook(computer, store.store);
    connect(
        job, &SyncJob::diveStored, this, [&] { other.run(u"BEGIN IMMEDIATE"_s); },
        Qt::SingleShotConnection);
    LogbookError why;
    QString remedy;
    connect(job, &VardaJob::finished, this, [&] {
        why = job->storeError();
        remedy = job->remedy();
    });
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::NotStored);
    QCOMPARE(spy.reason, VardaJob::Reason::StoreFailed);
    QCOMPARE(spy.text, file() + u": another program is using it"_s);
    QCOMPARE(remedy, u"Close that program, or wait for it, and try again."_s);
    QCOMPARE(why.kind, LogbookError::Busy);
    other.run(u"COMMIT"_s);
    // The line is free, and what was stored is not read again.
    const auto stored = int(store.names().size());
    QVERIFY(stored >= 1 && stored < 5);
    LOAD(Simulator::loadKnown(R"("dives":{"count":5,"samples":10})"));
    SYNCHRONISE(store, 5 - stored, stored);
    QCOMPARE(store.names().size(), 5);
}

/** Dives that wait behind a write that fails do not wait for the disk again. */
void TestSync::storeFailsOnce()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":5,"samples":10})"));
    Store store;
    store.store.setBusyLimit(3s);
    WORKS(store.open(file()));
    Sqlite other(file());
    VardaComputer computer;
    const QPointer<SyncJob> job = syncLogbook(computer, store.store);
    connect(job, &SyncJob::headersRead, this, [&] { other.run(u"BEGIN IMMEDIATE"_s); });
    LogbookError why;
    connect(job, &VardaJob::finished, this, [&] { why = job->storeError(); });
    JobSpy spy(job);
    QTRY_VERIFY_WITH_TIMEOUT(!job || job->storeError().kind == LogbookError::Busy, 60'000);
    other.run(u"COMMIT"_s);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::NotStored);
    QCOMPARE(why.kind, LogbookError::Busy);
    QCOMPARE(store.names(), QStringList());
}

void TestSync::fullDisk()
{
    QStringList own{u"--mount"_s};
    if (geteuid() != 0)
        own.prepend(u"--map-root-user"_s);
    const QString mount = u"mount -t tmpfs -o size=500k tmpfs /mnt"_s;
    if (QProcess::execute(u"unshare"_s, own + QStringList{u"sh"_s, u"-c"_s, mount}) != 0) {
        QVERIFY2(!qEnvironmentVariableIsSet("CI"), "CI has to have the right to mount");
        QSKIP("there is no right to mount");
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(
        u"unshare"_s,
        own
            + QStringList{u"sh"_s, u"-c"_s,
                          mount + " && VARDA_TEST_MOUNT=/mnt exec \"$0\" fullDiskInside"_L1,
                          QCoreApplication::applicationFilePath()});
    QVERIFY(process.waitForFinished(120'000));
    QVERIFY2(process.exitCode() == 0, process.readAll());
}

void TestSync::fullDiskInside()
{
    if (!qEnvironmentVariableIsSet("VARDA_TEST_MOUNT"))
        return; // nothing to do but in the namespace
    const QByteArray many = R"("dives":{"count":30,"samples":200})";
    Store store;
    WORKS(store.open(u"/mnt/logbook.sqlite"_s));
    LOAD(Simulator::loadKnown(many));
    VardaComputer computer;
    auto *const job = syncLogbook(computer, store.store);
    int stored = 0;
    LogbookError why;
    connect(job, &SyncJob::diveStored, this, [&] { ++stored; });
    connect(job, &VardaJob::finished, this, [&] { why = job->storeError(); });
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::NotStored);
    QCOMPARE(spy.text, u"/mnt/logbook.sqlite: the disk is full"_s);
    QCOMPARE(why.kind, LogbookError::DiskFull);
    QVERIFY(stored > 1 && stored < 30);
    QCOMPARE(store.names().size(), stored);
    WORKS(store.check());
    QCOMPARE(QProcess::execute(u"mount"_s, {u"-o"_s, u"remount,size=9m"_s, u"/mnt"_s}), 0);
    LOAD(Simulator::loadKnown(many));
    SYNCHRONISE(store, 30 - stored, stored);
    QCOMPARE(codes().count(kSamples), 30 - stored);
    WORKS(store.check());
}

void TestSync::lostLink()
{
    LOAD(Simulator::loadKnown(
        R"("dives":{"count":4,"samples":40},"faults":[)"
        R"({"step":"answer","command":"Serialnumber","nth":1,"times":1,"kind":"drop"},)"
        R"({"step":"notification","command":"Fullsamples","nth":7,"times":1,"kind":"drop"}])"));
    Store store;
    WORKS(store.open(file()));
    SYNCHRONISE(store, 4, 0);
    QCOMPARE(store.computers().size(), 1);
    WORKS(store.check());
}

void TestSync::cancelled()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":6,"samples":40})"));
    Store store;
    WORKS(store.open(file()));
    int stored = 0;
    {
        VardaComputer computer;
        auto *const job = syncLogbook(computer, store.store);
        connect(job, &SyncJob::diveStored, this, [&, job] {
            if (++stored == 2)
                job->cancel();
        });
        JobSpy spy(job);
        QVERIFY(spy.wait());
        QCOMPARE(spy.error, VardaJob::Cancelled);
        QCOMPARE(spy.ends, 1);
    }
    QVERIFY(stored >= 2 && stored < 6);
    QVERIFY(!store.computers().at(0).lastSynchronised.isValid());
    LOAD(Simulator::loadKnown(R"("dives":{"count":6,"samples":40})"));
    SYNCHRONISE(store, 6 - stored, stored);
    QCOMPARE(codes().count(kSamples), 6 - stored);
    QCOMPARE(store.names().size(), 6);
}

void TestSync::damagedDive()
{
    LOAD(Simulator::loadKnown(
        R"("dives":{"count":3,"samples":40},"faults":[{"step":"answer","command":"Fullsamples",)"
        R"("nth":2,"times":4,"kind":"wrongCrc"}])"));
    Store store;
    WORKS(store.open(file()));
    {
        VardaComputer computer;
        auto *const job = syncLogbook(computer, store.store);
        QSignalSpy damaged(job, &SyncJob::diveDamaged);
        QList<std::uint16_t> listed;
        connect(job, &VardaJob::finished, this, [&] { listed = job->damaged(); });
        JobSpy spy(job);
        ENDS_WELL(spy);
        QCOMPARE(damaged.size(), 1);
        QCOMPARE(listed, QList<std::uint16_t>{2});
        QCOMPARE(spy.done, 3);
        QCOMPARE(spy.value.toInt(), 2);
    }
    LOAD(Simulator::loadKnown(R"("dives":{"count":3,"samples":40})"));
    SYNCHRONISE(store, 1, 2);
    QCOMPARE(numbersIn(kSamples), QList<QList<int>>{{2}});
}

/** Two stores of one file, two links: as two programs. */
void TestSync::twoAtOnce()
{
    const QByteArray some = R"("known":true,"dives":{"count":10,"samples":20})";
    LOAD(Simulator::loadScenario(R"({"devices":[{"name":"Varda","address":"00:AA:01:01:00:01",)"
                                 + some + R"(},{"name":"Varda","address":"00:AA:01:01:00:02",)"
                                 + some + "}]}"));
    Store stores[2];
    VardaComputer computers[2];
    std::unique_ptr<JobSpy> spies[2];
    int added = 0;
    for (int i = 0; i < 2; ++i) {
        WORKS(stores[i].open(file()));
        computers[i].setDevice(
            BleDeviceInfo::fromAddress(u"00:AA:01:01:00:0%1"_s.arg(i + 1), u"Varda"_s));
        auto *const job = syncLogbook(computers[i], stores[i].store);
        connect(job, &VardaJob::finished, this, [&added, job] { added += job->added(); });
        spies[i] = std::make_unique<JobSpy>(job);
    }
    for (const auto &spy : spies) {
        ENDS_WELL(*spy);
    }
    QCOMPARE(added, 10);
    QCOMPARE(stores[0].names().size(), 10);
    QCOMPARE(stores[0].computers().size(), 1);
    WORKS(stores[1].check());
}

void TestSync::notOpen()
{
    LOAD(Simulator::loadKnown());
    Store store;
    VardaComputer computer;
    JobSpy spy(syncLogbook(computer, store.store));
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::NotStored);
    QCOMPARE(spy.text, u"no logbook file is open"_s);
    QCOMPARE(codes().count(kLogbook), 0);
}

void TestSync::storeDeleted()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":5,"samples":40})"));
    auto store = std::make_unique<Store>();
    WORKS(store->open(file()));
    VardaComputer computer;
    auto *const job = syncLogbook(computer, store->store);
    JobSpy spy(job);
    connect(
        job->download(), &DownloadJob::diveRead, this, [&] { store.reset(); },
        Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::NotStored);
    QCOMPARE(spy.ends, 1);
}

/** What a store deletes later goes with the next turns of the event loop. */
void TestSync::cleanupTestCase()
{
    for (int turn = 0; turn < 3; ++turn) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

void TestSync::computerDeleted()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":5,"samples":40})"));
    Store store;
    WORKS(store.open(file()));
    auto computer = std::make_unique<VardaComputer>();
    auto *const job = syncLogbook(*computer, store.store);
    JobSpy spy(job);
    connect(job, &SyncJob::diveStored, this, [&] { computer.reset(); });
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::Cancelled);
    QCOMPARE(spy.reason, VardaJob::Reason::ComputerDeleted);
    QVERIFY(!store.names().isEmpty());
}

void TestSync::jobDeleted()
{
    LOAD(Simulator::loadKnown(R"("dives":{"count":5,"samples":40})"));
    Store store;
    WORKS(store.open(file()));
    VardaComputer computer;
    auto *const job = syncLogbook(computer, store.store);
    bool deleted = false;
    connect(job, &SyncJob::diveStored, this, [&, job] {
        delete job;
        deleted = true;
    });
    QTRY_VERIFY_WITH_TIMEOUT(deleted, 30'000);
    // The line is free.
    JobSpy spy(syncLogbook(computer, store.store));
    ENDS_WELL(spy);
    QCOMPARE(store.names().size(), 5);
}

void TestSync::noComputer()
{
    LOAD(Simulator::loadScenario(R"({"devices":[]})"));
    Store store;
    WORKS(store.open(file()));
    VardaComputer computer;
    auto *const job = syncLogbook(computer, store.store);
    job->download()->setConnectLimit(500ms);
    JobSpy spy(job);
    QVERIFY(spy.wait());
    QCOMPARE(spy.error, VardaJob::NotFound);
    QVERIFY(spy.text.startsWith(u"no computer found"_s));
}

QTEST_MAIN(TestSync)
#include "tst_sync.moc"
