// SPDX-License-Identifier: MIT
#include "output/progressbar.h"

#include <algorithm>

QString progressBar(double fraction, int width)
{
    const int inside = std::max(width - 2, 1);
    const int done = std::clamp(int(fraction * inside), 0, inside);
    return u'[' + QString(done, u'#') + QString(inside - done, u'-') + u']';
}
