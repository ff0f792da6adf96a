// SPDX-License-Identifier: MIT
#include "traces/framewords.h"

#include "output/safetext.h"
#include "output/text.h"

#include <QtCore/qendian.h>
#include <QtCore/qmetaobject.h>

#include <varda/deletedivesresult.h>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
using namespace TidemarCommand;

namespace {

/** As the decoders want it: the command, then what it carries. */
VardaData::Payload payloadOf(const VardaTraceFrame &frame)
{
    VardaData::Payload payload{};
    payload[0] = std::uint8_t(frame.command);
    const qsizetype size = qMin(frame.payload.size(), qsizetype(payload.size()) - 1);
    std::copy_n(frame.payload.cbegin(), size, payload.begin() + 1);
    return payload;
}

template <typename Number> Number numberAt(const QByteArray &bytes, qsizetype at)
{
    return bytes.size() >= at + qsizetype(sizeof(Number))
               ? qFromLittleEndian<Number>(bytes.constData() + at)
               : Number(0);
}

/** The answers that say only whether the computer has done it. */
bool isAcknowledgement(TidemarCommandIn command)
{
    constexpr std::array kAcknowledged = {
        Begin_program, Program,  End_program, BeginUpdate,  ProgramUpdate,   EndUpdate,
        Set_owner,     MarloSet, LayoutAdd,   LayoutRemove, LayoutRemoveAll, LayoutActiveSet,
    };
    return std::find(kAcknowledged.begin(), kAcknowledged.end(), command) != kAcknowledged.end();
}

bool endsWithShortFrame(TidemarCommandIn command)
{
    constexpr std::array kLists = {Syslog,     Logbook,   Fullsamples, SyslogBin,
                                   LayoutList, LayoutGet, GetGases,    BatteryInformation};
    return std::find(kLists.begin(), kLists.end(), command) != kLists.end();
}

QString requestWords(const VardaTraceFrame &frame)
{
    const QByteArray &payload = frame.payload;
    if (payload.isEmpty())
        return {};
    switch (frame.command) {
    case Set_time:
        return clockText(numberAt<qint64>(payload, 0));
    case Set_sensors:
        return u"pressure %1"_s.arg(numberAt<quint32>(payload, 0));
    case Logbook:
        return u"without %1 known dives"_s.arg(payload.size() / 2);
    case Fullsamples:
        return u"dive %1"_s.arg(numberAt<quint16>(payload, 0));
    case Set_owner:
        return safeText(QString::fromUtf8(payload));
    case Program:
    case ProgramUpdate:
    case LayoutAdd:
        return bytesText(double(payload.size()));
    case SuperUserMode:
        return payload[0] ? u"on"_s : u"off"_s;
    default:
        return QString::fromLatin1(payload.toHex(' '));
    }
}

QString logText(const SyslogBinRecord &record)
{
    return clockText(record.time) + u' ' + convertSyslogRecord(record, true).trimmed();
}

QString nameOfModel(ComputerModel::ComputerModelIn model)
{
    return QString::fromLatin1(
        QMetaEnum::fromType<ComputerModel::ComputerModelIn>().valueToKey(model));
}

} // namespace

QString FrameWords::nameOf(const VardaTraceFrame &frame)
{
    const char *const name = QMetaEnum::fromType<TidemarCommandIn>().valueToKey(frame.command);
    return name ? QString::fromLatin1(name) : u"command %1"_s.arg(int(frame.command));
}

QString FrameWords::faultOf(const VardaTraceFrame &frame)
{
    switch (frame.state) {
    case VardaTraceFrame::WrongChecksum:
        return u"the checksum is wrong"_s;
    case VardaTraceFrame::CutShort:
        return u"the frame has no end, %1 bytes have come"_s.arg(frame.payload.size());
    case VardaTraceFrame::NoFrame:
        return u"%1 bytes that are no frame"_s.arg(frame.payload.size());
    default:
        return {};
    }
}

QString FrameWords::words(const VardaTraceFrame &frame)
{
    if (frame.state != VardaTraceFrame::Sound)
        return {};
    return frame.isRequest ? requestWords(frame) : answer(frame);
}

QString FrameWords::answer(const VardaTraceFrame &frame)
{
    const qsizetype size = frame.payload.size();
    if (endsWithShortFrame(frame.command) && size < (frame.command == GetGases ? 2 : 1))
        return u"end"_s;
    if (isAcknowledgement(frame.command))
        return size > 0 && frame.payload[0] ? u"done"_s : u"refused"_s;
    return size == 0 ? QString() : decoded(frame, payloadOf(frame));
}

QString FrameWords::decoded(const VardaTraceFrame &frame, const VardaData::Payload &payload)
{
    switch (frame.command) {
    case Identification:
        m_data.processIdentification(payload);
        return u"%1, firmware %2"_s.arg(nameOfModel(m_data.computerModel),
                                        safeText(versionText(m_data.firmwareVersionStr)));
    case Serialnumber:
        m_data.processSerialNumber(payload);
        return safeText(m_data.serialNumber);
    case BootloaderVersion:
        m_data.processBootloaderVersion(payload);
        return safeText(versionText(m_data.bootloaderVersionStr));
    case Owner:
        m_data.processOwner(payload);
        return safeText(m_data.owner);
    case Time:
    case Set_time:
        m_data.processTime(payload);
        return clockText(m_data.computerTime);
    case Sensors:
    case Set_sensors:
        m_data.processSensors(payload);
        return u"pamb %1, dstop %2"_s.arg(m_data.pamb).arg(m_data.dstop);
    case SimulParams:
        m_data.processSimulationParams(payload);
        return u"psurf %1, pamb %2, density %3"_s.arg(m_data.psurf)
            .arg(m_data.pamb)
            .arg(m_data.density);
    case Diver:
        m_data.processDiver(payload);
        return u"CNS %1"_s.arg(double(m_data.diverCns));
    case Computer:
    case Computer_new:
        return configuration(payload, frame.command == Computer_new);
    case DeleteLastDive:
    case EraseDives: {
        DeleteDivesResult result;
        m_data.processDeleteDives(payload, result);
        return u"%1, %2"_s.arg(result.resultA).arg(result.resultB);
    }
    case Logbook:
        m_data.diveHeaders.clear();
        m_data.processLogbook(payload);
        return u"dive %1"_s.arg(m_data.diveHeaders.constLast().diveNumber);
    case Fullsamples:
    case LayoutGet:
        return bytesText(double(frame.payload.size()));
    case Syslog:
        m_data.syslog.clear();
        m_data.processSyslog(payload);
        return safeText(m_data.syslog.trimmed());
    case SyslogBin:
        m_data.syslogBin.clear();
        m_data.processSyslogBin(payload);
        return logText(m_data.syslogBin.constLast());
    case LayoutList:
        return safeText(QString::fromLatin1(frame.payload.mid(2)));
    case BatteryInformation:
        m_data.batteryInfo.clear();
        m_data.processBatteryInformation(payload, std::uint16_t(frame.payload.size() + 1));
        return u"%1 entries"_s.arg(m_data.batteryInfo.size());
    default:
        return QString::fromLatin1(frame.payload.toHex(' '));
    }
}

QString FrameWords::configuration(const VardaData::Payload &payload, bool extended)
{
    m_data.processComputer(payload, extended);
    return u"surface pressure %1 mbar, battery %2"_s.arg(m_data.config.surfacePressure)
        .arg(m_data.computer.getBatteryStr());
}
