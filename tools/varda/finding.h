// SPDX-License-Identifier: MIT
#pragma once

#include "options.h"

#include <varda/bledeviceinfo.h>

#include <QtCore/qdeadlinetimer.h>
#include <QtCore/qstring.h>

#include <optional>

/** What a computer is looked for. */
enum class Purpose { Reading, Writing };

/** "Varda (00:AA:01:01:00:01)". */
[[nodiscard]] QString nameOf(const BleDeviceInfo &computer);

/** The address in any usual spelling, as the library writes it; nothing if it is none. */
[[nodiscard]] std::optional<QString> addressIn(const QString &text);

/**
 * The computer that the options mean.
 *
 * An address means one computer, and reading takes the first that is found. In all other cases
 * the search goes on for a while after the first one, and there must be only one, or on a terminal
 * the user says which. That time is none of the deadline's.
 *
 * @throws Failure
 */
[[nodiscard]] BleDeviceInfo findComputer(const Options &options, Purpose purpose,
                                         QDeadlineTimer &deadline);
