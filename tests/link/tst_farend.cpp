// SPDX-License-Identifier: MIT
#include <QtCore/qjsonarray.h>

#include "images.h"
#include "jobtest.h"

using namespace Qt::StringLiterals;

/** What has been written is at the far end, byte for byte, and can be read back. */
class TestFarEnd : public JobTest
{
    Q_OBJECT

private Q_SLOTS:
    void plainFirmware_data();
    void plainFirmware();
    void firmwareWithHeader_data() { modes(); }
    void firmwareWithHeader();
    void bootloader();
    void brokenOffFirmware();
    void layouts_data() { modes(); }
    void layouts();
    void settings();
    void deletedDives();

private:
    static void modes()
    {
        QTest::addColumn<BleMode>("mode");
        QTest::newRow("Gatt") << BleMode::Gatt;
        QTest::newRow("Sps") << BleMode::Sps;
    }
    /** Runs a command that tells nothing but its end. */
    [[nodiscard]] bool runs(TidemarCommand::TidemarCommandIn command, const QString &end)
    {
        return told(command, u"endCommand "_s + end) == QStringList(u"endCommand "_s + end);
    }
    [[nodiscard]] bool runs(const std::function<void()> &job, const QString &end)
    {
        return told(job, u"endCommand "_s + end) == QStringList(u"endCommand "_s + end);
    }
};

void TestFarEnd::plainFirmware_data()
{
    QTest::addColumn<BleMode>("mode");
    QTest::addColumn<int>("size");
    QTest::newRow("Gatt, more than 65535 bytes") << BleMode::Gatt << 70'000;
    QTest::newRow("Sps") << BleMode::Sps << 1000;
}

void TestFarEnd::plainFirmware()
{
    QFETCH(const BleMode, mode);
    QFETCH(const int, size);
    CONNECT(connectTo({}, mode));
    const QByteArray firmware = image(size);
    QCOMPARE(m_session->uploadFirmware(firmware, u"Kite.2.3.4.e.bin"_s, false), size);
    QVERIFY(m_log.await(u"endCommand End_program"_s));
    QVERIFY(Simulator::firmware() == firmware);
    const QJsonObject description = Simulator::state()["firmwareImage"_L1].toObject();
    QCOMPARE(description["family"_L1].toString(), u"program"_s);
    QCOMPARE(description["name"_L1].toString(), u"Kite"_s);
    QCOMPARE(description["version"_L1].toString(), u"2.3.4.e"_s);
    m_log.take();
    QVERIFY(runs(TidemarCommand::Identification, u"Identification"_s));
    QCOMPARE(m_session->firmwareVersionStr(), u"2.3.4.e"_s);
}

void TestFarEnd::firmwareWithHeader()
{
    QFETCH(const BleMode, mode);
    CONNECT(connectTo({}, mode));
    const QByteArray firmware = image(2000, kFirmwareHeader);
    QCOMPARE(m_session->uploadFirmware(firmware, QString(), false), -4);
    QVERIFY(runs(TidemarCommand::BootloaderVersion, u"BootloaderVersion"_s));
    QCOMPARE(m_session->uploadFirmware(firmware, QString(), false), 2000);
    QVERIFY(m_log.await(u"endCommand End_program"_s));
    QVERIFY(Simulator::firmware() == firmware);
    m_log.take();
    QVERIFY(runs(TidemarCommand::Identification, u"Identification"_s));
    QCOMPARE(m_session->firmwareVersionStr(), u"4.5.6.d"_s);
    QCOMPARE(m_session->uploadFirmware(firmware, QString(), false), -3);
}

void TestFarEnd::bootloader()
{
    CONNECT(connectTo({}));
    const QByteArray firmware = image(1024, kBootloaderHeader);
    QCOMPARE(m_session->uploadFirmware(firmware, QString(), false), 1024);
    QVERIFY(m_log.await(u"endCommand End_program"_s));
    QVERIFY(Simulator::firmware() == firmware);
    m_log.take();
    QVERIFY(runs(TidemarCommand::BootloaderVersion, u"BootloaderVersion"_s));
    QCOMPARE(m_session->bootloaderVersionStr(), u"4.5.6.d"_s);
    QCOMPARE(m_session->uploadFirmware(firmware, QString(), false), -2);
}

// The link goes in the middle; with the next one the computer wants the rest.
void TestFarEnd::brokenOffFirmware()
{
    CONNECT(connectTo(
        R"("faults":[{"step":"answer","command":"ProgramUpdate","nth":5,"times":1,"kind":"drop"}])"));
    const QByteArray firmware = image(2000, kBootloaderHeader);
    m_session->uploadFirmware(firmware, QString(), false);
    QVERIFY(m_log.await(u"disconnectController"_s));
    QCOMPARE(Simulator::state()["firmwareReceiving"_L1].toInt(), 640);
    QCOMPARE(m_session->uploadElapsed().count(), 0);
    m_session->controllerConnect();
    QVERIFY(m_log.await(u"Connected"_s));
    m_log.take();
    m_session->uploadFirmware(firmware, QString(), false);
    QVERIFY(m_log.await(u"endCommand End_program"_s));
    QCOMPARE(m_log.entries().first(), u"uploadFirmwareProgress 768 38"_s);
    QVERIFY(Simulator::firmware() == firmware);
}

void TestFarEnd::layouts()
{
    QFETCH(const BleMode, mode);
    CONNECT(connectTo({}, mode));
    QVERIFY(runs([&] { m_session->startLayoutList(); }, u"LayoutList"_s));
    QCOMPARE(m_session->layouts().size(), 3);

    // Its name is at its beginning.
    const QByteArray layout = "Gr\xFC\x6E" + QByteArray(1, '\0') + image(1000);
    QVERIFY(runs([&] { m_session->startLayoutAdd(layout); }, u"LayoutAdd"_s));
    QVERIFY(runs([&] { m_session->startLayoutList(); }, u"LayoutList"_s));
    QCOMPARE(m_session->layouts().size(), 4);
    QCOMPARE(m_session->layouts()[3].first, 3);
    QCOMPARE(m_session->layouts()[3].second, 1);
    QCOMPARE(m_session->layouts()[3].name, u"Grün"_s);
    QVERIFY(runs([&] { m_session->startLayoutGet(3); }, u"LayoutGet"_s));
    QVERIFY(m_session->layoutBlob() == layout);

    using InUse = std::array<int8_t, 5>;
    QVERIFY(runs([&] { m_session->startLayoutActiveSet(2, 3); }, u"LayoutActiveSet"_s));
    QVERIFY(runs([&] { m_session->startLayoutActiveSet(4, -1); }, u"LayoutActiveSet"_s));
    QVERIFY(runs([&] { m_session->startLayoutActiveGet(); }, u"LayoutActiveGet"_s));
    QCOMPARE(m_session->activeLayouts(), (InUse{0, 0, 3, 0, -1}));
    QVERIFY(runs([&] { m_session->startLayoutRemove(3); }, u"LayoutRemove"_s));
    QVERIFY(m_session->layoutCommandSuccess());
    m_session->startLayoutRemove(3);
    QVERIFY(m_log.await(u"exchangeError LayoutRemove GenericError"_s));
    QVERIFY(!m_session->layoutCommandSuccess());
    m_log.take();
    QVERIFY(runs([&] { m_session->startLayoutRemoveAll(); }, u"LayoutRemoveAll"_s));
    QCOMPARE(Simulator::state()["layouts"_L1].toArray().size(), 2);
}

void TestFarEnd::settings()
{
    CONNECT(connectTo(R"("clock":0)"));
    MarloSettings settings;
    settings.byte1 = 1;
    settings.float1 = 1.5F;
    settings.byte6 = 6;
    QVERIFY(runs([&] { m_session->startMarloSettings(settings); }, u"MarloSet"_s));
    QCOMPARE(Simulator::state()["marloSettings"_L1].toString(), u"01000000c03f0000000000000006"_s);
    QVERIFY(runs([&] { m_session->setOwner(u"Zoë €"_s); }, u"Set_owner"_s));
    QVERIFY(runs(TidemarCommand::Owner, u"Owner"_s));
    QCOMPARE(m_session->owner(), u"Zoë €"_s);
    QVERIFY(runs([&] { QVERIFY(m_session->startSetPressure(987)); }, u"Set_sensors"_s));
    QCOMPARE(m_session->pamb(), 987U);
    QVERIFY(runs([&] { m_session->startSetTime(); }, u"Set_time"_s));
    const int64_t time = m_session->computerTime();
    QVERIFY(time > 1'700'000'000);
    QVERIFY(runs(TidemarCommand::Time, u"Time"_s));
    QVERIFY(m_session->computerTime() >= time);
    m_session->startSuperUserMode(true);
    QTRY_VERIFY(Simulator::state()["superUser"_L1].toBool());
    m_session->startSuperUserMode(false);
    QTRY_VERIFY(!Simulator::state()["superUser"_L1].toBool());
    m_session->startCommand(TidemarCommand::BatteryInformationClear);
    QTRY_COMPARE(Simulator::state()["batteryRecords"_L1].toInt(), 0);
}

void TestFarEnd::deletedDives()
{
    CONNECT(connectTo(R"("dives":4)"));
    QVERIFY(runs(TidemarCommand::DeleteLastDive, u"DeleteLastDive"_s));
    QCOMPARE(m_session->deleteResult().resultA, 1U);
    QCOMPARE(m_session->deleteResult().resultB, 3U);
    QVERIFY(runs([&] { m_session->startGetLogbook({}); }, u"Logbook"_s));
    QCOMPARE(m_session->diveHeaders().size(), 3);
    QCOMPARE(m_session->diveHeader(4), nullptr);
    QVERIFY(runs(TidemarCommand::EraseDives, u"DeleteLastDive"_s));
    QCOMPARE(m_session->deleteResult().resultA, 3U);
    QCOMPARE(m_session->deleteResult().resultB, 0U);
    QVERIFY(runs(TidemarCommand::Logbook, u"Logbook"_s));
    QVERIFY(m_session->diveHeaders().isEmpty());
    QVERIFY(runs([&] { m_session->startGetDiveSamples(1); }, u"Fullsamples"_s));
    QVERIFY(m_session->diveSamples().isEmpty());
}

QTEST_GUILESS_MAIN(TestFarEnd)
#include "tst_farend.moc"
