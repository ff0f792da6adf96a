// SPDX-License-Identifier: MIT
#include <varda/vardableprotocol.h>

#include <QtCore/qpointer.h>
#include <QtCore/qtimer.h>

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include <varda/bledevice.h>

#include "logging_p.h"
#include "protocol/crc16_p.h"
#include "protocol/frame_p.h"
#include "transport/linkobserver_p.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kDefaultFrame = 128;
constexpr int kMaxChunks = 4096;
constexpr qsizetype kMostBytes = 64 << 20; // however long an answer may be
constexpr int kCommandTimeout = 5000;
constexpr int kReceiveTimeout = 1000;
constexpr int kReadyDelay = 500;
constexpr unsigned char kSpsInitialCredits = 0x20;

// Microchip RN4871 transparent UART
constexpr const char *kServiceUuidGatt = "49535343-fe7d-4ae5-8fa9-9fafd205e455";
constexpr const char *kCharUuidGatt = "49535343-1e4d-4bd9-ba61-23c647249616";
// u-blox Serial Port Service
constexpr const char *kServiceUuidSps = "2456e1b9-26e2-8f83-e744-f34f01e9d701";
constexpr const char *kCharUuidSpsFifo = "2456e1b9-26e2-8f83-e744-f34f01e9d703";
constexpr const char *kCharUuidSpsCredits = "2456e1b9-26e2-8f83-e744-f34f01e9d704";

/** Commands whose answer spans many notifications, without a sign at the last one. */
constexpr std::array kTimerModeCommands = {
    TidemarCommand::Syslog,       TidemarCommand::Computer,           TidemarCommand::Diver,
    TidemarCommand::Logbook,      TidemarCommand::Fullsamples,        TidemarCommand::Owner,
    TidemarCommand::Computer_new, TidemarCommand::SyslogBin,          TidemarCommand::LayoutList,
    TidemarCommand::LayoutGet,    TidemarCommand::BatteryInformation,
};

bool needsTimerMode(TidemarCommand::TidemarCommandIn command)
{
    return std::find(kTimerModeCommands.begin(), kTimerModeCommands.end(), command)
           != kTimerModeCommands.end();
}

} // namespace

class VardaBleProtocol::Private
{
public:
    Private(VardaBleProtocol *q, BleDevice *link, BleMode linkMode)
        : device(link), mode(linkMode), receiveTimer(q), commandTimer(q)
    {
    }

    QPointer<BleDevice> device;
    BleMode mode;
    LinkObserver *observer = LinkObserver::nobody();
    bool unlimited = false;
    int frameSize = kDefaultFrame;
    std::array<QByteArray, kMaxChunks> chunks;
    int chunkCount = 0;
    bool timerMode = false;
    // Children, so that they go to another thread with their owner.
    QTimer receiveTimer;
    QTimer commandTimer;
    TidemarCommand::TidemarCommandIn lastCommand = TidemarCommand::Sync;

    [[nodiscard]] QByteArray joinChunks() const
    {
        const auto used = std::span(chunks).first(std::size_t(chunkCount));
        if (chunkCount == 1)
            return used.front(); // shared, not copied
        qsizetype size = 0;
        for (const QByteArray &chunk : used)
            size += chunk.size();
        QByteArray joined;
        joined.reserve(size);
        for (const QByteArray &chunk : used) {
            if (chunk.isEmpty())
                break;
            joined += chunk;
        }
        return joined;
    }
};

VardaBleProtocol::VardaBleProtocol(BleDevice *device, BleMode mode, QObject *parent)
    : QObject(parent), d(std::make_unique<Private>(this, device, mode))
{
    qRegisterMetaType<TidemarCommand::TidemarCommandIn>("TidemarCommand::TidemarCommandIn");
    qRegisterMetaType<ExchangeError::ExchangeErrorIn>("ExchangeError::ExchangeErrorIn");

    // A coarse timer may fire 5 % early, which cuts an answer, or drops a computer, that is in time.
    d->receiveTimer.setTimerType(Qt::PreciseTimer);
    d->receiveTimer.setSingleShot(true);
    d->receiveTimer.setInterval(kReceiveTimeout);
    connect(&d->receiveTimer, &QTimer::timeout, this, &VardaBleProtocol::onTimerReceiveTimeout);
    d->commandTimer.setTimerType(Qt::PreciseTimer);
    d->commandTimer.setSingleShot(true);
    d->commandTimer.setInterval(kCommandTimeout);
    connect(&d->commandTimer, &QTimer::timeout, this, &VardaBleProtocol::onCommandTimeout);
    if (device) {
        connect(device, &BleDevice::notificationReceived, this,
                &VardaBleProtocol::onNotificationReceived);
        connect(device, &BleDevice::connected, this, &VardaBleProtocol::onBleConnected);
    }
}

VardaBleProtocol::~VardaBleProtocol() = default;

int VardaBleProtocol::frameSize() const
{
    return d->frameSize;
}

void VardaBleProtocol::setObserver(LinkObserver *observer)
{
    d->observer = observer;
}

void VardaBleProtocol::setMode(BleMode mode)
{
    d->mode = mode;
}

BleMode VardaBleProtocol::modeOf(const QList<QBluetoothUuid> &services)
{
    const auto has = [&services](const char *uuid) {
        return services.contains(QBluetoothUuid(QString::fromLatin1(uuid)));
    };
    return has(kServiceUuidSps) && !has(kServiceUuidGatt) ? BleMode::Sps : BleMode::Gatt;
}

void VardaBleProtocol::setUnlimited()
{
    d->unlimited = true;
}

bool VardaBleProtocol::collectsAnswers(TidemarCommand::TidemarCommandIn command)
{
    return needsTimerMode(command);
}

bool VardaBleProtocol::setupCharacteristics()
{
    if (!d->device)
        return false;
    const bool gatt = d->mode == BleMode::Gatt;
    const auto service = QString::fromLatin1(gatt ? kServiceUuidGatt : kServiceUuidSps);
    const auto data = QString::fromLatin1(gatt ? kCharUuidGatt : kCharUuidSpsFifo);
    return d->device->setupCharacteristics(service, data, data);
}

void VardaBleProtocol::onBleConnected()
{
    const int mtu = d->device ? d->device->mtu() : 0;
    d->frameSize = mtu > 0 ? (mtu - 12) / 8 * 8 : kDefaultFrame;
    qCDebug(lcProtocol) << "MTU" << mtu << "frame size" << d->frameSize;

    const QPointer<VardaBleProtocol> alive(this);
    if (d->mode == BleMode::Sps && d->device)
        d->device->writeRaw(QString::fromLatin1(kCharUuidSpsCredits),
                            QByteArray(1, char(kSpsInitialCredits)),
                            QLowEnergyService::WriteWithoutResponse);
    if (alive)
        QTimer::singleShot(kReadyDelay, this, &VardaBleProtocol::ready);
}

bool VardaBleProtocol::sendCommand(const BleCommand &command)
{
    const auto code = command.command;
    d->timerMode = needsTimerMode(code);
    // The quiet line of an earlier answer must not cut the new one short. If nothing can be sent,
    // nothing else ends that one either.
    if (d->receiveTimer.isActive())
        d->commandTimer.start();
    d->receiveTimer.stop();
    resetBuffer();

    const QByteArray frame = Frame::buildFrame(command);
    qCDebug(lcWire).noquote() << "->" << frame.toHex(' ');
    const QPointer<VardaBleProtocol> alive(this);
    if (!d->device || !d->device->write(frame, QLowEnergyService::WriteWithoutResponse))
        return false;
    if (!alive)
        return true;
    d->lastCommand = code;
    d->commandTimer.start();
    return true;
}

void VardaBleProtocol::onNotificationReceived(QByteArray chunk)
{
    if (d->chunkCount == kMaxChunks && d->unlimited
        && d->chunks.back().size() + chunk.size() <= kMostBytes) {
        d->chunks.back() += chunk;
    } else if (d->chunkCount == kMaxChunks) {
        d->observer->tooManyNotifications();
        qCWarning(lcProtocol) << "answer of more than" << kMaxChunks << "notifications dropped";
        resetBuffer();
        return;
    } else {
        d->chunks[std::size_t(d->chunkCount++)] = std::move(chunk);
    }
    if (!d->timerMode) {
        processBuffer();
        return;
    }
    // The quiet after these bytes ends the answer before the computer's time could be over.
    d->commandTimer.stop();
    d->receiveTimer.start();
}

void VardaBleProtocol::onTimerReceiveTimeout()
{
    processBuffer();
}

void VardaBleProtocol::onCommandTimeout()
{
    qCWarning(lcProtocol) << "no answer to" << d->lastCommand;
    d->observer->receiveTimedOut();
    Q_EMIT receiveTimeout(d->lastCommand);
}

void VardaBleProtocol::processBuffer()
{
    d->commandTimer.stop();
    const QByteArray joined = d->joinChunks();
    resetBuffer();

    // From here on only the joined bytes are touched: a receiver may send, or delete this object.
    const QPointer<VardaBleProtocol> alive(this);
    QByteArrayView rest(joined);
    while (alive && Frame::startsFrame(rest)) {
        const auto [length, crc] = Frame::parseHeader(rest);
        const qsizetype frameLength = Frame::kHeaderSize + length;
        if (length == 0 || rest.size() < frameLength)
            break;
        qCDebug(lcWire).noquote() << "<-" << rest.first(frameLength).toByteArray().toHex(' ');

        const QByteArrayView body = rest.sliced(Frame::kHeaderSize, length);
        const auto command = TidemarCommand::TidemarCommandIn(quint8(body.front()));
        if (Crc16::computeCrc(body) != crc) {
            qCWarning(lcProtocol) << "wrong CRC in an answer to" << command;
            d->observer->wrongChecksum();
            d->observer->answerProcessed();
            Q_EMIT protocolError(command, ExchangeError::InvalidCrc);
            return;
        }
        d->observer->frameReceived(quint8(command), rest.first(frameLength));
        rest = rest.sliced(frameLength);
        Q_EMIT responseReceived(command, body.sliced(1).toByteArray(), length);
    }
    if (!rest.isEmpty())
        qCDebug(lcWire).noquote() << "discarded" << rest.toByteArray().toHex(' ');
    if (!alive)
        return;
    if (!rest.isEmpty())
        d->observer->leftOver(rest);
    d->observer->answerProcessed();
}

void VardaBleProtocol::resetBuffer()
{
    for (QByteArray &chunk : std::span(d->chunks).first(std::size_t(d->chunkCount)))
        chunk.clear();
    d->chunkCount = 0;
}
