// SPDX-License-Identifier: MIT
#include "session/vardasession_p.h"

#include <QtCore/qendian.h>
#include <QtCore/qfile.h>
#include <QtCore/qfileinfo.h>

#include <algorithm>
#include <cmath>

#include "protocol/crc16.h"

namespace {

// An update header stands at this place of an image, if the image has one.
constexpr qsizetype kHeaderOffset = 512;
constexpr qsizetype kHeaderSize = 32;
constexpr qsizetype kVersionOffset = 8; // within the header

constexpr quint32 kNoHeader = 0;
constexpr quint32 kApplicationMagic = 0xDEADBEEF;
constexpr quint32 kBootloaderMagic = 0x424F4F54;

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

/** The 32 bytes of the update header; zeros for what a short image does not have. */
QByteArray headerOf(const QByteArray &image)
{
    QByteArray header = image.mid(kHeaderOffset, kHeaderSize);
    header.append(kHeaderSize - header.size(), '\0');
    return header;
}

quint32 wordAt(const QByteArray &bytes, qsizetype offset)
{
    return qFromLittleEndian<quint32>(bytes.constData() + offset);
}

/**
 * The version in the part of a file name behind its name, "1.2.3.a.bin": three numbers and a
 * character, the first in the top byte. The character is widened with its sign, as the computers'
 * own tools do, so one above 0x7F sets all of the upper bytes.
 */
quint32 versionFrom(const QString &text)
{
    const QStringList fields = text.split(u'.');
    const auto number = [&fields](int i) { return quint32(fields.value(i).toInt()); };
    const QString last = fields.value(3);
    const auto character = last.isEmpty() ? qint8(0) : qint8(last.front().toLatin1());
    return number(0) << 24 | number(1) << 16 | number(2) << 8 | quint32(qint32(character));
}

void appendWord(QByteArray &bytes, quint32 word)
{
    char raw[sizeof word];
    qToLittleEndian(word, raw);
    bytes.append(raw, sizeof raw);
}

/** The name is padded by its number of characters but written in UTF-8: so the computers count. */
QByteArray beginProgramPayload(const QByteArray &image, const QString &fileName)
{
    const QString name = fileName.section(u'.', 0, 0);
    QByteArray payload = name.toUtf8();
    payload.append(std::max<qsizetype>(kNameField - name.size(), 0), '\0');
    appendWord(payload, versionFrom(fileName.section(u'.', 1)));
    appendWord(payload, quint32(image.size()));
    appendWord(payload, Crc16::computeCrc(image));
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

int VardaSession::uploadFirmware(const QString &path, bool force)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    d->firmwareData = file.readAll();
    return d->uploadFirmware(QFileInfo(path).fileName(), force);
}

int VardaSession::Private::uploadFirmware(const QString &fileName, bool force)
{
    firmwarePosition = 0;
    firmwareDone = false;
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
    const QByteArray header = headerOf(firmwareData);
    const quint32 version = wordAt(header, kVersionOffset);
    switch (wordAt(header, 0)) {
    case kNoHeader:
        firmwareLastPercent = -1;
        firmwareLastPosition = 0;
        send({TidemarCommand::Begin_program, beginProgramPayload(firmwareData, fileName)});
        return 0;
    case kApplicationMagic:
        if (version == data.firmwareVersion && !force)
            return SameFirmware;
        // Only a computer whose bootloader is known can be brought back from a bad firmware.
        if (data.bootloaderVersion == 0)
            return BootloaderNotKnown;
        break;
    case kBootloaderMagic:
        if (version == data.bootloaderVersion && !force)
            return SameBootloader;
        break;
    default:
        return UnknownImage;
    }
    send({TidemarCommand::BeginUpdate, header});
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
