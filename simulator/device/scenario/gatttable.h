// SPDX-License-Identifier: MIT
#pragma once

#include "device/scenario/scenario.h"

namespace simulator {

class ObjectReader;

/** The services that the computer shows to a connected host, in the order of their handles. */
QList<ServiceSpec> gattTable(const DeviceScenario &device);

ServiceSpec readService(const QJsonValue &value, const QString &path);

/** The flags of a characteristic, by the names that BlueZ gives them. */
QStringList readFlags(ObjectReader &reader);

/** A UUID in its long, lower-case form without braces; "180f" is short for the Bluetooth one. */
QString readUuid(const QJsonValue &value, const QString &path);

} // namespace simulator
