// SPDX-License-Identifier: MIT
#include "uddfreader_p.h"

#include <QtCore/qmetaobject.h>

#include <cmath>

#include "begin_p.h"
#include "number_p.h"

using namespace Qt::StringLiterals;

namespace {

constexpr double kLongestInterval = 255;

/** What the time between the first two samples says of all; the default without two. */
std::uint8_t intervalOf(const QList<DiveLine> &lines)
{
    const std::uint8_t otherwise = Dive().sampleInterval;
    if (lines.size() < 2)
        return otherwise;
    const double interval = lines[1].time - lines[0].time;
    if (!(interval >= 0 && interval <= kLongestInterval) || interval != std::floor(interval))
        return otherwise;
    return std::uint8_t(interval);
}

} // namespace

template <typename Function> void UddfReader::eachChild(Function function)
{
    while (m_xml.readNextStartElement()) {
        if (!function(m_xml.name().toString()))
            m_xml.skipCurrentElement();
    }
}

DivesRead UddfReader::read()
{
    readRoot();
    if (m_xml.hasError()) {
        return {.dives = {},
                .error = u"line %1: %2"_s.arg(m_xml.lineNumber()).arg(m_xml.errorString())};
    }
    return {.dives = m_dives, .error = {}};
}

void UddfReader::fail(const QString &what)
{
    if (!m_xml.hasError())
        m_xml.raiseError(what);
}

void UddfReader::readRoot()
{
    // Entities can grow without bound, and no file of ours has any.
    while (!m_xml.atEnd() && !m_xml.isStartElement()) {
        if (m_xml.readNext() == QXmlStreamReader::DTD)
            fail(u"a document type declaration is not read"_s);
    }
    if (m_xml.hasError())
        return;
    if (m_xml.name() != "uddf"_L1 || m_xml.namespaceUri() != QLatin1StringView(kUddfNamespace)) {
        fail(u"this is no UDDF 3.2 file"_s);
        return;
    }
    eachChild([this](const QString &name) {
        if (name == "diver"_L1)
            readOwner();
        else if (name == "gasdefinitions"_L1)
            readMixes();
        else if (name == "profiledata"_L1)
            eachChild([this](const QString &group) {
                if (group != "repetitiongroup"_L1)
                    return false;
                eachChild([this](const QString &dive) {
                    if (dive != "dive"_L1)
                        return false;
                    readDive();
                    return true;
                });
                return true;
            });
        else
            return false;
        return true;
    });
    // What stands behind the root may still be damaged.
    while (!m_xml.atEnd())
        m_xml.readNext();
}

void UddfReader::readOwner()
{
    eachChild([this](const QString &owner) {
        if (owner != "owner"_L1)
            return false;
        eachChild([this](const QString &name) {
            if (name == "personal"_L1) {
                readPersonal();
                return true;
            }
            if (name != "equipment"_L1)
                return false;
            eachChild([this](const QString &part) {
                if (part != "divecomputer"_L1)
                    return false;
                readComputer();
                return true;
            });
            return true;
        });
        return true;
    });
}

void UddfReader::readPersonal()
{
    QString first;
    QString last;
    eachChild([&](const QString &name) {
        if (name == "firstname"_L1)
            first = text();
        else if (name == "lastname"_L1)
            last = text();
        else
            return false;
        return true;
    });
    m_owner = QString(first + u' ' + last).trimmed();
}

void UddfReader::readComputer()
{
    const QString id = m_xml.attributes().value("id"_L1).toString();
    Computer computer;
    eachChild([&](const QString &name) {
        if (name == "model"_L1) {
            const int model = QMetaEnum::fromType<ComputerModel::ComputerModelIn>().keyToValue(
                text().toLatin1().constData());
            computer.model = ComputerModel::ComputerModelIn(qMax(model, 0));
        } else if (name == "serialnumber"_L1) {
            computer.serialNumber = text();
        } else {
            return false;
        }
        return true;
    });
    m_computers.insert(id, computer);
}

void UddfReader::readMixes()
{
    eachChild([this](const QString &name) {
        if (name != "mix"_L1)
            return false;
        readMix();
        return true;
    });
}

void UddfReader::readMix()
{
    const QString id = m_xml.attributes().value("id"_L1).toString();
    DiveGas gas;
    gas.nitrogen = -1;
    eachChild([&](const QString &name) {
        if (name == "o2"_L1)
            gas.oxygen = fraction();
        else if (name == "n2"_L1)
            gas.nitrogen = fraction();
        else if (name == "he"_L1)
            gas.helium = fraction();
        else
            return false;
        return true;
    });
    if (gas.nitrogen < 0)
        gas.nitrogen = qMax(0.0F, 1.0F - gas.oxygen - gas.helium);
    m_mixes.insert(id, gas);
}

void UddfReader::readDive()
{
    Dive dive;
    dive.ownerName = m_owner;
    m_gases.clear();
    eachChild([&](const QString &name) {
        if (name == "informationbeforedive"_L1)
            readBefore(dive);
        else if (name == "tankdata"_L1)
            readTank(dive);
        else if (name == "samples"_L1)
            readSamples(dive);
        else
            return false;
        return true;
    });
    dive.sampleInterval = intervalOf(dive.lines);
    m_dives.append(dive);
}

void UddfReader::readBefore(Dive &dive)
{
    eachChild([&](const QString &name) {
        if (name == "link"_L1) {
            const Computer computer = m_computers.value(reference());
            dive.model = computer.model;
            dive.serialNumber = computer.serialNumber;
        } else if (name == "divenumber"_L1) {
            const QString number = text();
            bool ok = false;
            dive.diveNumber = number.toUShort(&ok);
            dive.numberText = QString::number(dive.diveNumber);
            if (!ok)
                fail(u"\"%1\" is no number of a dive"_s.arg(number.left(40)));
        } else if (name == "datetime"_L1) {
            const QString begin = text();
            const std::optional<quint64> stamp = stampOf(begin);
            dive.stamp = stamp.value_or(0);
            if (!stamp)
                fail(u"\"%1\" is no date and time"_s.arg(begin.left(40)));
        } else {
            return false;
        }
        return true;
    });
}

void UddfReader::readTank(Dive &dive)
{
    eachChild([&](const QString &name) {
        if (name != "link"_L1)
            return false;
        static_cast<void>(gasOf(dive, reference()));
        return true;
    });
}

int UddfReader::gasOf(Dive &dive, const QString &id)
{
    if (const auto known = m_gases.constFind(id); known != m_gases.constEnd())
        return *known;
    const auto mix = m_mixes.constFind(id);
    if (mix == m_mixes.constEnd()) {
        fail(u"there is no mix \"%1\""_s.arg(id.left(40)));
        return -1;
    }
    const auto index = int(dive.gases.size());
    dive.gases.append(*mix);
    m_gases.insert(id, index);
    return index;
}

void UddfReader::readSamples(Dive &dive)
{
    DiveLine previous;
    eachChild([&](const QString &name) {
        if (name != "waypoint"_L1)
            return false;
        previous = readWaypoint(dive, previous);
        dive.lines.append(previous);
        return true;
    });
    // The first one was put before the first sample, which has a time of 0 as well.
    if (dive.lines.size() > 1 && dive.lines[1].time <= 0)
        dive.lines.removeFirst();
}

DiveLine UddfReader::readWaypoint(Dive &dive, const DiveLine &previous)
{
    DiveLine line;
    line.gasIndex = previous.gasIndex;
    bool hasDepth = false;
    bool hasTime = false;
    eachChild([&](const QString &name) {
        if (name == "depth"_L1) {
            line.depth = number(0);
            hasDepth = true;
        } else if (name == "divetime"_L1) {
            line.time = number(previous.time);
            hasTime = true;
        } else if (name == "switchmix"_L1) {
            line.gasIndex = gasOf(dive, reference());
        } else if (name == "temperature"_L1) {
            // Whole degrees come back as such.
            line.aux1Value = std::round((number(0) - kFreezing) * 10000) / 10000;
        } else {
            return false;
        }
        return true;
    });
    if (!hasDepth || !hasTime)
        fail(u"a waypoint has no depth or no time"_s);
    return line;
}

QString UddfReader::text()
{
    return m_xml.readElementText();
}

double UddfReader::number(double lowest)
{
    const QString value = text();
    const std::optional<double> number = toNumber(value);
    if (!number || *number < lowest)
        fail(u"\"%1\" is not a number of its kind"_s.arg(value.left(40)));
    return number.value_or(lowest);
}

float UddfReader::fraction()
{
    const QString value = text();
    const std::optional<float> number = toFloat(value);
    if (!number || *number < 0 || *number > 1)
        fail(u"\"%1\" is no fraction"_s.arg(value.left(40)));
    return number.value_or(0);
}

QString UddfReader::reference()
{
    const QString id = m_xml.attributes().value("ref"_L1).toString();
    m_xml.skipCurrentElement();
    return id;
}
