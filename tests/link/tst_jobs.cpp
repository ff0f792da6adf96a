// SPDX-License-Identifier: MIT
#include <memory>

#include <varda/vardasession.h>

#include "linktest.h"

using namespace Qt::StringLiterals;

namespace {

// The settings of a Varda in the short form, and what only the newer command adds to them.
constexpr auto kSettings = "fe00"
                           "01020304"
                           "0605"
                           "02"
                           "f503"
                           "07"
                           "08"
                           "111213"
                           "2122232425"
                           "00"
                           "15002028"
                           "000000000000000000006400"
                           "09"
                           "010002000300"
                           "4164610000000000000000000000000000000000000000000000000000000000"
                           "01"
                           "3132333435"
                           "3736"
                           "38"
                           "39"
                           "0807060504030201"
                           "000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f";
constexpr auto kExtension = "1817161514131211"
                            "00"
                            "2827262524232221"
                            "41"
                            "5100520053005400"
                            "61006200"
                            "63006400"
                            "717273"
                            "3837363534333231"
                            "4847464544434241"
                            "74"
                            "0181"
                            "0282"
                            "0383";

} // namespace

/** Each job with an answer given to the byte, and everything that it changes. */
class TestJobs : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_session.reset(); }

    void identification();
    void identificationWithoutModel();
    void serialNumber();
    void settings();
    void extendedSettings();
    void time();
    void sensors();
    void pressure();
    void pressureIsForgottenWithTheLink();
    void diver();
    void owner();
    void longOwnerIsCut();
    void ownerIsSetWhenConfirmed();
    void deletions();
    void simulationParameters();
    void bootloaderVersion();
    void gases();
    void batteryInformation();
    void longBatteryInformationIsCut();
    void reset();
    void silentAnswers();
    void answerToAnotherCommand();
    void nextJobFromInside();

private:
    /** A session that is connected to a computer with these answers. */
    void connectTo(const QByteArray &responses, BleMode mode = BleMode::Gatt)
    {
        LOAD(Simulator::loadKnown(R"("mode":"both","responses":{)" + responses + "}"));
        m_session = std::make_unique<VardaSession>();
        m_log.watch(m_session.get());
        m_session->connectTo(knownDevice(), mode);
        QVERIFY(m_log.await(u"Connected"_s));
        m_log.take();
    }

    /** Runs a command to its end; nothing else is told. */
    void run(TidemarCommand::TidemarCommandIn command, const QString &end)
    {
        m_session->startCommand(command);
        QVERIFY(m_log.await(u"endCommand "_s + end));
        QCOMPARE(m_log.take(), QStringList(u"endCommand "_s + end));
    }

    std::unique_ptr<VardaSession> m_session;
};

void TestJobs::identification()
{
    connectTo(R"("Identification":["610302011f64060504"])");
    run(TidemarCommand::Identification, u"Identification"_s);
    QCOMPARE(m_session->firmwareVersion(), 0x01020361U);
    QCOMPARE(m_session->firmwareVersionStr(), u"1.2.3.a"_s);
    QCOMPARE(m_session->qmlGetFirmwareVersionStr(), u"1.2.3.a"_s);
    QCOMPARE(m_session->recordVersion(), 1);
    QCOMPARE(m_session->computerModel(), ComputerModel::VSKM);
    QCOMPARE(m_session->computerModelStr(), u"VSKM"_s);
    QCOMPARE(m_session->qmlComputerModel(), u"VSKM"_s);
    QCOMPARE(m_session->currentMode(), CurrentMode::Normal);
    QCOMPARE(m_session->qmlCurrentMode(), u"Normal"_s);
    QCOMPARE(m_session->bootloaderVersion(), 0x04050664U);
    QCOMPARE(m_session->bootloaderVersionStr(), QString());
}

void TestJobs::identificationWithoutModel()
{
    connectTo(R"("Identification":["6103020102ffffffff"])", BleMode::Sps);
    run(TidemarCommand::Identification, u"Identification"_s);
    QCOMPARE(m_session->recordVersion(), 2);
    QCOMPARE(m_session->computerModel(), ComputerModel::Unknown);
    QCOMPARE(m_session->qmlComputerModel(), u"Unknown"_s);
    QCOMPARE(m_session->currentMode(), CurrentMode::BootLoader);
    QCOMPARE(m_session->qmlCurrentMode(), u"BootLoader"_s);
    QCOMPARE(m_session->bootloaderVersion(), 0U);
}

void TestJobs::serialNumber()
{
    connectTo(R"("Serialnumber":["01020304050641778899aabb"],"Identification":["610302010b"])");
    run(TidemarCommand::Serialnumber, u"Serialnumber"_s);
    QCOMPARE(m_session->serialNumber(), u"0605-0403-0201-A"_s);
    run(TidemarCommand::Identification, u"Identification"_s);
    run(TidemarCommand::Serialnumber, u"Serialnumber"_s);
    QCOMPARE(m_session->serialNumber(), u"04030201-77410605-BBAA9988"_s);
    QCOMPARE(m_session->qmlGetSerialNumber(), u"04030201-77410605-BBAA9988"_s);
}

void TestJobs::settings()
{
    connectTo(R"("Computer":[")"_ba + kSettings + kExtension + R"("])");
    run(TidemarCommand::Computer, u"Computer"_s);
    const BleConfig &config = m_session->config();
    QCOMPARE(config.configWord, 254);
    QCOMPARE(config.cfgA, 1);
    QCOMPARE(config.cfgD, 4);
    QCOMPARE(config.cfgE, 0x0506);
    QCOMPARE(config.waterType, 2);
    QCOMPARE(config.surfacePressure, 1013);
    QCOMPARE(config.cfgG, 8);
    QCOMPARE(config.tailBytes[2], 0x13);
    QCOMPARE(config.cfgBytes[4], 0x25);
    QCOMPARE(config.gasTable1[0].oxygen, 21);
    QCOMPARE(config.gasTable1[1].oxygen, 32);
    QCOMPARE(config.gasTable1[1].helium, 40);
    QCOMPARE(config.gasTable1[7].oxygen, 100);
    QCOMPARE(config.cfgH, 9);
    QCOMPARE(config.cfgTriple[2].first, 3);
    const BleComputer &computer = m_session->computer();
    QCOMPARE(computer.rawBlock.data(), "Ada");
    QCOMPARE(computer.getBatteryStr(), u"NiMH"_s);
    QCOMPARE(computer.setting1, 0x31);
    QCOMPARE(computer.setting6, 0x3637);
    QCOMPARE(computer.value64a, 0x0102030405060708U);
    QCOMPARE(computer.flags32[31], 31);
    // The older command does not look at the rest, and a Varda's block is not the owner.
    QCOMPARE(computer.value64b, 0U);
    QCOMPARE(computer.computerWord7, 0);
    QCOMPARE(m_session->owner(), QString());
}

void TestJobs::extendedSettings()
{
    connectTo(R"("Computer_new":[")"_ba + kSettings + kExtension + R"("])");
    run(TidemarCommand::Computer_new, u"Computer_new"_s);
    const BleComputer &computer = m_session->computer();
    QCOMPARE(m_session->config().configWord, 254);
    QCOMPARE(computer.flags32[31], 31);
    QCOMPARE(computer.value64b, 0x1112131415161718U);
    QCOMPARE(computer.entryCount, 0);
    QCOMPARE(computer.value64c, 0x2122232425262728U);
    QCOMPARE(computer.computerByte1, 0x41);
    QCOMPARE(computer.quadWords[3], 0x54);
    QCOMPARE(computer.computerWord4, 0x64);
    QCOMPARE(computer.computerByte4, 0x73);
    QCOMPARE(computer.value64e, 0x4142434445464748U);
    QCOMPARE(computer.computerByte5, 0x74);
    QCOMPARE(computer.computerWord6, 0x8101);
    QCOMPARE(computer.computerWord5, 0x8202);
    QCOMPARE(computer.computerWord7, 0x8303);
}

void TestJobs::time()
{
    connectTo(R"("Time":["8815476600000000"],"Set_time":["ffffffffffffffff"])");
    run(TidemarCommand::Time, u"Time"_s);
    QCOMPARE(m_session->computerTime(), 1715934600);
    m_session->startSetTime();
    QVERIFY(m_log.await(u"endCommand Set_time"_s));
    QCOMPARE(m_log.entries(), QStringList(u"endCommand Set_time"_s));
    QCOMPARE(m_session->computerTime(), -1);
    const QString frame = Simulator::frames().last();
    QCOMPARE(frame.first(8), u"dcdc0900"_s);
    QCOMPARE(frame.mid(16, 2), u"08"_s);
    QCOMPARE(frame.size(), 2 * (8 + 1 + 8));
}

void TestJobs::sensors()
{
    connectTo(R"("Sensors":["ff112233445566"])");
    run(TidemarCommand::Sensors, u"Sensors"_s);
    QCOMPARE(m_session->pamb(), 0x44332211U);
    QCOMPARE(m_session->dstop(), 0x6655);
}

void TestJobs::pressure()
{
    connectTo(R"("Set_sensors":["00f50300000700"])");
    QVERIFY(m_session->startSetPressure(1013));
    QVERIFY(!m_session->startSetPressure(1014));
    QVERIFY(m_log.await(u"endCommand Set_sensors"_s));
    QCOMPARE(m_session->pamb(), 1013U);
    QCOMPARE(m_session->dstop(), 7);
    QVERIFY(m_session->startSetPressure(0x01020304));
    QVERIFY(m_log.await(u"endCommand Set_sensors"_s, 2));
    QCOMPARE(m_log.entries(), QStringList(2, u"endCommand Set_sensors"_s));
    const QStringList frames = Simulator::frames();
    QCOMPARE(frames.size(), 2);
    QCOMPARE(frames[0].mid(16), u"0af5030000"_s);
    QCOMPARE(frames[1].mid(16), u"0a04030201"_s);
}

void TestJobs::pressureIsForgottenWithTheLink()
{
    connectTo(R"("Set_sensors":{"notifications":[]})");
    QVERIFY(m_session->startSetPressure(1013));
    Simulator::drop();
    QVERIFY(m_log.await(u"disconnectController"_s));
    QVERIFY(!m_session->startSetPressure(1013));
    m_session->controllerConnect();
    QVERIFY(m_log.await(u"Connected"_s));
    QVERIFY(m_session->startSetPressure(1013));
}

void TestJobs::diver()
{
    connectTo(R"("Diver":[")"_ba + "0000003f" + QByteArray("0000803f").repeated(14) + "00004841"
              + "000080be" + QByteArray("00000000").repeated(14) + "0000803f" + "0000003f"
              + R"("])");
    run(TidemarCommand::Diver, u"Diver"_s);
    QCOMPARE(m_session->diverN2()[0], 0.5F);
    QCOMPARE(m_session->diverN2()[1], 1.0F);
    QCOMPARE(m_session->diverN2()[14], 1.0F);
    QCOMPARE(m_session->diverN2()[15], 12.5F);
    QCOMPARE(m_session->diverHe()[0], -0.25F);
    QCOMPARE(m_session->diverHe()[1], 0.0F);
    QCOMPARE(m_session->diverHe()[15], 1.0F);
    QCOMPARE(m_session->diverCns(), 0.5F);
}

void TestJobs::owner()
{
    connectTo(R"("Owner":["5a6fc3ab006a756e6b"])");
    run(TidemarCommand::Owner, u"Owner"_s);
    QCOMPARE(m_session->owner(), u"Zoë"_s);
    QCOMPARE(m_session->qmlGetOwner(), u"Zoë"_s);
}

void TestJobs::longOwnerIsCut()
{
    connectTo(R"("Owner":[")"_ba + QByteArray("61").repeated(600) + R"("])");
    run(TidemarCommand::Owner, u"Owner"_s);
    QCOMPARE(m_session->owner(), QString(511, u'a'));
}

void TestJobs::ownerIsSetWhenConfirmed()
{
    LOAD(Simulator::loadKnown(
        R"("faults":[{"step":"answer","command":"Set_owner","nth":2,"kind":"refuse"}])"));
    m_session = std::make_unique<VardaSession>();
    m_log.watch(m_session.get());
    m_session->connectTo(knownDevice());
    QVERIFY(m_log.await(u"Connected"_s));
    m_log.take();

    m_session->setOwner(u"Zoë"_s);
    QCOMPARE(m_session->owner(), QString());
    QVERIFY(m_log.await(u"endCommand Set_owner"_s));
    QCOMPARE(m_session->owner(), u"Zoë"_s);
    QCOMPARE(Simulator::state()["owner"_L1].toString(), u"Zoë"_s);
    m_session->setOwner(u"Nobody"_s);
    QVERIFY(m_log.await(u"exchangeError Set_owner SetOwnerError"_s));
    QCOMPARE(m_session->owner(), u"Zoë"_s);
    QCOMPARE(m_log.entries(),
             QStringList({u"endCommand Set_owner"_s, u"exchangeError Set_owner SetOwnerError"_s}));
    QCOMPARE(Simulator::frames().first().mid(16), u"175a6fc3ab"_s);
}

void TestJobs::deletions()
{
    connectTo(R"("DeleteLastDive":["0100000002000000"],"EraseDives":["03000000ffffffff"])");
    run(TidemarCommand::DeleteLastDive, u"DeleteLastDive"_s);
    QCOMPARE(m_session->deleteResult().resultA, 1U);
    QCOMPARE(m_session->deleteResult().resultB, 2U);
    run(TidemarCommand::EraseDives, u"DeleteLastDive"_s);
    QCOMPARE(m_session->deleteResult().resultA, 3U);
    QCOMPARE(m_session->deleteResult().resultB, 0xFFFFFFFFU);
    QVERIFY(!m_session->lastEraseFlashSuccess());
}

void TestJobs::simulationParameters()
{
    connectTo(R"("SimulParams":["f5030000112233445566"])");
    run(TidemarCommand::SimulParams, u"SimulParams"_s);
    QCOMPARE(m_session->psurf(), 1013U);
    QCOMPARE(m_session->pamb(), 0x44332211U);
    QCOMPARE(m_session->density(), 0x6655);
}

void TestJobs::bootloaderVersion()
{
    connectTo(R"("BootloaderVersion":["6409000c"])");
    run(TidemarCommand::BootloaderVersion, u"BootloaderVersion"_s);
    QCOMPARE(m_session->bootloaderVersion(), 0x0C000964U);
    QCOMPARE(m_session->bootloaderVersionStr(), u"12.0.9.d"_s);

    connectTo(R"("BootloaderVersion":["00000000"])");
    run(TidemarCommand::BootloaderVersion, u"BootloaderVersion"_s);
    QCOMPARE(m_session->bootloaderVersionStr(), u"Unknown"_s);
}

// Each of its frames comes in a notification of its own. An answer that is short closes it.
void TestJobs::gases()
{
    connectTo(R"("GetGases":["000077777777777777771904563e3333b33e",
        "010b77777777777777770000803f00000000","000c77777777777777770000803f00000000","00"])");
    m_session->startGetGases(1);
    QVERIFY(m_log.await(u"endCommand GetGases"_s));
    QCOMPARE(m_log.entries(), QStringList(u"endCommand GetGases"_s));
    QCOMPARE(Simulator::frames(), QStringList(u"dcdc020065f400002201"_s));
    const BleConfig &config = m_session->config();
    QCOMPARE(config.gasTable1[0].oxygen, 20);
    QCOMPARE(config.gasTable1[0].helium, 35);
    QCOMPARE(config.gasTable2[11].oxygen, 100);
    QCOMPARE(config.gasTable2[11].helium, 0);
    QCOMPARE(config.gasTable1[11].oxygen, 0);
    QCOMPARE(config.gasTable2[0].oxygen, 0);
}

void TestJobs::batteryInformation()
{
    connectTo(
        R"("BatteryInformation":["4523f1ffcdab8fff","ffffffff00000000563421300000000000",""])");
    m_session->startGetBatteryInformation();
    QVERIFY(m_log.await(u"endCommand BatteryInformation"_s));
    QCOMPARE(m_log.take(), QStringList(u"endCommand BatteryInformation"_s));
    QCOMPARE(m_session->batteryInfo().size(), 2);
    const BatteryInfoRecord first = m_session->batteryInfo()[0];
    QCOMPARE(first.kind, 0);
    QCOMPARE(first.value12, 0x345);
    QCOMPARE(first.code4, 2);
    QCOMPARE(first.flag16, 1);
    QCOMPARE(first.flag17, 0);
    QCOMPARE(first.flag18, 0);
    QCOMPARE(first.offsetValue, 52);
    QCOMPARE(first.scaledValue, 12'600);
    QCOMPARE(first.hasExtra, 1);
    QCOMPARE(first.extra15, 0x2BCD);
    QCOMPARE(first.extra12, 0xF1F);
    QCOMPARE(first.extraCode2, 3);
    QCOMPARE(first.extraFlag29, 1);
    QCOMPARE(first.extraFlag30, 1);
    const BatteryInfoRecord second = m_session->batteryInfo()[1];
    QCOMPARE(second.kind, 1);
    QCOMPARE(second.value20, 0x13456U);
    QCOMPARE(second.code2, 2);
    QCOMPARE(second.flag28, 1);
    QCOMPARE(second.flag29, 1);
    QCOMPARE(second.hasExtra, 0);

    // The job begins a new list; the bare command goes on with the old one.
    m_session->startGetBatteryInformation();
    QVERIFY(m_session->batteryInfo().isEmpty());
    QVERIFY(m_log.await(u"endCommand BatteryInformation"_s));
    m_log.take();
    run(TidemarCommand::BatteryInformation, u"BatteryInformation"_s);
    QCOMPARE(m_session->batteryInfo().size(), 4);
}

void TestJobs::longBatteryInformationIsCut()
{
    connectTo(R"("BatteryInformation":[")"_ba + QByteArray("01000000").repeated(150) + R"(",""])");
    run(TidemarCommand::BatteryInformation, u"BatteryInformation"_s);
    QCOMPARE(m_session->batteryInfo().size(), 63);
}

void TestJobs::reset()
{
    connectTo(R"("Reset":["01"])");
    m_session->startCommand(TidemarCommand::Reset);
    QVERIFY(m_log.await(u"disconnectController"_s));
    QTRY_COMPARE(Simulator::count(u"disconnected"_s), 1);
    Simulator::settle();
    QCOMPARE(m_log.entries(),
             QStringList({u"message Disconnect from device"_s, u"disconnectController"_s}));
    m_session->controllerConnect();
    QCOMPARE(m_log.entries().last(), u"NoController"_s);
}

// Codes that nobody is told of, among them all that have no name, and 0 and 255.
void TestJobs::silentAnswers()
{
    const QList<int> codes{0,   4,   6,   11,  12,  16,  18,  21,  27, 43,
                           100, 200, 236, 237, 239, 251, 252, 253, 255};
    QByteArray responses = R"("Identification":["610302010b"])";
    for (const int code : codes)
        responses += R"(,")" + QByteArray::number(code) + R"(":["01"])";
    connectTo(responses);
    for (const int code : codes) {
        m_session->startCommand(TidemarCommand::TidemarCommandIn(code));
        QTRY_COMPARE(Simulator::count(u"notification"_s), codes.indexOf(code) + 1);
    }
    run(TidemarCommand::Identification, u"Identification"_s);
    QVERIFY(!m_session->lastEraseFlashSuccess());
}

// Nobody looks at what was asked.
void TestJobs::answerToAnotherCommand()
{
    LOAD(Simulator::loadKnown(
        R"("faults":[{"step":"answer","command":"Time","kind":"wrongCommand","bytes":"03"}])"));
    m_session = std::make_unique<VardaSession>();
    m_log.watch(m_session.get());
    m_session->connectTo(knownDevice());
    QVERIFY(m_log.await(u"Connected"_s));
    m_log.take();
    run(TidemarCommand::Time, u"Serialnumber"_s);
}

void TestJobs::nextJobFromInside()
{
    connectTo(R"("Time":["8815476600000000"],"Sensors":["ff112233445566"],"Owner":["416461"],
        "Identification":["610302010b"])");
    m_log.react = [this](const QString &entry) {
        if (entry == u"endCommand Time"_s)
            m_session->startCommand(TidemarCommand::Owner);
        else if (entry == u"endCommand Owner"_s)
            m_session->startCommand(TidemarCommand::Sensors);
        else if (entry == u"endCommand Sensors"_s)
            m_session->startCommand(TidemarCommand::Identification);
    };
    m_session->startCommand(TidemarCommand::Time);
    QVERIFY(m_log.await(u"endCommand Identification"_s));
    m_log.react = nullptr;
    QCOMPARE(m_log.entries(),
             QStringList({u"endCommand Time"_s, u"endCommand Owner"_s, u"endCommand Sensors"_s,
                          u"endCommand Identification"_s}));
    QCOMPARE(m_session->owner(), u"Ada"_s);
}

QTEST_GUILESS_MAIN(TestJobs)
#include "tst_jobs.moc"
