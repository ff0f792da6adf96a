// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqml.h>

/** A whole number of 64 bits, as jobs count bytes: Qt 6.4 has no type information about it. */
struct LongNumber {
    Q_GADGET
    QML_FOREIGN(qlonglong)
    QML_ANONYMOUS
};
