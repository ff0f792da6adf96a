// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qendian.h>

#include <bit>

namespace simulator {

/** Appends values in the computer's byte order, least significant byte first. */
class WireWriter
{
public:
    WireWriter &u8(quint8 value) { return number(value); }
    WireWriter &u16(quint16 value) { return number(value); }
    WireWriter &u32(quint32 value) { return number(value); }
    WireWriter &u64(quint64 value) { return number(value); }
    WireWriter &i64(qint64 value) { return number(quint64(value)); }
    WireWriter &f32(float value) { return number(std::bit_cast<quint32>(value)); }

    WireWriter &bytes(QByteArrayView value)
    {
        m_data.append(value);
        return *this;
    }

    /**
     * Bytes without a meaning. They are not zero, so that a reader who is off by some of them
     * gets values that stand out.
     */
    WireWriter &filler(qsizetype count)
    {
        m_data.append(count, char(0xE5));
        return *this;
    }

    const QByteArray &data() const { return m_data; }

private:
    template <typename T> WireWriter &number(T value)
    {
        const T little = qToLittleEndian(value);
        m_data.append(reinterpret_cast<const char *>(&little), sizeof little);
        return *this;
    }

    QByteArray m_data;
};

} // namespace simulator
