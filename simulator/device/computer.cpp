// SPDX-License-Identifier: MIT
#include "device/computer.h"

#include "device/commands.h"
#include "device/wirewriter.h"

#include <QtCore/QtEndian>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

// The code that an identification carries tells the model by its tens.
quint8 identificationCode(Model model, int recordVersion)
{
    switch (model) {
    case Model::Varda:
        return quint8(10 + recordVersion);
    case Model::Tidemar:
        return quint8(20 + recordVersion);
    case Model::Vskm:
        return quint8(30 + recordVersion);
    case Model::None:
    case Model::ThirdParty:
        break;
    }
    return quint8(recordVersion);
}

bool hasBootloaderInIdentification(Model model)
{
    return model == Model::Tidemar || model == Model::Vskm;
}

const QByteArray kAccepted(1, '\x01');
const QByteArray kRefused(1, '\x00');
constexpr qsizetype kOwnerSize = 32;
constexpr qsizetype kBatteryRecordsPerFrame = 4;

QSet<quint16> numbersIn(const QByteArray &payload)
{
    QSet<quint16> numbers;
    for (qsizetype i = 0; i + 1 < payload.size(); i += 2)
        numbers.insert(qFromLittleEndian<quint16>(payload.constData() + i));
    return numbers;
}

} // namespace

Computer::Computer(const DeviceScenario &scenario)
    : m_device(scenario), m_logbook(scenario.logbook, scenario.model)
{
    m_sinceClockSet.start();
}

QList<Frame> Computer::answer(const Frame &request)
{
    const auto one = [&](const QByteArray &payload) {
        return QList<Frame>{{request.command, payload}};
    };
    // A list ends with a frame that carries nothing.
    const auto closed = [&](const QList<QByteArray> &payloads) {
        QList<Frame> frames;
        for (const QByteArray &payload : payloads)
            frames.append(Frame{request.command, payload});
        frames.append(Frame{request.command, {}});
        return frames;
    };

    const QByteArray &payload = request.payload;
    switch (request.command) {
    case Identification:
        return one(identification());
    case Serialnumber:
        return one(m_device.serial);
    case ComputerSettings:
        return one(m_device.configuration.payload(false, m_device.owner.toUtf8()));
    case ComputerSettingsNew:
        return one(m_device.configuration.payload(true, m_device.owner.toUtf8()));
    case Time:
        return one(clock());
    case SetTime:
        return one(setTime(payload));
    case Sensors:
        return one(sensors());
    case SetSensors:
        return one(setSensors(payload));
    case Diver:
        return one(diver());
    case Owner:
        return one(owner());
    case SetOwner:
        return one(setOwner(payload));
    case DeleteLastDive:
        return one(deleteNewestDive());
    case EraseDives:
        return one(eraseDives());
    case EraseDivesFlash:
        m_logbook.removeAll();
        return one(kAccepted);
    case ListDives:
        return closed(m_logbook.headers(numbersIn(payload)));
    case Fullsamples:
        return closed(payload.size() < 2
                          ? QList<QByteArray>()
                          : m_logbook.samples(qFromLittleEndian<quint16>(payload.constData())));
    case SimulParams:
        return one(simulationParameters());
    case BootloaderVersion:
        return one(bootloaderVersion());
    case GetGases:
        return closed(gases(payload));
    case BatteryInformation:
        return closed(batteryInformation());
    case BatteryInformationClear:
        m_device.battery.clear();
        return one(kAccepted);
    case Reset:
        ++m_resets;
        return one(kAccepted);
    default:
        return {};
    }
}

QByteArray Computer::identification() const
{
    WireWriter w;
    w.u32(m_device.firmware).u8(identificationCode(m_device.model, m_device.recordVersion));
    if (hasBootloaderInIdentification(m_device.model))
        w.u32(m_device.bootloader);
    return w.data();
}

QByteArray Computer::bootloaderVersion() const
{
    return WireWriter().u32(m_device.bootloader).data();
}

QByteArray Computer::owner() const
{
    return m_device.owner.toUtf8() + '\0';
}

QByteArray Computer::setOwner(const QByteArray &text)
{
    if (text.size() > kOwnerSize)
        return kRefused;
    m_device.owner = QString::fromUtf8(text);
    return kAccepted;
}

qint64 Computer::now() const
{
    return m_device.clock + (m_device.clockRuns ? m_sinceClockSet.elapsed() / 1000 : 0);
}

QByteArray Computer::clock() const
{
    return WireWriter().i64(now()).data();
}

QByteArray Computer::setTime(const QByteArray &payload)
{
    if (payload.size() >= 8) {
        m_device.clock = qFromLittleEndian<qint64>(payload.constData());
        m_sinceClockSet.restart();
    }
    return clock();
}

QByteArray Computer::sensors() const
{
    return WireWriter().filler(1).u32(m_device.pamb).u16(m_device.dstop).data();
}

QByteArray Computer::setSensors(const QByteArray &payload)
{
    if (payload.size() >= 4) {
        m_device.pamb = m_device.psurf = qFromLittleEndian<quint32>(payload.constData());
        m_device.configuration.set("surfacePressure", std::min(m_device.psurf, 0xFFFFU));
    }
    return sensors();
}

QByteArray Computer::diver() const
{
    WireWriter w;
    for (const float load : m_device.tissueN2)
        w.f32(load);
    for (const float load : m_device.tissueHe)
        w.f32(load);
    return w.f32(m_device.cns).data();
}

QByteArray Computer::simulationParameters() const
{
    return WireWriter().u32(m_device.psurf).u32(m_device.pamb).u16(m_device.density).data();
}

// Both answers tell how many dives went and how many are left.
QByteArray Computer::deleteNewestDive()
{
    const quint32 deleted = m_logbook.size() > 0 ? 1 : 0;
    m_logbook.removeNewest();
    return WireWriter().u32(deleted).u32(quint32(m_logbook.size())).data();
}

QByteArray Computer::eraseDives()
{
    const auto erased = quint32(m_logbook.size());
    m_logbook.removeAll();
    return WireWriter().u32(erased).u32(0).data();
}

QList<QByteArray> Computer::gases(const QByteArray &payload) const
{
    const quint8 table = payload.isEmpty() ? 0 : quint8(payload.front());
    QList<QByteArray> entries;
    for (int i = 0; i < m_device.configuration.gasCount(); ++i) {
        const quint64 mix = m_device.configuration.value(table ? "gasTable2" : "gasTable1", i);
        const auto oxygen = float(mix & 0xFF);
        const auto helium = float(mix >> 8);
        entries.append(WireWriter()
                           .u8(table)
                           .u8(quint8(i))
                           .filler(8)
                           .f32(oxygen / 100.0F)
                           .f32(helium / 100.0F)
                           .data());
    }
    return entries;
}

QList<QByteArray> Computer::batteryInformation() const
{
    QList<QByteArray> payloads;
    for (qsizetype i = 0; i < m_device.battery.size(); i += kBatteryRecordsPerFrame) {
        WireWriter w;
        for (const BatteryWords &words : m_device.battery.mid(i, kBatteryRecordsPerFrame))
            w.u32(words.first).u32(words.second);
        payloads.append(w.data());
    }
    return payloads;
}

QJsonObject Computer::state() const
{
    return {
        {u"owner"_s, m_device.owner},
        {u"clock"_s, now()},
        {u"psurf"_s, qint64(m_device.psurf)},
        {u"pamb"_s, qint64(m_device.pamb)},
        {u"surfacePressure"_s, qint64(m_device.configuration.value("surfacePressure"))},
        {u"dives"_s, m_logbook.size()},
        {u"batteryRecords"_s, m_device.battery.size()},
        {u"resets"_s, m_resets},
    };
}

} // namespace simulator
