// SPDX-License-Identifier: MIT
#include "scales_p.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "texts_p.h"

using namespace Qt::StringLiterals;

namespace {

constexpr double kHour = 3600;

/** In the smallest of the steps 1, 2, 5, 10, 20, … of which no more than @p most are needed. */
Scale inRoundSteps(double lowest, double highest, int most)
{
    for (double power = 1;; power *= 10) {
        for (const double factor : {1.0, 2.0, 5.0}) {
            const double step = factor * power;
            const double from = std::floor(lowest / step) * step;
            const double to = std::max(std::ceil(highest / step) * step, from + step);
            if ((to - from) / step <= most)
                return {.from = from, .to = to, .step = step};
        }
    }
}

} // namespace

Scale Scale::fromZero(double highest, int most)
{
    return inRoundSteps(0, highest, most);
}

Scale Scale::around(double lowest, double highest, int most)
{
    return inRoundSteps(lowest, highest, std::max(most, 2));
}

Scale Scale::ofTime(double last, int most, double from, double to)
{
    constexpr double kShortest = 10;
    constexpr std::array kSteps{10.0,   30.0,   60.0,    120.0,   300.0,   600.0,
                                900.0,  1800.0, 3600.0,  7200.0,  10800.0, 14400.0,
                                21600., 43200., 86400.0, 172800.0};
    const double end = std::max(last, 60.0);
    // Written so that what is not a number becomes all of the dive.
    const double first = from > 0 ? std::min(from, end - kShortest) : 0;
    const double next = to > 0 ? std::clamp(to, first + kShortest, end) : end;
    const auto *const step = std::find_if(
        kSteps.begin(), kSteps.end(), [&](double each) { return (next - first) / each <= most; });
    return {.from = first, .to = next, .step = step == kSteps.end() ? end : *step};
}

QList<double> Scale::lines() const
{
    QList<double> values;
    const double first = std::ceil(from / step - 0.001) * step;
    for (int i = 0; first + i * step <= to + step / 1000; ++i)
        values.append(first + i * step);
    return values;
}

QString timeLabel(const Scale &scale, double seconds)
{
    constexpr double kMostSeconds = 300;
    if (seconds <= 0)
        return u"0"_s;
    if (scale.step < 60 && scale.to > kMostSeconds)
        return durationText(seconds);
    if (scale.step < 60 && std::fmod(seconds, 60) > 0)
        return QString::number(seconds) + u" s"_s;
    if (scale.step >= kHour)
        return QString::number(seconds / kHour) + u" h"_s;
    return QString::number(seconds / 60) + u" min"_s;
}
