// SPDX-License-Identifier: MIT
#include "session/vardasession_p.h"

#include <QtCore/qendian.h>

#include <algorithm>
#include <cmath>

#include <varda/firmwareimage.h>

namespace {

constexpr qsizetype kNameField = 32;
constexpr int kProgressBytes = 1000;

enum Rejection {
    UnknownImage = -1,
    SameBootloader = -2,
    SameFirmware = -3,
    BootloaderNotKnown = -4,
};

VardaSession::Ticks now()
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<VardaSession::Ticks>(sinceEpoch);
}

void appendWord(QByteArray &bytes, quint32 word)
{
    char raw[sizeof word];
    qToLittleEndian(word, raw);
    bytes.append(raw, sizeof raw);
}

/** The name is padded by its number of characters but written in UTF-8: so the computers count. */
QByteArray beginProgramPayload(const FirmwareImage &image)
{
    QByteArray payload = image.name.toUtf8();
    payload.append(std::max<qsizetype>(kNameField - image.name.size(), 0), '\0');
    appendWord(payload, image.version);
    appendWord(payload, quint32(image.size));
    appendWord(payload, image.checksum);
    return payload;
}

bool accepted(const VardaData::Payload &answer)
{
    return answer[1] != 0;
}

} // namespace

int VardaSession::uploadFirmware(const QByteArray &data, const QString &fileName, bool force)
{
    d->firmwareData = data;
    return d->uploadFirmware(fileName, force);
}

int VardaSession::Private::uploadFirmware(const QString &fileName, bool force)
{
    firmwarePosition = 0;
    firmwareDone = false;
    firmwareResumedAt = 0;
    firmwareEndSent = false;
    firmwareStartTime = now();
    if (firmwareData.isEmpty())
        return 0;
    firmwarePercentFactor = 100.0 / double(firmwareData.size());
    const int size = int(firmwareData.size());
    const int code = firmwareBeginProgram(fileName, force);
    return code != 0 ? code : size;
}

int VardaSession::Private::firmwareBeginProgram(const QString &fileName, bool force)
{
    const FirmwareImage image = FirmwareImage::fromData(firmwareData, fileName);
    switch (image.kind) {
    case FirmwareImage::Kind::WithoutHeader:
        firmwareLastPercent = -1;
        firmwareLastPosition = 0;
        send({TidemarCommand::Begin_program, beginProgramPayload(image)});
        return 0;
    case FirmwareImage::Kind::Firmware:
        if (image.version == data.firmwareVersion && !force)
            return SameFirmware;
        // Only a computer whose bootloader is known can be brought back from a bad firmware.
        if (data.bootloaderVersion == 0)
            return BootloaderNotKnown;
        break;
    case FirmwareImage::Kind::Bootloader:
        if (image.version == data.bootloaderVersion && !force)
            return SameBootloader;
        break;
    case FirmwareImage::Kind::Empty:
    case FirmwareImage::Kind::Unknown:
        return UnknownImage;
    }
    send({TidemarCommand::BeginUpdate, image.header});
    return 0;
}

void VardaSession::Private::firmwareExecuteProgram()
{
    const int blockSize = stepSize();
    const QByteArray block = firmwareData.mid(firmwarePosition, blockSize);
    // By the whole block, also for a shorter last one: the progress then ends above 100 %.
    firmwarePosition += blockSize;
    firmwareDone = firmwarePosition >= firmwareData.size();

    const int percent = int(std::floor(double(firmwarePosition) * firmwarePercentFactor));
    const bool tell = firmwarePosition - firmwareLastPosition > kProgressBytes
                      || percent != firmwareLastPercent;
    firmwareLastPercent = percent;
    firmwareLastPosition = firmwarePosition;
    if (tell) {
        const QPointer<VardaSession> alive(q);
        const quint64 before = sendCount;
        Q_EMIT q->uploadFirmwareProgress(int(firmwarePosition), percent);
        if (!alive || sendCount != before)
            return;
    }
    send({firmwareUpdateMode ? TidemarCommand::ProgramUpdate : TidemarCommand::Program, block});
}

void VardaSession::Private::firmwareEndProgram()
{
    firmwareEndSent = true;
    send(firmwareUpdateMode ? TidemarCommand::EndUpdate : TidemarCommand::End_program);
}

void VardaSession::Private::onFirmwareBegun(const VardaData::Payload &answer)
{
    if (!accepted(answer)) {
        Q_EMIT q->exchangeError(TidemarCommand::Begin_program, ExchangeError::BeginProgramError);
        return;
    }
    if (firmwareData.isEmpty())
        return; // an answer to nothing
    firmwareUpdateMode = false;
    firmwareExecuteProgram();
}

void VardaSession::Private::onUpdateBegun(const VardaData::Payload &answer, quint16 length)
{
    if (!accepted(answer)) {
        Q_EMIT q->exchangeError(TidemarCommand::BeginUpdate, ExchangeError::BeginProgramError);
        return;
    }
    if (firmwareData.isEmpty())
        return; // an answer to nothing
    if (length > 2)
        firmwarePosition = qFromLittleEndian<quint32>(answer.data() + 2);
    firmwareResumedAt = firmwarePosition;
    firmwareUpdateMode = true;
    firmwareDone = firmwarePosition >= firmwareData.size();
    if (firmwareDone)
        firmwareEndProgram(); // the computer has it all
    else
        firmwareExecuteProgram();
}

void VardaSession::Private::onFirmwareBlockDone(const VardaData::Payload &answer)
{
    if (!accepted(answer)) {
        Q_EMIT q->exchangeError(TidemarCommand::Program, ExchangeError::ProgramError);
        return;
    }
    if (firmwareData.isEmpty())
        return; // an answer to nothing
    if (firmwareDone)
        firmwareEndProgram();
    else
        firmwareExecuteProgram();
}

void VardaSession::Private::onFirmwareEnded(const VardaData::Payload &answer)
{
    if (!accepted(answer)) {
        Q_EMIT q->exchangeError(TidemarCommand::End_program, ExchangeError::EndProgramError);
        return;
    }
    firmwareElapsed = now() - firmwareStartTime;
    const QPointer<VardaSession> alive(q);
    const quint64 before = sendCount;
    Q_EMIT q->uploadFirmwareProgress(0, 100);
    if (alive)
        Q_EMIT q->endCommand(TidemarCommand::End_program);
    // A job that a slot has started must not lose its answer to the closing.
    if (alive && sendCount == before)
        send(TidemarCommand::Close);
}
