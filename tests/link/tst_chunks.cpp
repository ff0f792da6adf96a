// SPDX-License-Identifier: MIT
#include "images.h"
#include "jobtest.h"

using namespace Qt::StringLiterals;

namespace {

int linkMtu = -1;

constexpr auto kTaking = R"("responses":{"LayoutAdd":["01"],"Begin_program":["01"],
    "Program":["01"],"End_program":["01"],"BeginUpdate":["01"],"Close":["01"]})";

} // namespace

// The program's own definition comes before that of Qt Bluetooth, which never knows it on Linux.
int QLowEnergyController::mtu() const
{
    return linkMtu;
}

/** How uploads are cut where the link tells its MTU, however small it is. */
class TestChunks : public JobTest
{
    Q_OBJECT

private Q_SLOTS:
    void layout_data();
    void layout();
    void firmware_data();
    void firmware();
    void progressOfAThousandBytes();
    void progressOfSmallBlocks();
    void progressOfLargeBlocks();
};

void TestChunks::layout_data()
{
    QTest::addColumn<int>("mtu");
    QTest::addColumn<QString>("flags");
    QTest::addColumn<int>("firstChunk");
    // A chunk holds the frame size less its flags; 8 is the smallest frame size.
    QTest::newRow("not known") << 0 << u"1 2"_s << 127;
    QTest::newRow("1") << 1 << u"1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 2"_s << 7;
    QTest::newRow("13") << 13 << u"1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 2"_s << 7;
    QTest::newRow("23") << 23 << u"1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 2"_s << 7;
    QTest::newRow("28") << 28 << u"1 0 0 0 0 0 0 0 0 0 2"_s << 15;
    QTest::newRow("165") << 165 << u"1 2"_s << 151;
    QTest::newRow("173") << 173 << u"3"_s << 154;
    QTest::newRow("247") << 247 << u"3"_s << 154;
}

void TestChunks::layout()
{
    QFETCH(const int, mtu);
    QFETCH(const QString, flags);
    QFETCH(const int, firstChunk);
    linkMtu = mtu;
    CONNECT(connectTo(kTaking));
    const QByteArray layout = image(154);
    m_session->startLayoutAdd(layout);
    QVERIFY(m_log.await(u"endCommand LayoutAdd"_s));

    QStringList sentFlags;
    QByteArray whole;
    for (const QString &frame : sent()) {
        const QByteArray bytes = QByteArray::fromHex(frame.toLatin1());
        QCOMPARE(bytes[0], '\x26');
        sentFlags.append(QString::number(bytes[1]));
        whole += bytes.sliced(2);
    }
    QCOMPARE(sentFlags.join(u' '), flags);
    QCOMPARE(sent().first().size() / 2 - 2, firstChunk);
    QCOMPARE(whole, layout);
}

void TestChunks::firmware_data()
{
    QTest::addColumn<int>("mtu");
    QTest::addColumn<QList<int>>("blocks");
    QTest::newRow("not known") << -1 << QList<int>{128, 128, 44};
    QTest::newRow("1") << 1 << QList<int>(37, 8) + QList<int>{4};
    QTest::newRow("19") << 19 << QList<int>(37, 8) + QList<int>{4};
    QTest::newRow("23") << 23 << QList<int>(37, 8) + QList<int>{4};
    QTest::newRow("185") << 185 << QList<int>{168, 132};
    QTest::newRow("247") << 247 << QList<int>{232, 68};
    QTest::newRow("312") << 312 << QList<int>{296, 4};
    QTest::newRow("517") << 517 << QList<int>{300};
}

void TestChunks::firmware()
{
    QFETCH(const int, mtu);
    QFETCH(const QList<int>, blocks);
    linkMtu = mtu;
    CONNECT(connectTo(R"("mtu":517,)"_ba + kTaking));
    const QByteArray firmware = image(300);
    QCOMPARE(m_session->uploadFirmware(firmware, u"a"_s, false), 300);
    QVERIFY(m_log.await(u"endCommand End_program"_s));

    QList<int> sizes;
    QByteArray whole;
    for (const QString &frame : sent()) {
        const QByteArray bytes = QByteArray::fromHex(frame.toLatin1());
        if (bytes[0] != '\x0e')
            continue;
        sizes.append(int(bytes.size()) - 1);
        whole += bytes.sliced(1);
    }
    QCOMPARE(sizes, blocks);
    QCOMPARE(whole, firmware);
}

void TestChunks::progressOfAThousandBytes()
{
    linkMtu = 247;
    CONNECT(connectTo(kTaking));
    m_session->uploadFirmware(image(1000), u"a"_s, false);
    QVERIFY(m_log.await(u"endCommand End_program"_s));
    QCOMPARE(m_log.take(),
             QStringList({u"uploadFirmwareProgress 232 23"_s, u"uploadFirmwareProgress 464 46"_s,
                          u"uploadFirmwareProgress 696 69"_s, u"uploadFirmwareProgress 928 92"_s,
                          u"uploadFirmwareProgress 1160 116"_s, u"uploadFirmwareProgress 0 100"_s,
                          u"endCommand End_program"_s}));
    QCOMPARE(sent()[5].size() / 2 - 1, 72);
}

// Told is what changes the percentage; 776 times 100.0 / 776 is a little less than 100.
void TestChunks::progressOfSmallBlocks()
{
    linkMtu = 23;
    CONNECT(connectTo(kTaking));
    m_session->uploadFirmware(image(776), u"a"_s, false);
    QVERIFY(m_log.await(u"endCommand End_program"_s));
    const QStringList told = m_log.take();
    QCOMPARE(told.first(), u"uploadFirmwareProgress 8 1"_s);
    QCOMPARE(told[told.size() - 3], u"uploadFirmwareProgress 776 99"_s);
    QCOMPARE(told.filter(u" 99"_s), QStringList(u"uploadFirmwareProgress 776 99"_s));
}

// The percentage stays 0, but more than 1000 bytes are told in any case.
void TestChunks::progressOfLargeBlocks()
{
    linkMtu = 1100;
    CONNECT(connectTo(kTaking));
    m_session->uploadFirmware(image(200'000, kBootloaderHeader), u"a"_s, false);
    QVERIFY(m_log.await(u"uploadFirmwareProgress 1088 0"_s));
}

QTEST_GUILESS_MAIN(TestChunks)
#include "tst_chunks.moc"
