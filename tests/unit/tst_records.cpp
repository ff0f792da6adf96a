// SPDX-License-Identifier: MIT
#include "headerfields.h"

#include <QtTest/qtest.h>

#include <varda/varda.h>

#include <algorithm>
#include <memory>
#include <type_traits>

class TestRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bleCommand();
    void bleConfig();
    void bleComputer();
    void batteryInfoRecord();
    void smallRecords();
    void tidemarDiveHeader();
    void diveSample();
    void diveLine();
    void diveGas();
    void dive();
    void vardaData();
    void vardaDataIsAValue();
    void aggregates();
    void values();
};

/** Whether fields lie in a record in the order given. */
template <typename... Fields> static bool inOrder(const Fields &...fields)
{
    const std::array<const void *, sizeof...(Fields)> addresses{
        static_cast<const void *>(std::addressof(fields))...};
    return std::is_sorted(addresses.begin(), addresses.end(), std::less<>());
}

void TestRecords::bleCommand()
{
    const BleCommand bare(TidemarCommand::Time);
    QCOMPARE(bare.command, TidemarCommand::Time);
    QVERIFY(bare.payload.isEmpty());
    BleCommand full(TidemarCommand::Set_owner, QByteArray("Jean"));
    QCOMPARE(full.command, TidemarCommand::Set_owner);
    QCOMPARE(full.payload, "Jean");
    QVERIFY(inOrder(full.command, full.payload));

    BleCommand copy(full);
    copy.payload += "ne";
    QCOMPARE(full.payload, "Jean");
    full = bare;
    QCOMPARE(full.command, TidemarCommand::Time);
    full = std::move(copy);
    QCOMPARE(full.payload, "Jeanne");
    const BleCommand moved(std::move(full));
    QCOMPARE(moved.command, TidemarCommand::Set_owner);
    QCOMPARE(moved.payload, "Jeanne");
}

void TestRecords::bleConfig()
{
    const BleConfig c;
    QVERIFY(c.configWord == 0 && c.cfgA == 0 && c.cfgB == 0 && c.cfgC == 0 && c.cfgD == 0);
    QVERIFY(c.cfgE == 0 && c.waterType == 0 && c.surfacePressure == 0 && c.cfgF == 0);
    QVERIFY(c.cfgG == 0 && c.cfgH == 0);
    QCOMPARE(hexOf(c.cfgBytes), QStringLiteral("000000000000"));
    QCOMPARE(hexOf(c.tailBytes), QStringLiteral("000000000000"));
    QCOMPARE(int(c.gasTable1.size()), 12);
    QCOMPARE(int(c.gasTable2.size()), 12);
    for (const auto &table : {c.gasTable1, c.gasTable2}) {
        for (const BleConfig::Gas &gas : table)
            QVERIFY(gas.oxygen == 0 && gas.helium == 0);
    }
    QCOMPARE(int(c.cfgTriple.size()), 3);
    for (const auto &[first, second, third] : c.cfgTriple)
        QVERIFY(first == 0 && second == 0 && third == 0);
    QVERIFY(inOrder(c.configWord, c.cfgA, c.cfgB, c.cfgC, c.cfgD, c.cfgE, c.waterType,
                    c.surfacePressure, c.cfgF, c.cfgG, c.cfgBytes, c.gasTable1, c.gasTable2, c.cfgH,
                    c.cfgTriple, c.tailBytes));
    const auto &[oxygen, helium] = c.gasTable1[0];
    QVERIFY(inOrder(oxygen, helium));
    static_assert(sizeof(c.configWord) == 2 && sizeof(c.cfgE) == 2 && sizeof(c.cfgH) == 2);
}

void TestRecords::bleComputer()
{
    const BleComputer c;
    QCOMPARE(QByteArray(c.rawBlock.data(), 32), QByteArray(32, '\0'));
    QVERIFY(c.batteryType == 0 && c.setting1 == 0 && c.setting2 == 0 && c.setting3 == 0);
    QVERIFY(c.setting4 == 0 && c.setting5 == 0 && c.setting6 == 0 && c.setting7 == 0);
    QVERIFY(c.setting8 == 0 && c.value64a == 0 && c.value64b == 0 && c.entryCount == 0);
    QVERIFY(c.entries.isEmpty() && c.value64c == 0 && c.computerByte1 == 0);
    QVERIFY(c.computerWord1 == 0 && c.computerWord2 == 0 && c.computerWord3 == 0);
    QVERIFY(c.computerWord4 == 0 && c.computerWord5 == 0 && c.computerWord6 == 0);
    QVERIFY(c.computerByte2 == 0 && c.computerByte3 == 0 && c.computerByte4 == 0);
    QVERIFY(c.value64d == 0 && c.value64e == 0 && c.computerByte5 == 0 && c.computerWord7 == 0);
    QVERIFY((c.flags32 == std::array<std::uint8_t, 32>{}));
    QVERIFY((c.quadWords == std::array<std::uint16_t, 4>{}));
    QVERIFY((c.sixWords == std::array<std::uint16_t, 6>{}));
    QVERIFY(inOrder(c.rawBlock, c.batteryType, c.setting1, c.setting2, c.setting3, c.setting4,
                    c.setting5, c.setting6, c.setting7, c.setting8, c.value64a, c.flags32,
                    c.value64b, c.entryCount, c.entries, c.value64c, c.computerByte1, c.quadWords,
                    c.computerWord1, c.computerWord2, c.computerWord3, c.computerWord4,
                    c.computerWord5, c.computerWord6, c.sixWords, c.computerByte2, c.computerByte3,
                    c.computerByte4, c.value64d, c.value64e, c.computerByte5, c.computerWord7));
}

void TestRecords::batteryInfoRecord()
{
    const BatteryInfoRecord r;
    QVERIFY(r.kind == 0 && r.value20 == 0 && r.code2 == 0 && r.flag28 == 0 && r.flag29 == 0);
    QVERIFY(r.value12 == 0 && r.code4 == 0 && r.flag16 == 0 && r.flag17 == 0 && r.flag18 == 0);
    QVERIFY(r.offsetValue == 0 && r.scaledValue == 0 && r.hasExtra == 0 && r.extra15 == 0);
    QVERIFY(r.extra12 == 0 && r.extraCode2 == 0 && r.extraFlag29 == 0 && r.extraFlag30 == 0);
    QVERIFY(inOrder(r.kind, r.value20, r.code2, r.flag28, r.flag29, r.value12, r.code4, r.flag16,
                    r.flag17, r.flag18, r.offsetValue, r.scaledValue, r.hasExtra, r.extra15,
                    r.extra12, r.extraCode2, r.extraFlag29, r.extraFlag30));
    static_assert(std::is_signed_v<decltype(r.kind)>);
    static_assert(std::is_signed_v<decltype(r.offsetValue)>);
}

void TestRecords::smallRecords()
{
    const DeleteDivesResult result;
    QVERIFY(result.resultA == 0 && result.resultB == 0);
    QVERIFY(inOrder(result.resultA, result.resultB));

    const SyslogBinRecord record{-1, 2, 3, 4};
    QVERIFY(record.time == -1 && record.type == 2 && record.arg1 == 3 && record.arg2 == 4);
    static_assert(sizeof(record.time) == 8 && std::is_signed_v<decltype(record.time)>);
    static_assert(std::is_signed_v<decltype(record.arg1)>);

    const LayoutEntry layout{1, 2, QStringLiteral("three")};
    const auto &[first, second, name] = layout;
    QVERIFY(first == 1 && second == 2 && name == QLatin1String("three"));

    const auto [u1, u2, f1, u3, f2, u4, u5, u6] = MarloSettings{1, 2, 3.5F, 4, 5.5F, 6, 7, 8};
    QVERIFY(u1 == 1 && u2 == 2 && f1 == 3.5F && u3 == 4 && f2 == 5.5F && u4 == 6 && u5 == 7
            && u6 == 8);

    const auto [quad, word, byte] = PreviousDive{};
    QVERIFY(quad == 0 && word == 0 && byte == 0);
    static_assert(sizeof(quad) == 8 && sizeof(word) == 2 && sizeof(byte) == 1);

    static_assert(sizeof(DiveMark) == 12);
}

static const char *const kHeaderDefaults = R"(
    diveNumber=0 model=Unknown stamp=0000000000000000 stamp2=0 tenths1=0 tenths2=0
    sampleInterval=5 value32a=00000000 kindByte=00 tidemarBit=1 headerWord1=0000 below1020=0
    headerByte1=50 headerByte2=50 headerWord2=0000 headerWord3=0000 headerWord4=0000
    value32b=00000000 count1=0 count2=0 value32c=00000000
    tissueN2=0000,0000,0000,0000,0000,0000,0000,0000,0000,0000,0000,0000,0000,0000,0000,0000
    tissueHe=0000,0000,0000,0000,0000,0000,0000,0000,0000,0000,0000,0000,0000,0000,0000,0000
    gasSlotMask=0000 headerByte3=00 gasO2=000000000000000000000000 gasHe=000000000000000000000000
    reservedBlock=000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000
    headerByte4=00 headerByte5=00 headerByte6=00 headerWord5=0000 headerWord6=0000
    headerWord7=0000 value32d=00000000 headerWord8=0000 signed1=0 signed2=0 headerWord9=0000
    headerWord10=0000 headerWord11=0000 headerWord12=0000 value32e=00000000 value32f=00000000
    text1= text2= text3= text4=)";

template <typename Record> static bool headerInOrder(const Record &h)
{
    return inOrder(h.diveNumber, h.model, h.stamp, h.stamp2, h.tenths1, h.tenths2, h.sampleInterval,
                   h.value32a, h.kindByte, h.tidemarBit, h.headerWord1, h.below1020, h.headerByte1,
                   h.headerByte2, h.headerWord2, h.headerWord3, h.headerWord4, h.value32b, h.count1,
                   h.count2, h.value32c, h.tissueN2, h.tissueHe, h.gasSlotMask, h.headerByte3,
                   h.gasO2, h.gasHe, h.reservedBlock, h.headerByte4, h.headerByte5, h.headerByte6,
                   h.headerWord5, h.headerWord6, h.headerWord7, h.value32d, h.headerWord8,
                   h.signed1, h.signed2, h.headerWord9, h.headerWord10, h.headerWord11,
                   h.headerWord12, h.value32e, h.value32f, h.text1, h.text2, h.text3, h.text4);
}

void TestRecords::tidemarDiveHeader()
{
    const TidemarDiveHeader h;
    QCOMPARE(headerFieldsOf(h), fieldList(kHeaderDefaults));
    QCOMPARE(int(h.headerByte7), 0);
    QCOMPARE(int(h.headerWord13), 1);
    QCOMPARE(int(h.headerWord14), 900);
    QVERIFY(headerInOrder(h));
    QVERIFY(inOrder(h.text4, h.headerByte7, h.headerWord13, h.headerWord14));
}

void TestRecords::diveSample()
{
    const DiveSample s;
    QVERIFY(s.version == 0 && s.aux1 == 0 && s.aux2 == 0 && s.aux3 == 0 && s.aux4 == 0);
    QVERIFY(s.aux5 == 0 && s.aux6 == 0 && s.aux7 == 0 && s.aux8 == 0 && s.aux9 == 0);
    QVERIFY(s.aux10 == 0 && s.aux11 == 255 && !s.aux12);
    QVERIFY(s.depth == 0 && s.flag == 0 && s.code == 0 && s.value12 == 0);
    QVERIFY(s.mode == 0 && s.modeFlag == 0);
    QVERIFY(inOrder(s.version, s.aux1, s.aux2, s.aux3, s.aux4, s.aux5, s.aux6, s.aux7, s.aux8,
                    s.aux9, s.aux10, s.aux11, s.aux12));

    DiveSample full;
    full.depth = 4095;
    full.flag = 1;
    full.code = 15;
    full.value12 = -2048;
    full.mode = 3;
    full.modeFlag = 1;
    const DiveSample copy = full;
    QVERIFY(copy.depth == 4095 && copy.flag == 1 && copy.code == 15 && copy.value12 == -2048);
    QVERIFY(copy.mode == 3 && copy.modeFlag == 1);
    full.value12 = 2047;
    QVERIFY(full.value12 == 2047);
    full.depth = 0;
    QVERIFY(full.flag == 1 && full.code == 15 && full.value12 == 2047);
}

void TestRecords::diveLine()
{
    const DiveLine n;
    QVERIFY(n.time == 0 && n.depth == 0 && n.value3 == 0 && n.value4 == 0 && n.aux1Value == 0);
    QVERIFY(n.valueTenths == 0 && n.valueNegated == 0 && n.value8 == 0 && n.value9 == 0);
    QVERIFY(n.value10 == 0 && n.value11 == 0 && n.gasIndex == -1 && n.mode == 0 && n.flag == 0);
    QVERIFY(n.aux3 == 0 && n.aux4 == 0 && n.aux5 == 0 && n.aux6 == 0 && n.aux7 == 0);
    QVERIFY(n.aux2 == 0 && n.aux8 == 0 && n.aux11 == 0 && n.aux9 == 0 && n.aux10 == 0);
    QVERIFY(n.value24 == 0 && n.flag25 == 0);
    QVERIFY(inOrder(n.time, n.depth, n.value3, n.value4, n.aux1Value, n.valueTenths, n.valueNegated,
                    n.value8, n.value9, n.value10, n.value11, n.gasIndex, n.mode, n.flag, n.aux3,
                    n.aux4, n.aux5, n.aux6, n.aux7, n.aux2, n.aux8, n.aux11, n.aux9, n.aux10,
                    n.value24, n.flag25));
    static_assert(sizeof(n.value8) == 8 && sizeof(n.value24) == 4 && sizeof(n.flag25) == 1);
}

void TestRecords::diveGas()
{
    const DiveGas g;
    QVERIFY(inOrder(g.oxygen, g.helium, g.nitrogen, g.limit, g.reserved, g.usage, g.enabled,
                    g.label, g.label2, g.color, g.closedCircuit));
    static_assert(sizeof(g.reserved) == 8 && sizeof(g.usage) == 1 && sizeof(g.color) == 4);
}

void TestRecords::dive()
{
    const Dive d;
    QCOMPARE(headerFieldsOf(d), fieldList(kHeaderDefaults));
    QVERIFY(d.numberText.isEmpty() && d.ownerName.isEmpty() && d.text.isEmpty());
    QVERIFY(d.serialNumber.isEmpty() && d.firmwareVersion.isEmpty());
    QCOMPARE(d.kind, 4);
    QVERIFY(d.lines.isEmpty() && d.lines2.isEmpty() && d.lines3.isEmpty() && d.lines4.isEmpty());
    QVERIFY(d.gases.isEmpty());
    QCOMPARE(hexOf(d.tagBytes), QStringLiteral("0000000000000000"));
    QVERIFY(d.value16 == 0 && d.value64 == 0 && d.value32 == 0);
    QCOMPARE(d.index, -1);
    QVERIFY(d.marks.isEmpty() && !d.flag && d.marks2.isEmpty());
    QCOMPARE(int(d.modeByte), 0xFF);
    QCOMPARE(int(d.count), 1);
    QVERIFY(headerInOrder(d));
    QVERIFY(inOrder(d.text4, d.numberText, d.ownerName, d.text, d.serialNumber, d.firmwareVersion,
                    d.kind, d.lines, d.lines2, d.lines3, d.lines4, d.gases, d.tagBytes, d.value16,
                    d.value64, d.value32, d.index, d.marks, d.flag, d.marks2, d.modeByte, d.count));
    static_assert(sizeof(d.value16) == 2 && sizeof(d.value64) == 8 && sizeof(d.value32) == 4);
    static_assert(sizeof(d.count) == 2 && sizeof(d.modeByte) == 1);
}

void TestRecords::vardaData()
{
    const VardaData d;
    QCOMPARE(d.currentMode, CurrentMode::Unknown);
    QCOMPARE(d.computerModel, ComputerModel::Unknown);
    QVERIFY(d.recordVersion == 0 && d.bootloaderVersion == 0 && d.firmwareVersion == 0);
    QVERIFY(d.bootloaderVersionStr.isEmpty() && d.firmwareVersionStr.isEmpty());
    QVERIFY(d.serialNumber.isEmpty() && d.syslog.isEmpty() && d.syslogBin.isEmpty());
    QVERIFY(d.batteryInfo.isEmpty() && d.owner.isEmpty());
    QVERIFY(d.psurf == 0 && d.pamb == 0 && d.dstop == 0 && d.density == 0);
    QVERIFY(d.computerTime == 0 && d.diveHeaders.isEmpty() && d.samplesBuffer.isEmpty());
    QVERIFY(d.diveSamples.isEmpty() && d.eraseFlashResult == 0 && d.spareWord == 0);
    QVERIFY((d.diverN2 == std::array<float, 16>{} && d.diverHe == std::array<float, 16>{}));
    QVERIFY(d.diverCns == 0.0F && d.readPosition == 0 && !d.readPayload);
    QVERIFY(!d.lastEraseFlashSuccess());
    QVERIFY(inOrder(d.currentMode, d.computerModel, d.recordVersion, d.bootloaderVersion,
                    d.bootloaderVersionStr, d.firmwareVersion, d.firmwareVersionStr, d.serialNumber,
                    d.syslog, d.syslogBin, d.batteryInfo, d.config, d.computer, d.owner, d.psurf,
                    d.pamb, d.dstop, d.density, d.computerTime, d.diveHeaders, d.samplesBuffer,
                    d.diveSamples, d.eraseFlashResult, d.spareWord, d.diverN2, d.diverHe,
                    d.diverCns, d.readPosition, d.readPayload));
}

void TestRecords::vardaDataIsAValue()
{
    VardaData store;
    store.computerModel = ComputerModel::VSKM;
    store.serialNumber = QStringLiteral("0605-0403-0201-A");
    store.config.gasTable2[11] = {10, 80};
    store.computer.rawBlock[31] = 'x';
    store.diveHeaders << TidemarDiveHeader();
    store.diverHe[15] = 1.5F;
    store.spareWord = 7;

    VardaData copy(store);
    copy.diveHeaders[0].diveNumber = 5;
    copy.serialNumber += QLatin1Char('!');
    QCOMPARE(int(store.diveHeaders[0].diveNumber), 0);
    QCOMPARE(store.serialNumber, QStringLiteral("0605-0403-0201-A"));
    QCOMPARE(copy.computerModel, ComputerModel::VSKM);
    QCOMPARE(int(copy.config.gasTable2[11].helium), 80);
    QCOMPARE(copy.computer.rawBlock[31], 'x');
    QCOMPARE(copy.diverHe[15], 1.5F);

    const VardaData moved(std::move(copy));
    QCOMPARE(int(moved.diveHeaders[0].diveNumber), 5);
    QCOMPARE(int(moved.spareWord), 7);
    store = moved;
    QCOMPARE(store.serialNumber, QStringLiteral("0605-0403-0201-A!"));
    store = VardaData();
    QVERIFY(store.diveHeaders.isEmpty());
    QCOMPARE(store.computerModel, ComputerModel::Unknown);
}

void TestRecords::aggregates()
{
    static_assert(std::is_aggregate_v<BleConfig>);
    static_assert(std::is_aggregate_v<BleComputer>);
    static_assert(std::is_aggregate_v<BatteryInfoRecord>);
    static_assert(std::is_aggregate_v<DeleteDivesResult>);
    static_assert(std::is_aggregate_v<TidemarDiveHeader>);
    static_assert(std::is_aggregate_v<PreviousDive>);
    static_assert(std::is_aggregate_v<SyslogBinRecord>);
    static_assert(std::is_aggregate_v<LayoutEntry>);
    static_assert(std::is_aggregate_v<MarloSettings>);
    static_assert(std::is_aggregate_v<Dive>);
    static_assert(std::is_aggregate_v<DiveLine>);
    static_assert(std::is_aggregate_v<DiveGas>);
}

template <typename Record>
constexpr bool kIsValue =
    std::conjunction_v<std::is_copy_constructible<Record>, std::is_copy_assignable<Record>,
                       std::is_move_constructible<Record>, std::is_move_assignable<Record>>;

void TestRecords::values()
{
    static_assert(kIsValue<BleCommand>);
    static_assert(kIsValue<BleConfig>);
    static_assert(kIsValue<BleComputer>);
    static_assert(kIsValue<BleDeviceInfo>);
    static_assert(kIsValue<BatteryInfoRecord>);
    static_assert(kIsValue<TidemarDiveHeader>);
    static_assert(kIsValue<DiveSample>);
    static_assert(kIsValue<LayoutEntry>);
    static_assert(kIsValue<Dive>);
    static_assert(kIsValue<DiveGas>);
    static_assert(kIsValue<DiveLine>);
    static_assert(kIsValue<VardaData>);
    static_assert(std::is_move_assignable_v<BufferReader>);
}

QTEST_APPLESS_MAIN(TestRecords)
#include "tst_records.moc"
