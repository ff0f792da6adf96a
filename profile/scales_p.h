// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

/** Values between two ends, and where the lines of the grid are. */
struct Scale {
    double from = 0;
    double to = 1;
    double step = 1;

    /** From 0 to a round value not below @p highest, in @p most steps or fewer. */
    [[nodiscard]] static Scale fromZero(double highest, int most);
    /** Around both values. */
    [[nodiscard]] static Scale around(double lowest, double highest, int most);
    /**
     * Seconds, in steps that clocks have.
     *
     * @param last  of the dive; a minute is shown at least
     * @param from, to  the part that is shown, ten seconds at least; all, if @p to is 0
     */
    [[nodiscard]] static Scale ofTime(double last, int most, double from = 0, double to = 0);

    /** The multiples of the step, both ends included. */
    [[nodiscard]] QList<double> lines() const;
    /** 0 at one end, 1 at the other. */
    [[nodiscard]] double place(double value) const { return (value - from) / (to - from); }
};

/** "0", "30 s", "10 min" or "2 h", as fits the steps of the scale; "40:30", if it is too long for seconds. */
[[nodiscard]] QString timeLabel(const Scale &scale, double seconds);
