// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearrayview.h>
#include <QtCore/qendian.h>

/** Takes numbers off the front of some bytes; past their end it gives zeros and says so. */
class ByteReader
{
public:
    explicit ByteReader(QByteArrayView bytes) : m_bytes(bytes) { }

    /** Whether all that was asked for was there. */
    [[nodiscard]] bool isGood() const { return m_good; }
    [[nodiscard]] qsizetype left() const { return m_bytes.size(); }

    QByteArrayView take(qsizetype size)
    {
        if (size > m_bytes.size()) {
            m_good = false;
            size = m_bytes.size();
        }
        const QByteArrayView taken = m_bytes.first(size);
        m_bytes = m_bytes.sliced(size);
        return taken;
    }

    quint8 u8() { return little<quint8>(); }
    quint16 u16() { return little<quint16>(); }
    quint32 bigU32() { return number<quint32>(&qFromBigEndian<quint32>); }
    quint64 bigU64() { return number<quint64>(&qFromBigEndian<quint64>); }

private:
    template <typename Number> Number little()
    {
        return number<Number>(&qFromLittleEndian<Number>);
    }
    template <typename Number> Number number(Number (*from)(const void *))
    {
        const QByteArrayView taken = take(sizeof(Number));
        return taken.size() == qsizetype(sizeof(Number)) ? from(taken.data()) : Number(0);
    }

    QByteArrayView m_bytes;
    bool m_good = true;
};
