// SPDX-License-Identifier: MIT
#include "protocollink.h"

using namespace Qt::StringLiterals;

namespace {

int toldMtu = -1;

} // namespace

// The program's own definition comes before that of Qt Bluetooth, which never knows it on Linux.
int QLowEnergyController::mtu() const
{
    return toldMtu;
}

class TestMtu : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void frameSize_data();
    void frameSize();
    void newLinkNewSize();
};

void TestMtu::frameSize_data()
{
    QTest::addColumn<int>("mtu");
    QTest::addColumn<int>("frameSize");
    QTest::newRow("not known") << -1 << 128;
    QTest::newRow("0") << 0 << 128;
    // Nonsense in, nonsense out: who sends looks at it.
    QTest::newRow("1") << 1 << -8;
    QTest::newRow("4") << 4 << -8;
    QTest::newRow("5") << 5 << 0;
    QTest::newRow("12") << 12 << 0;
    QTest::newRow("13") << 13 << 0;
    QTest::newRow("19") << 19 << 0;
    QTest::newRow("20") << 20 << 8;
    QTest::newRow("23") << 23 << 8;
    QTest::newRow("185") << 185 << 168;
    QTest::newRow("247") << 247 << 232;
    QTest::newRow("512") << 512 << 496;
    QTest::newRow("517") << 517 << 504;
}

void TestMtu::frameSize()
{
    QFETCH(const int, mtu);
    QFETCH(const int, frameSize);

    LOAD(Simulator::loadKnown());
    toldMtu = mtu;
    ProtocolLink link(m_log, BleMode::Gatt);
    QCOMPARE(link.protocol->frameSize(), 128);
    QCOMPARE(link.device->mtu(), 0);
    link.open();
    QCOMPARE(link.device->mtu(), mtu);
    QTRY_VERIFY(link.device->isConnected());
    QCOMPARE(link.protocol->frameSize(), frameSize);
    // Frames go out whole, whatever it is.
    QVERIFY(link.protocol->sendCommand({TidemarCommand::Logbook, "\x01\x02\x03"}));
    QTRY_COMPARE(Simulator::frames(), QStringList(u"dcdc04005aef000013010203"_s));
}

void TestMtu::newLinkNewSize()
{
    LOAD(Simulator::loadKnown());
    toldMtu = 247;
    OPEN(link, BleMode::Gatt);
    QCOMPARE(link.protocol->frameSize(), 232);
    toldMtu = 0;
    link.device->connectTo(knownDevice());
    QVERIFY(m_log.await(u"ready"_s));
    QCOMPARE(link.protocol->frameSize(), 128);
}

QTEST_GUILESS_MAIN(TestMtu)
#include "tst_mtu.moc"
