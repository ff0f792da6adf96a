// SPDX-License-Identifier: MIT
#include "central.h"
#include <varda/simulatorprocess.h>

#include <QtCore/qcoreapplication.h>
#include <QtDBus/qdbusconnectioninterface.h>
#include <QtTest/qtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString kAddress = u"00:AA:01:01:00:01"_s;
const QByteArray kAskIdentification = QByteArray::fromHex("dcdc0100bddc000001");

std::unique_ptr<SimulatorProcess> simulator;

bool bluezIsThere()
{
    return QDBusConnection::systemBus().interface()->isServiceRegistered(u"org.bluez"_s);
}

} // namespace

// What befalls more than one link, seen with the real Qt Bluetooth.
class TestCalamities : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void atAnAnswer_data();
    void atAnAnswer();
    void whileConnecting_data();
    void whileConnecting();
    void daemonGoneAndBack();
    void frozen();
    void removedDevice();
    void endlessAnswer();
    void withoutTraffic();
    void firmware();
};

void TestCalamities::initTestCase()
{
    simulator = std::make_unique<SimulatorProcess>();
    QVERIFY(simulator->isRunning());
}

void TestCalamities::cleanupTestCase()
{
    simulator.reset();
}

void TestCalamities::atAnAnswer_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<bool>("qtHears");
    QTest::newRow("vanish") << QByteArray(R"("vanish")") << true;
    QTest::newRow("adapterGone") << QByteArray(R"("adapterGone")") << true;
    QTest::newRow("powerOff") << QByteArray(R"("powerOff")") << true;
    // Nobody tells Qt that there is no link any more.
    QTest::newRow("daemonGone") << QByteArray(R"("daemonGone")") << false;
}

void TestCalamities::atAnAnswer()
{
    QFETCH(QByteArray, kind);
    QFETCH(bool, qtHears);
    const QByteArray fault = R"("step":"answer","nth":2,"kind":)" + kind;
    QCOMPARE(simulator->loadDevice("{\"faults\":[{" + fault + "}]}"), QString());
    {
        Central central;
        QVERIFY(central.reach(kAddress));
        central.write(kAskIdentification);
        QVERIFY(central.waitForReceived(1));
        central.write(kAskIdentification);
        QVERIFY(QTest::qWaitFor(
            [] { return !simulator->state(kAddress).value(u"connected").toBool(); }));
        if (qtHears)
            QVERIFY(central.waitFor(u"disconnected"_s));
        QCoreApplication::processEvents();
        QCOMPARE(central.log.contains(u"disconnected"_s), qtHears);
        QCOMPARE(bluezIsThere(), qtHears);
        QCOMPARE(central.received.size(), 1);
    }
    // The next scenario finds all in order.
    QCOMPARE(simulator->loadDevice("{}"), QString());
    QVERIFY(bluezIsThere());
    Central next;
    QVERIFY(next.reach(kAddress));
}

void TestCalamities::whileConnecting_data()
{
    QTest::addColumn<QByteArray>("kind");
    for (const char *kind : {"vanish", "adapterGone", "powerOff", "daemonGone"})
        QTest::newRow(kind) << '"' + QByteArray(kind) + '"';
}

void TestCalamities::whileConnecting()
{
    QFETCH(QByteArray, kind);
    const QByteArray fault = R"("step":"connect","kind":)" + kind;
    QCOMPARE(simulator->loadDevice("{\"faults\":[{" + fault + "}]}"), QString());
    Central central;
    QVERIFY(central.scanFor(kAddress));
    central.connectTo(kAddress);
    // The call does not stay without an answer.
    QVERIFY(QTest::qWaitFor([&] { return !central.log.filter(u"error"_s).isEmpty(); }));
    QVERIFY(!central.log.contains(u"connected"_s));
}

void TestCalamities::daemonGoneAndBack()
{
    QCOMPARE(simulator->loadDevice("{}"), QString());
    {
        Central central;
        QVERIFY(central.reach(kAddress));
        QCOMPARE(simulator->call(u"EndDaemon"_s), QString());
        QVERIFY(!bluezIsThere());
        QCOMPARE(simulator->call(u"EndDaemon"_s), QString());
    }
    QCOMPARE(simulator->call(u"StartDaemon"_s), QString());
    QVERIFY(bluezIsThere());
    Central central;
    QVERIFY(central.reach(kAddress));
    central.write(kAskIdentification);
    QVERIFY(central.waitForReceived(1));
    QCOMPARE(simulator->events(u"daemonGone"_s).size(), 1);
}

void TestCalamities::frozen()
{
    QCOMPARE(
        simulator->loadDevice(R"({"faults":[{"step":"answer","nth":1,"kind":"freeze","ms":80}]})"),
        QString());
    Central central;
    QVERIFY(central.reach(kAddress));
    central.write(kAskIdentification);
    QVERIFY(central.waitForReceived(1));
    const QJsonObject frame = simulator->events(u"frame"_s).first();
    const QJsonObject notification = simulator->events(u"notification"_s).first();
    QVERIFY(notification.value(u"t").toInt() - frame.value(u"t").toInt() >= 80);
}

void TestCalamities::removedDevice()
{
    QCOMPARE(simulator->loadDevice("{}"), QString());
    Central central;
    QVERIFY(central.reach(kAddress));
    QCOMPARE(simulator->call(u"RemoveDevice"_s, {kAddress}), QString());
    QVERIFY(central.waitFor(u"disconnected"_s));
    Central next;
    QVERIFY(next.reach(kAddress));
}

void TestCalamities::endlessAnswer()
{
    QCOMPARE(simulator->loadDevice(R"({"faults":[{"step":"answer","kind":"endless"}]})"),
             QString());
    Central central;
    QVERIFY(central.reach(kAddress));
    central.write(kAskIdentification);
    QVERIFY(central.waitForReceived(50));
    // The simulator still listens.
    QCOMPARE(simulator->call(u"Drop"_s, {kAddress}), QString());
    QVERIFY(central.waitFor(u"disconnected"_s));
}

void TestCalamities::withoutTraffic()
{
    QCOMPARE(simulator->load(R"({"recordTraffic":false,"devices":[{}]})"), QString());
    Central central;
    QVERIFY(central.reach(kAddress));
    central.write(kAskIdentification);
    QVERIFY(central.waitForReceived(1));
    QVERIFY(simulator->events(u"frame"_s).isEmpty());
    QVERIFY(simulator->events(u"notification"_s).isEmpty());
    QVERIFY(simulator->events(u"write"_s).isEmpty());
    QCOMPARE(simulator->events(u"connected"_s).size(), 1);
}

void TestCalamities::firmware()
{
    QCOMPARE(simulator->loadDevice("{}"), QString());
    QCOMPARE(simulator->firmware(kAddress), QByteArray());
    Central central;
    QVERIFY(central.reach(kAddress));
    // "123456789" as an image, in one block.
    central.write(QByteArray::fromHex(
        "dcdc2d00eada00000d6469766500000000000000000000000000000000000000000000000000000000"
        "6202040109000000cce50000"));
    QVERIFY(central.waitForReceived(1));
    central.write(QByteArray::fromHex("dcdc0a00ce8c00000e313233343536373839"));
    QVERIFY(central.waitForReceived(2));
    central.write(QByteArray::fromHex("dcdc0100733d00000f"));
    QVERIFY(central.waitForReceived(3));
    QCOMPARE(simulator->firmware(kAddress), QByteArray("123456789"));
}

QTEST_GUILESS_MAIN(TestCalamities)

#include "tst_calamities.moc"
