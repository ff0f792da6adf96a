// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

namespace simulator {

struct BatteryWords;

/** A history that has one record of every kind, and an empty slot between them. */
QList<BatteryWords> plausibleBatteryHistory();

} // namespace simulator
