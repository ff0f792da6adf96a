// SPDX-License-Identifier: MIT
#pragma once

#include "device/scenario/recorder.h"

#include <QtCore/qstring.h>

namespace simulator {

/**
 * Opens the file of the events, if one is wanted. A failure is printed; one that comes later as
 * well, when it comes, because what is simulated goes on.
 */
[[nodiscard]] bool startRecord(Recorder &recorder, const QString &file);

/** The exit status: an incomplete record is no success. */
[[nodiscard]] int statusWith(const Recorder &recorder, int status);

} // namespace simulator
