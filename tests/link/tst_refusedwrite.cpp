// SPDX-License-Identifier: MIT
#include "protocollink.h"

using namespace Qt::StringLiterals;

// The program's own definition comes before that of Qt Bluetooth, which refuses a write from inside
// this call on Android and later, if at all, on Linux.
void QLowEnergyService::writeCharacteristic(const QLowEnergyCharacteristic & /*characteristic*/,
                                            const QByteArray & /*newValue*/, WriteMode /*mode*/)
{
    Q_EMIT errorOccurred(CharacteristicWriteError);
}

class TestRefusedWrite : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void isToldByTheLink();
    void deletionFromInside();

private:
    const QStringList m_refusal{u"state Error"_s, u"error Service error: 2"_s};
};

void TestRefusedWrite::isToldByTheLink()
{
    LOAD(Simulator::loadKnown());
    OPEN(link, BleMode::Gatt);
    m_log.watch(link.device.get());
    QVERIFY(link.protocol->sendCommand(TidemarCommand::Identification));
    QCOMPARE(m_log.take(), m_refusal);
    // The protocol knows no better than to wait for an answer.
    QVERIFY(m_log.await(u"receiveTimeout Identification"_s));
}

void TestRefusedWrite::deletionFromInside()
{
    LOAD(Simulator::loadKnown());
    OPEN(link, BleMode::Gatt);
    m_log.watch(link.device.get());
    m_log.react = [&](const QString &entry) {
        if (entry == m_refusal.last())
            link.protocol.reset();
    };
    VardaBleProtocol *const protocol = link.protocol.get();
    QVERIFY(protocol->sendCommand(TidemarCommand::Identification));
    QVERIFY(!link.protocol);
    QCOMPARE(m_log.entries(), m_refusal);
}

QTEST_GUILESS_MAIN(TestRefusedWrite)
#include "tst_refusedwrite.moc"
