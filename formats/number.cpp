// SPDX-License-Identifier: MIT
#include "number_p.h"

#include <array>
#include <charconv>
#include <cmath>

namespace {

template <typename Number> QString shortest(Number value)
{
    // The largest number has 309 digits, the smallest 1074 behind the point.
    std::array<char, 1500> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   std::chars_format::fixed);
    return QString::fromLatin1(buffer.data(), end.ptr - buffer.data());
}

} // namespace

QString decimals(double value)
{
    return shortest(value);
}

QString decimals(float value)
{
    return shortest(value);
}

std::optional<double> toNumber(QStringView text)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<float> toFloat(QStringView text)
{
    bool ok = false;
    const float value = text.toFloat(&ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}
