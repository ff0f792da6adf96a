// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qglobal.h>

/** What a process holds at one moment. */
struct Figures {
    qint64 objects = 0;     ///< QObjects that live
    qint64 descriptors = 0; ///< open file descriptors
    qint64 heap = 0;        ///< bytes that malloc() has handed out; 0 under a sanitizer
    qint64 resident = 0;    ///< bytes of memory
};

/** Before the first QObject. */
void countObjects();
[[nodiscard]] Figures figures();
/** The most memory that the process ever had, in bytes. */
[[nodiscard]] qint64 peakResident();

/** One line to standard output; @p what comes first. */
void print(const char *what, const Figures &figures);
