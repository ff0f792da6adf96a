// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>

#include <array>

namespace simulator {

enum class Model;

/** What a logbook says about a dive, by the names that the scenarios and the documentation use. */
enum class HeaderField {
    DiveNumber,
    HeaderByte5,
    KindByte,
    HeaderByte1,
    HeaderByte2,
    Density,
    HeaderWord1,
    HeaderWord5,
    HeaderWord6,
    HeaderWord7,
    Value32a,
    Value32d,
    HeaderWord8,
    Stamp,
    HeaderWord3,
    Tenths1,
    Tenths2,
    Signed1,
    Signed2,
    Value32b,
    HeaderWord2,
    Count1,
    Count2,
    HeaderWord4,
    HeaderWord11,
    HeaderWord12,
    Stamp2,
    Value32c,
    Value32e,
    Value32f,
    SampleInterval,
    HeaderByte7,
    HeaderWord13,
    HeaderWord14,
    TidemarBit,
    GasSlotMask,
    Count,
};

const char *nameOf(HeaderField field);
/** In bytes. */
int widthOf(HeaderField field);

class DiveHeader
{
public:
    quint64 operator[](HeaderField field) const { return m_values[size_t(field)]; }
    quint64 &operator[](HeaderField field) { return m_values[size_t(field)]; }

    std::array<quint16, 16> tissueN2{};
    std::array<quint16, 16> tissueHe{};
    std::array<quint8, 12> gasO2{};
    std::array<quint8, 12> gasHe{};

private:
    std::array<quint64, size_t(HeaderField::Count)> m_values{};
};

/** The payload that carries a header; version 0 is the layout that names no version. */
QByteArray encodeHeader(const DiveHeader &header, Model model, int version);

} // namespace simulator
