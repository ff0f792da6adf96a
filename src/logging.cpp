// SPDX-License-Identifier: MIT
#include "logging_p.h"

Q_LOGGING_CATEGORY(lcTransport, "varda.transport")
Q_LOGGING_CATEGORY(lcProtocol, "varda.protocol")
Q_LOGGING_CATEGORY(lcSession, "varda.session")
Q_LOGGING_CATEGORY(lcWire, "varda.wire", QtWarningMsg)
