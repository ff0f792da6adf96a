// SPDX-License-Identifier: MIT
#include "session/vardasession_p.h"

#include <QtCore/qdatastream.h>
#include <QtCore/qdatetime.h>
#include <QtCore/qendian.h>
#include <QtCore/qiodevice.h>

#include <algorithm>

namespace {

/** Even a link with the smallest MTU moves an upload on. */
constexpr int kSmallestStep = 8;

enum LayoutChunk : char {
    FirstChunk = 1,
    LastChunk = 2,
};

template <typename T> QByteArray littleEndian(T value)
{
    QByteArray bytes(sizeof(T), '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray byte(int value)
{
    return QByteArray(1, char(value));
}

/** Local wall-clock time counted as if it were UTC, which is what the computers' clocks show. */
qint64 wallClockSeconds()
{
    const QDateTime now = QDateTime::currentDateTime();
    return now.toSecsSinceEpoch() + now.offsetFromUtc();
}

} // namespace

bool VardaSession::Private::send(const BleCommand &command)
{
    ++sendCount;
    return protocol && protocol->sendCommand(command);
}

int VardaSession::Private::stepSize() const
{
    return std::max(protocol ? protocol->frameSize() : 0, kSmallestStep);
}

void VardaSession::Private::sendNextLayoutAddChunk()
{
    const qsizetype left = layoutUpload.size() - layoutUploadOffset;
    const qsizetype size = std::min<qsizetype>(left, stepSize() - 1);
    char flags = 0;
    if (layoutUploadOffset == 0)
        flags |= FirstChunk;
    if (size == left)
        flags |= LastChunk;
    const QByteArray payload = flags + layoutUpload.sliced(layoutUploadOffset, size);
    layoutUploadOffset += size;
    send({TidemarCommand::LayoutAdd, payload});
}

void VardaSession::startCommand(TidemarCommand::TidemarCommandIn command)
{
    if (!d->protocol)
        return;
    if (command == TidemarCommand::Logbook)
        d->data.diveHeaders.clear();
    d->send(command);
}

void VardaSession::startGetLogbook(QList<uint16_t> existingDiveIds)
{
    if (!d->protocol)
        return;
    d->data.diveHeaders.clear();
    QByteArray numbers;
    for (const uint16_t number : std::as_const(existingDiveIds))
        numbers += littleEndian(number);
    d->send({TidemarCommand::Logbook, numbers});
}

void VardaSession::qmlStartGetLogbook(QList<int> existingDiveIds)
{
    QList<uint16_t> narrowed;
    narrowed.reserve(existingDiveIds.size());
    for (const int number : std::as_const(existingDiveIds))
        narrowed.append(uint16_t(number));
    startGetLogbook(narrowed);
}

void VardaSession::startGetDiveSamples(uint16_t diveName)
{
    if (!d->protocol)
        return;
    d->data.diveSamples.clear();
    d->data.samplesBuffer.clear();
    d->send({TidemarCommand::Fullsamples, littleEndian(diveName)});
}

bool VardaSession::startSetPressure(uint32_t pressure)
{
    if (!d->protocol || d->pressurePending)
        return false;
    const QPointer<VardaSession> alive(this);
    d->pressurePending = true;
    const bool sent = d->send({TidemarCommand::Set_sensors, littleEndian(pressure)});
    if (alive && !sent)
        d->pressurePending = false;
    return sent;
}

void VardaSession::startSetTime()
{
    if (d->protocol)
        d->send({TidemarCommand::Set_time, littleEndian(wallClockSeconds())});
}

void VardaSession::setOwner(QString owner)
{
    if (!d->protocol)
        return;
    d->pendingOwner = owner;
    d->send({TidemarCommand::Set_owner, owner.toUtf8()});
}

void VardaSession::startGetGases(uint8_t gasType)
{
    if (d->protocol)
        d->send({TidemarCommand::GetGases, byte(gasType)});
}

void VardaSession::startMarloSettings(MarloSettings settings)
{
    if (!d->protocol)
        return;
    QByteArray payload;
    QDataStream stream(&payload, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
    stream << settings.byte1 << settings.byte2 << settings.float1 << settings.byte3
           << settings.float2 << settings.byte4 << settings.byte5 << settings.byte6;
    d->send({TidemarCommand::MarloSet, payload});
}

void VardaSession::startSuperUserMode(bool activate)
{
    if (d->protocol)
        d->send({TidemarCommand::SuperUserMode, byte(activate ? 1 : 0)});
}

void VardaSession::stopJob()
{
    if (d->scanner)
        d->scanner->stopScan();
}

void VardaSession::startLayoutList()
{
    if (!d->protocol)
        return;
    d->layouts.clear();
    d->send(TidemarCommand::LayoutList);
}

void VardaSession::startLayoutGet(uint8_t index)
{
    if (!d->protocol)
        return;
    d->layoutBlob.clear();
    d->send({TidemarCommand::LayoutGet, byte(index)});
}

void VardaSession::startLayoutAdd(QByteArray blob)
{
    if (!d->protocol)
        return;
    d->layoutSuccess = false;
    d->layoutUpload = blob;
    d->layoutUploadOffset = 0;
    d->sendNextLayoutAddChunk();
}

void VardaSession::startLayoutRemove(uint8_t index)
{
    if (!d->protocol)
        return;
    d->layoutSuccess = false;
    d->send({TidemarCommand::LayoutRemove, byte(index)});
}

void VardaSession::startLayoutRemoveAll()
{
    if (!d->protocol)
        return;
    d->layoutSuccess = false;
    d->send(TidemarCommand::LayoutRemoveAll);
}

void VardaSession::startLayoutActiveGet()
{
    if (d->protocol)
        d->send(TidemarCommand::LayoutActiveGet);
}

void VardaSession::startLayoutActiveSet(uint8_t diveMode, int8_t index)
{
    if (!d->protocol)
        return;
    d->layoutSuccess = false;
    d->send({TidemarCommand::LayoutActiveSet, byte(diveMode) + byte(index)});
}

void VardaSession::startGetBatteryInformation()
{
    if (!d->protocol)
        return;
    d->data.batteryInfo.clear();
    d->send(TidemarCommand::BatteryInformation);
}
