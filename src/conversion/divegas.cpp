// SPDX-License-Identifier: MIT
#include <varda/divegas.h>

namespace {

// A mix may exceed 100 % by what rounding to whole percents of two computers adds up to.
constexpr double kHighestSum = 1.001;

float whatIsLeft(double one, double other)
{
    return one + other >= 1.0 ? 0.0F : float(1.0 - one - other);
}

} // namespace

// The comparisons are written so that what is not a number is refused.

void DiveGas::setO2(double fraction)
{
    const double sum = double(helium) + fraction;
    if (!(fraction >= 0.05 && fraction <= 1.0 && sum <= kHighestSum))
        return;
    oxygen = float(fraction);
    nitrogen = whatIsLeft(fraction, double(helium));
}

void DiveGas::setHe(double fraction)
{
    const double sum = double(oxygen) + fraction;
    if (!(fraction >= 0.0 && fraction <= 0.99 && sum <= kHighestSum))
        return;
    helium = float(fraction);
    nitrogen = whatIsLeft(double(oxygen), fraction);
}
