// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>

/** Cuts a stream into lines. What is too long for one is skipped as far as its end. */
class LineReader
{
public:
    struct Line {
        QByteArray bytes; ///< without its end
        bool isTooLong = false;
    };

    static constexpr qsizetype kLongest = 1 << 20;

    /** @return the lines that are whole now; one that is too long as soon as it is */
    [[nodiscard]] QList<Line> add(QByteArrayView bytes);

private:
    void append(QByteArrayView part, QList<Line> &lines);

    QByteArray m_begun;
    bool m_skips = false;
};
