// SPDX-License-Identifier: MIT
#include "fuzz.h"

#include <cstdio>
#include <cstdlib>

void check(bool holds, const char *promise)
{
    if (holds)
        return;
    std::fprintf(stderr, "BROKEN: %s\n", promise);
    std::fflush(stderr);
    std::abort();
}
