// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <optional>

/**
 * The begin of a dive as "2024-03-01T09:32:43": the computer's local time, so without a zone. Empty
 * unless the stamp is a time in this century.
 */
[[nodiscard]] QString beginText(quint64 stamp);
/** The stamp of such a text; whatever stands behind the seconds is not read. */
[[nodiscard]] std::optional<quint64> stampOf(const QString &text);
