// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qglobal.h>

namespace simulator {

/**
 * Numbers that look like chance and are the same on every machine (SplitMix64): what the
 * standard library calls distributions is not.
 */
class Random
{
public:
    explicit Random(quint64 seed) : m_state(seed) { }

    quint64 next()
    {
        m_state += 0x9E37'79B9'7F4A'7C15ULL;
        quint64 mixed = m_state;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58'476D'1CE4'E5B9ULL;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D0'49BB'1331'11EBULL;
        return mixed ^ (mixed >> 31);
    }

    int between(int low, int high) { return low + int(next() % quint64(high - low + 1)); }
    bool chance(int percent) { return between(1, 100) <= percent; }

private:
    quint64 m_state;
};

} // namespace simulator
