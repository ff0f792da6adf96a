// SPDX-License-Identifier: MIT
#include "device/commands.h"
#include "device/computer.h"
#include "device/scenario/scenario.h"
#include "device/wire/frame.h"
#include "device/wire/seriallink.h"
#include "devices.h"

#include <QtCore/qdir.h>
#include <QtTest/qtest.h>

#include <utility>

using namespace Qt::StringLiterals;
using namespace simulator;

class TestDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checksum_data();
    void checksum();
    void frames();
    void resynchronises();
    void answers_data();
    void answers();
    void configurationOfEveryVersion_data();
    void configurationOfEveryVersion();
    void keepsWhatIsWritten();
    void gases();
    void linkMtu();
    void overrides();
    void scenarioFiles();
};

void TestDevice::checksum_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<quint16>("crc");
    QTest::newRow("digits") << QByteArray("123456789") << quint16(0xE5CC);
    QTest::newRow("nothing") << QByteArray() << quint16(0x1D0F);
    QTest::newRow("one") << QByteArray(1, 1) << quint16(0xDCBD);
}

void TestDevice::checksum()
{
    QFETCH(QByteArray, bytes);
    QFETCH(quint16, crc);
    QCOMPARE(crc16(bytes), crc);
}

void TestDevice::frames()
{
    QCOMPARE(encodeFrame({1, {}}), QByteArray::fromHex("dcdc0100bddc000001"));
    FrameAssembler assembler;
    assembler.feed(QByteArray::fromHex("dcdc0100bd"));
    QVERIFY(!assembler.next());
    assembler.feed(QByteArray::fromHex("dc000001"));
    const Frame frame = assembler.next().value_or(Frame{0, "nothing"});
    QCOMPARE(frame.command, quint8(1));
    QVERIFY(frame.payload.isEmpty());
    QVERIFY(!assembler.next());
}

void TestDevice::resynchronises()
{
    FrameAssembler assembler;
    // Noise, a frame with a wrong checksum, a good one, and the beginning of one never finished.
    assembler.feed(QByteArray::fromHex("00dc11"
                                       "dcdc0100bddd000001"
                                       "dcdc0100bddc000001"
                                       "dcdc05"));
    QVERIFY(assembler.next());
    QVERIFY(!assembler.next());
    assembler.feed(QByteArray::fromHex("dcdc0100bddc000001"));
    QVERIFY(assembler.next());
}

void TestDevice::answers_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<int>("command");
    QTest::addColumn<QStringList>("payloads");
    const auto row = [](const char *name, const QByteArray &json, int command,
                        const QStringList &payloads) {
        QTest::newRow(name) << json << command << payloads;
    };

    row("identification varda", R"({"firmware":"1.2.3.a"})", Identification, {u"610302010b"_s});
    row("identification tidemar",
        R"({"model":"tidemar","firmware":"1.2.3.a","bootloader":"4.5.6.b"})", Identification,
        {u"610302011562060504"_s});
    row("identification vskm bootloader",
        R"({"model":"vskm","firmware":"1.2.3.a","bootloader":null,"recordVersion":2})",
        Identification, {u"610302012000000000"_s});
    row("identification without model",
        R"({"model":"none","firmware":"1.2.3.a","recordVersion":5})", Identification,
        {u"6103020105"_s});
    row("serial", R"({"serial":"0011AABB-22334455-66778899"})", Serialnumber,
        {u"bbaa11005544332299887766"_s});
    row("old serial", R"({"model":"none","recordVersion":0,"serial":"0605-0403-0201-A"})",
        Serialnumber, {u"01020304050641"_s});
    row("bootloader", R"({"bootloader":"1.2.3.a"})", BootloaderVersion, {u"61030201"_s});
    row("time", R"({"clock":"2024-05-17T08:30:00"})", Time, {u"8815476600000000"_s});
    row("sensors", R"({"pamb":1009,"dstop":513})", Sensors, {u"e5f10300000102"_s});
    row("owner", R"({"owner":"Zoé"})", Owner, {u"5a6fc3a900"_s});
    row("simulation", R"({"psurf":1012,"pamb":1011,"density":1025})", SimulParams,
        {u"f4030000f30300000104"_s});
    row("diver", R"({"diver":{"n2":[1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16],"he":[0.5],"cns":-1}})",
        Diver,
        {u"0000803f0000004000004040000080400000a0400000c0400000e04000000041"
         "0000104100002041000030410000404100005041000060410000704100008041"
         "0000003f00000000000000000000000000000000000000000000000000000000"
         "0000000000000000000000000000000000000000000000000000000000000000"
         "000080bf"_s});
    row("delete", R"({"dives":5})", DeleteLastDive, {u"0100000004000000"_s});
    row("delete none", R"({"dives":0})", DeleteLastDive, {u"0000000000000000"_s});
    row("erase", R"({"dives":5})", EraseDives, {u"0500000000000000"_s});
    row("battery", R"({"battery":[[1,2],[3,4],[5,6],[7,8],[4294967295,9]]})", BatteryInformation,
        {u"0100000002000000030000000400000005000000060000000700000008000000"_s,
         u"ffffffff09000000"_s, QString()});
    row("reset", "{}", Reset, {u"01"_s});
    row("unknown", "{}", 200, {});

    row("configuration short", R"({"configurationVersion":"short"})", ComputerSettings,
        {u"c80001021e50780500f50305061516170b0c0d0e0fe51500200032006400122d0f320000000007e803e903ea"
         "03416461204c696e6471766973740000000000000000000000000000000000000002292a2b2c2df8112f3000"
         "f15365000000006465666768696a6b6c6d6e6f707172737475767778797a7b7c7d7e7f80818283"_s});
    row("configuration varda 13", "{}", ComputerSettingsNew,
        {u"0d0101c80001021e50780500f50305061516170b0c0d0e0fe51500200032006400122d0f3200000000000000"
         "000000000007e803e903ea03416461204c696e64717669737400000000000000000000000000000000000000"
         "02292a2b2c2df8112f3000f15365000000006465666768696a6b6c6d6e6f707172737475767778797a7b7c7d"
         "7e7f8081828301f153650000000002e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e502f15365000000"
         "003dbc1bbd1bbe1bbf1b411f421f431f441f3e3f4003f153650000000004f153650000000041461f451f471f"
         "29232a232b232c232d232e23"_s});
    row("configuration tidemar 12", R"({"model":"tidemar"})", ComputerSettingsNew,
        {u"0c0102c80001021e50780500f503050618191a0b0c0d0e0f101500e5e52000e5e53200e5e56400e5e5122de5"
         "e50f32e5e50000e5e50000e5e507e803d0071fe903d10720ea03d207211500e5e5122de5e50a41e5e50000e5"
         "e50000e5e50000e5e50000e5e50000e5e5e5e5e5e5e5e5e5e5416461204c696e647176697374000000000000"
         "00000000000000000000000000022a2b2c2df8112f3000f15365000000006465666768696a6b6c6d6e6f7071"
         "72737475767778797a7b7c7d7e7f80818283471f413dbc1bbd1bbe1bbf1be5e5e5e5e5e5e5e5e529"_s});
    row("configuration tidemar 1", R"({"model":"tidemar","configurationVersion":1})",
        ComputerSettings,
        {u"010102c80001021e50780500f503050618191a0b0c0d0e0f101500200032006400122d0f320000000007e803"
         "d0071fe903d10720ea03d20721416461204c696e647176697374000000000000000000000000000000000000"
         "00022a2b2c2df8112f3000f15365000000006465666768696a6b6c6d6e6f707172737475767778797a7b7c7d"
         "7e7f80818283"_s});
    row("configuration vskm 21", R"({"model":"vskm"})", ComputerSettingsNew,
        {u"150103c80001021e50780500f503050618191a0b0c0d0e0f101500e5e52000e5e53200e5e56400e5e5122de5"
         "e50f32e5e50000e5e50000e5e507e803d0071fe903d10720ea03d207211500e5e5122de5e50a41e5e50000e5"
         "e50000e5e50000e5e50000e5e50000e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5"
         "e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5e5"
         "e5e5e5e5e5e5e5e5e5e5e5416461204c696e6471766973740000000000000000000000000000000000000002"
         "2a2b2c2df8112f3000f15365000000006465666768696a6b6c6d6e6f707172737475767778797a7b7c7d7e7f"
         "80818283471f413dbc1bbd1bbe1bbf1be5e529"_s});
    row("configuration third party", R"({"model":"thirdparty","psurf":1005})", ComputerSettings,
        {u"010104c80001021e50780500ed030506"_s});
}

void TestDevice::answers()
{
    QFETCH(QByteArray, json);
    QFETCH(int, command);
    QFETCH(QStringList, payloads);
    QCOMPARE(ask(json, quint8(command)), payloads);
}

void TestDevice::configurationOfEveryVersion_data()
{
    QTest::addColumn<QByteArray>("model");
    QTest::addColumn<int>("version");
    QTest::addColumn<qsizetype>("size");
    const auto row = [](const char *model, int version, qsizetype size) {
        QTest::addRow("%s %d", model, version) << QByteArray(model) << version << size;
    };
    row("varda", 1, 212);
    row("varda", 12, 212);
    row("varda", 13, 232);
    row("tidemar", 1, 151);
    row("tidemar", 2, 167);
    row("tidemar", 4, 167);
    row("tidemar", 5, 170);
    row("tidemar", 7, 170);
    row("tidemar", 8, 204);
    row("tidemar", 9, 204);
    row("tidemar", 10, 205);
    row("tidemar", 11, 209);
    row("tidemar", 12, 216);
    row("tidemar", 20, 216);
    row("vskm", 4, 167);
    row("vskm", 5, 170);
    row("vskm", 9, 204);
    row("vskm", 10, 205);
    row("vskm", 11, 209);
    row("vskm", 12, 210);
    row("vskm", 13, 214);
    row("vskm", 14, 216);
    row("vskm", 15, 242);
    row("vskm", 16, 242);
    row("vskm", 17, 245);
    row("vskm", 19, 245);
    row("vskm", 20, 269);
    row("vskm", 21, 283);
    row("vskm", 30, 283);
}

void TestDevice::configurationOfEveryVersion()
{
    QFETCH(QByteArray, model);
    QFETCH(int, version);
    QFETCH(qsizetype, size);
    const QStringList answer = ask(R"({"model":")" + model + R"(","configurationVersion":)"
                                       + QByteArray::number(version) + "}",
                                   ComputerSettingsNew);
    QCOMPARE(answer.size(), 1);
    QCOMPARE(answer.first().size() / 2, size);
    // The last of all is setting1, or the word before the six of the newest layout.
    if (model != "varda")
        QVERIFY(answer.first().endsWith(u"29"_s));
}

void TestDevice::keepsWhatIsWritten()
{
    Computer computer(device(R"({"clock":5})"));
    const auto payload = [&](quint8 command, const QByteArray &request = {}) {
        return computer.answer({command, request}).value(0).payload.toHex();
    };
    QCOMPARE(payload(SetOwner, "Nia"), QByteArray("01"));
    QCOMPARE(payload(Owner), QByteArray("4e696100"));
    QCOMPARE(payload(SetOwner, QByteArray(33, 'x')), QByteArray("00"));
    QCOMPARE(payload(Owner), QByteArray("4e696100"));
    QCOMPARE(payload(SetTime, QByteArray::fromHex("0201000000000000")),
             QByteArray("0201000000000000"));
    QCOMPARE(payload(Time), QByteArray("0201000000000000"));
    QCOMPARE(payload(SetSensors, QByteArray::fromHex("e8030000")), QByteArray("e5e80300000000"));
    QCOMPARE(payload(SimulParams), QByteArray("e8030000e80300000604"));
    QVERIFY(payload(ComputerSettings).startsWith("0d0101c80001021e50780500e8030506"));
    QCOMPARE(payload(BatteryInformationClear), QByteArray("01"));
    QCOMPARE(payload(BatteryInformation), QByteArray());
    QCOMPARE(computer.state().value(u"owner").toString(), u"Nia"_s);
    QCOMPARE(computer.state().value(u"clock").toInteger(), 258);
}

void TestDevice::gases()
{
    const QByteArray json = R"({"model":"tidemar","gases":[[21,0],[18,45]],"gases2":[[50,25]]})";
    const QStringList first = ask(json, GetGases, QByteArray(1, 0));
    QCOMPARE(first.size(), 9);
    QCOMPARE(first[0], u"0000e5e5e5e5e5e5e5e53d0a573e00000000"_s);
    QCOMPARE(first[1], u"0001e5e5e5e5e5e5e5e5ec51383e6666e63e"_s);
    QCOMPARE(first[8], QString());
    QCOMPARE(ask(json, GetGases, QByteArray(1, 7)).first(),
             u"0700e5e5e5e5e5e5e5e50000003f0000803e"_s);
    QCOMPARE(ask("{}", GetGases, QByteArray(1, 0)).size(), 13);
}

void TestDevice::linkMtu()
{
    const DeviceScenario ada = device(R"({"owner": "Ada Lindqvist", "mtu": 25})");
    FaultPlan faults;
    SerialLink link(ada, faults);
    QList<qsizetype> sizes;
    connect(&link, &SerialLink::notification, &link,
            [&](const QByteArray &bytes) { sizes.append(bytes.size()); });
    const auto askForOwner = [&] {
        link.written(encodeFrame({22, {}}));
        return std::exchange(sizes, {});
    };

    // 9 bytes, the 13 of the name, and a zero
    QCOMPARE(askForOwner(), QList<qsizetype>({22, 1}));
    link.setLinkMtu(23);
    QCOMPARE(askForOwner(), QList<qsizetype>({20, 3}));
    // No more than the scenario allows.
    link.setLinkMtu(517);
    QCOMPARE(askForOwner(), QList<qsizetype>({22, 1}));
}

void TestDevice::overrides()
{
    QString error;
    const Scenario scenario = Scenario::parse(
                                  R"({"devices":[{"model":"tidemar"},{"type":"classic"}]})", &error,
                                  {u"vskm"_s, u"sps"_s})
                                  .value_or(Scenario{});
    QCOMPARE(scenario.devices.size(), 2);
    QCOMPARE(scenario.devices[0].model, Model::Vskm);
    QCOMPARE(scenario.devices[0].mode, LinkMode::Sps);
    QCOMPARE(scenario.devices[0].name, u"VSK-0042"_s);
    QCOMPARE(scenario.devices[1].model, Model::Varda);
    QCOMPARE(scenario.devices[1].mode, LinkMode::Gatt);
}

void TestDevice::scenarioFiles()
{
    const QDir folder(QStringLiteral(SCENARIO_FOLDER));
    const QStringList names = folder.entryList({u"*.json"_s});
    QVERIFY(names.size() > 30);
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QString error;
        const bool good = Scenario::parse(file.readAll(), &error).has_value();
        QVERIFY2(good, qPrintable(name + u": "_s + error));
    }
}

QTEST_GUILESS_MAIN(TestDevice)

#include "tst_device.moc"
