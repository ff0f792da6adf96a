// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qbytearrayview.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

/** One run of a target; its name is libFuzzer's. @return 0 */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/** Ends the process unless @p holds; @p promise says what ought to. */
void check(bool holds, const char *promise);

/** The bytes of a run, taken from front to back; behind the last one there are zeros. */
class Input
{
public:
    Input(const std::uint8_t *data, std::size_t size)
        : m_rest(reinterpret_cast<const char *>(data), qsizetype(size))
    {
    }

    [[nodiscard]] bool atEnd() const { return m_rest.isEmpty(); }

    std::uint8_t byte()
    {
        const QByteArray one = bytes(1);
        return one.isEmpty() ? std::uint8_t(0) : std::uint8_t(one.front());
    }

    std::uint16_t word()
    {
        const unsigned low = byte();
        return std::uint16_t(low | unsigned(byte()) << 8);
    }

    /** At most @p count, as many as there are. */
    QByteArray bytes(qsizetype count)
    {
        const qsizetype size = std::min(count, m_rest.size());
        const QByteArray taken = m_rest.first(size).toByteArray();
        m_rest = m_rest.sliced(size);
        return taken;
    }

    QByteArray rest() { return bytes(m_rest.size()); }

private:
    QByteArrayView m_rest;
};
