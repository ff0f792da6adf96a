// SPDX-License-Identifier: MIT
#include "program/failure.h"

#include "program/printable.h"

#include <cstdio>

namespace simulator {

int fail(const QString &text)
{
    std::fprintf(stderr, "varda-simulator: %s\n", qPrintable(printable(text)));
    return kOwnError;
}

} // namespace simulator
