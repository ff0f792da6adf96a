// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qloggingcategory.h>

Q_DECLARE_LOGGING_CATEGORY(lcTransport)
Q_DECLARE_LOGGING_CATEGORY(lcProtocol)
Q_DECLARE_LOGGING_CATEGORY(lcSession)
/** Every frame in hex; off unless asked for, since a logbook is a lot of it. */
Q_DECLARE_LOGGING_CATEGORY(lcWire)
