// SPDX-License-Identifier: MIT
#include "records.h"

#include "text.h"

#include <cstring>

using namespace Qt::StringLiterals;

namespace {

template <typename Numbers> QJsonArray arrayOf(const Numbers &numbers)
{
    QJsonArray array;
    for (const auto number : numbers)
        array.append(number);
    return array;
}

QJsonArray arrayOf(const std::array<BleConfig::Gas, 12> &gases)
{
    QJsonArray array;
    for (const BleConfig::Gas &gas : gases)
        array.append(QJsonObject{{u"oxygen"_s, gas.oxygen}, {u"helium"_s, gas.helium}});
    return array;
}

QJsonArray arrayOf(const std::array<BleConfig::Triple, 3> &triples)
{
    QJsonArray array;
    for (const BleConfig::Triple &triple : triples) {
        array.append(QJsonObject{
            {u"first"_s, triple.first}, {u"second"_s, triple.second}, {u"third"_s, triple.third}});
    }
    return array;
}

/** As text: many readers of JSON keep only 53 bits of a number. */
QString wide(quint64 value)
{
    return QString::number(value);
}

QString textIn(const std::array<char, 32> &block)
{
    return QString::fromUtf8(block.data(), qsizetype(::strnlen(block.data(), block.size())));
}

} // namespace

Fields fieldsOf(const BleConfig &config)
{
    return {
        {u"configWord"_s, config.configWord},
        {u"cfgA"_s, config.cfgA},
        {u"cfgB"_s, config.cfgB},
        {u"cfgC"_s, config.cfgC},
        {u"cfgD"_s, config.cfgD},
        {u"cfgE"_s, config.cfgE},
        {u"waterType"_s, config.waterType},
        {u"surfacePressure"_s, config.surfacePressure},
        {u"cfgF"_s, config.cfgF},
        {u"cfgG"_s, config.cfgG},
        {u"cfgBytes"_s, arrayOf(config.cfgBytes)},
        {u"gasTable1"_s, arrayOf(config.gasTable1)},
        {u"gasTable2"_s, arrayOf(config.gasTable2)},
        {u"cfgH"_s, config.cfgH},
        {u"cfgTriple"_s, arrayOf(config.cfgTriple)},
        {u"tailBytes"_s, arrayOf(config.tailBytes)},
    };
}

Fields fieldsOf(const BleComputer &computer)
{
    return {
        {u"rawBlock"_s, textIn(computer.rawBlock)},
        {u"batteryType"_s, computer.batteryType},
        {u"setting1"_s, computer.setting1},
        {u"setting2"_s, computer.setting2},
        {u"setting3"_s, computer.setting3},
        {u"setting4"_s, computer.setting4},
        {u"setting5"_s, computer.setting5},
        {u"setting6"_s, computer.setting6},
        {u"setting7"_s, computer.setting7},
        {u"setting8"_s, computer.setting8},
        {u"value64a"_s, wide(computer.value64a)},
        {u"flags32"_s, arrayOf(computer.flags32)},
        {u"value64b"_s, wide(computer.value64b)},
        {u"entryCount"_s, computer.entryCount},
        {u"entries"_s, QString::fromLatin1(computer.entries.toHex())},
        {u"value64c"_s, wide(computer.value64c)},
        {u"computerByte1"_s, computer.computerByte1},
        {u"quadWords"_s, arrayOf(computer.quadWords)},
        {u"computerWord1"_s, computer.computerWord1},
        {u"computerWord2"_s, computer.computerWord2},
        {u"computerWord3"_s, computer.computerWord3},
        {u"computerWord4"_s, computer.computerWord4},
        {u"computerWord5"_s, computer.computerWord5},
        {u"computerWord6"_s, computer.computerWord6},
        {u"sixWords"_s, arrayOf(computer.sixWords)},
        {u"computerByte2"_s, computer.computerByte2},
        {u"computerByte3"_s, computer.computerByte3},
        {u"computerByte4"_s, computer.computerByte4},
        {u"value64d"_s, wide(computer.value64d)},
        {u"value64e"_s, wide(computer.value64e)},
        {u"computerByte5"_s, computer.computerByte5},
        {u"computerWord7"_s, computer.computerWord7},
    };
}

QJsonObject toJson(const Fields &fields)
{
    QJsonObject object;
    for (const auto &[name, value] : fields)
        object.insert(name, value);
    return object;
}

QJsonObject toJson(const BleDeviceInfo &device)
{
    return {
        {u"address"_s, device.address()}, {u"name"_s, device.name()}, {u"rssi"_s, device.rssi()}};
}

QString plainText(const QJsonValue &value)
{
    QStringList parts;
    switch (value.type()) {
    case QJsonValue::Array:
        for (const QJsonValue each : value.toArray())
            parts.append(plainText(each));
        return parts.join(u' ');
    case QJsonValue::Object: {
        const QJsonObject object = value.toObject();
        for (auto it = object.begin(); it != object.end(); ++it)
            parts.append(plainText(it.value()));
        return parts.join(u'/');
    }
    default:
        return safeText(value.toVariant().toString());
    }
}
