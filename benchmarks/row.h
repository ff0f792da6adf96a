// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <optional>

/** What a benchmark has measured: one line of JSON on the standard output. */
struct Row {
    const char *name = "";
    double value = 0;
    std::optional<double> reference = {}; // NOLINT(readability-redundant-member-init): GCC warns
    const char *unit = "";

    void print() const;
};

/** The value below which @p part of them lie. */
[[nodiscard]] double quantile(QList<double> values, double part);
[[nodiscard]] inline double median(const QList<double> &values)
{
    return quantile(values, 0.5);
}

/** CPU time of this thread, in nanoseconds. */
[[nodiscard]] qint64 threadTime();
