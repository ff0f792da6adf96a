// SPDX-License-Identifier: MIT
#include "farend.h"

#include "virtualtime.h"

using namespace Qt::StringLiterals;

FarEnd &FarEnd::instance()
{
    static FarEnd farEnd;
    return farEnd;
}

// Slots may delete the session, and the link with it.
void FarEnd::bringUp(VardaSession &session, BleMode mode)
{
    session.connectTo(BleDeviceInfo::fromAddress(u"00:AA:01:01:00:01"_s, u"Varda"_s), mode);
    VirtualTime::turn();
    if (device)
        Q_EMIT device->servicesDiscovered();
    if (device)
        Q_EMIT device->connected();
    VirtualTime::turn();
}

void FarEnd::notify(const QByteArray &bytes)
{
    if (device)
        Q_EMIT device->notificationReceived(bytes);
}

void BleDevice::connectTo(BleDeviceInfo /*device*/)
{
    FarEnd::instance().device = this;
}

void BleDevice::disconnect()
{
    ++FarEnd::instance().disconnections;
}

int BleDevice::mtu() const
{
    return FarEnd::instance().mtu;
}

bool BleDevice::setupCharacteristics(const QString & /*serviceUuid*/,
                                     const QString & /*notifyUuid*/, const QString & /*writeUuid*/)
{
    if (FarEnd::instance().hasServices)
        return true;
    Q_EMIT error(u"No service found"_s);
    return false;
}

bool BleDevice::write(const QByteArray &data, QLowEnergyService::WriteMode /*mode*/)
{
    if (FarEnd::instance().takesWrites) {
        FarEnd::instance().onWritten(data);
        return true;
    }
    Q_EMIT error(u"Write failed: characteristic not ready"_s);
    return false;
}

bool BleDevice::writeRaw(const QString & /*characteristicUuid*/, const QByteArray & /*data*/,
                         QLowEnergyService::WriteMode /*mode*/)
{
    if (FarEnd::instance().takesWrites)
        return true;
    Q_EMIT error(u"writeRaw failed: no service"_s);
    return false;
}
