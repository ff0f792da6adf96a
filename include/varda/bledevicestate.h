// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>

#include <varda/vardaexport.h>

/** State of the one GATT link to a computer. */
namespace BleDeviceState {
Q_NAMESPACE_EXPORT(VARDA_EXPORT)

enum BleDeviceStateIn : int {
    Disconnected = 0,        ///< no connection, also after a link has gone down
    Connecting = 1,          ///< a connection was requested
    DiscoveringServices = 2, ///< the link is up, its services are being found
    Connected = 3,           ///< notifications are on, so the link can be used
    Error = 4,               ///< the controller, the service or the watchdog failed; not final
};
Q_ENUM_NS(BleDeviceStateIn)
} // namespace BleDeviceState
