// SPDX-License-Identifier: MIT
#include <QtCore/qelapsedtimer.h>
#include <QtCore/qfile.h>
#include <QtCore/qfileinfo.h>
#include <QtCore/qprocess.h>
#include <QtCore/qthread.h>
#include <QtCore/qtimer.h>

#include <unistd.h>

#include <atomic>
#include <limits>
#include <memory>
#include <utility>

#include "filled.h"
#include "storetest.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

LogbookComputer computer(const QString &serialNumber, const QString &address = {},
                         const QString &name = {})
{
    LogbookComputer made;
    made.identity.serialNumber = serialNumber;
    made.address = address;
    made.name = name;
    return made;
}

LogbookDive dive(std::uint16_t number, std::uint64_t begin, const QString &place = {},
                 const QString &notes = {})
{
    LogbookDive made;
    made.dive.diveNumber = number;
    made.dive.stamp = begin;
    made.place = place;
    made.notes = notes;
    return made;
}

LogbookDive filledDive()
{
    int seed = 0;
    LogbookDive made;
    made.dive = Filled::record<Dive>(seed);
    made.header = Filled::record<TidemarDiveHeader>(seed);
    made.samples = Filled::value<QList<DiveSample>>(seed);
    return made;
}

QByteArray contentOf(const QString &file)
{
    QFile opened(file);
    return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray("no such file");
}

void write(const QString &file, const QByteArray &content)
{
    QFile opened(file);
    if (!opened.open(QIODevice::WriteOnly) || opened.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(file));
}

/** Counts its copies that were deleted on another thread than this one. */
class Watched
{
public:
    explicit Watched(std::atomic_int *count) : m_count(count) { }
    Watched(const Watched &other) = default;
    Watched(Watched &&other) noexcept
        : m_count(std::exchange(other.m_count, nullptr)), m_home(other.m_home)
    {
    }
    Watched &operator=(const Watched &) = delete;
    Watched &operator=(Watched &&) = delete;
    ~Watched()
    {
        if (m_count && QThread::currentThread() != m_home)
            ++*m_count;
    }

private:
    std::atomic_int *m_count;
    QThread *m_home = QThread::currentThread();
};

/** As in a file's header: four bytes, the highest first. */
QByteArray withNumberAt(QByteArray content, int place, std::uint32_t number)
{
    for (int i = 0; i < 4; ++i)
        content[place + i] = char(number >> (24 - 8 * i));
    return content;
}

} // namespace

/** The store: nothing of a dive is lost, none is there twice, and a file is never made worse. */
class TestStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_folder.reset(); }
    void everyField();
    void columns();
    void extremes();
    void sameDive();
    void twoComputers();
    void numberUnknownFirst();
    void numberUnknownBetween();
    void numberUnreadableLater();
    void serialNumberOfTheComputer();
    void unknownBegin_data();
    void unknownBegin();
    void joinedWithNotes();
    void joinedWithImported();
    void whatTheDiverAdds();
    void query();
    void empty();
    void newFolder();
    void newerSchema();
    void newerSchemaOfARunningProgram();
    void notALogbook_data();
    void notALogbook();
    void killedWhileWriting();
    void otherProgramKilledWhileWriting();
    void firstSchema();
    void schemaIsTheFirst();
    void damaged();
    void incomplete_data();
    void incomplete();
    void readAtOneMoment();
    void noSuchFolder();
    void notOpen();
    void otherFile();
    void waitsForAnother();
    void busyForTooLong();
    void twoProcesses();
    void safeSettings();
    void deletedStore();
    void deletedContext();
    void callbackStaysHere();
    void withoutContext();
    void writableNoMore();
    void writableNoMoreInside();
    void writableElsewhere();
    void writableElsewhereInside();
    void fullDisk();
    void fullDiskInside();

private:
    [[nodiscard]] QString file(const QString &name = u"logbook.sqlite"_s) const
    {
        return m_folder->filePath(name);
    }
    /** Runs a case of this program in a namespace of its own, where it may mount. */
    static void inNamespace(const char *size, const QString &name);

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestStore::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void TestStore::everyField()
{
    const LogbookDive written = filledDive();
    qint64 id = 0;
    {
        Store store;
        WORKS(store.open(file()));
        const auto added = store.add(computer(u"A"_s), written);
        WORKS(added.error);
        QVERIFY(added.value.isNew);
        id = added.value.id;
    }
    Store store;
    WORKS(store.open(file()));
    const auto read = store.dive(id);
    WORKS(read.error);
    QCOMPARE(Filled::differences(read.value.dive, written.dive), QStringList());
    QCOMPARE(Filled::differences(read.value.header, written.header), QStringList());
    QCOMPARE(read.value.samples.size(), 2);
    for (int i = 0; i < 2; ++i)
        QCOMPARE(Filled::differences(read.value.samples.at(i), written.samples.at(i)),
                 QStringList());
    QCOMPARE(read.value.dive.lines4.size(), 2);
    QCOMPARE(read.value.dive.marks2.size(), 2);
    WORKS(store.check());
}

/** Other programs find the fields under their names. */
void TestStore::columns()
{
    {
        Store store;
        WORKS(store.open(file()));
        LogbookDive made = dive(7, 1'700'000'000);
        made.dive.ownerName = u"Ada"_s;
        made.dive.gasO2 = {21, 50};
        made.dive.lines.resize(3);
        made.dive.lines[1].time = 5;
        made.dive.lines[1].depth = 12.5;
        made.dive.lines[2].time = 10;
        made.samples.resize(1);
        made.samples[0].depth = 125;
        made.samples[0].value12 = -7;
        WORKS(store.add(computer(u"A"_s, u"00:AA:01:01:00:01"_s, u"Varda"_s), made).error);
    }
    Sqlite sqlite(file());
    QCOMPARE(sqlite.run(u"SELECT number, \"begin\", duration, greatestDepth, lines FROM dive"_s),
             QStringList{u"7|1700000000|10|12.5|3"_s});
    QCOMPARE(sqlite.run(u"SELECT diveNumber, stamp, ownerName, gasO2 FROM record"_s),
             QStringList{u"7|1700000000|Ada|21,50,0,0,0,0,0,0,0,0,0,0"_s});
    QCOMPARE(sqlite.run(u"SELECT list, position, time, depth FROM line"_s),
             (QStringList{u"0|0|0|0"_s, u"0|1|5|12.5"_s, u"0|2|10|0"_s}));
    QCOMPARE(sqlite.run(u"SELECT depth, value12, aux11 FROM sample"_s),
             QStringList{u"125|-7|255"_s});
    QCOMPARE(sqlite.run(u"SELECT serialNumber, address, name FROM computer"_s),
             QStringList{u"A|00:AA:01:01:00:01|Varda"_s});
}

void TestStore::extremes()
{
    LogbookDive made = dive(0xFFFF, std::numeric_limits<std::uint64_t>::max());
    made.dive.stamp2 = std::numeric_limits<std::int64_t>::min();
    made.dive.value64 = 0x8000'0000'0000'0001;
    made.dive.value32 = 0xFFFF'FFFF;
    made.dive.tenths1 = std::numeric_limits<double>::quiet_NaN();
    made.dive.tenths2 = std::numeric_limits<double>::infinity();
    made.dive.text = u"before\0after"_s;
    made.dive.lines.resize(1);
    made.dive.lines[0].value8 = -1;
    Store store;
    WORKS(store.open(file()));
    const auto added = store.add(computer(u"A"_s), made);
    WORKS(added.error);
    const Dive read = store.dive(added.value.id).value.dive;
    QCOMPARE(read.diveNumber, 0xFFFF);
    QCOMPARE(read.stamp, 18'446'744'073'709'551'615ULL);
    QCOMPARE(read.stamp2, std::numeric_limits<std::int64_t>::min());
    QCOMPARE(read.value64, 0x8000'0000'0000'0001ULL);
    QCOMPARE(read.value32, 0xFFFF'FFFFU);
    QVERIFY(qIsNaN(read.tenths1));
    QVERIFY(qIsInf(read.tenths2));
    QCOMPARE(read.text.size(), 12);
    QCOMPARE(read.lines.at(0).value8, -1);
    QCOMPARE(store.names(), QStringList{u"65535@18446744073709551615"_s});
}

void TestStore::sameDive()
{
    Store store;
    WORKS(store.open(file()));
    const auto first = store.add(computer(u"A"_s), dive(1, 100, u"Lake"_s));
    QVERIFY(first.value.isNew);
    // What is there stays as it is.
    const auto again = store.add(computer(u"A"_s), dive(1, 100, u"Sea"_s));
    QVERIFY(!again.value.isNew);
    QCOMPARE(again.value.id, first.value.id);
    // The numbers have started again, or the clock has gone back.
    QVERIFY(store.add(computer(u"A"_s), dive(1, 200)).value.isNew);
    QVERIFY(store.add(computer(u"A"_s), dive(1, 50)).value.isNew);
    QVERIFY(store.add(computer(u"A"_s), dive(2, 100)).value.isNew);
    QCOMPARE(store.names(), (QStringList{u"1@50"_s, u"1@100"_s, u"2@100"_s, u"1@200"_s}));
    QCOMPARE(store.dives().at(1).place, u"Lake"_s);
}

void TestStore::twoComputers()
{
    Store store;
    WORKS(store.open(file()));
    const qint64 ofA = store.add(computer(u"A"_s), dive(1, 100)).value.id;
    const qint64 ofB = store.add(computer(u"B"_s), dive(1, 100)).value.id;
    QVERIFY(ofA != ofB);
    // Nothing is said of the computer but in the dive.
    LogbookDive named = dive(2, 200);
    named.dive.serialNumber = u"B"_s;
    WORKS(store.add({}, named).error);
    const QList<LogbookComputer> computers = store.computers();
    QCOMPARE(computers.size(), 2);
    QCOMPARE(computers.at(0).identity.serialNumber, u"A"_s);
    QCOMPARE(computers.at(0).dives, 1);
    QCOMPARE(computers.at(1).identity.serialNumber, u"B"_s);
    QCOMPARE(computers.at(1).dives, 2);
    // Computers that nothing is known of are one.
    WORKS(store.add({}, dive(3, 300)).error);
    WORKS(store.add({}, dive(3, 300)).error);
    QCOMPARE(store.computers().size(), 3);
    QCOMPARE(store.names().size(), 4);
}

void TestStore::numberUnknownFirst()
{
    Store store;
    WORKS(store.open(file()));
    WORKS(store.add(computer({}, u"00:01"_s, u"Varda"_s), dive(1, 100)).error);
    QCOMPARE(store.computers().at(0).identity.serialNumber, QString());
    QVERIFY(!store.add(computer(u"A"_s, u"00:01"_s), dive(1, 100)).value.isNew);
    QCOMPARE(store.computers().size(), 1);
    QCOMPARE(store.computers().at(0).identity.serialNumber, u"A"_s);
    QCOMPARE(store.computers().at(0).name, u"Varda"_s);
}

void TestStore::numberUnknownBetween()
{
    Store store;
    WORKS(store.open(file()));
    WORKS(store.add(computer(u"A"_s, u"00:01"_s), dive(1, 100)).error);
    // At another address it may be another computer.
    WORKS(store.add(computer({}, u"00:02"_s), dive(1, 100)).error);
    WORKS(store.add(computer({}, u"00:02"_s), dive(2, 200)).error);
    QCOMPARE(store.computers().size(), 2);
    WORKS(store.add(computer(u"A"_s, u"00:02"_s), dive(3, 300)).error);
    QCOMPARE(store.computers().size(), 1);
    QCOMPARE(store.computers().at(0).address, u"00:02"_s);
    QCOMPARE(store.names(), (QStringList{u"1@100"_s, u"2@200"_s, u"3@300"_s}));
    WORKS(store.check());
}

void TestStore::numberUnreadableLater()
{
    Store store;
    WORKS(store.open(file()));
    WORKS(store.add(computer(u"A"_s, u"00:01"_s), dive(1, 100)).error);
    QVERIFY(!store.add(computer({}, u"00:01"_s), dive(1, 100)).value.isNew);
    QCOMPARE(store.computers().size(), 1);
    QCOMPARE(store.computers().at(0).identity.serialNumber, u"A"_s);
}

/** Over a small MTU no serial number arrives; an export of the dive has it all the same. */
void TestStore::serialNumberOfTheComputer()
{
    Store store;
    WORKS(store.open(file()));
    const qint64 id = store.add(computer({}, u"00:01"_s), dive(1, 100)).value.id;
    QCOMPARE(store.dive(id).value.dive.serialNumber, QString());
    WORKS(store.add(computer(u"A"_s, u"00:01"_s), dive(2, 200)).error);
    const LogbookDive read = store.dive(id).value;
    QCOMPARE(read.dive.serialNumber, u"A"_s);
    const auto again = store.add({}, read);
    QVERIFY(!again.value.isNew);
    QCOMPARE(again.value.id, id);
}

void TestStore::unknownBegin_data()
{
    QTest::addColumn<quint64>("begin");
    QTest::addColumn<bool>("isNew");
    QTest::newRow("1970") << quint64(77) << false;
    QTest::newRow("1999") << quint64(946'684'799) << false;
    QTest::newRow("2000") << quint64(946'684'800) << true;
    QTest::newRow("2099") << quint64(4'102'444'799) << true;
    QTest::newRow("2100") << quint64(4'102'444'800) << false;
    QTest::newRow("largest") << std::numeric_limits<quint64>::max() << false;
}

/** Some formats carry no begin that is no time in this century; it comes back as 0. */
void TestStore::unknownBegin()
{
    QFETCH(const quint64, begin);
    QFETCH(const bool, isNew);
    Store store;
    WORKS(store.open(file()));
    WORKS(store.add(computer(u"A"_s), dive(1, begin)).error);
    QCOMPARE(store.add(computer(u"A"_s), dive(1, 0)).value.isNew, isNew);
    QVERIFY(!store.add(computer(u"A"_s), dive(1, 0)).value.isNew);
    QVERIFY(store.add(computer(u"A"_s), dive(2, 0)).value.isNew);
    QVERIFY(store.add(computer(u"B"_s), dive(1, 0)).value.isNew);
}

void TestStore::joinedWithNotes()
{
    Store store;
    WORKS(store.open(file()));
    WORKS(store.add(computer(u"A"_s, u"00:01"_s), dive(1, 100, u"Lake"_s, u"cold"_s)).error);
    WORKS(store.add(computer(u"A"_s, u"00:01"_s), dive(2, 200)).error);
    LogbookDive hidden = dive(1, 100, u"Lake"_s, u"deep"_s);
    hidden.hidden = true;
    WORKS(store.add(computer({}, u"00:02"_s), hidden).error);
    WORKS(store.add(computer({}, u"00:02"_s), dive(2, 200, u"Sea"_s)).error);
    WORKS(store.add(computer(u"A"_s, u"00:02"_s), dive(3, 300)).error);
    const QList<LogbookEntry> dives = store.dives({.withHidden = true});
    QCOMPARE(dives.size(), 3);
    QCOMPARE(dives.at(0).place, u"Lake"_s);
    QCOMPARE(dives.at(0).notes, u"cold\ndeep"_s);
    QVERIFY(dives.at(0).hidden);
    QCOMPARE(dives.at(1).place, u"Sea"_s);
}

/** What a computer without a serial number gave is better than a copy from a file. */
void TestStore::joinedWithImported()
{
    Store store;
    WORKS(store.open(file()));
    const qint64 id = store.add(computer(u"A"_s, u"00:01"_s), dive(1, 100, u"Lake"_s)).value.id;
    LogbookDive whole = dive(1, 100);
    whole.header.diveNumber = 1;
    whole.header.stamp = 100;
    whole.samples.resize(4);
    whole.dive.lines.resize(4);
    WORKS(store.add(computer({}, u"00:02"_s), whole).error);
    WORKS(store.add(computer(u"A"_s, u"00:02"_s), dive(2, 200)).error);
    const LogbookDive read = store.dive(id).value;
    QCOMPARE(read.place, u"Lake"_s);
    QCOMPARE(read.samples.size(), 4);
    QCOMPARE(read.lines, 4);
    QCOMPARE(store.names(), (QStringList{u"1@100"_s, u"2@200"_s}));
    WORKS(store.check());
}

void TestStore::whatTheDiverAdds()
{
    Store store;
    WORKS(store.open(file()));
    const qint64 id = store.add(computer(u"A"_s), dive(1, 100)).value.id;
    WORKS(ended([&](auto... end) { store.store.setPlace(id, u"Blue Hole"_s, end...); }));
    WORKS(ended([&](auto... end) { store.store.setNotes(id, u"a ray\nand two"_s, end...); }));
    WORKS(ended([&](auto... end) { store.store.setHidden(id, true, end...); }));
    QVERIFY(store.dives().isEmpty());
    const LogbookDive read = store.dive(id).value;
    QCOMPARE(read.place, u"Blue Hole"_s);
    QCOMPARE(read.notes, u"a ray\nand two"_s);
    QVERIFY(read.hidden);
    WORKS(ended([&](auto... end) { store.store.setHidden(id, false, end...); }));
    QCOMPARE(store.dives().size(), 1);
    QCOMPARE(ended([&](auto... end) { store.store.setPlace(99, u"x"_s, end...); }).kind,
             LogbookError::NoSuchDive);
    QCOMPARE(store.dive(99).error.kind, LogbookError::NoSuchDive);
}

void TestStore::query()
{
    Store store;
    WORKS(store.open(file()));
    for (const std::uint64_t begin : {300U, 100U, 200U})
        WORKS(store.add(computer(u"A"_s), dive(std::uint16_t(begin / 100), begin)).error);
    WORKS(store.add(computer(u"B"_s), dive(1, 150)).error);
    QCOMPARE(store.names(), (QStringList{u"1@100"_s, u"1@150"_s, u"2@200"_s, u"3@300"_s}));
    QCOMPARE(store.names({.computer = store.computers().at(1).id}), QStringList{u"1@150"_s});
    QCOMPARE(store.names({.number = 1}), (QStringList{u"1@100"_s, u"1@150"_s}));
    QCOMPARE(store.names({.since = 150, .until = 200}), (QStringList{u"1@150"_s, u"2@200"_s}));
}

void TestStore::empty()
{
    write(file(), {});
    Store store;
    WORKS(store.open(file()));
    WORKS(store.check());
    QVERIFY(store.dives().isEmpty());
    QVERIFY(store.computers().isEmpty());
}

void TestStore::newFolder()
{
    Store store;
    WORKS(store.open(file(u"a/b/logbook.sqlite"_s)));
    WORKS(store.add(computer(u"A"_s), dive(1, 100)).error);
    QVERIFY(LogbookStore::defaultFile().endsWith(u"/varda/logbook.sqlite"_s));
    QVERIFY(LogbookStore::defaultFile(true).endsWith(u"/varda/simulated.sqlite"_s));
}

void TestStore::newerSchema()
{
    {
        Store store;
        WORKS(store.open(file()));
        WORKS(store.add(computer(u"A"_s), dive(1, 100)).error);
    }
    const QByteArray newer = withNumberAt(contentOf(file()), 60, 2);
    write(file(), newer);
    Store store;
    const LogbookError error = store.open(file());
    QCOMPARE(error.kind, LogbookError::NewerSchema);
    QCOMPARE(error.text, file() + u": made by a newer version of this program"_s);
    QCOMPARE(error.remedy, u"Update this program. Nothing in the file was changed."_s);
    QCOMPARE(store.add(computer(u"A"_s), dive(2, 200)).error.kind, LogbookError::NotOpen);
    QVERIFY(contentOf(file()) == newer);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList{u"logbook.sqlite"_s});
}

/** The newer version is in the file beside it, as the newer program still has it open. */
void TestStore::newerSchemaOfARunningProgram()
{
    {
        Store store;
        WORKS(store.open(file()));
    }
    Sqlite newer(file());
    newer.run(u"PRAGMA user_version = 99"_s);
    Store store;
    const LogbookError error = store.open(file());
    QCOMPARE(error.kind, LogbookError::NewerSchema);
    QCOMPARE(error.text, file() + u": made by a newer version of this program"_s);
    QCOMPARE(newer.run(u"PRAGMA user_version"_s), QStringList{u"99"_s});
}

void TestStore::notALogbook_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<LogbookError::Kind>("kind");
    QTest::newRow("text") << QByteArray("These are my dives.\n") << LogbookError::NotADatabase;
    QTest::newRow("long text") << QByteArray(5000, 'x') << LogbookError::NotADatabase;
    QTest::newRow("begin of a database")
        << QByteArray("SQLite format 3\0", 16) << LogbookError::NotADatabase;
    Sqlite(QDir::tempPath() + "/varda-other.sqlite"_L1)
        .run(u"CREATE TABLE IF NOT EXISTS recipe (name TEXT)"_s);
    const QByteArray other = contentOf(QDir::tempPath() + "/varda-other.sqlite"_L1);
    QFile::remove(QDir::tempPath() + "/varda-other.sqlite"_L1);
    QTest::newRow("other program") << other << LogbookError::NotALogbook;
    QTest::newRow("other program's version")
        << withNumberAt(other, 60, 7) << LogbookError::NotALogbook;
}

void TestStore::notALogbook()
{
    QFETCH(const QByteArray, content);
    QFETCH(const LogbookError::Kind, kind);
    write(file(), content);
    Store store;
    const LogbookError error = store.open(file());
    QCOMPARE(error.kind, kind);
    QCOMPARE(error.remedy, u"Choose another file."_s);
    QVERIFY(contentOf(file()) == content);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList{u"logbook.sqlite"_s});
}

/** A journal beside the file has what stood in it before: SQLite puts it back. */
void TestStore::killedWhileWriting()
{
    {
        Store store;
        WORKS(store.open(file(u"whole.sqlite"_s)));
        WORKS(store.add(computer(u"A"_s), dive(1, 100)).error);
    }
    {
        Sqlite writing(file(u"whole.sqlite"_s));
        QCOMPARE(writing.run(u"PRAGMA journal_mode = DELETE"_s), QStringList{u"delete"_s});
        writing.run(u"PRAGMA synchronous = OFF"_s); // the journal counts at once
        writing.run(u"BEGIN IMMEDIATE"_s);
        writing.run(u"PRAGMA user_version = 99"_s);
        write(file(), contentOf(file(u"whole.sqlite"_s)).replace(0, 100, QByteArray(100, '\0')));
        QVERIFY(QFile::copy(file(u"whole.sqlite-journal"_s), file(u"logbook.sqlite-journal"_s)));
        writing.run(u"ROLLBACK"_s);
    }
    Store store;
    WORKS(store.open(file()));
    QCOMPARE(store.names(), QStringList{u"1@100"_s});
    WORKS(store.check());
}

void TestStore::otherProgramKilledWhileWriting()
{
    Sqlite(file()).run(u"CREATE TABLE recipe (name TEXT)"_s);
    const QByteArray content = contentOf(file());
    write(file() + "-journal"_L1, "x");
    Store store;
    QCOMPARE(store.open(file()).kind, LogbookError::NotALogbook);
    QVERIFY(contentOf(file()) == content);
    write(file(), "These are my dives.\n");
    write(file() + "-journal"_L1, "x");
    QCOMPARE(store.open(file()).kind, LogbookError::NotADatabase);
    QCOMPARE(contentOf(file()), QByteArray("These are my dives.\n"));
}

/** A file that an earlier version has made. */
void TestStore::firstSchema()
{
    QVERIFY(QFile::copy(TEST_DATA "/schema-1.sqlite"_L1, file()));
    QVERIFY(QFile::setPermissions(file(), QFile::ReadOwner | QFile::WriteOwner));
    Store store;
    WORKS(store.open(file()));
    WORKS(store.check());
    QCOMPARE(store.names(), (QStringList{u"41@1700000000"_s, u"42@1700090000"_s}));
    const QList<LogbookComputer> computers = store.computers();
    QCOMPARE(computers.size(), 1);
    QCOMPARE(computers.at(0).identity.serialNumber, u"00420017-3138510D-37373934"_s);
    QCOMPARE(computers.at(0).name, u"Varda"_s);
    QCOMPARE(computers.at(0).address, u"00:AA:01:01:00:01"_s);
    const LogbookDive read = store.dive(store.dives().at(1).id).value;
    QCOMPARE(read.place, u"Blue Hole"_s);
    QCOMPARE(read.notes, u"a ray"_s);
    QCOMPARE(read.dive.ownerName, u"Ada"_s);
    QCOMPARE(read.dive.lines.size(), 2);
    QCOMPARE(read.dive.lines.at(1).depth, 18.5);
    QCOMPARE(read.dive.gases.size(), 1);
    QCOMPARE(read.dive.gases.at(0).label, u"back"_s);
    QCOMPARE(read.dive.marks2.at(0).third, 3U);
    QCOMPARE(read.header.headerWord14, 901);
    QCOMPARE(read.samples.size(), 2);
    QCOMPARE(int(read.samples.at(1).depth), 185);
    QVERIFY(
        store.add(computer(u"00420017-3138510D-37373934"_s), dive(43, 1'700'180'000)).value.isNew);
}

/** A schema that has changed is another version, and wants a migration and a file of its own. */
void TestStore::schemaIsTheFirst()
{
    const QString schema = u"SELECT sql FROM sqlite_master ORDER BY name"_s;
    QStringList kept;
    {
        QVERIFY(QFile::copy(TEST_DATA "/schema-1.sqlite"_L1, file(u"kept.sqlite"_s)));
        QVERIFY(
            QFile::setPermissions(file(u"kept.sqlite"_s), QFile::ReadOwner | QFile::WriteOwner));
        kept = Sqlite(file(u"kept.sqlite"_s)).run(schema);
    }
    {
        Store store;
        WORKS(store.open(file()));
    }
    Sqlite sqlite(file());
    QVERIFY(kept.size() > 10);
    QCOMPARE(sqlite.run(schema), kept);
    QCOMPARE(sqlite.run(u"PRAGMA user_version"_s), QStringList{u"1"_s});
    QCOMPARE(sqlite.run(u"PRAGMA application_id"_s), QStringList{u"1450337377"_s});
}

void TestStore::damaged()
{
    qint64 first = 0;
    {
        Store store;
        WORKS(store.open(file()));
        first = store.add(computer(u"A"_s), dive(1, 100)).value.id;
        LogbookDive large = dive(2, 200);
        large.samples.resize(5000);
        WORKS(store.add(computer(u"A"_s), large).error);
    }
    QByteArray content = contentOf(file());
    constexpr qsizetype kPage = 4096;
    const qsizetype half = content.size() / 2 / kPage * kPage;
    content.replace(half, 8 * kPage, QByteArray(8 * kPage, '\xA5'));
    write(file(), content);
    Store store;
    WORKS(store.open(file()));
    const LogbookError error = store.check();
    QCOMPARE(error.kind, LogbookError::Damaged);
    QCOMPARE(error.text, file() + u": the file is damaged"_s);
    QVERIFY(error.remedy.startsWith(u"Use a backup"_s));
    QCOMPARE(store.dive(first + 1).error.kind, LogbookError::Damaged);
    // The others are still there.
    WORKS(store.dive(first).error);
}

void TestStore::incomplete_data()
{
    QTest::addColumn<QString>("sql");
    QTest::newRow("record") << u"DELETE FROM record"_s;
    QTest::newRow("header") << u"DELETE FROM header"_s;
    QTest::newRow("a line") << u"DELETE FROM line WHERE position = 1"_s;
}

/** A dive of which a part is missing is no dive with less in it. */
void TestStore::incomplete()
{
    QFETCH(const QString, sql);
    Store store;
    WORKS(store.open(file()));
    LogbookDive made = dive(1, 100);
    made.dive.lines.resize(3);
    const qint64 id = store.add(computer(u"A"_s), made).value.id;
    WORKS(store.dive(id).error);
    Sqlite(file()).run(sql);
    const LogbookError error = store.dive(id).error;
    QCOMPARE(error.kind, LogbookError::Damaged);
    QCOMPARE(error.text, file() + u": the file is damaged"_s);
}

/** What another program writes between two tables of a dive is not mixed with it. */
void TestStore::readAtOneMoment()
{
    Store store;
    WORKS(store.open(file()));
    LogbookDive made = dive(1, 100);
    made.dive.lines.resize(200);
    const qint64 id = store.add(computer(u"A"_s), made).value.id;
    Sqlite other(file());
    other.run(u"PRAGMA synchronous = OFF"_s);
    constexpr int kTimes = 300;
    int ends = 0;
    QStringList errors;
    for (int i = 0; i < kTimes; ++i) {
        store.store.dive(id, this, [&](const LogbookResult<LogbookDive> &read) {
            ++ends;
            if (read.error || read.value.lines != read.value.dive.lines.size())
                errors << u"%1 of %2: %3"_s.arg(read.value.dive.lines.size())
                              .arg(read.value.lines)
                              .arg(read.error.text);
        });
    }
    while (ends < kTimes) {
        other.run(u"BEGIN IMMEDIATE"_s);
        other.run(u"UPDATE line SET list = 3 - list WHERE position = 199"_s);
        other.run(u"UPDATE dive SET lines = 399 - lines"_s);
        other.run(u"COMMIT"_s);
        QCoreApplication::processEvents();
    }
    QCOMPARE(errors, QStringList());
}

void TestStore::noSuchFolder()
{
    write(file(u"file"_s), "x");
    Store store;
    const LogbookError error = store.open(file(u"file/logbook.sqlite"_s));
    QCOMPARE(error.kind, LogbookError::CannotOpen);
    QVERIFY(!error.remedy.isEmpty());
    QCOMPARE(store.open(m_folder->path()).kind, LogbookError::CannotOpen);
}

void TestStore::notOpen()
{
    Store store;
    QCOMPARE(store.check().kind, LogbookError::NotOpen);
    WORKS(store.open(file()));
    WORKS(store.close());
    QCOMPARE(store.check().kind, LogbookError::NotOpen);
}

void TestStore::otherFile()
{
    Store store;
    WORKS(store.open(file()));
    WORKS(store.add(computer(u"A"_s), dive(1, 100)).error);
    WORKS(store.open(file(u"other.sqlite"_s)));
    QVERIFY(store.dives().isEmpty());
    WORKS(store.open(file()));
    QCOMPARE(store.dives().size(), 1);
}

/** The event loop goes on while a call waits. */
void TestStore::waitsForAnother()
{
    Store store;
    WORKS(store.open(file()));
    Sqlite other(file());
    other.run(u"BEGIN IMMEDIATE"_s);
    std::optional<LogbookError> end;
    store.store.addDive(computer(u"A"_s), dive(1, 100), this,
                        [&](const auto &added) { end = added.error; });
    int turns = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] { ++turns; });
    timer.start(1);
    QTRY_VERIFY(turns >= 50);
    QVERIFY(!end);
    other.run(u"COMMIT"_s);
    QTRY_VERIFY(end.has_value());
    WORKS(*end);
    QCOMPARE(store.names(), QStringList{u"1@100"_s});
}

void TestStore::busyForTooLong()
{
    Store store;
    store.store.setBusyLimit(50ms);
    WORKS(store.open(file()));
    WORKS(store.add(computer(u"A"_s), dive(1, 100)).error);
    Sqlite other(file());
    other.run(u"BEGIN IMMEDIATE"_s);
    const LogbookError error = store.add(computer(u"A"_s), dive(2, 200)).error;
    QCOMPARE(error.kind, LogbookError::Busy);
    QCOMPARE(error.text, file() + u": another program is using it"_s);
    QVERIFY(!error.remedy.isEmpty());
    // Reading goes on.
    QCOMPARE(store.names(), QStringList{u"1@100"_s});
    other.run(u"COMMIT"_s);
    WORKS(store.add(computer(u"A"_s), dive(2, 200)).error);
}

/** They make the file at once, and half of their dives are the same. */
void TestStore::twoProcesses()
{
    QProcess processes[3];
    for (int i = 0; i < 3; ++i) {
        processes[i].setProcessChannelMode(QProcess::MergedChannels);
        processes[i].start(QCoreApplication::applicationFilePath(),
                           {u"--add"_s, file(), QString::number(1 + 20 * i)});
    }
    for (QProcess &process : processes) {
        QVERIFY(process.waitForFinished(120'000));
        QCOMPARE(process.readAll(), QByteArray());
        QCOMPARE(process.exitCode(), 0);
    }
    Store store;
    WORKS(store.open(file()));
    WORKS(store.check());
    QCOMPARE(store.computers().size(), 1);
    const QStringList names = store.names();
    QCOMPARE(names.size(), 80);
    QCOMPARE(names.first(), u"1@1"_s);
    QCOMPARE(names.last(), u"80@80"_s);
}

void TestStore::safeSettings()
{
    Store store;
    WORKS(store.open(file()));
    Sqlite sqlite(file());
    QCOMPARE(sqlite.run(u"PRAGMA journal_mode"_s), QStringList{u"wal"_s});
    QVERIFY(QFile::exists(file() + "-wal"_L1));
}

/** Calls that have not begun end with Closed, after the store is gone. */
void TestStore::deletedStore()
{
    QList<LogbookError::Kind> ends;
    {
        Store store;
        WORKS(store.open(file()));
        Sqlite other(file());
        other.run(u"BEGIN IMMEDIATE"_s);
        for (int i = 0; i < 3; ++i)
            store.store.addDive(computer(u"A"_s), dive(std::uint16_t(i), 100), this,
                                [&](const auto &added) { ends << added.error.kind; });
        QTest::qWait(100); // the first has begun and waits
        other.run(u"COMMIT"_s);
    }
    QVERIFY(ends.isEmpty());
    // Deletions that are due do not wait for what was posted before them.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QTRY_COMPARE(ends.size(), 3);
    QCOMPARE(ends.at(0), LogbookError::NoError);
    QCOMPARE(ends.last(), LogbookError::Closed);
    Store store;
    WORKS(store.open(file()));
    QCOMPARE(store.dives().size(), ends.count(LogbookError::NoError));
}

void TestStore::deletedContext()
{
    Store store;
    WORKS(store.open(file()));
    auto context = std::make_unique<QObject>();
    int ends = 0;
    store.store.addDive(computer(u"A"_s), dive(1, 100), context.get(),
                        [&](const auto &) { ++ends; });
    context.reset();
    QCOMPARE(store.dives().size(), 1); // it was carried out
    QCOMPARE(ends, 0);
}

void TestStore::inNamespace(const char *size, const QString &name)
{
    QStringList own{u"--mount"_s};
    if (geteuid() != 0)
        own.prepend(u"--map-root-user"_s);
    const QString mount = "mount -t tmpfs -o size=%1 tmpfs /mnt"_L1.arg(QLatin1String(size));
    if (QProcess::execute(u"unshare"_s, own + QStringList{u"sh"_s, u"-c"_s, mount}) != 0) {
        QVERIFY2(!qEnvironmentVariableIsSet("CI"), "CI has to have the right to mount");
        QSKIP("there is no right to mount");
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(u"unshare"_s,
                  own
                      + QStringList{u"sh"_s, u"-c"_s,
                                    mount + " && VARDA_TEST_MOUNT=/mnt exec \"$0\" \"$1\""_L1,
                                    QCoreApplication::applicationFilePath(), name});
    QVERIFY(process.waitForFinished(120'000));
    QVERIFY2(process.exitCode() == 0, process.readAll());
}

/** What a callback holds may belong to this thread alone. */
void TestStore::callbackStaysHere()
{
    Store store;
    WORKS(store.open(file()));
    std::atomic_int elsewhere = 0;
    int ends = 0;
    const Watched watched(&elsewhere);
    store.store.computers(this, [watched, &ends](const auto &) { ++ends; });
    store.store.addDive(computer(u"A"_s), dive(1, 100), this,
                        [watched, &ends](const auto &) { ++ends; });
    store.store.setPlace(1, u"Lake"_s, this, [watched, &ends](const auto &) { ++ends; });
    store.store.check(this, [watched, &ends](const auto &) { ++ends; });
    store.store.close(this, [watched, &ends](const auto &) { ++ends; });
    store.store.open(file(), this, [watched, &ends](const auto &) { ++ends; });
    QTRY_COMPARE(ends, 6);
    QCOMPARE(elsewhere.load(), 0);
}

void TestStore::withoutContext()
{
    Store store;
    WORKS(store.open(file()));
    int ends = 0;
    store.store.computers(nullptr, [&](const auto &) { ++ends; });
    store.store.check(nullptr, [&](const auto &) { ++ends; });
    QTRY_COMPARE(ends, 2);
}

void TestStore::writableNoMore()
{
    inNamespace("2m", u"writableNoMoreInside"_s);
}

void TestStore::writableNoMoreInside()
{
    if (!qEnvironmentVariableIsSet("VARDA_TEST_MOUNT"))
        return; // nothing to do but in the namespace
    const QString file = u"/mnt/a b?/logbook.sqlite"_s;
    {
        Store store;
        WORKS(store.open(file));
        WORKS(store.add(computer(u"A"_s), dive(1, 100)).error);
    }
    QCOMPARE(QProcess::execute(u"mount"_s, {u"-o"_s, u"remount,ro"_s, u"/mnt"_s}), 0);
    Store store;
    WORKS(store.open(file));
    QCOMPARE(store.names(), QStringList{u"1@100"_s});
    const LogbookError error = store.add(computer(u"A"_s), dive(2, 200)).error;
    QCOMPARE(error.kind, LogbookError::ReadOnly);
    QCOMPARE(error.text, file + u": cannot be written"_s);
    QCOMPARE(error.remedy, u"Make the file and its folder writable, or use a copy elsewhere."_s);
    QCOMPARE(store.names(), QStringList{u"1@100"_s});
    WORKS(store.check());
    QCOMPARE(store.open(u"/mnt/new.sqlite"_s).kind, LogbookError::ReadOnly);
}

void TestStore::writableElsewhere()
{
    inNamespace("4m", u"writableElsewhereInside"_s);
}

/** Another user writes to a file that we may only read. */
void TestStore::writableElsewhereInside()
{
    if (!qEnvironmentVariableIsSet("VARDA_TEST_MOUNT"))
        return; // nothing to do but in the namespace
    QVERIFY(QDir().mkpath(u"/mnt/theirs"_s) && QDir().mkpath(u"/mnt/ours"_s));
    QCOMPARE(QProcess::execute(u"mount"_s, {u"--bind"_s, u"/mnt/theirs"_s, u"/mnt/ours"_s}), 0);
    QCOMPARE(QProcess::execute(u"mount"_s, {u"-o"_s, u"remount,bind,ro"_s, u"/mnt/ours"_s}), 0);
    {
        Store theirs;
        WORKS(theirs.open(u"/mnt/theirs/logbook.sqlite"_s));
    }
    Store theirs;
    WORKS(theirs.open(u"/mnt/theirs/logbook.sqlite"_s));
    QCOMPARE(QFileInfo(u"/mnt/theirs/logbook.sqlite-wal"_s).size(), 0);
    Store ours;
    WORKS(ours.open(u"/mnt/ours/logbook.sqlite"_s));
    QCOMPARE(ours.names(), QStringList());
    WORKS(theirs.add(computer(u"A"_s), dive(1, 100)).error);
    QCOMPARE(ours.names(), QStringList{u"1@100"_s});
    QCOMPARE(ours.add(computer(u"A"_s), dive(2, 200)).error.kind, LogbookError::ReadOnly);
}

void TestStore::fullDisk()
{
    inNamespace("600k", u"fullDiskInside"_s);
}

void TestStore::fullDiskInside()
{
    if (!qEnvironmentVariableIsSet("VARDA_TEST_MOUNT"))
        return; // nothing to do but in the namespace
    const QString file = u"/mnt/logbook.sqlite"_s;
    QStringList stored;
    {
        Store store;
        WORKS(store.open(file));
        LogbookError error;
        for (int i = 1; !error && i < 1000; ++i) {
            LogbookDive made = dive(std::uint16_t(i), std::uint64_t(i));
            made.samples.resize(200);
            error = store.add(computer(u"A"_s), made).error;
            if (!error)
                stored << u"%1@%1"_s.arg(i);
        }
        QCOMPARE(error.kind, LogbookError::DiskFull);
        QCOMPARE(error.text, file + u": the disk is full"_s);
        QCOMPARE(error.remedy, u"Make room on it and try again. Nothing was lost."_s);
        QVERIFY(stored.size() > 2);
        QCOMPARE(store.names(), stored);
        WORKS(store.check());
    }
    // Nor does a new one begin there.
    write(u"/mnt/rest"_s, {});
    QProcess::execute(u"sh"_s, {u"-c"_s, u"cat /dev/zero >/mnt/rest 2>/dev/null"_s});
    Store other;
    QCOMPARE(other.open(u"/mnt/other.sqlite"_s).kind, LogbookError::DiskFull);
    {
        Store store;
        WORKS(store.open(file));
        QCOMPARE(store.names(), stored);
    }
    QVERIFY(QFile::remove(u"/mnt/rest"_s));
    QCOMPARE(QProcess::execute(u"mount"_s, {u"-o"_s, u"remount,size=4m"_s, u"/mnt"_s}), 0);
    Store store;
    WORKS(store.open(file));
    WORKS(store.add(computer(u"A"_s), dive(1001, 1001)).error);
    WORKS(store.check());
    QCOMPARE(store.names(), stored + QStringList{u"1001@1001"_s});
}

namespace {

/** What twoProcesses() starts: adds 40 dives of one computer. */
int addDives(const QStringList &arguments)
{
    Store store;
    if (const LogbookError error = store.open(arguments.at(2))) {
        qWarning("%s", qPrintable(error.text));
        return 1;
    }
    const int first = arguments.at(3).toInt();
    for (int i = first; i < first + 40; ++i) {
        LogbookDive made = dive(std::uint16_t(i), std::uint64_t(i));
        made.samples.resize(10);
        if (const LogbookError error = store.add(computer(u"A"_s), made).error) {
            qWarning("%s", qPrintable(error.text));
            return 1;
        }
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--add"_L1)
        return addDives(arguments);
    TestStore test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_store.moc"
