// SPDX-License-Identifier: MIT
#include <QtCore/qdatetime.h>
#include <QtCore/qendian.h>

#include "jobtest.h"

using namespace Qt::StringLiterals;

namespace {

/** A zone that needs no data base and that no developer lives in. */
constexpr auto kZone = "TST-5:45";
constexpr qint64 kZoneSeconds = 20'700;

MarloSettings settings()
{
    MarloSettings settings;
    settings.byte1 = 0x11;
    settings.byte2 = 0x12;
    settings.float1 = 1.5F;
    settings.byte3 = 0x13;
    settings.float2 = -0.25F;
    settings.byte4 = 0x14;
    settings.byte5 = 0xFE;
    settings.byte6 = 0xFF;
    return settings;
}

} // namespace

/** What each job says on the wire, to the byte. Nobody answers. */
class TestRequests : public JobTest
{
    Q_OBJECT

public:
    static void initMain()
    {
        qputenv("TZ", kZone);
        LinkTest::initMain();
    }

private Q_SLOTS:
    void initTestCase();
    void request_data();
    void request();
    void codes();
    void time();
    void invokedByName();
    void pressure();
    void nothingWithoutLink();
};

using Job = void (*)(VardaSession &session);
Q_DECLARE_METATYPE(Job)

void TestRequests::initTestCase()
{
    CONNECT(connectTo(R"("faults":[{"step":"answer","kind":"silent"}])"));
}

void TestRequests::request_data()
{
    QTest::addColumn<Job>("job");
    QTest::addColumn<QString>("wire");
    const auto row = [](const char *name, Job job, const QString &wire) {
        QTest::newRow(name) << job << wire;
    };
    row("bare command", [](auto &s) { s.startCommand(TidemarCommand::Sensors); }, u"09"_s);
    row("logbook by command", [](auto &s) { s.startCommand(TidemarCommand::Logbook); }, u"13"_s);
    row("logbook", [](auto &s) { s.startGetLogbook({}); }, u"13"_s);
    row(
        "logbook, numbers", [](auto &s) { s.startGetLogbook({1, 0x1234, 65535, 0, 1}); },
        u"1301003412ffff00000100"_s);
    row(
        "logbook, int numbers",
        [](auto &s) { s.qmlStartGetLogbook({-1, 65536 + 5, 0x7FFF1234, 7}); },
        u"13ffff050034120700"_s);
    row("logbook, no int numbers", [](auto &s) { s.qmlStartGetLogbook({}); }, u"13"_s);
    row("samples", [](auto &s) { s.startGetDiveSamples(0xABCD); }, u"14cdab"_s);
    row("samples of dive 0", [](auto &s) { s.startGetDiveSamples(0); }, u"140000"_s);
    row("owner", [](auto &s) { s.setOwner(u"Zoë €"_s); }, u"175a6fc3ab20e282ac"_s);
    row("owner with a zero", [](auto &s) { s.setOwner(u"a\0b"_s); }, u"17610062"_s);
    row("no owner", [](auto &s) { s.setOwner(QString()); }, u"17"_s);
    row("first gases", [](auto &s) { s.startGetGases(0); }, u"2200"_s);
    row("other gases", [](auto &s) { s.startGetGases(255); }, u"22ff"_s);
    row(
        "settings", [](auto &s) { s.startMarloSettings(settings()); },
        u"2311120000c03f13000080be14feff"_s);
    row(
        "settings of zeros", [](auto &s) { s.startMarloSettings({}); },
        u"230000000000000000000000000000"_s);
    row("super user", [](auto &s) { s.startSuperUserMode(true); }, u"fc01"_s);
    row("no super user", [](auto &s) { s.startSuperUserMode(false); }, u"fc00"_s);
    row("layouts", [](auto &s) { s.startLayoutList(); }, u"24"_s);
    row("layout", [](auto &s) { s.startLayoutGet(200); }, u"25c8"_s);
    row("layout to add", [](auto &s) { s.startLayoutAdd("\x01\xfe"); }, u"260301fe"_s);
    row("layout to remove", [](auto &s) { s.startLayoutRemove(255); }, u"27ff"_s);
    row("layouts to remove", [](auto &s) { s.startLayoutRemoveAll(); }, u"28"_s);
    row("layouts in use", [](auto &s) { s.startLayoutActiveGet(); }, u"29"_s);
    row("layout to use", [](auto &s) { s.startLayoutActiveSet(4, 2); }, u"2a0402"_s);
    row("no layout to use", [](auto &s) { s.startLayoutActiveSet(255, -1); }, u"2affff"_s);
    row("battery", [](auto &s) { s.startGetBatteryInformation(); }, u"ee"_s);
}

void TestRequests::request()
{
    QFETCH(const Job, job);
    QFETCH(const QString, wire);
    const qsizetype before = sent().size();
    job(*m_session);
    QTRY_COMPARE(sent().size(), before + 1);
    QCOMPARE(sent().last(), wire);
    QCOMPARE(m_log.take(), QStringList());
}

// The low byte of any number is a code.
void TestRequests::codes()
{
    const qsizetype before = sent().size();
    for (const int code : {0, 21, 255, 0x123})
        m_session->startCommand(TidemarCommand::TidemarCommandIn(code));
    QTRY_COMPARE(sent().size(), before + 4);
    QCOMPARE(sent().sliced(before), QStringList({u"00"_s, u"15"_s, u"ff"_s, u"23"_s}));
}

// Local time of the day counted as if it were UTC.
void TestRequests::time()
{
    const qsizetype before = sent().size();
    const qint64 earliest = QDateTime::currentSecsSinceEpoch() + kZoneSeconds;
    m_session->startSetTime();
    const qint64 latest = QDateTime::currentSecsSinceEpoch() + kZoneSeconds;
    QTRY_COMPARE(sent().size(), before + 1);
    const QByteArray wire = QByteArray::fromHex(sent().last().toLatin1());
    QCOMPARE(wire.size(), 9);
    QCOMPARE(wire[0], '\x08');
    const auto time = qFromLittleEndian<qint64>(wire.constData() + 1);
    QVERIFY2(earliest <= time && time <= latest, wire.toHex().constData());
}

// As a declarative user interface calls them.
void TestRequests::invokedByName()
{
    const qsizetype before = sent().size();
    QVERIFY(QMetaObject::invokeMethod(m_session.get(), "startGetLogbook",
                                      Q_ARG(QList<uint16_t>, {0x0201})));
    QVERIFY(
        QMetaObject::invokeMethod(m_session.get(), "qmlStartGetLogbook", Q_ARG(QList<int>, {-2})));
    QVERIFY(QMetaObject::invokeMethod(m_session.get(), "startMarloSettings",
                                      Q_ARG(MarloSettings, settings())));
    QVERIFY(QMetaObject::invokeMethod(m_session.get(), "startLayoutActiveSet", Q_ARG(uint8_t, 1),
                                      Q_ARG(int8_t, -3)));
    QVERIFY(
        QMetaObject::invokeMethod(m_session.get(), "startCommand",
                                  Q_ARG(TidemarCommand::TidemarCommandIn, TidemarCommand::Time)));
    QTRY_COMPARE(sent().size(), before + 5);
    QCOMPARE(sent().sliced(before),
             QStringList({u"130102"_s, u"13feff"_s, u"2311120000c03f13000080be14feff"_s,
                          u"2a01fd"_s, u"07"_s}));
}

void TestRequests::pressure()
{
    const qsizetype before = sent().size();
    QVERIFY(m_session->startSetPressure(0xFEDCBA98));
    QVERIFY(!m_session->startSetPressure(1013));
    // Another job does not change that.
    m_session->startCommand(TidemarCommand::Sensors);
    QVERIFY(!m_session->startSetPressure(1013));
    QTRY_COMPARE(sent().size(), before + 2);
    QCOMPARE(sent().sliced(before), QStringList({u"0a98badcfe"_s, u"09"_s}));

    // Before the link is up the job cannot start, and is told to have failed with the link.
    m_session->connectTo(knownDevice());
    m_log.take();
    QVERIFY(!m_session->startSetPressure(1013));
    QCOMPARE(m_log.take(),
             QStringList({u"message BLE error: Write failed: characteristic not ready"_s,
                          u"NotCreated"_s}));

    // A session that has let the computer go has no job left, and cannot start one.
    m_session->controllerDisconnect();
    QVERIFY(!m_session->startSetPressure(1013));
    m_session->connectTo(knownDevice());
    QVERIFY(m_log.await(u"Connected"_s));
    QVERIFY(m_session->startSetPressure(1013));
    QVERIFY(!m_session->startSetPressure(1013));
    QTRY_COMPARE(sent().size(), before + 3);
    QCOMPARE(sent().last(), u"0af5030000"_s);
}

void TestRequests::nothingWithoutLink()
{
    const qsizetype before = sent().size();
    Simulator::drop();
    QVERIFY(m_log.await(u"disconnectController"_s));
    m_log.take();
    m_session->startCommand(TidemarCommand::Sensors);
    m_session->startGetLogbook({1});
    m_session->qmlStartGetLogbook({1});
    m_session->startGetDiveSamples(1);
    m_session->startSetTime();
    m_session->setOwner(u"Zoë"_s);
    m_session->startGetGases(0);
    m_session->startMarloSettings({});
    m_session->startSuperUserMode(true);
    m_session->startLayoutList();
    m_session->startLayoutGet(0);
    m_session->startLayoutAdd("x");
    m_session->startLayoutRemove(0);
    m_session->startLayoutRemoveAll();
    m_session->startLayoutActiveGet();
    m_session->startLayoutActiveSet(0, 0);
    m_session->startGetBatteryInformation();
    QVERIFY(!m_session->startSetPressure(1013));
    Simulator::settle();
    QCOMPARE(sent().size(), before);
    QCOMPARE(m_log.take(), QStringList());
}

QTEST_GUILESS_MAIN(TestRequests)
#include "tst_requests.moc"
