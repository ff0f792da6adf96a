// SPDX-License-Identifier: MIT
#include <QtTest/qtest.h>

#include <varda/recordfields.h>

#include <array>
#include <vector>

class TestRecordFields : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bleConfig();
    void bleComputer();
    void batteryInfoRecord();
    void smallRecords();
    void headers();
    void diveSample();
    void dive();
    void bitFieldsAreCut();
    void whatHasFields();
    void atCompileTime();
};

namespace {

template <typename Type> bool isSame(const Type &one, const Type &other)
{
    if constexpr (hasFields<Type>) {
        bool same = true;
        forEachField<Type>([&](QLatin1StringView, auto get, auto) {
            same = same && isSame(get(one), get(other));
        });
        return same;
    } else {
        return one == other;
    }
}

template <typename Type, std::size_t N>
bool isSame(const std::array<Type, N> &one, const std::array<Type, N> &other)
{
    return std::equal(one.begin(), one.end(), other.begin(),
                      [](const Type &a, const Type &b) { return isSame(a, b); });
}

template <typename Type> bool isSame(const QList<Type> &one, const QList<Type> &other)
{
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](const Type &a, const Type &b) { return isSame(a, b); });
}

bool different(bool value)
{
    return !value;
}

template <typename Type> Type different(const Type &value)
{
    if constexpr (std::is_enum_v<Type>) {
        return Type(int(value) + 1);
    } else if constexpr (hasFields<Type>) {
        Type changed = value;
        forEachField<Type>(
            [&](QLatin1StringView, auto get, auto set) { set(changed, different(get(value))); });
        return changed;
    } else {
        return value == Type(1) ? Type(0) : Type(1); // fits in one bit
    }
}

QString different(const QString &value)
{
    return value + QLatin1Char('x');
}

QByteArray different(const QByteArray &value)
{
    return value + 'x';
}

template <typename Type> QList<Type> different(QList<Type> value)
{
    value.append(Type());
    return value;
}

template <typename Type, std::size_t N> std::array<Type, N> different(std::array<Type, N> value)
{
    for (Type &each : value)
        each = different(each);
    return value;
}

/** How many fields of a record two values of it differ in. */
template <typename Record> QStringList differences(const Record &one, const Record &other)
{
    QStringList names;
    forEachField<Record>([&](QLatin1StringView name, auto get, auto) {
        if (!isSame(get(one), get(other)))
            names.append(name);
    });
    return names;
}

struct Anything {
    explicit Anything(std::size_t) { }
    template <typename Type> operator Type() const; // NOLINT(google-explicit-constructor)
};

template <typename Record, std::size_t... I> constexpr bool takes(std::index_sequence<I...>)
{
    return requires { Record{Anything(I)...}; };
}

/** Whether an aggregate has exactly so many members and bases. */
template <typename Record, std::size_t count>
constexpr bool kHasMembers = takes<Record>(std::make_index_sequence<count>())
                             && !takes<Record>(std::make_index_sequence<count + 1>());

/** Each name is that of a field of its own, and there is no other. */
template <typename Record> void check(const char *names)
{
    const QStringList expected = QString::fromLatin1(names).simplified().split(QLatin1Char(' '));
    QStringList found;
    forEachField<Record>([&](QLatin1StringView name, auto get, auto set) {
        found.append(name);
        Record changed{};
        set(changed, different(get(Record{})));
        QCOMPARE(differences(changed, Record{}), QStringList{name});
    });
    QCOMPARE(found, expected);
}

} // namespace

void TestRecordFields::bleConfig()
{
    static_assert(kHasMembers<BleConfig::Gas, 2>);
    static_assert(kHasMembers<BleConfig::Triple, 3>);
    static_assert(kHasMembers<BleConfig, 16>);
    check<BleConfig::Gas>("oxygen helium");
    check<BleConfig::Triple>("first second third");
    check<BleConfig>(
        "configWord cfgA cfgB cfgC cfgD cfgE waterType surfacePressure cfgF cfgG cfgBytes "
        "gasTable1 gasTable2 cfgH cfgTriple tailBytes");
}

void TestRecordFields::bleComputer()
{
    static_assert(kHasMembers<BleComputer, 32>);
    check<BleComputer>(
        "rawBlock batteryType setting1 setting2 setting3 setting4 setting5 setting6 "
        "setting7 setting8 value64a flags32 value64b entryCount entries value64c "
        "computerByte1 quadWords computerWord1 computerWord2 computerWord3 computerWord4 "
        "computerWord5 computerWord6 sixWords computerByte2 computerByte3 computerByte4 "
        "value64d value64e computerByte5 computerWord7");
}

void TestRecordFields::batteryInfoRecord()
{
    static_assert(kHasMembers<BatteryInfoRecord, 18>);
    check<BatteryInfoRecord>(
        "kind value20 code2 flag28 flag29 value12 code4 flag16 flag17 flag18 offsetValue "
        "scaledValue hasExtra extra15 extra12 extraCode2 extraFlag29 extraFlag30");
}

void TestRecordFields::smallRecords()
{
    static_assert(kHasMembers<SyslogBinRecord, 4>);
    static_assert(kHasMembers<LayoutEntry, 3>);
    static_assert(kHasMembers<DeleteDivesResult, 2>);
    static_assert(kHasMembers<MarloSettings, 8>);
    static_assert(kHasMembers<PreviousDive, 3>);
    static_assert(kHasMembers<DiveMark, 3>);
    check<SyslogBinRecord>("time type arg1 arg2");
    check<LayoutEntry>("first second name");
    check<DeleteDivesResult>("resultA resultB");
    check<MarloSettings>("byte1 byte2 float1 byte3 float2 byte4 byte5 byte6");
    check<PreviousDive>("value64 value16 value8");
    check<DiveMark>("first second third");
}

void TestRecordFields::headers()
{
    static_assert(kHasMembers<DiveHeaderBlock, 48>);
    static_assert(kHasMembers<TidemarDiveHeader, 4>); // and its base
    check<DiveHeaderBlock>(
        "diveNumber model stamp stamp2 tenths1 tenths2 sampleInterval value32a kindByte "
        "tidemarBit headerWord1 below1020 headerByte1 headerByte2 headerWord2 headerWord3 "
        "headerWord4 value32b count1 count2 value32c tissueN2 tissueHe gasSlotMask "
        "headerByte3 gasO2 gasHe reservedBlock headerByte4 headerByte5 headerByte6 "
        "headerWord5 headerWord6 headerWord7 value32d headerWord8 signed1 signed2 "
        "headerWord9 headerWord10 headerWord11 headerWord12 value32e value32f text1 text2 "
        "text3 text4");
    check<TidemarDiveHeader>(
        "diveNumber model stamp stamp2 tenths1 tenths2 sampleInterval value32a kindByte "
        "tidemarBit headerWord1 below1020 headerByte1 headerByte2 headerWord2 headerWord3 "
        "headerWord4 value32b count1 count2 value32c tissueN2 tissueHe gasSlotMask "
        "headerByte3 gasO2 gasHe reservedBlock headerByte4 headerByte5 headerByte6 "
        "headerWord5 headerWord6 headerWord7 value32d headerWord8 signed1 signed2 "
        "headerWord9 headerWord10 headerWord11 headerWord12 value32e value32f text1 text2 "
        "text3 text4 headerByte7 headerWord13 headerWord14");
}

// Its bit-fields keep it from being an aggregate; that each of its members has a name here is checked
// by the compiler.
void TestRecordFields::diveSample()
{
    const DiveSample sample;
    [[maybe_unused]] const auto &[version, depth, flag, code, value12, mode, modeFlag, aux1, aux2,
                                  aux3, aux4, aux5, aux6, aux7, aux8, aux9, aux10, aux11,
                                  aux12] = sample;
    check<DiveSample>(
        "version depth flag code value12 mode modeFlag aux1 aux2 aux3 aux4 aux5 aux6 aux7 "
        "aux8 aux9 aux10 aux11 aux12");
}

void TestRecordFields::dive()
{
    static_assert(kHasMembers<DiveGas, 11>);
    static_assert(kHasMembers<DiveLine, 26>);
    static_assert(kHasMembers<Dive, 22>); // and its base
    check<DiveGas>("oxygen helium nitrogen limit reserved usage enabled label label2 color "
                   "closedCircuit");
    check<DiveLine>(
        "time depth value3 value4 aux1Value valueTenths valueNegated value8 value9 "
        "value10 value11 gasIndex mode flag aux3 aux4 aux5 aux6 aux7 aux2 aux8 aux11 aux9 "
        "aux10 value24 flag25");
    check<Dive>("diveNumber model stamp stamp2 tenths1 tenths2 sampleInterval value32a kindByte "
                "tidemarBit headerWord1 below1020 headerByte1 headerByte2 headerWord2 headerWord3 "
                "headerWord4 value32b count1 count2 value32c tissueN2 tissueHe gasSlotMask "
                "headerByte3 gasO2 gasHe reservedBlock headerByte4 headerByte5 headerByte6 "
                "headerWord5 headerWord6 headerWord7 value32d headerWord8 signed1 signed2 "
                "headerWord9 headerWord10 headerWord11 headerWord12 value32e value32f text1 text2 "
                "text3 text4 numberText ownerName text serialNumber firmwareVersion kind lines "
                "lines2 lines3 lines4 gases tagBytes value16 value64 value32 index marks flag "
                "marks2 modeByte count");
}

void TestRecordFields::bitFieldsAreCut()
{
    DiveSample sample;
    forEachField<DiveSample>(
        [&](QLatin1StringView, auto get, auto set) { set(sample, decltype(get(sample))(-1)); });
    QCOMPARE(int(sample.depth), 4095);
    QCOMPARE(int(sample.flag), 1);
    QCOMPARE(int(sample.code), 15);
    QCOMPARE(int(sample.value12), -1);
    QCOMPARE(int(sample.mode), 3);
    QCOMPARE(int(sample.modeFlag), 1);
    forEachField<DiveSample>([&](QLatin1StringView, auto get, auto set) {
        if constexpr (std::is_same_v<decltype(get(sample)), std::int16_t>)
            set(sample, 0x1800);
    });
    QCOMPARE(int(sample.value12), -2048);
}

void TestRecordFields::whatHasFields()
{
    static_assert(hasFields<Dive> && hasFields<DiveSample> && hasFields<BleConfig::Triple>);
    static_assert(!hasFields<int> && !hasFields<QString> && !hasFields<QList<Dive>>);
}

void TestRecordFields::atCompileTime()
{
    constexpr BleConfig::Gas gas = [] {
        BleConfig::Gas made;
        forEachField<BleConfig::Gas>([&made](QLatin1StringView name, auto get, auto set) {
            set(made, std::uint8_t(get(made) + name.size()));
        });
        return made;
    }();
    static_assert(gas.oxygen == 6 && gas.helium == 6);
}

QTEST_GUILESS_MAIN(TestRecordFields)
#include "tst_recordfields.moc"
