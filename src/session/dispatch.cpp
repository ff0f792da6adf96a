// SPDX-License-Identifier: MIT
#include "session/vardasession_p.h"

#include <algorithm>
#include <cstring>

namespace {

/** The buffer that the decoders take: the code, as much of the payload as fits, zeros. */
VardaData::Payload bufferOf(int code, const QByteArray &payload, quint16 length)
{
    VardaData::Payload buffer{};
    buffer[0] = std::uint8_t(code);
    const qsizetype told = std::min<qsizetype>(length, qsizetype(buffer.size())) - 1;
    const qsizetype count = std::clamp<qsizetype>(told, 0, payload.size());
    std::memcpy(buffer.data() + 1, payload.constData(), std::size_t(count));
    return buffer;
}

LayoutEntry layoutEntryOf(const QByteArray &payload)
{
    const auto at = [&payload](qsizetype i) {
        return i < payload.size() ? std::uint8_t(payload[i]) : std::uint8_t(0);
    };
    return {at(0), at(1), QString::fromLatin1(payload.mid(2))};
}

} // namespace

void VardaSession::Private::dispatchResponse(TidemarCommand::TidemarCommandIn command,
                                             const QByteArray &payload, quint16 length)
{
    if (command < 1 || command > 254)
        return;
    const VardaData::Payload buffer = bufferOf(command, payload, length);
    const bool accepted = buffer[1] != 0; // for the answers that say no more than that
    const bool closing = length < 2;      // an empty frame closes an answer of many

    switch (command) {
    case TidemarCommand::Identification:
        data.processIdentification(buffer);
        break;
    case TidemarCommand::Serialnumber:
        data.processSerialNumber(buffer);
        break;
    case TidemarCommand::Computer:
        data.processComputer(buffer, false);
        break;
    case TidemarCommand::Computer_new:
        data.processComputer(buffer, true);
        break;
    case TidemarCommand::Time:
    case TidemarCommand::Set_time:
        data.processTime(buffer);
        break;
    case TidemarCommand::Sensors:
        data.processSensors(buffer);
        break;
    case TidemarCommand::Set_sensors:
        data.processSensors(buffer);
        pressurePending = false;
        break;
    case TidemarCommand::Diver:
        data.processDiver(buffer);
        break;
    case TidemarCommand::Owner:
        data.processOwner(buffer);
        break;
    case TidemarCommand::SimulParams:
        data.processSimulationParams(buffer);
        break;
    case TidemarCommand::BootloaderVersion:
        data.processBootloaderVersion(buffer);
        break;
    case TidemarCommand::LayoutActiveGet:
        std::copy_n(payload.cbegin(), std::min<qsizetype>(payload.size(), kDiveModes),
                    activeLayouts.begin());
        break;

    case TidemarCommand::DeleteLastDive:
    case TidemarCommand::EraseDives:
        data.processDeleteDives(buffer, deleteResult);
        // One job to an application, whichever command it was.
        Q_EMIT q->endCommand(TidemarCommand::DeleteLastDive);
        return;

    case TidemarCommand::Set_owner:
        if (accepted)
            data.owner = pendingOwner;
        endOrRefuse(command, accepted, ExchangeError::SetOwnerError);
        return;
    case TidemarCommand::MarloSet:
        endOrRefuse(command, accepted, ExchangeError::GenericError);
        return;
    case TidemarCommand::LayoutRemove:
    case TidemarCommand::LayoutRemoveAll:
    case TidemarCommand::LayoutActiveSet:
        layoutSuccess = !closing && accepted;
        endOrRefuse(command, layoutSuccess, ExchangeError::GenericError);
        return;
    case TidemarCommand::LayoutAdd:
        onLayoutAdded(!closing && accepted);
        return;

    // Answers of many frames
    case TidemarCommand::Syslog:
        if (!closing)
            return data.processSyslog(buffer);
        break;
    case TidemarCommand::SyslogBin:
        if (!closing)
            return data.processSyslogBin(buffer);
        break;
    case TidemarCommand::Logbook:
        if (!closing)
            return onDiveHeader(buffer);
        break;
    case TidemarCommand::Fullsamples:
        data.processSamples(buffer, length);
        if (!closing)
            return;
        break;
    case TidemarCommand::GetGases:
        if (length >= 3)
            return data.processGetGases(buffer, length);
        break;
    case TidemarCommand::BatteryInformation:
        if (!closing)
            return data.processBatteryInformation(buffer, length);
        break;
    case TidemarCommand::LayoutList:
        if (!closing)
            return layouts.append(layoutEntryOf(payload));
        break;
    case TidemarCommand::LayoutGet:
        if (!closing) {
            layoutBlob += payload;
            return;
        }
        break;

    case TidemarCommand::Begin_program:
        return onFirmwareBegun(buffer);
    case TidemarCommand::BeginUpdate:
        return onUpdateBegun(buffer, length);
    case TidemarCommand::Program:
    case TidemarCommand::ProgramUpdate:
        return onFirmwareBlockDone(buffer);
    case TidemarCommand::End_program:
    case TidemarCommand::EndUpdate:
        return onFirmwareEnded(buffer);

    case TidemarCommand::Reset:
        return q->controllerDisconnect();
    default:
        return;
    }
    Q_EMIT q->endCommand(command);
}

void VardaSession::Private::endOrRefuse(TidemarCommand::TidemarCommandIn command, bool accepted,
                                        ExchangeError::ExchangeErrorIn refusal)
{
    if (accepted)
        Q_EMIT q->endCommand(command);
    else
        Q_EMIT q->exchangeError(command, refusal);
}

void VardaSession::Private::onLayoutAdded(bool accepted)
{
    layoutSuccess = accepted;
    if (!accepted)
        layoutUploadOffset = layoutUpload.size();
    if (accepted && layoutUploadOffset < layoutUpload.size())
        sendNextLayoutAddChunk();
    else
        endOrRefuse(TidemarCommand::LayoutAdd, accepted, ExchangeError::GenericError);
}

void VardaSession::Private::onDiveHeader(const VardaData::Payload &answer)
{
    const qsizetype row = data.diveHeaders.size();
    if (row == 0)
        headerRows.clear();
    data.processLogbook(answer);
    const quint16 number = data.diveHeaders.constLast().diveNumber;
    if (!headerRows.contains(number))
        headerRows.insert(number, row);
}
