// SPDX-License-Identifier: MIT
#include "device/memory/configuration.h"

#include "device/scenario/jsonreader.h"
#include "device/scenario/scenario.h"
#include "device/wire/wirewriter.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

struct Setting {
    const char *name;
    int bytes; // width of one value
    int count;
    quint64 initial; // of the first value; the others count on from it
};

// Initial values differ from each other, so that two exchanged settings do not look alike.
constexpr Setting kSettings[] = {
    {"configWord", 2, 1, 0x00C8},
    {"cfgA", 1, 1, 1},
    {"cfgB", 1, 1, 2},
    {"cfgC", 1, 1, 30},
    {"cfgD", 1, 1, 80},
    {"cfgE", 2, 1, 1400},
    {"waterType", 1, 1, 0},
    {"surfacePressure", 2, 1, 1013},
    {"cfgF", 1, 1, 5},
    {"cfgG", 1, 1, 6},
    {"cfgBytes", 1, 6, 11},
    {"gasTable1", 2, 12, 0},
    {"gasTable2", 2, 12, 0},
    {"cfgH", 1, 1, 7},
    {"tripleFirst", 2, 3, 1000},
    {"tripleSecond", 2, 3, 2000},
    {"tripleThird", 1, 3, 31},
    {"tailBytes", 1, 6, 21},
    {"batteryType", 1, 1, 2},
    {"setting1", 1, 1, 41},
    {"setting2", 1, 1, 42},
    {"setting3", 1, 1, 43},
    {"setting4", 1, 1, 44},
    {"setting5", 1, 1, 45},
    {"setting6", 2, 1, 4600},
    {"setting7", 1, 1, 47},
    {"setting8", 1, 1, 48},
    {"value64a", 8, 1, 1'700'000'000},
    {"flags32", 1, 32, 100},
    {"value64b", 8, 1, 1'700'000'001},
    {"entryCount", 1, 1, 2},
    {"value64c", 8, 1, 1'700'000'002},
    {"computerByte1", 1, 1, 61},
    {"quadWords", 2, 4, 7100},
    {"computerWord1", 2, 1, 8001},
    {"computerWord2", 2, 1, 8002},
    {"computerWord3", 2, 1, 8003},
    {"computerWord4", 2, 1, 8004},
    {"computerByte2", 1, 1, 62},
    {"computerByte3", 1, 1, 63},
    {"computerByte4", 1, 1, 64},
    {"value64d", 8, 1, 1'700'000'003},
    {"value64e", 8, 1, 1'700'000'004},
    {"computerByte5", 1, 1, 65},
    {"computerWord5", 2, 1, 8005},
    {"computerWord6", 2, 1, 8006},
    {"computerWord7", 2, 1, 8007},
    {"sixWords", 2, 6, 9001},
};

constexpr quint16 kFirstGases[] = {0x0015, 0x0020, 0x0032, 0x0064, 0x2D12, 0x320F};
constexpr quint16 kSecondGases[] = {0x0015, 0x2D12, 0x410A};

const Setting *settingOf(const QString &name)
{
    for (const Setting &setting : kSettings) {
        if (name == QLatin1String(setting.name))
            return &setting;
    }
    return nullptr;
}

// A 64-bit value does not fit in a JSON number, so it may be given in hexadecimal as well.
quint64 readSetting(const QJsonValue &value, const QString &path, int bytes)
{
    const quint64 max = bytes == 8 ? ~quint64(0) : (quint64(1) << (8 * bytes)) - 1;
    if (value.isString() && bytes == 8) {
        bool ok = false;
        const quint64 number = value.toString().toULongLong(&ok, 16);
        if (!ok)
            badValue(path, u"expected a number or a hexadecimal text"_s);
        return number;
    }
    const qint64 largest = bytes == 8 ? (qint64(1) << 53) : qint64(max);
    return quint64(readInteger(value, path, 0, largest));
}

// Writes settings by their names, as a layout lists them.
class SettingsWriter : public WireWriter
{
public:
    explicit SettingsWriter(const Configuration &configuration) : m_configuration(configuration) { }

    SettingsWriter &bytes8(const char *name, int first = 0, int count = 1)
    {
        for (int i = first; i < first + count; ++i)
            u8(quint8(m_configuration.value(name, i)));
        return *this;
    }
    SettingsWriter &words(const char *name, int first = 0, int count = 1)
    {
        for (int i = first; i < first + count; ++i)
            u16(quint16(m_configuration.value(name, i)));
        return *this;
    }
    SettingsWriter &quad(const char *name)
    {
        u64(m_configuration.value(name));
        return *this;
    }
    SettingsWriter &gap(int count)
    {
        filler(count);
        return *this;
    }
    SettingsWriter &text32(const QByteArray &text)
    {
        bytes(text.leftJustified(32, '\0', true));
        return *this;
    }

private:
    const Configuration &m_configuration;
};

// What lies between the second gas table and the owner grew with the firmware.
int bytesAfterGases(Model model, int version)
{
    if (version < 5)
        return 0;
    if (version <= 9)
        return 3;
    if (version == 10)
        return 4;
    if (version == 11 || model == Model::Tidemar)
        return 8;
    switch (version) {
    case 12:
        return 9;
    case 13:
        return 13;
    case 14:
        return 15;
    case 15:
    case 16:
        return 41;
    case 17:
    case 18:
    case 19:
        return 44;
    case 20:
        return 68;
    default:
        return 82;
    }
}

int bytesBeforeLastSetting(Model model, int version)
{
    if (version < 8)
        return 0;
    return model == Model::Tidemar && version >= 12 ? 9 : 2;
}

int selectorOf(Model model)
{
    switch (model) {
    case Model::Varda:
        return 1;
    case Model::Tidemar:
        return 2;
    case Model::Vskm:
        return 3;
    case Model::ThirdParty:
        return 4;
    case Model::None:
        break;
    }
    return 0;
}

} // namespace

Configuration::Configuration()
{
    for (const Setting &setting : kSettings) {
        QList<quint64> values;
        for (int i = 0; i < setting.count; ++i)
            values.append(setting.initial + quint64(i));
        m_values.insert(QLatin1String(setting.name), values);
    }
    QList<quint64> &first = m_values[u"gasTable1"_s];
    first.fill(0);
    std::ranges::copy(kFirstGases, first.begin());
    QList<quint64> &second = m_values[u"gasTable2"_s];
    second.fill(0);
    std::ranges::copy(kSecondGases, second.begin());
}

void Configuration::read(const QJsonValue &value, const QString &path)
{
    ObjectReader reader(value, path);
    const QStringList keys = reader.keys();
    for (const QString &key : keys) {
        const Setting *setting = settingOf(key);
        const QByteArray name = key.toLatin1();
        const QString where = reader.path(name);
        if (!setting)
            badValue(where, u"unknown setting"_s);
        const QJsonValue given = reader.take(name);
        QList<quint64> &values = m_values[key];
        if (setting->count == 1) {
            values[0] = readSetting(given, where, setting->bytes);
            continue;
        }
        const QJsonArray list = readArray(given, where);
        if (list.size() > setting->count)
            badValue(where, u"at most %1 values fit"_s.arg(setting->count));
        for (qsizetype i = 0; i < list.size(); ++i)
            values[i] = readSetting(list[i], where + u"[%1]"_s.arg(i), setting->bytes);
    }
}

quint64 Configuration::value(const char *name, int index) const
{
    const auto found = m_values.constFind(QLatin1String(name));
    Q_ASSERT(found != m_values.constEnd() && index < found->size());
    return found->at(index);
}

void Configuration::set(const char *name, quint64 value, int index)
{
    m_values[QLatin1String(name)][index] = value;
}

int Configuration::gasCount() const
{
    const bool isVarda = m_shortForm || m_model == Model::Varda || m_model == Model::None;
    return isVarda && !m_shortForm && m_version > 12 ? 12 : 8;
}

QByteArray Configuration::payload(bool extended, const QByteArray &owner) const
{
    switch (m_shortForm ? Model::Varda : m_model) {
    case Model::None:
    case Model::Varda:
        return head() + vardaBody(extended, owner);
    case Model::Tidemar:
    case Model::Vskm:
        return head() + tidemarBody(extended, owner);
    case Model::ThirdParty:
        break;
    }
    return head();
}

QByteArray Configuration::head() const
{
    SettingsWriter w(*this);
    if (!m_shortForm) {
        // Anything from 255 on cannot be a short form's word: its low byte is the version.
        w.u16(quint16(0x0100 | m_version));
        w.u8(quint8(selectorOf(m_model)));
    }
    w.words("configWord");
    w.bytes8("cfgA").bytes8("cfgB").bytes8("cfgC").bytes8("cfgD").words("cfgE");
    w.bytes8("waterType").words("surfacePressure").bytes8("cfgF").bytes8("cfgG");
    return w.data();
}

QByteArray Configuration::vardaBody(bool extended, const QByteArray &owner) const
{
    const int version = m_shortForm ? 0 : m_version;
    SettingsWriter w(*this);
    w.bytes8("tailBytes", 0, 3).bytes8("cfgBytes", 0, 5).gap(1);
    w.words("gasTable1", 0, gasCount());
    w.bytes8("cfgH").words("tripleFirst", 0, 3).text32(owner);
    w.bytes8("batteryType").bytes8("setting1").bytes8("setting2").bytes8("setting3");
    w.bytes8("setting4").bytes8("setting5").words("setting6").bytes8("setting7").bytes8("setting8");
    w.quad("value64a").bytes8("flags32", 0, 32);
    if (!extended)
        return w.data();

    w.quad("value64b").bytes8("entryCount").gap(11 * int(value("entryCount")));
    w.quad("value64c").bytes8("computerByte1").words("quadWords", 0, 4);
    w.words("computerWord1").words("computerWord2").words("computerWord3").words("computerWord4");
    w.bytes8("computerByte2").bytes8("computerByte3").bytes8("computerByte4");
    w.quad("value64d").quad("value64e").bytes8("computerByte5");
    w.words("computerWord6").words("computerWord5").words("computerWord7");
    if (version > 12)
        w.words("sixWords", 0, 6);
    return w.data();
}

QByteArray Configuration::tidemarBody(bool extended, const QByteArray &owner) const
{
    const int afterGas = m_version >= 8 ? 2 : 0;
    SettingsWriter w(*this);
    w.bytes8("tailBytes", 3, 3).bytes8("cfgBytes", 0, 6);
    for (int i = 0; i < 8; ++i)
        w.words("gasTable1", i).gap(afterGas);
    w.bytes8("cfgH");
    for (int i = 0; i < 3; ++i)
        w.words("tripleFirst", i).words("tripleSecond", i).bytes8("tripleThird", i);
    if (m_version > 1) {
        for (int i = 0; i < 8; ++i)
            w.words("gasTable2", i).gap(afterGas);
        w.gap(bytesAfterGases(m_model, m_version));
    }
    w.text32(owner);
    w.bytes8("batteryType").bytes8("setting2").bytes8("setting3").bytes8("setting4");
    w.bytes8("setting5").words("setting6").bytes8("setting7").bytes8("setting8");
    w.quad("value64a").bytes8("flags32", 0, 32);
    if (!extended)
        return w.data();

    w.words("computerWord7").bytes8("computerByte5").bytes8("computerByte1");
    w.words("quadWords", 0, 4).gap(bytesBeforeLastSetting(m_model, m_version)).bytes8("setting1");
    return w.data();
}

} // namespace simulator
