// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <varda/bledevice.h>
#include <varda/vardableprotocol.h>

#include "linktest.h"

/** A link with a protocol on it, put together as a session does it. */
class ProtocolLink
{
public:
    ProtocolLink(SignalLog &log, BleMode mode)
        : device(std::make_unique<BleDevice>()),
          protocol(std::make_unique<VardaBleProtocol>(device.get(), mode))
    {
        log.watch(protocol.get());
        QObject::connect(device.get(), &BleDevice::servicesDiscovered, protocol.get(),
                         &VardaBleProtocol::setupCharacteristics);
    }

    /** The log tells when it is ready. */
    void open() const { device->connectTo(knownDevice()); }

    /** As if the computer had sent these bytes in one notification. */
    void receive(const QByteArray &hex) const
    {
        Q_EMIT device->notificationReceived(QByteArray::fromHex(hex));
    }

    std::unique_ptr<BleDevice> device;
    std::unique_ptr<VardaBleProtocol> protocol;
};

/** A link that is ready, with an empty log. */
// NOLINTBEGIN(bugprone-macro-parentheses): it is a declaration
#define OPEN(LINK, MODE)                                                                           \
    ProtocolLink LINK(m_log, MODE);                                                                \
    LINK.open();                                                                                   \
    QVERIFY(m_log.await(QStringLiteral("ready")));                                                 \
    m_log.take()
// NOLINTEND(bugprone-macro-parentheses)
