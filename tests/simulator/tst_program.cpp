// SPDX-License-Identifier: MIT
#include <varda/simulatorprocess.h>

#include <QtCore/qdir.h>
#include <QtCore/qfile.h>
#include <QtCore/qjsondocument.h>
#include <QtCore/qjsonobject.h>
#include <QtCore/qprocess.h>
#include <QtCore/qtemporarydir.h>
#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbusmessage.h>
#include <QtTest/qtest.h>

#include <csignal>

using namespace Qt::StringLiterals;

// The program as a shell sees it.
class TestProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void versions();
    void status_data();
    void status();
    void errors_data();
    void errors();
    void foreignTexts_data();
    void foreignTexts();
    void notOnTheAir_data();
    void notOnTheAir();
    void serves_data();
    void serves();
    void leavesNothing();
    void temporaryFolder_data();
    void temporaryFolder();
    void stopsItsCommand();
    void records();
    void recordThatCannotBeWritten();
};

namespace {

struct Outcome {
    int status = -1;
    QString out;
    QString err;
};

Outcome run(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(VARDA_SIMULATOR), arguments);
    process.closeWriteChannel();
    process.waitForFinished();
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

QString folderOf(const QString &line)
{
    return line.trimmed().section(u"unix:path="_s, 1).section(u"/bus"_s, 0, 0);
}

} // namespace

void TestProgram::versions()
{
    QCOMPARE(run({u"--version"_s}).out, u"5.82\n"_s);
    QCOMPARE(run({u"--simulator-version"_s}).status, 0);
    const Outcome help = run({u"--help"_s});
    QCOMPARE(help.status, 0);
    QVERIFY(help.out.contains(u"--scenario <FILE>"_s));
}

void TestProgram::status_data()
{
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<int>("status");
    QTest::newRow("good") << QStringList{u"true"_s} << 0;
    QTest::newRow("its own") << QStringList{u"sh"_s, u"-c"_s, u"exit 7"_s} << 7;
    QTest::newRow("killed") << QStringList{u"sh"_s, u"-c"_s, u"kill -KILL $$"_s} << 137;
    QTest::newRow("not there") << QStringList{u"/no/such/program"_s} << 127;
}

void TestProgram::status()
{
    QFETCH(QStringList, command);
    QFETCH(int, status);
    const Outcome outcome = run(QStringList{u"--"_s} + command);
    QCOMPARE(outcome.status, status);
    QVERIFY(outcome.out.isEmpty());
}

void TestProgram::errors_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("text");
    QTest::newRow("option") << QStringList{u"--bad"_s}
                            << u"varda-simulator: Unknown option 'bad'.\n"_s;
    QTest::newRow("no file") << QStringList{u"--scenario"_s, u"/no/such/file"_s}
                             << u"varda-simulator: /no/such/file: No such file or directory\n"_s;
    QTest::newRow("model") << QStringList{u"--model"_s, u"boat"_s}
                           << u"varda-simulator: devices[0].model: \"boat\" is not one of varda, "
                              "tidemar, vskm, none, thirdparty\n"_s;
    QTest::newRow("radio with a command")
        << QStringList{u"--radio"_s, u"--"_s, u"true"_s}
        << u"varda-simulator: --radio cannot run a COMMAND, because it has no bus\n"_s;
    QTest::newRow("record")
        << QStringList{u"--record"_s, u"/no/such/folder/file"_s}
        << u"varda-simulator: /no/such/folder/file: No such file or directory\n"_s;
}

void TestProgram::errors()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, text);
    const Outcome outcome = run(arguments);
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.out, QString());
    QCOMPARE(outcome.err, text);
}

// A scenario may come from somebody else; its texts must not reach the terminal as they are.
void TestProgram::foreignTexts_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("shown");
    QTest::newRow("plain") << QByteArray("colour") << u"colour"_s;
    QTest::newRow("letters") << QByteArray("größe") << u"größe"_s;
    QTest::newRow("escape sequence")
        << QByteArray("\\u001b[2Jx\\u009b31m") << u"\uFFFD[2Jx\uFFFD31m"_s;
    QTest::newRow("lines") << QByteArray("a\\r\\nb\\u2028c") << u"a\uFFFD\uFFFDb\uFFFDc"_s;
    QTest::newRow("direction") << QByteArray("\\u202egnp") << u"\uFFFDgnp"_s;
    QTest::newRow("unseen") << QByteArray("\\u3164\\u2800\\u200b") << u"\uFFFD\uFFFD\uFFFD"_s;
    QTest::newRow("marks") << "a" + QByteArray("\\u0301").repeated(6)
                           << u"a\u0301\u0301\u0301\u0301\uFFFD\uFFFD"_s;
}

void TestProgram::foreignTexts()
{
    QFETCH(QByteArray, key);
    QFETCH(QString, shown);
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"scenario"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"({"devices": [{")" + key + R"(": 1}]})");
    file.close();
    const Outcome outcome = run({u"--scenario"_s, file.fileName()});
    QCOMPARE(outcome.status, 2);
    const QString begin = u"varda-simulator: %1: devices[0]."_s.arg(file.fileName());
    QVERIFY2(outcome.err.startsWith(begin + shown + u": unknown key; "_s), qPrintable(outcome.err));
    QCOMPARE(outcome.err.count(u'\n'), 1);
}

void TestProgram::notOnTheAir_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QByteArray>("system");
    QTest::addColumn<QStringList>("adapter");
    QTest::addColumn<QString>("text");
    const QByteArray one = R"({"devices": [{}]})";
    const QByteArray none = R"({"adapter": {"present": false}})";
    QTest::newRow("no adapter") << one << none << QStringList{}
                                << u"no Bluetooth adapter found; is there one, and is the "
                                   "Bluetooth service running?"_s;
    QTest::newRow("no such adapter")
        << one << one << QStringList{u"00:11:22:33:44:55"_s}
        << u"no Bluetooth adapter 00:11:22:33:44:55; this machine has: 00:AA:01:00:00:00 (simulator)"_s;
    QTest::newRow("no address")
        << one << one << QStringList{u"hci0"_s}
        << u"no Bluetooth adapter hci0; this machine has: 00:AA:01:00:00:00 (simulator)"_s;
    QTest::newRow("switched off") << one << QByteArray(R"({"adapter": {"powered": false}})")
                                  << QStringList{}
                                  << u"the Bluetooth adapter 00:AA:01:00:00:00 is switched off"_s;
    QTest::newRow("two computers")
        << QByteArray(R"({"devices": [{}, {}]})") << one << QStringList{}
        << u"devices: there are 2, but an adapter can be only one computer"_s;
    QTest::newRow("scenario without power")
        << QByteArray(R"({"adapter": {"powered": false}, "devices": [{}]})") << one << QStringList{}
        << u"adapter: a scenario cannot switch off a real adapter"_s;
    QTest::newRow("classic") << QByteArray(R"({"devices": [{"type": "classic"}]})") << one
                             << QStringList{}
                             << u"devices[0].type: only \"le\" can be on the air"_s;
    QTest::newRow("fault of the system")
        << QByteArray(R"({"devices": [{"faults": [{"step": "answer", "kind": "late", "ms": 9},
                                                  {"step": "subscribe", "kind": "refuse"}]}]})")
        << one << QStringList{}
        << u"devices[0].faults[1]: refuse at step subscribe is not possible on the air"_s;
    QTest::newRow("calamity")
        << QByteArray(R"({"devices": [{"faults": [{"step": "answer", "kind": "daemonGone"}]}]})")
        << one << QStringList{}
        << u"devices[0].faults[0]: daemonGone at step answer is not possible on the air"_s;
}

void TestProgram::notOnTheAir()
{
    QFETCH(QByteArray, scenario);
    QFETCH(QByteArray, system);
    QFETCH(QStringList, adapter);
    QFETCH(QString, text);
    const QTemporaryDir folder;
    const QString ours = folder.filePath(u"ours"_s);
    const QString theirs = folder.filePath(u"theirs"_s);
    for (const auto &[name, json] : {std::pair(ours, scenario), std::pair(theirs, system)}) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(json);
    }
    const QString simulator = QStringLiteral(VARDA_SIMULATOR);
    const Outcome outcome = run(QStringList{u"--scenario"_s, theirs, u"--"_s, simulator,
                                            u"--scenario"_s, ours, u"--radio"_s}
                                + adapter);
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.out, QString());
    QCOMPARE(outcome.err, u"varda-simulator: %1\n"_s.arg(text));
}

void TestProgram::serves_data()
{
    QTest::addColumn<QString>("end");
    for (const char *end : {"stdin", "term", "int"})
        QTest::newRow(end) << QString::fromLatin1(end);
}

void TestProgram::serves()
{
    QFETCH(QString, end);
    QProcess process;
    process.start(QStringLiteral(VARDA_SIMULATOR), {u"--exit-with-stdin"_s});
    QVERIFY(process.waitForReadyRead());
    const QString line = QString::fromUtf8(process.readAllStandardOutput());
    QVERIFY2(line.startsWith(u"DBUS_SYSTEM_BUS_ADDRESS=unix:path="_s), qPrintable(line));
    QCOMPARE(line.count(u'\n'), 1);
    QVERIFY(QFile::exists(folderOf(line) + u"/bus"_s));

    if (end == u"stdin"_s)
        process.closeWriteChannel();
    else
        ::kill(pid_t(process.processId()), end == u"term"_s ? SIGTERM : SIGINT);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    QVERIFY(process.readAllStandardOutput().isEmpty());
    QVERIFY(process.readAllStandardError().isEmpty());
    QVERIFY(!QFile::exists(folderOf(line)));
}

void TestProgram::leavesNothing()
{
    const Outcome outcome = run({u"--"_s, u"sh"_s, u"-c"_s, u"echo $DBUS_SYSTEM_BUS_ADDRESS"_s});
    QCOMPARE(outcome.status, 0);
    QVERIFY(outcome.out.startsWith(u"unix:path=/"_s));
    QVERIFY(!QFile::exists(folderOf(outcome.out)));
}

void TestProgram::temporaryFolder_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("usedItself");
    QTest::newRow("space") << u"with a space"_s << true;
    QTest::newRow("marks") << u",;=%26&<>\"'"_s << true;
    QTest::newRow("letters") << u"Ä~ü"_s << true;
    QTest::newRow("long") << QString(100, u'a') << false;
}

void TestProgram::temporaryFolder()
{
    QFETCH(QString, name);
    QFETCH(bool, usedItself);
    const QTemporaryDir folder;
    const QString path = folder.filePath(name);
    QVERIFY(QDir().mkdir(path));
    const QByteArray before = qgetenv("TMPDIR");
    qputenv("TMPDIR", QFile::encodeName(path));
    SimulatorProcess simulator;
    qputenv("TMPDIR", before);

    QVERIFY(simulator.isRunning());
    QCOMPARE(simulator.loadDevice("{}"), QString());
    QCOMPARE(QDir(path).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), usedItself ? 1 : 0);
}

void TestProgram::stopsItsCommand()
{
    QProcess process;
    process.start(QStringLiteral(VARDA_SIMULATOR),
                  {u"--"_s, u"sh"_s, u"-c"_s, u"echo ready; exec sleep 1000"_s});
    QVERIFY(process.waitForReadyRead());
    ::kill(pid_t(process.processId()), SIGTERM);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 143);
}

void TestProgram::records()
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(u"record"_s);
    {
        const SimulatorProcess simulator({u"--record"_s, name});
        QDBusConnection bus = QDBusConnection::connectToBus(simulator.address(), u"records"_s);
        bus.call(QDBusMessage::createMethodCall(u"org.bluez"_s, u"/org/bluez/hci0"_s,
                                                u"org.bluez.Adapter1"_s, u"StartDiscovery"_s));
        QDBusConnection::disconnectFromBus(u"records"_s);
    }
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonObject event = QJsonDocument::fromJson(file.readLine()).object();
    QCOMPARE(event.value(u"event").toString(), u"StartDiscovery"_s);
    QVERIFY(file.atEnd());
}

void TestProgram::recordThatCannotBeWritten()
{
    const Outcome outcome = run({u"--record"_s, u"/dev/full"_s, u"--"_s, u"dbus-send"_s,
                                 u"--system"_s, u"--print-reply"_s, u"--dest=org.bluez"_s,
                                 u"/org/bluez/hci0"_s, u"org.bluez.Adapter1.StartDiscovery"_s});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.err, u"varda-simulator: /dev/full: No space left on device\n"_s);
}

QTEST_GUILESS_MAIN(TestProgram)

#include "tst_program.moc"
