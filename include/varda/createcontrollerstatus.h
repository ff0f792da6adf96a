// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>

#include <varda/vardaexport.h>

/** How the search for a computer ended. */
namespace CreateControllerStatus {
Q_NAMESPACE_EXPORT(VARDA_EXPORT)

enum CreateControllerStatusIn : int {
    NotFound = 0,   ///< the scan ended without a matching computer
    NotCreated = 1, ///< the link failed before it was up
    Created = 2,    ///< a matching computer was found
    Error = 3,      ///< the scan failed
};
Q_ENUM_NS(CreateControllerStatusIn)
} // namespace CreateControllerStatus
