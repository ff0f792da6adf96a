// SPDX-License-Identifier: MIT
#include <varda/bufferreader.h>

#include <QtCore/qendian.h>

#include <algorithm>
#include <limits>

BufferReader::BufferReader(const std::array<std::uint8_t, 512> &payload)
    : m_data(payload.data()) { }

void BufferReader::read(void *dst, int n)
{
    if (n > 0 && has(n)) {
        std::memcpy(dst, m_data + m_pos, std::size_t(n));
        m_pos += n;
        return;
    }
    auto *out = static_cast<std::uint8_t *>(dst);
    for (int i = 0; i < n; ++i) {
        const std::int64_t at = std::int64_t(m_pos) + i;
        out[i] = at >= 0 && at < m_size ? m_data[at] : std::uint8_t(0);
    }
    jump(std::max(n, 0));
}

void BufferReader::jump(int n)
{
    constexpr std::int64_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();
    m_pos = std::int32_t(std::clamp(std::int64_t(m_pos) + n, lowest, highest));
}

void BufferReader::readNumber(void *dst, int n)
{
    read(dst, n);
    if constexpr (Q_BYTE_ORDER == Q_BIG_ENDIAN) {
        auto *bytes = static_cast<std::uint8_t *>(dst);
        std::reverse(bytes, bytes + n);
    }
}
