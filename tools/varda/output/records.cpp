// SPDX-License-Identifier: MIT
#include "output/records.h"

#include "output/text.h"

#include <varda/recordfields.h>

#include <QtCore/qmetaobject.h>

#include <cstring>

using namespace Qt::StringLiterals;

namespace {

template <typename Bytes> QString hexOf(const Bytes &bytes)
{
    const auto *const data = reinterpret_cast<const char *>(bytes.data());
    return QString::fromLatin1(QByteArray::fromRawData(data, qsizetype(bytes.size())).toHex());
}

QString textOf(const std::array<char, 32> &block)
{
    return QString::fromUtf8(block.data(), qsizetype(::strnlen(block.data(), block.size())));
}

/** An enumerator by its name, or by its number where it has none. */
template <typename Enum> Json keyOf(Enum value)
{
    if (const char *key = QMetaEnum::fromType<Enum>().valueToKey(int(value)))
        return QString::fromLatin1(key);
    return int(value);
}

template <typename Record> Fields membersOf(const Record &record);

/** A field's value as JSON. Overloads say what is special about a type. */
template <typename Value> Json jsonOf(const Value &value)
{
    if constexpr (hasFields<Value>)
        return membersOf(value);
    else if constexpr (std::is_enum_v<Value>)
        return keyOf(value);
    else
        return value;
}

Json jsonOf(std::int64_t value)
{
    return wide(value);
}

Json jsonOf(std::uint64_t value)
{
    return wide(value);
}

Json jsonOf(const QByteArray &bytes)
{
    return hexOf(bytes);
}

template <typename Element, std::size_t N> Json jsonOf(const std::array<Element, N> &elements)
{
    return listOf(elements, [](const Element &each) { return jsonOf(each); });
}

template <typename Record> Json jsonOf(const QList<Record> &records)
{
    return listOf(records, [](const Record &each) { return jsonOf(each); });
}

/** Fields that are easier to read in another form than that of their type. */
template <typename Value> Json fieldOf(QLatin1StringView name, const Value &value)
{
    if constexpr (std::is_same_v<Value, decltype(BleComputer::rawBlock)>)
        return textOf(value);
    if constexpr (std::is_same_v<Value, decltype(DiveHeaderBlock::reservedBlock)>)
        return hexOf(value);
    if constexpr (std::is_same_v<Value, QString>) {
        if (name == "firmwareVersion"_L1)
            return versionText(value);
    }
    return jsonOf(value);
}

template <typename Record> Fields membersOf(const Record &record)
{
    Fields fields;
    forEachField<Record>([&](QLatin1StringView name, auto get, auto) {
        fields.emplace_back(name, fieldOf(name, get(record)));
    });
    return fields;
}

} // namespace

Json gasesOf(const std::array<BleConfig::Gas, 12> &table)
{
    return jsonOf(table);
}

QString textOf(const BleComputer &computer)
{
    return textOf(computer.rawBlock);
}

Fields fieldsOf(const BleDeviceInfo &device)
{
    return {
        {"address"_L1, device.address()}, {"name"_L1, device.name()}, {"rssi"_L1, device.rssi()}};
}

Fields fieldsOf(const BleConfig &config)
{
    return membersOf(config);
}

Fields fieldsOf(const BleComputer &computer)
{
    return membersOf(computer);
}

Fields fieldsOf(const BatteryInfoRecord &record)
{
    return membersOf(record);
}

Fields fieldsOf(const TidemarDiveHeader &header)
{
    return membersOf(header);
}

Fields fieldsOf(const DiveLine &line)
{
    return membersOf(line);
}

Fields fieldsOf(const Dive &dive)
{
    return membersOf(dive);
}

QString modelText(const VardaIdentity &identity)
{
    return QString::fromLatin1(
        QMetaEnum::fromType<ComputerModel::ComputerModelIn>().valueToKey(identity.model));
}
