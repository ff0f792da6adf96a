// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>

#include <varda/vardaexport.h>

/** How a connection attempt ended. */
namespace ConnectControllerStatus {
Q_NAMESPACE_EXPORT(VARDA_EXPORT)

enum ConnectControllerStatusIn : int {
    NoController = 0, ///< there is no computer to connect to
    NoService = 1,    ///< the computer offers no usable service
    Connected = 2,    ///< the computer accepts commands now
};
Q_ENUM_NS(ConnectControllerStatusIn)
} // namespace ConnectControllerStatus
