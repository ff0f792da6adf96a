// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qpointer.h>

#include <functional>

#include <varda/bledevice.h>
#include <varda/vardasession.h>

/**
 * Stands in for the radio: this program has its own BleDevice::connectTo(), write() and what else
 * of it needs Qt's controller, and the library finds these instead of its own.
 */
struct FarEnd {
    static FarEnd &instance();

    /** Connects, as far as nothing keeps it from that. */
    void bringUp(VardaSession &session, BleMode mode);
    void notify(const QByteArray &bytes);

    QPointer<BleDevice> device; ///< the last one that was told to connect
    int mtu = 0;
    bool hasServices = true;
    bool takesWrites = true;
    int disconnections = 0; ///< asked for
    std::function<void(const QByteArray &)> onWritten;
};
