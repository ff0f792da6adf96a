// SPDX-License-Identifier: MIT
#include <QtBluetooth/qbluetoothaddress.h>
#include <QtTest/qsignalspy.h>

#include <limits>
#include <memory>

#include <varda/blescanner.h>

#include "discoverytimeout.h"
#include "linktest.h"

using namespace Qt::StringLiterals;

namespace {

bool writesOneAddressTwice = false;

} // namespace

// The program's own definition comes before that of Qt Bluetooth, which writes capitals only.
QString QBluetoothAddress::toString() const
{
    QStringList bytes;
    for (int shift = 40; shift >= 0; shift -= 8)
        bytes += u"%1"_s.arg((toUInt64() >> shift) & 0xFF, 2, 16, QLatin1Char('0'));
    const QString text = bytes.join(u':');
    if (writesOneAddressTwice && text == u"00:aa:01:01:00:02"_s)
        return u"00:aa:01:01:00:01"_s;
    return text.toUpper();
}

class TestScanner : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void beforeAnything();
    void road();
    void duration_data();
    void duration();
    void onlyLowEnergyIsAskedFor();
    void notEveryDeviceIsKept_data();
    void notEveryDeviceIsKept();
    void repeatedReports_data();
    void repeatedReports();
    void anotherNameLater();
    void lateDevice();
    void letterCase();
    void deviceAt();
    void knownDevicesComeFirst();

    void stop();
    void stopWithoutScan();
    void startWhileScanning();
    void listSurvivesTheScan();
    void clear();
    void clearWhileScanning();

    void adapterOff();
    void adapterMissing();
    void adapterRemoved();
    void adapterSwitchedOffWhileScanning();
    void errorIsNotTheEnd();
    void destructionStopsTheScan();
    void inside_data();
    void inside();
    void deletionInsideAnError();
    void deletionInsideANewScan();
};

void TestScanner::init()
{
    DiscoveryTimeout::replaceBy(-1);
    writesOneAddressTwice = false;
}

void TestScanner::beforeAnything()
{
    LOAD(Simulator::loadScenario("{}"));
    BleScanner scanner;
    QCOMPARE(DiscoveryTimeout::asked(), 10'000);
    QVERIFY(!scanner.isScanning());
    QCOMPARE(scanner.deviceCount(), 0);
    QVERIFY(scanner.devices().isEmpty());
    QCOMPARE(scanner.property("scanning").toBool(), false);
    QCOMPARE(scanner.property("deviceCount").toInt(), 0);
    QVERIFY(scanner.property("devices").value<QList<BleDeviceInfo>>().isEmpty());
    Simulator::settle();
    QCOMPARE(Simulator::count(u"StartDiscovery"_s), 0);
}

void TestScanner::road()
{
    LOAD(Simulator::loadDevice(""));
    DiscoveryTimeout::replaceBy(300);
    BleScanner scanner;
    m_log.watch(&scanner);
    m_log.react = [&](const QString &entry) {
        if (entry == u"scanFinished"_s)
            QVERIFY(!scanner.isScanning());
        if (entry == u"found Varda 00:AA:01:01:00:01 -60"_s)
            QCOMPARE(scanner.deviceCount(), 1);
    };
    scanner.startScan();
    QVERIFY(scanner.isScanning());
    QCOMPARE(scanner.property("scanning").toBool(), true);
    QVERIFY(m_log.await(u"scanFinished"_s));
    QCOMPARE(m_log.entries(), QStringList({u"devices 0"_s, u"scanning true"_s,
                                           u"found Varda 00:AA:01:01:00:01 -60"_s, u"devices 1"_s,
                                           u"scanning false"_s, u"scanFinished"_s}));
    QCOMPARE(scanner.property("deviceCount").toInt(), 1);
    QCOMPARE(scanner.property("devices").value<QList<BleDeviceInfo>>().first().name(), u"Varda"_s);
}

void TestScanner::duration_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("milliseconds");
    QTest::newRow("zero") << 0 << 0;
    QTest::newRow("one") << 1 << 1000;
    QTest::newRow("thirty") << 30 << 30'000;
    QTest::newRow("longest that fits") << 2'147'483 << 2'147'483'000;
    QTest::newRow("longer") << 2'147'484 << 2'147'483'647;
    QTest::newRow("longest") << std::numeric_limits<int>::max() << 2'147'483'647;
    QTest::newRow("negative") << -1 << -1000;
    QTest::newRow("most negative")
        << std::numeric_limits<int>::min() << std::numeric_limits<int>::min();
}

void TestScanner::duration()
{
    QFETCH(const int, seconds);
    QFETCH(const int, milliseconds);

    LOAD(Simulator::loadScenario("{}"));
    BleScanner scanner;
    scanner.startScan(seconds);
    QCOMPARE(DiscoveryTimeout::asked(), milliseconds);
    scanner.startScan();
    QCOMPARE(DiscoveryTimeout::asked(), 10'000);
    QVERIFY(scanner.isScanning());
}

void TestScanner::onlyLowEnergyIsAskedFor()
{
    LOAD(Simulator::loadScenario("{}"));
    BleScanner scanner;
    scanner.startScan();
    scanner.startScan();
    QTRY_COMPARE(Simulator::count(u"StartDiscovery"_s), 2);
    QCOMPARE(Simulator::record({u"SetDiscoveryFilter"_s}),
             QStringList({u"SetDiscoveryFilter le"_s, u"SetDiscoveryFilter le"_s}));
}

void TestScanner::notEveryDeviceIsKept_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<bool>("kept");
    QTest::newRow("named") << QByteArray(R"("name":"Watch")") << true;
    QTest::newRow("no name") << QByteArray(R"("name":null,"alias":"")") << false;
    QTest::newRow("classic") << QByteArray(R"("name":"Watch","type":"classic")") << false;
    QTest::newRow("both kinds") << QByteArray(R"("name":"Watch","type":"dual","known":true)")
                                << true;
}

void TestScanner::notEveryDeviceIsKept()
{
    QFETCH(const QByteArray, keys);
    QFETCH(const bool, kept);

    LOAD(Simulator::loadScenario(R"({"devices":[{)" + keys
                                 + R"(},{"advertise":[{"after":150}]}]})"));
    BleScanner scanner;
    scanner.startScan();
    QTRY_VERIFY(scanner.deviceCount() > 0
                && scanner.devices().last().address() == u"00:AA:01:01:00:02"_s);
    QCOMPARE(scanner.deviceCount(), kept ? 2 : 1);
}

void TestScanner::repeatedReports_data()
{
    QTest::addColumn<int>("seconds");
    QTest::newRow("limited") << 10;
    // Then Qt reports a device each time it is heard.
    QTest::newRow("unlimited") << 0;
}

void TestScanner::repeatedReports()
{
    QFETCH(const int, seconds);

    LOAD(Simulator::loadScenario(R"({"devices":[
        {"advertise":[{"rssi":-71},{"after":50,"rssi":-40},{"after":90,"rssi":-55}]},
        {"model":"tidemar","advertise":[{"after":200}]}]})"));
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan(seconds);
    QVERIFY(m_log.await(u"devices 2"_s));
    QCOMPARE(
        m_log.entries(),
        QStringList({u"devices 0"_s, u"scanning true"_s, u"found Varda 00:AA:01:01:00:01 -71"_s,
                     u"devices 1"_s, u"found Tidemar 00:AA:01:01:00:02 -60"_s, u"devices 2"_s}));
    QCOMPARE(scanner.deviceAt(0).rssi(), -71);
}

void TestScanner::anotherNameLater()
{
    LOAD(Simulator::loadScenario(R"({"devices":[
        {"advertise":[{},{"after":50,"rssi":-40,"name":"Tidemar"}]},
        {"model":"vskm","advertise":[{"after":150}]}]})"));
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan(0);
    QVERIFY(m_log.await(u"devices 2"_s));
    QCOMPARE(scanner.deviceAt(0).name(), u"Varda"_s);
    QCOMPARE(scanner.deviceAt(1).name(), u"VSK-0042"_s);
}

void TestScanner::lateDevice()
{
    LOAD(Simulator::loadScenario(R"({"devices":[
        {"advertise":[{"after":250}]},{"model":"tidemar","advertise":[{"after":120}]}]})"));
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan();
    QVERIFY(m_log.await(u"devices 2"_s));
    // In the order in which they were first heard.
    QCOMPARE(scanner.deviceAt(0).name(), u"Tidemar"_s);
    QCOMPARE(scanner.deviceAt(1).name(), u"Varda"_s);
}

void TestScanner::letterCase()
{
    LOAD(Simulator::loadScenario(R"({"devices":[{},{"advertise":[{"after":60}]}]})"));
    writesOneAddressTwice = true;
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan();
    QVERIFY(m_log.await(u"devices 2"_s));
    QCOMPARE(scanner.deviceAt(0).address(), u"00:AA:01:01:00:01"_s);
    QCOMPARE(scanner.deviceAt(1).address(), u"00:aa:01:01:00:01"_s);
}

void TestScanner::deviceAt()
{
    LOAD(Simulator::loadDevice(""));
    BleScanner scanner;
    m_log.watch(&scanner);
    QVERIFY(!scanner.deviceAt(0).isValid());
    scanner.startScan();
    QVERIFY(m_log.await(u"devices 1"_s));
    m_log.take();
    QVERIFY(scanner.deviceAt(0).isValid());
    for (const int index :
         {-1, 1, 2, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QVERIFY(!scanner.deviceAt(index).isValid());
    BleDeviceInfo device;
    QVERIFY(QMetaObject::invokeMethod(&scanner, "deviceAt", Q_RETURN_ARG(BleDeviceInfo, device),
                                      Q_ARG(int, 0)));
    QCOMPARE(device.address(), u"00:AA:01:01:00:01"_s);
    QCOMPARE(device.name(), u"Varda"_s);
    QCOMPARE(device.rssi(), -60);
    QCOMPARE(device.deviceInfo().coreConfigurations(),
             QBluetoothDeviceInfo::LowEnergyCoreConfiguration);
    QCOMPARE(m_log.entries(), QStringList());
}

// They are reported before the start of the scan has returned; nobody knows whether they are near.
void TestScanner::knownDevicesComeFirst()
{
    LOAD(Simulator::loadKnown());
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan();
    QCOMPARE(m_log.entries(), QStringList({u"devices 0"_s, u"found Varda 00:AA:01:01:00:01 0"_s,
                                           u"devices 1"_s, u"scanning true"_s}));
}

void TestScanner::stop()
{
    LOAD(Simulator::loadDevice(""));
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan();
    QVERIFY(m_log.await(u"devices 1"_s));
    m_log.take();
    scanner.stopScan();
    QVERIFY(m_log.await(u"scanFinished"_s));
    scanner.stopScan();
    QTRY_COMPARE(Simulator::count(u"StopDiscovery"_s), 1);
    QCOMPARE(m_log.entries(), QStringList({u"scanning false"_s, u"scanFinished"_s}));
    QCOMPARE(scanner.deviceCount(), 1);
}

void TestScanner::stopWithoutScan()
{
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.stopScan();
    Simulator::settle();
    QCOMPARE(m_log.entries(), QStringList());
}

void TestScanner::startWhileScanning()
{
    LOAD(Simulator::loadDevice(""));
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan(5);
    QVERIFY(m_log.await(u"devices 1"_s));
    scanner.startScan(7);
    QCOMPARE(DiscoveryTimeout::asked(), 7000);
    QVERIFY(m_log.await(u"devices 1"_s, 2));
    // By now the host knows the device, so that it may come before the flag.
    QStringList entries = m_log.take();
    QCOMPARE(entries.mid(0, 4),
             QStringList({u"devices 0"_s, u"scanning true"_s,
                          u"found Varda 00:AA:01:01:00:01 -60"_s, u"devices 1"_s}));
    QCOMPARE(entries.mid(4, 3),
             QStringList({u"scanning false"_s, u"scanFinished"_s, u"devices 0"_s}));
    QCOMPARE(scanner.deviceCount(), 1);
    QTRY_VERIFY(scanner.isScanning());
    QCOMPARE(Simulator::record({u"StartDiscovery"_s, u"StopDiscovery"_s}).first(3),
             QStringList({u"StartDiscovery"_s, u"StopDiscovery"_s, u"StartDiscovery"_s}));
}

void TestScanner::listSurvivesTheScan()
{
    LOAD(Simulator::loadDevice(""));
    DiscoveryTimeout::replaceBy(200);
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan();
    QVERIFY(m_log.await(u"scanFinished"_s));
    QCOMPARE(scanner.deviceCount(), 1);
    LOAD(Simulator::loadScenario("{}"));
    m_log.take();
    scanner.startScan();
    QVERIFY(m_log.await(u"scanFinished"_s));
    QCOMPARE(m_log.entries(), QStringList({u"devices 0"_s, u"scanning true"_s, u"scanning false"_s,
                                           u"scanFinished"_s}));
}

void TestScanner::clear()
{
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.clearDevices();
    scanner.clearDevices();
    QCOMPARE(m_log.entries(), QStringList({u"devices 0"_s, u"devices 0"_s}));
}

void TestScanner::clearWhileScanning()
{
    LOAD(Simulator::loadDevice(R"("advertise":[{},{"after":120,"rssi":-50}])"));
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan(0);
    QVERIFY(m_log.await(u"devices 1"_s));
    scanner.clearDevices();
    // It is still there, and heard again.
    QVERIFY(m_log.await(u"devices 1"_s, 2));
    QCOMPARE(m_log.entries(),
             QStringList({u"devices 0"_s, u"scanning true"_s,
                          u"found Varda 00:AA:01:01:00:01 -60"_s, u"devices 1"_s, u"devices 0"_s,
                          u"found Varda 00:AA:01:01:00:01 -50"_s, u"devices 1"_s}));
}

void TestScanner::adapterOff()
{
    LOAD(Simulator::loadScenario(R"({"adapter":{"powered":false}})"));
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan();
    QVERIFY(m_log.await(u"scanError Device is powered off"_s));
    QCOMPARE(m_log.entries(), QStringList({u"devices 0"_s, u"scanError Device is powered off"_s}));
    QVERIFY(!scanner.isScanning());
}

void TestScanner::adapterMissing()
{
    LOAD(Simulator::loadScenario(R"({"adapter":{"present":false}})"));
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan();
    QVERIFY(m_log.await(u"scanError Cannot find valid Bluetooth adapter."_s));
    QCOMPARE(m_log.entries(),
             QStringList({u"devices 0"_s, u"scanError Cannot find valid Bluetooth adapter."_s}));
}

void TestScanner::adapterRemoved()
{
    LOAD(Simulator::loadScenario("{}"));
    BleScanner scanner;
    m_log.watch(&scanner);
    m_log.react = [&](const QString &entry) {
        if (entry.startsWith(u"scanError"_s))
            QVERIFY(!scanner.isScanning());
    };
    scanner.startScan();
    QTRY_COMPARE(Simulator::count(u"StartDiscovery"_s), 1);
    Simulator::removeAdapter();
    QVERIFY(m_log.await(u"scanError Bluetooth adapter error"_s));
    QCOMPARE(m_log.entries(), QStringList({u"devices 0"_s, u"scanning true"_s, u"scanning false"_s,
                                           u"scanError Bluetooth adapter error"_s}));
}

// Nobody tells of it; the scan finds nothing more and ends when its time is over.
void TestScanner::adapterSwitchedOffWhileScanning()
{
    LOAD(Simulator::loadDevice(R"("advertise":[{"after":300}])"));
    DiscoveryTimeout::replaceBy(600);
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan();
    QTRY_COMPARE(Simulator::count(u"StartDiscovery"_s), 1);
    Simulator::setPowered(false);
    QVERIFY(m_log.await(u"scanFinished"_s));
    QCOMPARE(m_log.entries(), QStringList({u"devices 0"_s, u"scanning true"_s, u"scanning false"_s,
                                           u"scanFinished"_s}));
}

void TestScanner::errorIsNotTheEnd()
{
    LOAD(Simulator::loadScenario(R"({"adapter":{"powered":false},"devices":[{}]})"));
    BleScanner scanner;
    m_log.watch(&scanner);
    scanner.startScan();
    QVERIFY(m_log.await(u"scanError Device is powered off"_s));
    Simulator::setPowered(true);
    scanner.startScan();
    QVERIFY(m_log.await(u"devices 1"_s));
    QVERIFY(scanner.isScanning());
}

void TestScanner::destructionStopsTheScan()
{
    LOAD(Simulator::loadDevice(""));
    {
        BleScanner scanner;
        scanner.startScan();
        QTRY_COMPARE(scanner.deviceCount(), 1);
        m_log.watch(&scanner);
    }
    QTRY_COMPARE(Simulator::count(u"StopDiscovery"_s), 1);
    QCOMPARE(m_log.entries(), QStringList());
}

void TestScanner::inside_data()
{
    QTest::addColumn<bool>("known");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("deed");
    for (const bool known : {false, true}) {
        for (const auto *deed : {"delete", "stopScan", "startScan", "clearDevices"}) {
            for (const auto *entry :
                 {"devices 0", "scanning true", "found Varda", "devices 1", "scanning false",
                  "scanFinished", "scanError Device is powered off"})
                QTest::addRow("%s in %s, %s", deed, entry, known ? "known" : "new")
                    << known << QString::fromLatin1(entry) << QString::fromLatin1(deed);
        }
    }
}

// An application may do anything from inside any signal; a known device even makes signals from
// inside the start.
void TestScanner::inside()
{
    QFETCH(const bool, known);
    QFETCH(const QString, entry);
    QFETCH(const QString, deed);

    LOAD(known ? Simulator::loadKnown() : Simulator::loadDevice(""));
    if (entry.startsWith(u"scanError"_s))
        Simulator::setPowered(false);
    DiscoveryTimeout::replaceBy(150);
    auto scanner = std::make_unique<BleScanner>();
    QStringList rest;
    bool done = false;
    m_log.react = [&](const QString &each) {
        if (done) {
            rest.append(each);
        } else if (each.startsWith(entry)) {
            done = true;
            if (deed == u"delete"_s)
                scanner.reset();
            else if (deed == u"stopScan"_s)
                scanner->stopScan();
            else if (deed == u"startScan"_s)
                scanner->startScan();
            else
                scanner->clearDevices();
        }
    };
    m_log.watch(scanner.get());
    scanner->startScan();
    QTRY_VERIFY(done);

    QTRY_COMPARE(Simulator::count(u"StopDiscovery"_s), Simulator::count(u"StartDiscovery"_s));
    Simulator::settle();
    m_log.react = nullptr;
    if (!scanner) {
        QCOMPARE(rest, QStringList());
        return;
    }
    // In the end nothing is under way, and a scan works as ever.
    QTRY_VERIFY(!scanner->isScanning());
    Simulator::setPowered(true);
    m_log.take();
    scanner->startScan();
    QVERIFY(m_log.await(u"scanFinished"_s));
    QCOMPARE(m_log.entries().count(u"devices 1"_s), 1);
    QCOMPARE(m_log.entries().count(u"scanning true"_s), 1);
    QCOMPARE(m_log.entries().last(), u"scanFinished"_s);
}

void TestScanner::deletionInsideAnError()
{
    LOAD(Simulator::loadScenario("{}"));
    auto scanner = std::make_unique<BleScanner>();
    m_log.watch(scanner.get());
    m_log.react = [&](const QString &entry) {
        if (entry == u"scanning false"_s)
            scanner.reset();
    };
    scanner->startScan();
    QTRY_COMPARE(Simulator::count(u"StartDiscovery"_s), 1);
    Simulator::removeAdapter();
    QTRY_VERIFY(!scanner);
    Simulator::settle();
    QCOMPARE(m_log.entries(),
             QStringList({u"devices 0"_s, u"scanning true"_s, u"scanning false"_s}));
}

// A new scan begins with the end of the old one, and somebody may hear of that.
void TestScanner::deletionInsideANewScan()
{
    LOAD(Simulator::loadScenario("{}"));
    auto scanner = std::make_unique<BleScanner>();
    m_log.watch(scanner.get());
    m_log.react = [&](const QString &entry) {
        if (entry == u"scanning false"_s)
            scanner.reset();
    };
    scanner->startScan();
    QTRY_COMPARE(Simulator::count(u"StartDiscovery"_s), 1);
    scanner->startScan();
    QVERIFY(!scanner);
    QTRY_COMPARE(Simulator::count(u"StopDiscovery"_s), 1);
    Simulator::settle();
    QCOMPARE(Simulator::count(u"StartDiscovery"_s), 1);
    QCOMPARE(m_log.entries(),
             QStringList({u"devices 0"_s, u"scanning true"_s, u"scanning false"_s}));
}

QTEST_GUILESS_MAIN(TestScanner)
#include "tst_scanner.moc"
