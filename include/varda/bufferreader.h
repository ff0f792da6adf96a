// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qglobal.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include <varda/vardaexport.h>

/**
 * A forward cursor over one response buffer: 512 bytes, byte 0 the command's code, the payload
 * from byte 1 on, little-endian.
 *
 * It may be moved anywhere; bytes outside the buffer read as zeros.
 */
class VARDA_EXPORT BufferReader
{
public:
    /** @p payload is not copied: it must outlive the reader. Reading starts at byte 1. */
    explicit BufferReader(const std::array<std::uint8_t, 512> &payload);

    /** Copies the next @p n bytes to @p dst and moves by @p n; does nothing if n is below 1. */
    void read(void *dst, int n);
    /** Moves by @p n bytes, forward or back. */
    void jump(int n);

    /** The next integer or float of type T. */
    template <typename T> [[nodiscard]] T take()
    {
        static_assert(std::is_arithmetic_v<T>, "little-endian numbers only");
        constexpr int kSize = int(sizeof(T));
        T value{};
        if (Q_BYTE_ORDER == Q_LITTLE_ENDIAN && has(kSize)) {
            std::memcpy(&value, m_data + m_pos, sizeof(T));
            m_pos += kSize;
        } else {
            readNumber(&value, kSize);
        }
        return value;
    }

private:
    /** Whether the next @p n bytes are all in the buffer. */
    [[nodiscard]] bool has(int n) const { return m_pos >= 0 && m_pos <= m_size - n; }
    void readNumber(void *dst, int n);

    const std::uint8_t *m_data;
    std::int32_t m_size = 512;
    std::int32_t m_pos = 1;
};
