// SPDX-License-Identifier: MIT
#include "device/computer.h"

#include "device/commands.h"
#include "device/versiontext.h"
#include "device/wire/wirewriter.h"

#include <QtCore/qendian.h>
#include <QtCore/qjsonarray.h>

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
constexpr qsizetype kMarloSize = 14;
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
    : m_device(scenario),
      m_logbook(scenario.logbook, scenario.model),
      m_layouts(scenario.layouts),
      m_firmware(scenario.firmwareUpload)
{
    m_sinceClockSet.start();
}

QList<Frame> Computer::answer(const Frame &request)
{
    const quint8 command = request.command;
    if (const std::optional<bool> done = obey(command, request.payload))
        return {{command, *done ? kAccepted : kRefused}};
    if (const std::optional<QList<QByteArray>> list = answerList(command, request.payload)) {
        QList<Frame> frames;
        for (const QByteArray &payload : *list)
            frames.append(Frame{command, payload});
        frames.append(Frame{command, {}}); // a frame that carries nothing ends a list
        return frames;
    }
    const QByteArray payload = answerOnce(command, request.payload);
    if (payload.isEmpty())
        return {};
    return {{command, payload}};
}

// Answered with one frame; with none, if the computer does not know the command.
QByteArray Computer::answerOnce(quint8 command, const QByteArray &payload)
{
    switch (command) {
    case Identification:
        return identification();
    case Serialnumber:
        return m_device.serial;
    case ComputerSettings:
        return m_device.configuration.payload(false, m_device.owner.toUtf8());
    case ComputerSettingsNew:
        return m_device.configuration.payload(true, m_device.owner.toUtf8());
    case Time:
        return clock();
    case SetTime:
        return setTime(payload);
    case Sensors:
        return sensors();
    case SetSensors:
        return setSensors(payload);
    case Diver:
        return diver();
    case Owner:
        return owner();
    case DeleteLastDive:
        return deleteNewestDive();
    case EraseDives:
        return eraseDives();
    case SimulParams:
        return simulationParameters();
    case BootloaderVersion:
        return bootloaderVersion();
    case LayoutActiveGet:
        return m_layouts.active();
    case BeginUpdate:
        return m_firmware.beginUpdate(payload);
    default:
        return {};
    }
}

// Answered with any number of frames and an empty one that ends them.
std::optional<QList<QByteArray>> Computer::answerList(quint8 command,
                                                      const QByteArray &payload) const
{
    switch (command) {
    case ListDives:
        return m_logbook.headers(numbersIn(payload));
    case Fullsamples:
        return samples(payload);
    case Syslog:
        return m_device.log.lines;
    case SyslogBin:
        return m_device.log.records;
    case GetGases:
        return gases(payload);
    case LayoutList:
        return m_layouts.list();
    case LayoutGet:
        return m_layouts.get(payload);
    case BatteryInformation:
        return batteryInformation();
    default:
        return std::nullopt;
    }
}

// Answered with whether it was done.
std::optional<bool> Computer::obey(quint8 command, const QByteArray &payload)
{
    using enum FirmwareStore::Family;
    switch (command) {
    case SetSerialnumber:
        return setSerialNumber(payload);
    case SetDiver:
        return setDiver(payload);
    case SetOwner:
        return setOwner(payload);
    case MarloSet:
        return setMarlo(payload);
    case SuperUserMode:
        return setSuperUser(payload);
    case EraseDivesFlash:
        m_logbook.removeAll();
        return true;
    case LayoutAdd:
        return m_layouts.add(payload);
    case LayoutRemove:
        return m_layouts.remove(payload);
    case LayoutRemoveAll:
        return m_layouts.removeAll();
    case LayoutActiveSet:
        return m_layouts.setActive(payload);
    case BeginProgram:
        return m_firmware.beginProgram(payload);
    case Command::Program:
        return m_firmware.addBlock(FirmwareStore::Family::Program, payload);
    case ProgramUpdate:
        return m_firmware.addBlock(Update, payload);
    case EndProgram:
        return endUpload(FirmwareStore::Family::Program);
    case EndUpdate:
        return endUpload(Update);
    case BatteryInformationClear:
        m_device.battery.clear();
        return true;
    case CleanNvram:
        restTissues(m_device);
        return true;
    case Factoryreset:
        resetToFactory();
        return true;
    case Reset:
        ++m_resets;
        return true;
    case Sync:
    case Close:
        return true;
    default:
        return std::nullopt;
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

bool Computer::setOwner(const QByteArray &text)
{
    if (text.size() > kOwnerSize)
        return false;
    m_device.owner = QString::fromUtf8(text);
    return true;
}

bool Computer::setSerialNumber(const QByteArray &bytes)
{
    if (bytes.size() != m_device.serial.size())
        return false;
    m_device.serial = bytes;
    return true;
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

// The same bytes as it gives away.
bool Computer::setDiver(const QByteArray &loads)
{
    if (loads.size() != diver().size())
        return false;
    const auto value = [&](size_t index) {
        return qFromLittleEndian<float>(loads.constData() + 4 * index);
    };
    for (size_t i = 0; i < 16; ++i) {
        m_device.tissueN2[i] = value(i);
        m_device.tissueHe[i] = value(16 + i);
    }
    m_device.cns = value(32);
    return true;
}

bool Computer::setMarlo(const QByteArray &settings)
{
    if (settings.size() != kMarloSize)
        return false;
    m_marlo = settings;
    return true;
}

bool Computer::setSuperUser(const QByteArray &flag)
{
    if (flag.size() != 1 || quint8(flag.front()) > 1)
        return false;
    m_superUser = flag.front() == 1;
    return true;
}

bool Computer::endUpload(FirmwareStore::Family family)
{
    const std::optional<FirmwareStore::Installed> installed = m_firmware.end(family);
    if (installed)
        (installed->bootloader ? m_device.bootloader : m_device.firmware) = installed->version;
    return installed.has_value();
}

// What a diver set is gone; what the diver did stays.
void Computer::resetToFactory()
{
    m_device.owner.clear();
    m_layouts.removeAll();
    m_marlo.clear();
    m_superUser = false;
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

QList<QByteArray> Computer::samples(const QByteArray &number) const
{
    if (number.size() < 2)
        return {};
    return m_logbook.samples(qFromLittleEndian<quint16>(number.constData()));
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
    QJsonArray numbers;
    const QList<quint16> dives = m_logbook.numbers();
    for (const quint16 number : dives)
        numbers.append(int(number));
    QJsonObject state{
        {u"firmware"_s, versionText(m_device.firmware)},
        {u"bootloader"_s, versionText(m_device.bootloader)},
        {u"serial"_s, QString::fromLatin1(m_device.serial.toHex())},
        {u"owner"_s, m_device.owner},
        {u"clock"_s, now()},
        {u"psurf"_s, qint64(m_device.psurf)},
        {u"pamb"_s, qint64(m_device.pamb)},
        {u"surfacePressure"_s, qint64(m_device.configuration.value("surfacePressure"))},
        {u"dives"_s, m_logbook.size()},
        {u"diveNumbers"_s, numbers},
        {u"batteryRecords"_s, m_device.battery.size()},
        {u"marloSettings"_s, QString::fromLatin1(m_marlo.toHex())},
        {u"superUser"_s, m_superUser},
        {u"resets"_s, m_resets},
    };
    m_layouts.addTo(state);
    m_firmware.addTo(state);
    return state;
}

} // namespace simulator
