// SPDX-License-Identifier: MIT
#pragma once

#include <varda/vardaidentity.h>

#include <QtCore/qstring.h>

#include <cstdint>

/** A version as the computer gives it; its last character may be a NUL, which is left out. */
[[nodiscard]] QString versionText(const QString &version);

/** The bootloader's version, or "Unknown". */
[[nodiscard]] QString bootloaderText(const VardaIdentity &identity);

/** A computer's clock, "2024-05-17 08:30:00"; or the bare number where it is no time. */
[[nodiscard]] QString clockText(std::int64_t seconds);

/** A duration of so many seconds, "45:30" or "1:02:03". */
[[nodiscard]] QString durationText(double seconds);

/**
 * Seconds until the last of @p remaining things is done, by the @p spent seconds that @p done ones
 * took. The first of the remaining has been under way for @p underWay seconds.
 */
[[nodiscard]] double secondsLeft(double spent, qsizetype done, qsizetype remaining,
                                 double underWay);

/** "235 B", "12 kB" or "1.4 MB". */
[[nodiscard]] QString bytesText(double bytes);

/** One decimal, "18.3". */
[[nodiscard]] QString tenthsText(double value);
