// SPDX-License-Identifier: MIT
#include <QtCore/qmetaobject.h>
#include <QtTest/qtest.h>

#include <array>
#include <type_traits>

#include <varda/recordfields.h>

#include "computervalues.h"
#include "divevalues.h"
#include "errorkinds.h"

using namespace Qt::StringLiterals;

/** Each field of a record is a property in QML, under its name and with its value. */
class TestValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fields();
    void identity();
    void computed();
    void errorKinds();

private:
    template <typename Record, typename Value> static void check(const char *name);
};

namespace {

template <typename T>
inline constexpr bool kIsText = std::is_same_v<T, QString> || std::is_same_v<T, QByteArray>;

/** A value that no field has by default, and each field another one. */
template <typename T> T valueOf(int n)
{
    if constexpr (std::is_same_v<T, bool>)
        return n % 2 == 1;
    else if constexpr (std::is_enum_v<T>)
        return T(1 + n % 3);
    else if constexpr (std::is_arithmetic_v<T>)
        return T(1 + n % 100);
    else if constexpr (std::is_same_v<T, QString>)
        return u"text %1"_s.arg(n);
    else if constexpr (std::is_same_v<T, QByteArray>)
        return "bytes " + QByteArray::number(n);
    else
        return {};
}

} // namespace

template <typename Record, typename Value> void TestValues::check(const char *name)
{
    const QMetaObject &gadget = Value::staticMetaObject;
    static_assert(sizeof(Value) == sizeof(Record), "QML reads a record through it");
    int count = 0;
    forEachField<Record>([&](QLatin1StringView fieldName, auto get, auto set) {
        using Field = std::decay_t<decltype(get(std::declval<const Record &>()))>;
        ++count;
        const int index = gadget.indexOfProperty(fieldName.data());
        QVERIFY2(index >= 0, qPrintable(u"%1.%2"_s.arg(QLatin1StringView(name), fieldName)));
        Record record;
        const auto property = gadget.property(index);
        if constexpr (std::is_arithmetic_v<Field> || std::is_enum_v<Field>) {
            // A bit-field has room for 1.
            const auto value = sizeof(Record) == sizeof(DiveSample) ? Field(1)
                                                                    : valueOf<Field>(count);
            set(record, value);
            QCOMPARE(property.readOnGadget(&record).toDouble(), double(value));
        } else if constexpr (kIsText<Field>) {
            set(record, valueOf<Field>(count));
            QCOMPARE(property.readOnGadget(&record).template value<Field>(), valueOf<Field>(count));
        } else {
            Field list{};
            if constexpr (requires { list.append({}); })
                list.append({});
            const qsizetype size = qsizetype(list.size());
            set(record, list);
            const QVariant read = property.readOnGadget(&record);
            if (read.metaType() == QMetaType::fromType<QByteArray>())
                QCOMPARE(read.toByteArray().size(), size);
            else
                QCOMPARE(read.toList().size(), size);
        }
    });
    QVERIFY(count > 0);
}

void TestValues::fields()
{
    check<BleConfig::Gas, GasEntryValue>("gasEntry");
    check<BleConfig::Triple, TripleValue>("configTriple");
    check<BleConfig, BleConfigValue>("bleConfig");
    check<BleComputer, BleComputerValue>("bleComputer");
    check<BatteryInfoRecord, BatteryInfoValue>("batteryInfoRecord");
    check<SyslogBinRecord, SyslogBinValue>("syslogBinRecord");
    check<LayoutEntry, LayoutEntryValue>("layoutEntry");
    check<DeleteDivesResult, DeleteDivesValue>("deleteDivesResult");
    check<MarloSettings, MarloSettingsValue>("marloSettings");
    check<PreviousDive, PreviousDiveValue>("previousDive");
    check<TidemarDiveHeader, DiveHeaderValue>("tidemarDiveHeader");
    check<DiveSample, DiveSampleValue>("diveSample");
    check<DiveGas, DiveGasValue>("diveGas");
    check<DiveLine, DiveLineValue>("diveLine");
    check<DiveMark, DiveMarkValue>("diveMark");
    check<Dive, DiveValue>("dive");
}

void TestValues::identity()
{
    VardaIdentity identity;
    identity.model = ComputerModel::VSKM;
    identity.mode = CurrentMode::BootLoader;
    identity.recordVersion = 7;
    identity.firmwareVersion = 0x01020361;
    identity.bootloaderVersion = 0xFF000062;
    identity.firmwareVersionStr = u"1.2.3.a"_s;
    identity.bootloaderVersionStr = u"255.0.0.b"_s;
    identity.serialNumber = u"00420017"_s;
    const auto read = [&](const char *name) {
        const QMetaObject &gadget = IdentityValue::staticMetaObject;
        return gadget.property(gadget.indexOfProperty(name)).readOnGadget(&identity);
    };
    QCOMPARE(read("model").toInt(), 3);
    QCOMPARE(read("mode").toInt(), int(CurrentMode::BootLoader));
    QCOMPARE(read("recordVersion").toInt(), 7);
    QCOMPARE(read("firmwareVersion").toUInt(), 0x01020361U);
    QCOMPARE(read("bootloaderVersion").toUInt(), 0xFF000062U);
    QCOMPARE(read("firmwareVersionStr").toString(), u"1.2.3.a"_s);
    QCOMPARE(read("bootloaderVersionStr").toString(), u"255.0.0.b"_s);
    QCOMPARE(read("serialNumber").toString(), u"00420017"_s);
}

/** What a value has beyond its record. */
void TestValues::computed()
{
    const auto read = [](const QMetaObject &gadget, const void *record, const char *name) {
        return gadget.property(gadget.indexOfProperty(name)).readOnGadget(record);
    };
    DiveGas gas;
    gas.setO2(0.32);
    QCOMPARE(read(DiveGasValue::staticMetaObject, &gas, "name").toString(), u"EAN32"_s);

    BleComputer computer;
    computer.batteryType = 2;
    QCOMPARE(read(BleComputerValue::staticMetaObject, &computer, "battery").toString(),
             u"Lion36"_s);
    BleConfig config;
    config.waterType = 1;
    QCOMPARE(read(BleConfigValue::staticMetaObject, &config, "density").toDouble(), 1.0);

    Dive dive;
    dive.lines = {DiveLine{.time = 0, .depth = 0}, DiveLine{.time = 5, .depth = 12.5}};
    const auto profile = read(DiveValue::staticMetaObject, &dive, "profile").value<DiveProfile>();
    QCOMPARE(read(DiveProfileValue::staticMetaObject, &profile, "duration").toDouble(), 5.0);
    QCOMPARE(read(DiveProfileValue::staticMetaObject, &profile, "maximumDepth").toDouble(), 12.5);
    QVERIFY(!read(DiveProfileValue::staticMetaObject, &profile, "lowestTemperature").isValid());
}

/** QML has each kind of error under its name. */
void TestValues::errorKinds()
{
    const auto kinds = QMetaEnum::fromType<LogbookError::Kind>();
    const auto named = QMetaEnum::fromType<ErrorKinds::Kind>();
    QCOMPARE(named.keyCount(), kinds.keyCount());
    for (int i = 0; i < kinds.keyCount(); ++i) {
        QCOMPARE(named.key(i), kinds.key(i));
        QCOMPARE(named.value(i), kinds.value(i));
    }
}

QTEST_GUILESS_MAIN(TestValues)
#include "tst_values.moc"
