// SPDX-License-Identifier: MIT
#include <memory>

#include <varda/vardasession.h>

#include "discoverytimeout.h"
#include "linktest.h"

using namespace Qt::StringLiterals;

/**
 * What an application does from inside a signal: delete the session, let the computer go, connect
 * anew. Each function is one such deed; its rows are all the signals there are, on the roads on
 * which they come.
 */
class TestSessionInside : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void deletion_data() { rows(); }
    void deletion();
    void disconnection_data() { rows(); }
    void disconnection();
    void autoConnection_data() { rows(); }
    void autoConnection();
    void connection_data() { rows(); }
    void connection();

private:
    static void rows();
    /** Goes the road of this row, does the deed at its signal, notes what comes from there on. */
    void goTheRoad(const std::function<void()> &deed);

    std::unique_ptr<VardaSession> m_session;
    QStringList m_rest;
    bool m_done = false;
};

namespace {

constexpr auto kHealthy = R"({"devices":[{"known":true,
    "faults":[{"step":"answer","command":"Time","kind":"wrongCrc"},
              {"step":"answer","command":"Owner","kind":"silent"}]}]})";
constexpr auto kNoServices = R"({"devices":[{"known":true,
    "faults":[{"step":"discover","kind":"empty","nth":1}]}]})";
constexpr auto kRefusing = R"({"devices":[{"known":true,
    "faults":[{"step":"write","kind":"refuse","nth":1}]}]})";
constexpr auto kOff = R"({"adapter":{"powered":false},"devices":[{"known":true}]})";
constexpr auto kNobody = "{}";

} // namespace

void TestSessionInside::rows()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("scanEnds");
    QTest::addColumn<QString>("connectionEnds");
    const auto add = [](const char *scenario, const QString &entry,
                        const QString &scanEnds = u"Connected"_s,
                        const QString &connectionEnds = u"Connected"_s) {
        QTest::newRow(qPrintable(entry))
            << QByteArray(scenario) << entry << scanEnds << connectionEnds;
    };
    add(kHealthy, u"message Scan Devices"_s);
    add(kHealthy, u"message Name: Varda - Address: 00:AA:01:01:00:01"_s);
    add(kHealthy, u"message Varda found"_s);
    add(kHealthy, u"Created"_s);
    add(kHealthy, u"message Device connected"_s);
    add(kHealthy, u"Connected"_s);
    add(kHealthy, u"endCommand Identification"_s);
    add(kHealthy, u"exchangeError Time InvalidCrc"_s);
    add(kHealthy, u"message Receive timeout"_s);
    add(kHealthy, u"message Device disconnected"_s);
    add(kHealthy, u"disconnectController"_s);
    add(kNoServices, u"message BLE error: No service found"_s);
    add(kNoServices, u"NotCreated"_s);
    add(kNoServices, u"message Service not found"_s);
    add(kNoServices, u"NoService"_s);
    add(kRefusing, u"message BLE error: Service error: 2"_s);
    add(kOff, u"message Scan error: Device is powered off"_s, u"Error"_s, u"NotCreated"_s);
    add(kOff, u"Error"_s, u"Error"_s, u"NotCreated"_s);
    add(kNobody, u"message End of scan, device not found"_s, u"NotFound"_s, u"NotCreated"_s);
    add(kNobody, u"NotFound"_s, u"NotFound"_s, u"NotCreated"_s);
}

void TestSessionInside::goTheRoad(const std::function<void()> &deed)
{
    QFETCH(const QByteArray, scenario);
    QFETCH(const QString, entry);

    m_session.reset();
    m_rest.clear();
    m_done = false;
    DiscoveryTimeout::replaceBy(300);
    LOAD(Simulator::loadScenario(scenario));
    m_session = std::make_unique<VardaSession>();
    m_log.react = [this, deed, entry](const QString &each) {
        if (m_done) {
            m_rest.append(each);
        } else if (each == entry) {
            m_done = true;
            deed();
        } else if (each == u"Connected"_s) {
            m_session->startCommand(TidemarCommand::Identification);
        } else if (each == u"endCommand Identification"_s) {
            m_session->startCommand(TidemarCommand::Time);
        } else if (each == u"exchangeError Time InvalidCrc"_s) {
            if (entry == u"message Receive timeout"_s)
                m_session->startCommand(TidemarCommand::Owner);
            else
                Simulator::drop();
        }
    };
    m_log.watch(m_session.get());
    m_session->autoConnect();
    QTRY_VERIFY_WITH_TIMEOUT(m_done, 40'000);
}

void TestSessionInside::deletion()
{
    QFETCH(const QByteArray, scenario);

    goTheRoad([this] { m_session.reset(); });
    if (scenario != kNobody)
        QTRY_VERIFY_WITH_TIMEOUT(!Simulator::state()["connected"_L1].toBool(), 20'000);
    QTRY_COMPARE(Simulator::count(u"StopDiscovery"_s), Simulator::count(u"StartDiscovery"_s));
    Simulator::settle();
    QCOMPARE(m_rest, QStringList());
}

void TestSessionInside::disconnection()
{
    QFETCH(const QByteArray, scenario);
    QFETCH(const QString, entry);

    bool wasConnected = false;
    goTheRoad([&] {
        wasConnected = m_session->isConnected();
        m_session->controllerDisconnect();
    });
    if (scenario != kNobody)
        QTRY_VERIFY_WITH_TIMEOUT(!Simulator::state()["connected"_L1].toBool(), 20'000);
    QTRY_COMPARE(Simulator::count(u"StopDiscovery"_s), Simulator::count(u"StartDiscovery"_s));
    Simulator::settle();
    m_log.react = nullptr;

    // A failure that has let the computer go already is told to its end.
    const QStringList failure{u"message BLE error: No service found"_s, u"NotCreated"_s,
                              u"message Service not found"_s, u"NoService"_s};
    const qsizetype failed = failure.indexOf(entry);
    QStringList expected;
    if (failed <= 0)
        expected += u"message Disconnect from device"_s;
    if (failed >= 0)
        expected += failure.mid(qMax(failed + 1, 2));
    if (wasConnected || entry == u"message Device disconnected"_s)
        expected += u"disconnectController"_s;
    QCOMPARE(m_rest, expected);
    QVERIFY(!m_session->isConnected());
    m_session->controllerConnect();
    QCOMPARE(m_log.entries().last(), u"NoController"_s);
}

void TestSessionInside::autoConnection()
{
    QFETCH(const QString, scanEnds);

    goTheRoad([this] { m_session->autoConnect(); });
    QTRY_VERIFY_WITH_TIMEOUT(m_rest.contains(scanEnds), 40'000);
    Simulator::settle();
    QCOMPARE(m_rest.count(scanEnds), 1);
    QCOMPARE(m_session->isConnected(), scanEnds == u"Connected"_s);
    m_log.react = nullptr;
}

void TestSessionInside::connection()
{
    QFETCH(const QString, connectionEnds);

    goTheRoad([this] { m_session->connectTo(knownDevice()); });
    QTRY_VERIFY_WITH_TIMEOUT(m_rest.contains(connectionEnds), 40'000);
    Simulator::settle();
    QCOMPARE(m_rest.count(connectionEnds), 1);
    QCOMPARE(m_session->isConnected(), connectionEnds == u"Connected"_s);
    m_log.react = nullptr;
}

QTEST_GUILESS_MAIN(TestSessionInside)
#include "tst_sessioninside.moc"
