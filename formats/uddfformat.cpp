// SPDX-License-Identifier: MIT
#include <varda/uddfformat.h>

#include <QtCore/qhash.h>
#include <QtCore/qiodevice.h>
#include <QtCore/qmetaobject.h>
#include <QtCore/qxmlstream.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "begin_p.h"
#include "number_p.h"
#include "uddfreader_p.h"

#include <varda/diveprofile.h>

using namespace Qt::StringLiterals;

namespace {

constexpr double kMostAtSurface = 172800; // two days
// No dive is deeper or longer; readers of XML need not know longer numbers.
constexpr double kDeepest = 1e5;
constexpr double kLongest = 1e9;
constexpr double kHottest = 1e5;

/** To a millionth, and without the sign of -0. */
double rounded(double value)
{
    return std::round(value * 1e6) / 1e6 + 0.0;
}

/** What XML can carry of a text; all white space is one space. */
QString carried(const QString &text)
{
    QString result;
    const QList<uint> points = text.toUcs4();
    for (const uint point : points) {
        const bool allowed = point == '\t' || point == '\n' || point == '\r'
                             || (point >= 0x20 && point < 0xD800)
                             || (point >= 0xE000 && point < 0xFFFE) || point >= 0x10000;
        result += QChar::fromUcs4(allowed ? char32_t(point)
                                          : char32_t(QChar::ReplacementCharacter));
    }
    return result.simplified();
}

bool isUsable(const DiveLine &line, double timeBefore)
{
    return line.depth >= -kDeepest && line.depth <= kDeepest && line.time >= timeBefore
           && line.time <= kLongest;
}

bool areUsable(const QList<DiveLine> &lines)
{
    double time = 0;
    return std::all_of(lines.begin(), lines.end(), [&time](const DiveLine &line) {
        return isUsable(line, std::exchange(time, line.time));
    });
}

DiveLine surfaceBefore(const DiveLine &line)
{
    DiveLine surface;
    surface.aux1Value = line.aux1Value;
    surface.gasIndex = line.gasIndex;
    return surface;
}

/** With the samples that have a depth and a time, which never goes back and begins at 0. */
Dive writable(const Dive &dive)
{
    Dive result = dive;
    result.lines.clear();
    double time = 0;
    const bool hasTemperature = DiveProfile::fromDive(dive).temperature.has_value();
    for (DiveLine line : dive.lines) {
        if (!isUsable(line, time))
            continue;
        time = line.time;
        line.time = rounded(line.time);
        line.depth = rounded(std::max(line.depth, 0.0));
        if (!hasTemperature || !(line.aux1Value >= -kFreezing && line.aux1Value <= kHottest))
            line.aux1Value = 0;
        if (result.lines.isEmpty() && time > 0)
            result.lines.append(surfaceBefore(line));
        result.lines.append(line);
    }
    return result;
}

float fractionOf(float value)
{
    return value >= 0 ? float(rounded(std::min(double(value), 1.0))) : 0.0F;
}

class UddfWriter
{
public:
    explicit UddfWriter(QIODevice *device, const QList<Dive> &dives) : m_xml(device), m_dives(dives)
    {
        m_xml.setAutoFormatting(true);
        m_xml.setAutoFormattingIndent(1);
    }

    [[nodiscard]] bool write()
    {
        m_xml.writeStartDocument();
        m_xml.writeStartElement("uddf"_L1);
        m_xml.writeDefaultNamespace(QLatin1StringView(kUddfNamespace));
        m_xml.writeAttribute("version"_L1, u"3.2.3"_s);
        writeGenerator();
        writeDiver();
        writeGases();
        writeProfiles();
        m_xml.writeEndDocument();
        return !m_xml.hasError();
    }

    [[nodiscard]] QStringList messages() const { return m_messages; }

private:
    using Name = QLatin1StringView;

    void open(Name name) { m_xml.writeStartElement(name); }
    void open(Name name, const QString &id)
    {
        open(name);
        m_xml.writeAttribute("id"_L1, id);
    }
    void close() { m_xml.writeEndElement(); }
    void put(Name name, const QString &text) { m_xml.writeTextElement(name, text); }
    void put(Name name, double value) { put(name, decimals(value)); }
    void refer(Name name, const QString &id)
    {
        m_xml.writeEmptyElement(name);
        m_xml.writeAttribute("ref"_L1, id);
    }
    void report(const Dive &dive, const QString &what)
    {
        m_messages.append(u"Dive %1: %2"_s.arg(QString::number(dive.diveNumber), what));
    }

    void writeGenerator()
    {
        open("generator"_L1);
        put("name"_L1, u"libvarda"_s);
        put("type"_L1, u"converter"_s);
        put("version"_L1, QStringLiteral(VARDA_VERSION));
        close();
    }

    void writeDiver()
    {
        const QString owner = m_dives.isEmpty() ? QString() : carried(m_dives.front().ownerName);
        const qsizetype space = owner.lastIndexOf(u' ');
        open("diver"_L1);
        open("owner"_L1, u"owner"_s);
        open("personal"_L1);
        put("firstname"_L1, owner.left(qMax<qsizetype>(space, 0)));
        put("lastname"_L1, owner.mid(space + 1));
        close();
        open("equipment"_L1);
        for (const Dive &dive : m_dives) {
            if (carried(dive.ownerName) != owner)
                report(dive, u"its owner is another than the first dive's, and is not written"_s);
            writeComputer(dive);
        }
        close();
        close();
        close();
    }

    void writeComputer(const Dive &dive)
    {
        const QString key = computerKey(dive);
        if (m_computers.contains(key))
            return;
        const QString id = u"computer%1"_s.arg(m_computers.size() + 1);
        m_computers.insert(key, id);
        const QString model = modelName(dive);
        open("divecomputer"_L1, id);
        put("name"_L1, model);
        put("model"_L1, model);
        if (const QString number = carried(dive.serialNumber); !number.isEmpty())
            put("serialnumber"_L1, number);
        close();
    }

    static QString modelName(const Dive &dive)
    {
        const char *name = QMetaEnum::fromType<ComputerModel::ComputerModelIn>().valueToKey(
            dive.model);
        return name ? QString::fromLatin1(name) : u"Unknown"_s;
    }
    static QString computerKey(const Dive &dive)
    {
        return modelName(dive) + u'\n' + carried(dive.serialNumber);
    }

    void writeGases()
    {
        open("gasdefinitions"_L1);
        for (const Dive &dive : m_dives) {
            const QStringList keys = mixKeys(dive);
            for (qsizetype i = 0; i < keys.size(); ++i)
                writeMix(keys[i], dive.gases[i]);
        }
        close();
    }

    void writeMix(const QString &key, const DiveGas &gas)
    {
        if (m_mixes.contains(key))
            return;
        const QString id = u"mix%1"_s.arg(m_mixes.size() + 1);
        m_mixes.insert(key, id);
        open("mix"_L1, id);
        put("name"_L1, nameOf(gas));
        put("o2"_L1, decimals(fractionOf(gas.oxygen)));
        put("n2"_L1, decimals(fractionOf(gas.nitrogen)));
        put("he"_L1, decimals(fractionOf(gas.helium)));
        close();
    }

    static QString nameOf(const DiveGas &gas)
    {
        DiveGas mix;
        mix.oxygen = fractionOf(gas.oxygen);
        mix.helium = fractionOf(gas.helium);
        return DiveProfile::gasName(mix);
    }

    /** A mix that a dive has twice is two, so that a change from one to the other can be seen. */
    static QStringList mixKeys(const Dive &dive)
    {
        QStringList keys;
        QHash<QString, int> occurrences;
        for (const DiveGas &gas : dive.gases) {
            const QString key = u"%1 %2 %3 "_s.arg(decimals(fractionOf(gas.oxygen)),
                                                   decimals(fractionOf(gas.helium)),
                                                   decimals(fractionOf(gas.nitrogen)));
            keys.append(key + QString::number(++occurrences[key]));
        }
        return keys;
    }

    void writeProfiles()
    {
        open("profiledata"_L1);
        int groups = 0;
        for (qsizetype i = 0; i < m_dives.size(); ++i) {
            const Dive dive = writable(m_dives[i]);
            const double interval = i == 0 ? -1 : surfaceInterval(m_dives[i - 1], dive);
            if (interval < 0) {
                if (groups > 0)
                    close();
                open("repetitiongroup"_L1, u"group%1"_s.arg(++groups));
            }
            if (!areUsable(m_dives[i].lines))
                report(dive, u"samples without a usable time or depth are left out"_s);
            writeDive(dive, u"dive%1"_s.arg(i + 1), interval);
        }
        if (groups > 0)
            close();
        close();
    }

    /** Seconds since the dive before; below 0 if this dive begins a group of its own. */
    static double surfaceInterval(const Dive &before, const Dive &dive)
    {
        if (beginText(before.stamp).isEmpty() || beginText(dive.stamp).isEmpty()
            || computerKey(before) != computerKey(dive)) {
            return -1;
        }
        const double duration = DiveProfile::fromDive(writable(before)).duration;
        const double interval = rounded(double(dive.stamp) - double(before.stamp) - duration);
        return interval <= kMostAtSurface ? interval : -1;
    }

    void writeDive(const Dive &dive, const QString &id, double interval)
    {
        const QStringList keys = mixKeys(dive);
        QStringList mixes;
        mixes.reserve(keys.size());
        for (const QString &key : keys)
            mixes.append(m_mixes.value(key));
        open("dive"_L1, id);
        writeBefore(dive, interval);
        for (const QString &mix : mixes) {
            open("tankdata"_L1);
            refer("link"_L1, mix);
            close();
        }
        if (!dive.lines.isEmpty())
            writeSamples(dive, mixes);
        writeAfter(dive);
        close();
    }

    void writeBefore(const Dive &dive, double interval)
    {
        QString begin = beginText(dive.stamp);
        if (begin.isEmpty()) {
            begin = QLatin1StringView(kStandInDate);
            report(dive, u"its begin is unknown; %1 is written instead"_s.arg(begin));
        }
        open("informationbeforedive"_L1);
        refer("link"_L1, m_computers.value(computerKey(dive)));
        put("divenumber"_L1, QString::number(dive.diveNumber));
        put("datetime"_L1, begin);
        open("surfaceintervalbeforedive"_L1);
        if (interval < 0)
            m_xml.writeEmptyElement("infinity"_L1);
        else
            put("passedtime"_L1, interval);
        close();
        close();
    }

    void writeSamples(const Dive &dive, const QStringList &mixes)
    {
        const bool hasTemperature = DiveProfile::fromDive(dive).temperature.has_value();
        const DiveLine &first = dive.lines.front();
        // Dives begin at the surface. Two waypoints at 0 s are a sign that this one was put there.
        const bool atSurface = first.depth <= 0;
        const bool ambiguous = dive.lines.size() > 1 && dive.lines[1].time <= 0;
        int gas = -1;
        const auto waypoint = [&](const DiveLine &line, double depth, double time) {
            open("waypoint"_L1);
            put("depth"_L1, depth);
            put("divetime"_L1, time);
            const int wanted = gasAt(line, mixes, gas);
            if (wanted != gas) {
                gas = wanted;
                refer("switchmix"_L1, mixes[gas]);
            }
            if (hasTemperature)
                put("temperature"_L1, kelvin(line.aux1Value));
            close();
        };
        open("samples"_L1);
        if (!atSurface || ambiguous)
            waypoint(first, 0, 0);
        for (const DiveLine &line : dive.lines)
            waypoint(line, line.depth, line.time);
        close();
    }

    /** A sample without a gas has the one before; the first one, the first gas. */
    static int gasAt(const DiveLine &line, const QStringList &mixes, int before)
    {
        if (line.gasIndex >= 0 && line.gasIndex < mixes.size())
            return line.gasIndex;
        return mixes.isEmpty() ? -1 : qMax(before, 0);
    }

    static double kelvin(double celsius)
    {
        return std::round((celsius + kFreezing) * 10000) / 10000;
    }

    void writeAfter(const Dive &dive)
    {
        const DiveProfile profile = DiveProfile::fromDive(dive);
        open("informationafterdive"_L1);
        put("greatestdepth"_L1, profile.maximumDepth);
        put("averagedepth"_L1, rounded(profile.meanDepth));
        put("diveduration"_L1, profile.duration);
        close();
    }

    QXmlStreamWriter m_xml;
    const QList<Dive> &m_dives;
    QStringList m_messages;
    QHash<QString, QString> m_computers;
    QHash<QString, QString> m_mixes;
};

} // namespace

DivesWritten UddfFormat::write(QIODevice *device, const QList<Dive> &dives)
{
    UddfWriter writer(device, dives);
    const bool ok = writer.write();
    return {.error = ok ? QString() : device->errorString(), .messages = writer.messages()};
}

DivesRead UddfFormat::read(QIODevice *device)
{
    return UddfReader(device).read();
}
