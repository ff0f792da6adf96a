// SPDX-License-Identifier: MIT
#include <QtCore/qmetaobject.h>
#include <QtTest/qtest.h>

#include <varda/bledevicestate.h>
#include <varda/blemode.h>
#include <varda/computermodel.h>
#include <varda/connectcontrollerstatus.h>
#include <varda/createcontrollerstatus.h>
#include <varda/currentmode.h>
#include <varda/exchangeerror.h>
#include <varda/gasusage.h>
#include <varda/tidemarcommand.h>

#include <type_traits>

class TestEnumerations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void names_data();
    void names();
    void underlyingTypes();
    void valuesWithoutName_data();
    void valuesWithoutName();
    void commandNames();
    void bleMode();
};

void TestEnumerations::names_data()
{
    QTest::addColumn<QMetaEnum>("enumeration");
    QTest::addColumn<QByteArray>("scope");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("members");

    const auto row = [](const QMetaEnum &enumeration, const char *scope, const char *name,
                        const char *members) {
        QTest::newRow(name) << enumeration << QByteArray(scope) << QByteArray(name)
                            << QByteArray(members);
    };
    row(QMetaEnum::fromType<TidemarCommand::TidemarCommandIn>(), "TidemarCommand",
        "TidemarCommandIn",
        "Sync=0 Identification=1 Syslog=2 Serialnumber=3 Set_serialnumber=4 Computer=5 "
        "Set_computer=6 Time=7 Set_time=8 Sensors=9 Set_sensors=10 Dive=11 Samples=12 "
        "Begin_program=13 Program=14 End_program=15 Factoryreset=16 Diver=17 Set_diver=18 "
        "Logbook=19 Fullsamples=20 Owner=22 Set_owner=23 Computer_new=24 DeleteLastDive=25 "
        "EraseDives=26 EraseDivesFlash=27 SimulParams=28 SyslogBin=29 BeginUpdate=30 "
        "ProgramUpdate=31 EndUpdate=32 BootloaderVersion=33 GetGases=34 MarloSet=35 "
        "LayoutList=36 LayoutGet=37 LayoutAdd=38 LayoutRemove=39 LayoutRemoveAll=40 "
        "LayoutActiveGet=41 LayoutActiveSet=42 BatteryInformationClear=237 "
        "BatteryInformation=238 SuperUserMode=252 CleanNvram=253 Reset=254 Close=255");
    row(QMetaEnum::fromType<ExchangeError::ExchangeErrorIn>(), "ExchangeError", "ExchangeErrorIn",
        "InvalidCrc=0 BeginProgramError=1 ProgramError=2 EndProgramError=3 SetOwnerError=4 "
        "UnknownCommand=5 GenericError=6");
    row(QMetaEnum::fromType<BleDeviceState::BleDeviceStateIn>(), "BleDeviceState",
        "BleDeviceStateIn",
        "Disconnected=0 Connecting=1 DiscoveringServices=2 Connected=3 Error=4");
    row(QMetaEnum::fromType<CurrentMode::CurrentModeIn>(), "CurrentMode", "CurrentModeIn",
        "Unknown=0 Normal=1 BootLoader=2");
    row(QMetaEnum::fromType<ComputerModel::ComputerModelIn>(), "ComputerModel", "ComputerModelIn",
        "Unknown=0 Varda=1 Tidemar=2 VSKM=3 ThirdParty=4");
    row(QMetaEnum::fromType<CreateControllerStatus::CreateControllerStatusIn>(),
        "CreateControllerStatus", "CreateControllerStatusIn",
        "NotFound=0 NotCreated=1 Created=2 Error=3");
    row(QMetaEnum::fromType<ConnectControllerStatus::ConnectControllerStatusIn>(),
        "ConnectControllerStatus", "ConnectControllerStatusIn",
        "NoController=0 NoService=1 Connected=2");
    row(QMetaEnum::fromType<GasUsage::GasUsageIn>(), "GasUsage", "GasUsageIn",
        "None=0 Oxygen=1 Diluent=2 Sidemount=3");
    row(QMetaEnum::fromType<BleMode>(), "BleModes", "BleMode", "Gatt=0 Sps=1");
}

void TestEnumerations::names()
{
    QFETCH(const QMetaEnum, enumeration);
    QTEST(QByteArray(enumeration.scope()), "scope");
    QTEST(QByteArray(enumeration.name()), "name");
    QByteArrayList members;
    for (int i = 0; i < enumeration.keyCount(); ++i)
        members << enumeration.key(i) + QByteArray("=") + QByteArray::number(enumeration.value(i));
    QTEST(members.join(' '), "members");
    QVERIFY(!enumeration.isFlag());
    QVERIFY(!enumeration.isScoped());
}

template <typename Enumeration, typename Number>
constexpr bool kIsA = std::is_same_v<std::underlying_type_t<Enumeration>, Number>;

void TestEnumerations::underlyingTypes()
{
    static_assert(kIsA<TidemarCommand::TidemarCommandIn, int>);
    static_assert(kIsA<ExchangeError::ExchangeErrorIn, int>);
    static_assert(kIsA<BleDeviceState::BleDeviceStateIn, int>);
    static_assert(kIsA<CurrentMode::CurrentModeIn, int>);
    static_assert(kIsA<ComputerModel::ComputerModelIn, int>);
    static_assert(kIsA<CreateControllerStatus::CreateControllerStatusIn, int>);
    static_assert(kIsA<ConnectControllerStatus::ConnectControllerStatusIn, int>);
    static_assert(kIsA<BleMode, int>);
    static_assert(sizeof(GasUsage::GasUsageIn) == 1);
}

// An answer's code is widened unchecked, so any number has to survive.
void TestEnumerations::valuesWithoutName_data()
{
    QTest::addColumn<int>("value");

    for (const int value : {21, 43, 236, 239, 251, 256, 1000, -1})
        QTest::addRow("%d", value) << value;
}

void TestEnumerations::valuesWithoutName()
{
    QFETCH(const int, value);
    QCOMPARE(int(TidemarCommand::TidemarCommandIn(value)), value);
    QVERIFY(!QMetaEnum::fromType<TidemarCommand::TidemarCommandIn>().valueToKey(value));
    QCOMPARE(int(ExchangeError::ExchangeErrorIn(value)), value);
    QVERIFY(!QMetaEnum::fromType<ExchangeError::ExchangeErrorIn>().valueToKey(value));
}

void TestEnumerations::commandNames()
{
    const QMetaEnum commands = QMetaEnum::fromType<TidemarCommand::TidemarCommandIn>();
    QCOMPARE(commands.keyCount(), 48);
    QCOMPARE(commands.valueToKey(254), "Reset");
    QCOMPARE(commands.keyToValue("Computer_new"), 24);
}

void TestEnumerations::bleMode()
{
    static_assert(BleMode::Gatt == 0);
    static_assert(BleMode::Sps == 1);
    const BleMode mode = BleMode::Sps;
    QCOMPARE(QVariant::fromValue(mode).toString(), QStringLiteral("Sps"));
}

QTEST_APPLESS_MAIN(TestEnumerations)
#include "tst_enumerations.moc"
