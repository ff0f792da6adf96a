// SPDX-License-Identifier: MIT
#include "device/commands.h"
#include "devices.h"

#include <QtCore/qjsonarray.h>
#include <QtTest/qtest.h>

using namespace Qt::StringLiterals;
using namespace simulator;

namespace {

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

QString text(const QString &payload)
{
    return QString::fromUtf8(QByteArray::fromHex(payload.toLatin1()));
}

const QStringList kYes{u"01"_s};
const QStringList kNo{u"00"_s};
const QString kEnd;

// An image of 560 bytes that describes itself: a firmware 1.4.2.b.
const QByteArray kHeader = QByteArray::fromHex("efbeadde01000000620204010300000004000000"
                                               "050000000600000007000000");
const QByteArray kImage = QByteArray(512, 'a') + kHeader + QByteArray(16, 'z');

// The same of a bootloader 9.8.7.c.
const QByteArray kBootHeader = QByteArray::fromHex("544f4f4200000000630708090000000000000000"
                                                   "000000000000000000000000");

QByteArray beginProgram(const char *crc)
{
    return QByteArray("dive").leftJustified(32, '\0') + hex("62020401") + hex("09000000")
           + hex(crc);
}

} // namespace

class TestJobs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void logs();
    void plausibleLog();
    void layoutList();
    void layoutGet();
    void layoutAdd_data();
    void layoutAdd();
    void layoutSlots();
    void layoutRemove();
    void layoutActive();
    void settings();
    void program();
    void programRefusals_data();
    void programRefusals();
    void update();
    void updateRefusals();
    void updateOfBootloader();
    void updateGoesOn();
    void updateFromOffset_data();
    void updateFromOffset();
    void resets();
    void complaints_data();
    void complaints();
};

void TestJobs::logs()
{
    const QByteArray json = R"({"log":[[1,30,0,0],[-2,37,4096,-1]],
                                "logText":["a","","Zoé"]})";
    QCOMPARE(ask(json, SyslogBin), QStringList({u"01000000000000001e0000000000000000"_s,
                                                u"feffffffffffffff2500100000ffffffff"_s, kEnd}));
    // With its zero, an empty line does not end the log.
    QCOMPARE(ask(json, Syslog), QStringList({u"6100"_s, u"00"_s, u"5a6fc3a900"_s, kEnd}));
    QCOMPARE(ask(R"({"log":[]})", SyslogBin), QStringList({kEnd}));
    QCOMPARE(ask(R"({"log":0})", Syslog), QStringList({kEnd}));
}

void TestJobs::plausibleLog()
{
    const QStringList records = ask("{}", SyslogBin);
    const QStringList lines = ask("{}", Syslog);
    QCOMPARE(records.size(), 38 + 1);
    QCOMPARE(lines.size(), 38 + 1);
    QCOMPARE(ask(R"({"log":{"count":5,"seed":1}})", SyslogBin).mid(0, 5), records.mid(0, 5));
    QVERIFY(ask(R"({"log":{"count":5,"seed":2}})", SyslogBin).mid(0, 5) != records.mid(0, 5));
    QCOMPARE(records[9].mid(16, 2), u"1e"_s);
    QVERIFY(text(lines[9]).startsWith(u"2024-03-01 "_s));
    QVERIFY(text(lines[9]).chopped(1).endsWith(u"dive begins"_s));
    QVERIFY(text(lines[14]).contains(u" recorded until 2024-03-01 "_s));
    QVERIFY(!text(lines[15]).contains(u'%'));
    QCOMPARE(text(ask(R"({"log":[[0,200,7,-8]]})", Syslog).first()).chopped(1),
             u"1970-01-01 00:00:00 event 200 (7, -8)"_s);
}

void TestJobs::layoutList()
{
    QCOMPARE(ask(R"({"layouts":[{"index":5,"kind":0,"name":"Zoé"},{"index":2,"name":"A"}]})",
                 LayoutList),
             QStringList({u"020141"_s, u"05005a6fe9"_s, kEnd}));
    QCOMPARE(ask(R"({"layouts":[]})", LayoutList), QStringList({kEnd}));
    const QStringList builtIn = ask("{}", LayoutList);
    QCOMPARE(builtIn.size(), 4);
    QCOMPARE(builtIn[2], u"020143617665"_s);
}

void TestJobs::layoutGet()
{
    const QByteArray json = R"({"layoutFrame":3,"layouts":[{"blob":"0102030405060708"},
                                                           {"blob":""}]})";
    QCOMPARE(ask(json, LayoutGet, hex("00")),
             QStringList({u"010203"_s, u"040506"_s, u"0708"_s, kEnd}));
    QCOMPARE(ask(json, LayoutGet, hex("01")), QStringList({kEnd}));
    QCOMPARE(ask(json, LayoutGet, hex("02")), QStringList({kEnd}));
    QCOMPARE(ask(json, LayoutGet), QStringList({kEnd}));
    QCOMPARE(ask("{}", LayoutGet, hex("02")).join(QString()).size(), 2 * 700);
}

void TestJobs::layoutAdd_data()
{
    QTest::addColumn<QList<QByteArray>>("chunks");
    QTest::addColumn<QString>("answers");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("blob");
    const auto row = [](const char *name, const QList<QByteArray> &chunks, const QString &answers,
                        const QString &entry, const QString &blob) {
        QTest::newRow(name) << chunks << answers << entry << blob;
    };
    row("one chunk", {hex("03416263000102")}, u"01"_s, u"0001416263"_s, u"416263000102"_s);
    row("three chunks", {hex("014142"), hex("004344"), hex("0245")}, u"010101"_s,
        u"00014142434445"_s, u"4142434445"_s);
    row("nothing", {hex("03")}, u"01"_s, u"00014c61796f75742030"_s, QString());
    row("without a name", {hex("030102")}, u"01"_s, u"00014c61796f75742030"_s, u"0102"_s);
    row("begun again", {hex("0141"), hex("0142"), hex("0243")}, u"010101"_s, u"00014243"_s,
        u"4243"_s);
    row("not begun", {hex("0041"), hex("0242")}, u"0000"_s, QString(), QString());
    row("after the end", {hex("0341"), hex("0242")}, u"0100"_s, u"000141"_s, u"41"_s);
    row("without flags", {QByteArray()}, u"00"_s, QString(), QString());
    row("too large", {char(1) + QByteArray(65'530, 'a'), char(2) + QByteArray(7, 'b')}, u"0100"_s,
        QString(), QString());
}

void TestJobs::layoutAdd()
{
    QFETCH(QList<QByteArray>, chunks);
    QFETCH(QString, answers);
    QFETCH(QString, entry);
    QFETCH(QString, blob);
    Computer computer(device(R"({"layouts":[]})"));
    QString given;
    for (const QByteArray &chunk : std::as_const(chunks))
        given += ask(computer, LayoutAdd, chunk).join(u' ');
    QCOMPARE(given, answers);
    QCOMPARE(ask(computer, LayoutList).first(), entry);
    QCOMPARE(ask(computer, LayoutGet, hex("00")).first(), blob);
}

void TestJobs::layoutSlots()
{
    Computer computer(device(R"({"layouts":[{"index":1,"name":"x"}]})"));
    for (int i = 0; i < 15; ++i)
        QCOMPARE(ask(computer, LayoutAdd, hex("0341")), kYes);
    QCOMPARE(ask(computer, LayoutAdd, hex("0341")), kNo);
    QCOMPARE(ask(computer, LayoutRemove, hex("07")), kYes);
    QCOMPARE(ask(computer, LayoutAdd, hex("0342")), kYes);
    QCOMPARE(ask(computer, LayoutList)[7], u"070142"_s);
}

void TestJobs::layoutRemove()
{
    Computer computer(device(R"({"layouts":[{"kind":0},{},{}],"activeLayouts":[0,1,2,1,-1]})"));
    QCOMPARE(ask(computer, LayoutRemove, hex("00")), kNo); // built in
    QCOMPARE(ask(computer, LayoutRemove, hex("09")), kNo);
    QCOMPARE(ask(computer, LayoutRemove), kNo);
    QCOMPARE(ask(computer, LayoutRemove, hex("01")), kYes);
    QCOMPARE(ask(computer, LayoutActiveGet), QStringList({u"00ff02ffff"_s}));
    QCOMPARE(ask(computer, LayoutRemoveAll), kYes);
    QCOMPARE(ask(computer, LayoutActiveGet), QStringList({u"00ffffffff"_s}));
    QCOMPARE(ask(computer, LayoutList).size(), 2);
}

void TestJobs::layoutActive()
{
    Computer computer(device(R"({"layouts":[{},{"index":200}]})"));
    QCOMPARE(ask(computer, LayoutActiveGet), QStringList({u"0000000000"_s}));
    QCOMPARE(ask(computer, LayoutActiveSet, hex("04ff")), kYes);
    QCOMPARE(ask(computer, LayoutActiveSet, hex("0401")), kNo);
    QCOMPARE(ask(computer, LayoutActiveSet, hex("0500")), kNo);
    QCOMPARE(ask(computer, LayoutActiveSet, hex("04")), kNo);
    QCOMPARE(ask(computer, LayoutActiveGet), QStringList({u"00000000ff"_s}));
    QCOMPARE(computer.state().value(u"activeLayouts").toArray(), (QJsonArray{0, 0, 0, 0, -1}));
}

void TestJobs::settings()
{
    Computer computer(device("{}"));
    QCOMPARE(ask(computer, MarloSet, hex("0102000080bf030000004004050607")), kNo);
    QCOMPARE(ask(computer, MarloSet, hex("0102000080bf0300000040040506")), kYes);
    QCOMPARE(computer.state().value(u"marloSettings").toString(),
             u"0102000080bf0300000040040506"_s);
    QCOMPARE(ask(computer, SuperUserMode, hex("01")), kYes);
    QVERIFY(computer.state().value(u"superUser").toBool());
    QCOMPARE(ask(computer, SuperUserMode, hex("02")), kNo);
    QCOMPARE(ask(computer, SuperUserMode), kNo);
    QVERIFY(computer.state().value(u"superUser").toBool());
    QCOMPARE(ask(computer, SuperUserMode, hex("00")), kYes);
    QVERIFY(!computer.state().value(u"superUser").toBool());
    QCOMPARE(ask(computer, SetSerialnumber, hex("0102030405060708090a0b0c")), kYes);
    QCOMPARE(ask(computer, SetSerialnumber), kNo);
    QCOMPARE(ask(computer, Serialnumber), QStringList({u"0102030405060708090a0b0c"_s}));
    QCOMPARE(ask(computer, SetDiver, QByteArray(132, '\x3f')), kYes);
    QCOMPARE(ask(computer, SetDiver, QByteArray(131, '\x3f')), kNo);
    QCOMPARE(ask(computer, Diver), QStringList({u"3f"_s.repeated(132)}));
    QCOMPARE(ask(computer, Sync), kYes);
    QCOMPARE(ask(computer, Close), kYes);
}

void TestJobs::program()
{
    Computer computer(device(R"({"firmware":"1.2.3.a"})"));
    QCOMPARE(ask(computer, BeginProgram, beginProgram("cce50000")), kYes);
    QCOMPARE(ask(computer, Program, "12345678"), kYes);
    QCOMPARE(computer.state().value(u"firmwareReceiving").toInt(), 8);
    QCOMPARE(ask(computer, Program, "9"), kYes);
    QCOMPARE(computer.firmwareImage(), QByteArray());
    QCOMPARE(ask(computer, EndProgram), kYes);

    QCOMPARE(computer.firmwareImage(), QByteArray("123456789"));
    QCOMPARE(ask(computer, Identification), QStringList({u"620204010b"_s}));
    const QJsonObject image = computer.state().value(u"firmwareImage").toObject();
    QCOMPARE(image.value(u"family").toString(), u"program"_s);
    QCOMPARE(image.value(u"kind").toString(), u"firmware"_s);
    QCOMPARE(image.value(u"name").toString(), u"dive"_s);
    QCOMPARE(image.value(u"version").toString(), u"1.4.2.b"_s);
    QCOMPARE(image.value(u"size").toInt(), 9);
    QCOMPARE(image.value(u"sha256").toString(),
             u"15e2b0d3c33891ebb0f1ef609ec419420c20e320ce94c65fbc8c3312448eb225"_s);
    QCOMPARE(computer.state().value(u"firmwareReceiving").toInt(), -1);
    // That was it.
    QCOMPARE(ask(computer, EndProgram), kNo);
    QCOMPARE(ask(computer, Program, "1"), kNo);
}

void TestJobs::programRefusals_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<QList<QByteArray>>("blocks");
    QTest::addColumn<QString>("answers"); // begin, blocks, end
    const QByteArray good = beginProgram("cce50000");
    QTest::newRow("short") << good.chopped(1) << QList<QByteArray>{"123456789"} << u"000000"_s;
    QTest::newRow("long") << good + '\0' << QList<QByteArray>{"123456789"} << u"000000"_s;
    QTest::newRow("no name") << QByteArray(1, '\0') + good.sliced(1)
                             << QList<QByteArray>{"123456789"} << u"000000"_s;
    QTest::newRow("nothing to come") << good.first(36) + QByteArray(4, '\0') + hex("0f1d0000")
                                     << QList<QByteArray>{} << u"0000"_s;
    QTest::newRow("wrong checksum")
        << beginProgram("cde50000") << QList<QByteArray>{"123456789"} << u"010100"_s;
    QTest::newRow("checksum too wide")
        << beginProgram("cce50100") << QList<QByteArray>{"123456789"} << u"010100"_s;
    QTest::newRow("too little") << good << QList<QByteArray>{"12345678"} << u"010100"_s;
    QTest::newRow("too much") << good << QList<QByteArray>{"12345678", "90"} << u"01010000"_s;
    QTest::newRow("empty block") << good << QList<QByteArray>{"", "123456789"} << u"01000101"_s;
}

void TestJobs::programRefusals()
{
    QFETCH(QByteArray, begin);
    QFETCH(QList<QByteArray>, blocks);
    QFETCH(QString, answers);
    Computer computer(device("{}"));
    QString given = ask(computer, BeginProgram, begin).first();
    for (const QByteArray &block : std::as_const(blocks))
        given += ask(computer, Program, block).first();
    given += ask(computer, EndProgram).first();
    QCOMPARE(given, answers);
    QCOMPARE(!computer.firmwareImage().isEmpty(), answers.endsWith(u"01"));
}

void TestJobs::update()
{
    Computer computer(device(R"({"model":"vskm","firmware":"1.2.3.a","bootloader":"4.5.6.b"})"));
    QCOMPARE(ask(computer, BeginUpdate, kHeader), kYes);
    QCOMPARE(ask(computer, ProgramUpdate, kImage.first(300)), kYes);
    QCOMPARE(ask(computer, ProgramUpdate, kImage.sliced(300)), kYes);
    QCOMPARE(ask(computer, EndUpdate), kYes);
    QCOMPARE(computer.firmwareImage(), kImage);
    QCOMPARE(ask(computer, Identification), QStringList({u"620204011f62060504"_s}));
    const QJsonObject image = computer.state().value(u"firmwareImage").toObject();
    QCOMPARE(image.value(u"family").toString(), u"update"_s);
    QCOMPARE(image.value(u"size").toInt(), 560);
}

void TestJobs::updateRefusals()
{
    Computer computer(device("{}"));
    const auto refuses = [&](quint8 command, const QByteArray &payload = {}) {
        return ask(computer, command, payload) == kNo;
    };
    QVERIFY(refuses(ProgramUpdate, kImage));
    QVERIFY(refuses(EndUpdate));
    QVERIFY(refuses(BeginUpdate, kHeader.chopped(1)));
    QVERIFY(refuses(BeginUpdate, char(0) + kHeader.sliced(1)));
    QVERIFY(refuses(ProgramUpdate, kImage));

    // Another header inside than announced, or none.
    QCOMPARE(ask(computer, BeginUpdate, kHeader.chopped(1) + '\x08'), kYes);
    QVERIFY(refuses(Program, kImage)); // the other family
    QCOMPARE(ask(computer, ProgramUpdate, kImage), kYes);
    QVERIFY(refuses(EndProgram));
    QVERIFY(refuses(EndUpdate));
    QCOMPARE(ask(computer, BeginUpdate, kHeader), kYes);
    QCOMPARE(ask(computer, ProgramUpdate, kImage.first(543)), kYes);
    QVERIFY(refuses(EndUpdate));
    QVERIFY(computer.firmwareImage().isEmpty());
}

void TestJobs::updateOfBootloader()
{
    Computer computer(device(R"({"bootloader":"4.5.6.b","firmware":"1.2.3.a"})"));
    QCOMPARE(ask(computer, BeginUpdate, kBootHeader), kYes);
    QCOMPARE(ask(computer, ProgramUpdate, QByteArray(512, '\0') + kBootHeader), kYes);
    QCOMPARE(ask(computer, EndUpdate), kYes);
    QCOMPARE(ask(computer, BootloaderVersion), QStringList({u"63070809"_s}));
    QCOMPARE(ask(computer, Identification), QStringList({u"610302010b"_s}));
}

void TestJobs::updateGoesOn()
{
    Computer computer(device("{}"));
    QCOMPARE(ask(computer, BeginUpdate, kHeader), kYes);
    QCOMPARE(ask(computer, ProgramUpdate, kImage.first(258)), kYes);
    QCOMPARE(ask(computer, BeginUpdate, kHeader), QStringList({u"0102010000"_s}));
    QCOMPARE(ask(computer, ProgramUpdate, kImage.sliced(258)), kYes);
    QCOMPARE(ask(computer, EndUpdate), kYes);
    QCOMPARE(computer.firmwareImage(), kImage);

    // An image that is done, or another one, begins at its beginning.
    QCOMPARE(ask(computer, BeginUpdate, kHeader), kYes);
    QCOMPARE(ask(computer, ProgramUpdate, kImage.first(10)), kYes);
    QCOMPARE(ask(computer, BeginUpdate, kBootHeader), kYes);

    Computer forgetful(device(R"({"resume":"never"})"));
    QCOMPARE(ask(forgetful, BeginUpdate, kHeader), kYes);
    QCOMPARE(ask(forgetful, ProgramUpdate, kImage.first(258)), kYes);
    QCOMPARE(ask(forgetful, BeginUpdate, kHeader), kYes);
    QCOMPARE(ask(forgetful, ProgramUpdate, kImage), kYes);
    QCOMPARE(ask(forgetful, EndUpdate), kYes);
    QCOMPARE(forgetful.firmwareImage(), kImage);
}

void TestJobs::updateFromOffset_data()
{
    QTest::addColumn<QByteArray>("offset");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QByteArray>("before");
    QTest::newRow("begin") << QByteArray("0") << u"0100000000"_s << QByteArray();
    QTest::newRow("before the header")
        << QByteArray("256") << u"0100010000"_s << QByteArray(256, '\xff');
    QTest::newRow("behind it") << QByteArray("544") << u"0120020000"_s
                               << QByteArray(512, '\xff') + kHeader;
}

void TestJobs::updateFromOffset()
{
    QFETCH(QByteArray, offset);
    QFETCH(QString, answer);
    QFETCH(QByteArray, before);
    Computer computer(device(R"({"resume":)" + offset + "}"));
    QCOMPARE(ask(computer, BeginUpdate, kHeader), QStringList({answer}));
    QCOMPARE(ask(computer, ProgramUpdate, kImage.sliced(before.size())), kYes);
    QCOMPARE(ask(computer, EndUpdate), kYes);
    QCOMPARE(computer.firmwareImage(), before + kImage.sliced(before.size()));
}

void TestJobs::resets()
{
    Computer computer(device(R"({"dives":3,"layouts":[{"kind":0},{}],
                                 "diver":{"n2":[2],"he":[1],"cns":50}})"));
    QCOMPARE(ask(computer, SuperUserMode, hex("01")), kYes);
    QCOMPARE(ask(computer, Factoryreset), kYes);
    QCOMPARE(ask(computer, Owner), QStringList({u"00"_s}));
    QCOMPARE(ask(computer, LayoutList).size(), 2);
    const QJsonObject state = computer.state();
    QCOMPARE(state.value(u"superUser").toBool(), false);
    QCOMPARE(state.value(u"diveNumbers").toArray(), (QJsonArray{1, 2, 3}));
    QVERIFY(ask(computer, Diver).first().startsWith(u"00000040"));
    QCOMPARE(ask(computer, CleanNvram), kYes);
    QVERIFY(ask(computer, Diver).first().startsWith(u"52b83e3f"));
    QVERIFY(ask(computer, Diver).first().endsWith(u"0000000000009040"));
}

void TestJobs::complaints_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *json, const char *reason) {
        QTest::newRow(json) << QByteArray(json) << QString::fromLatin1(reason);
    };
    row(R"({"log":[[1,2,3]]})",
        "devices[0].log[0]: expected [time, type, first argument, second argument]");
    row(R"({"log":[[1,256,3,4]]})", "devices[0].log[0][1]: 256 is not between 0 and 255");
    row(R"({"logText":[1]})", "devices[0].logText[0]: expected a text");
    row(R"({"layouts":[{"index":1},{}]})", "devices[0].layouts[1].index: 1 is already taken");
    row(R"({"activeLayouts":[1,2,3,4,5,6]})", "devices[0].activeLayouts: at most 5 dive modes fit");
    row(R"({"resume":"maybe"})", "devices[0].resume: \"maybe\" is not one of unfinished, never");
    row(R"({"resume":-1})", "devices[0].resume: -1 is not between 0 and 4294967295");
}

void TestJobs::complaints()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, reason);
    QCOMPARE(complaint(json), reason);
}

QTEST_GUILESS_MAIN(TestJobs)

#include "tst_jobs.moc"
