// SPDX-License-Identifier: MIT
#pragma once

#include "device/scenario/scenario.h"

#include <QtCore/qbytearray.h>
#include <QtCore/qstring.h>

#include <optional>

namespace simulator {

/** The world in which a trace was made, or nothing and an error that says where and what. */
std::optional<Scenario> scenarioOfTrace(const QByteArray &trace, QString *error);

} // namespace simulator
