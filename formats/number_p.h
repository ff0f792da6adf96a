// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <optional>

/** The shortest decimals, without an exponent, that read back as the same number. */
[[nodiscard]] QString decimals(double value);
[[nodiscard]] QString decimals(float value);
/** Empty unless all of the text is a finite number. */
[[nodiscard]] std::optional<double> toNumber(QStringView text);
/** The same for a float, which is rounded once only. */
[[nodiscard]] std::optional<float> toFloat(QStringView text);
