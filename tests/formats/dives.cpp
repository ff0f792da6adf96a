// SPDX-License-Identifier: MIT
#include "dives.h"

#include <QtCore/qfile.h>

#include <limits>
#include <random>

namespace {

constexpr int kDives = 500;
constexpr int kMostSamples = 80;

class Generator
{
public:
    Dive dive()
    {
        Dive dive;
        forEachField<Dive>([&](QLatin1StringView, auto get, auto set) {
            auto value = get(dive);
            fill(value);
            set(dive, value);
        });
        dive.model = ComputerModel::ComputerModelIn(number(0, 4));
        dive.numberText = QString::number(dive.diveNumber);
        const int computer = number(1, 3);
        dive.serialNumber = QStringLiteral("00420017-3138510D-%1").arg(computer);
        dive.ownerName = QStringLiteral("Ada Lindqvist");
        m_clock += std::uint64_t(number(1800, 400000));
        // Now and then a clock was never set.
        if (number(0, 19) == 0)
            dive.stamp = std::uint64_t(number(0, 100000));
        else
            dive.stamp = m_clock;
        dive.sampleInterval = std::uint8_t(number(1, 30));
        dive.gases = gases();
        dive.lines = lines(dive.sampleInterval, int(dive.gases.size()));
        return dive;
    }

private:
    int number(int least, int most)
    {
        return std::uniform_int_distribution<int>(least, most)(m_random);
    }

    template <typename Type> void fill(Type &value)
    {
        if constexpr (hasFields<Type>) {
            forEachField<Type>([&](QLatin1StringView, auto get, auto set) {
                auto field = get(value);
                fill(field);
                set(value, field);
            });
        } else if constexpr (std::is_enum_v<Type>) {
            value = Type(number(0, 3));
        } else if constexpr (std::is_same_v<Type, bool>) {
            value = number(0, 1) == 1;
        } else if constexpr (std::is_floating_point_v<Type>) {
            value = Type(number(-1000000, 1000000)) / Type(7);
        } else {
            value = Type(m_random());
        }
    }
    template <typename Type, std::size_t N> void fill(std::array<Type, N> &values)
    {
        for (Type &each : values)
            fill(each);
    }
    template <typename Type> void fill(QList<Type> &values)
    {
        values.resize(number(0, 3));
        for (Type &each : values)
            fill(each);
    }
    void fill(QString &text)
    {
        text.clear();
        for (int length = number(0, 6); length > 0; --length)
            text += QChar::fromUcs4(char32_t(number(0x20, 0x17F)));
    }

    QList<DiveGas> gases()
    {
        QList<DiveGas> gases;
        for (int count = number(0, 12); count > 0; --count) {
            DiveGas gas;
            fill(gas);
            const int oxygen = number(5, 100);
            const int helium = number(0, 100 - oxygen);
            gas.oxygen = float(oxygen) / 100;
            gas.helium = float(helium) / 100;
            gas.nitrogen = float(100 - oxygen - helium) / 100;
            gases.append(gas);
        }
        return gases;
    }

    QList<DiveLine> lines(int interval, int gases)
    {
        const bool hasTemperature = number(0, 3) > 0;
        QList<DiveLine> lines;
        int gas = gases > 0 ? number(0, gases - 1) : -1;
        for (int i = 0, count = number(0, kMostSamples); i < count; ++i) {
            DiveLine line;
            fill(line);
            line.time = i * double(interval);
            line.depth = number(0, 4095) / 10.0;
            line.aux1Value = hasTemperature ? number(-2, 35) : 0;
            if (gases > 0 && number(0, 9) == 0)
                gas = number(0, gases - 1);
            line.gasIndex = gas;
            lines.append(line);
        }
        return lines;
    }

    std::mt19937 m_random{20240301};
    std::uint64_t m_clock = 1600000000;
};

QStringList hostileTexts()
{
    return {
        QStringLiteral("]]> <!-- & \" ' </owner>"),
        QString(QChar(0)) + QChar(1) + QChar(0x1F) + QChar(0x7F) + QChar(0x85),
        QString(QChar(0xD800)) + QStringLiteral("x") + QChar(0xDC00),
        QString(QChar(0xFFFE)) + QChar(0xFFFF),
        QStringLiteral("=HYPERLINK(\"http://example.com\",\"a, b\")"),
        QStringLiteral("+1"),
        QStringLiteral("-1"),
        QStringLiteral("@SUM(A1)"),
        QStringLiteral("'quoted"),
        QStringLiteral("\t=1"),
        QStringLiteral("two\nlines\r\nand, a \"quote\""),
        QStringLiteral("  spaces  around  "),
        QString::fromUcs4(U"\U0001F420 ångström"),
        QString(5000, QChar(u'x')),
    };
}

} // namespace

Dive smallDive()
{
    Dive dive;
    dive.diveNumber = 3;
    dive.numberText = QStringLiteral("3");
    dive.model = ComputerModel::Varda;
    dive.stamp = 1709374510; // 2024-03-02 10:15:10
    dive.sampleInterval = 10;
    dive.serialNumber = QStringLiteral("00420017-3138510D-37373934");
    dive.firmwareVersion = QStringLiteral("1.4.2.b");
    dive.ownerName = QStringLiteral("Ada Lindqvist");
    DiveGas air;
    DiveGas trimix;
    trimix.oxygen = 0.18F;
    trimix.helium = 0.45F;
    trimix.nitrogen = 0.37F;
    dive.gases = {air, trimix};
    const auto add = [&dive](double depth, double temperature, int gas) {
        DiveLine line;
        line.time = 10.0 * double(dive.lines.size());
        line.depth = depth;
        line.aux1Value = temperature;
        line.gasIndex = gas;
        dive.lines.append(line);
    };
    add(1.2, 10, 0);
    add(44.1, 6, 1);
    add(20.5, -1, 1);
    add(0, 10, 0);
    return dive;
}

QList<Dive> generatedDives()
{
    const int wanted = qEnvironmentVariableIntValue("VARDA_FORMATS_DIVES");
    Generator generator;
    QList<Dive> dives;
    for (int i = 0; i < (wanted > 0 ? wanted : kDives); ++i)
        dives.append(generator.dive());
    return dives;
}

QList<Dive> hostileDives()
{
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    QList<Dive> dives;
    for (const QString &text : hostileTexts()) {
        Dive dive = smallDive();
        dive.ownerName = dive.serialNumber = dive.firmwareVersion = dive.text1 = text;
        dives.append(dive);
    }
    for (const double value : {kNaN, kInfinity, -kInfinity, -1.0, 1e300, 5e-324, -0.0}) {
        for (double DiveLine::*field : {&DiveLine::time, &DiveLine::depth, &DiveLine::aux1Value}) {
            for (const int at : {0, 2, 3}) {
                Dive dive = smallDive();
                dive.lines[at].*field = value;
                dives.append(dive);
            }
        }
        Dive dive = smallDive();
        dive.gases[0].oxygen = dive.gases[1].helium = dive.gases[1].nitrogen = float(value);
        dives.append(dive);
    }
    for (const quint64 stamp :
         {quint64(0), std::numeric_limits<quint64>::max(), quint64(1) << 53, quint64(4102444800)}) {
        Dive dive = smallDive();
        dive.stamp = stamp;
        dives.append(dive);
    }
    for (const int gas :
         {-1, 2, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        Dive dive = smallDive();
        dive.lines[0].gasIndex = dive.lines[2].gasIndex = gas;
        dives.append(dive);
        dive.gases.clear();
        dives.append(dive);
    }
    Dive frozen = smallDive();
    frozen.sampleInterval = 0;
    for (DiveLine &line : frozen.lines)
        line.time = 0;
    dives.append(frozen);
    Dive unknownModel = smallDive();
    unknownModel.model = ComputerModel::ComputerModelIn(77);
    dives.append(unknownModel);
    dives.append(Dive());
    return dives;
}

QString differenceFromGolden(const QString &name, const QByteArray &text)
{
    QByteArray found = text;
    found.replace("<version>" VARDA_VERSION "<", "<version>@VERSION@<");
    QFile file(QStringLiteral(VARDA_FORMATS_GOLDEN "/") + name);
    if (qEnvironmentVariableIsSet("VARDA_UPDATE_GOLDEN")) {
        if (!file.open(QIODevice::WriteOnly) || file.write(found) != found.size())
            return file.errorString();
        return {};
    }
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    const QByteArray expected = file.readAll();
    return found == expected
               ? QString()
               : QStringLiteral("%1 differs:\n%2").arg(name, QString::fromUtf8(found));
}
