// SPDX-License-Identifier: MIT
#include "device/dives/diveheader.h"

#include "device/scenario/scenario.h"
#include "device/wire/wirewriter.h"

namespace simulator {

namespace {

struct FieldSpec {
    const char *name;
    int bytes;
};

using enum HeaderField;

// In the order of HeaderField.
constexpr std::array<FieldSpec, size_t(Count)> kFields{{
    {"diveNumber", 2},   {"headerByte5", 1},  {"kindByte", 1},       {"headerByte1", 1},
    {"headerByte2", 1},  {"density", 2},      {"headerWord1", 2},    {"headerWord5", 2},
    {"headerWord6", 2},  {"headerWord7", 2},  {"value32a", 4},       {"value32d", 4},
    {"headerWord8", 2},  {"stamp", 8},        {"headerWord3", 2},    {"tenths1", 2},
    {"tenths2", 2},      {"signed1", 1},      {"signed2", 1},        {"value32b", 4},
    {"headerWord2", 2},  {"count1", 4},       {"count2", 4},         {"headerWord4", 2},
    {"headerWord11", 2}, {"headerWord12", 2}, {"stamp2", 8},         {"value32c", 4},
    {"value32e", 4},     {"value32f", 4},     {"sampleInterval", 1}, {"headerByte7", 1},
    {"headerWord13", 2}, {"headerWord14", 2}, {"tidemarBit", 1},     {"gasSlotMask", 2},
}};

constexpr quint16 kVersioned = 0x8000;

class HeaderWriter : public WireWriter
{
public:
    explicit HeaderWriter(const DiveHeader &header) : m_header(header) { }

    HeaderWriter &put(HeaderField field)
    {
        const quint64 value = m_header[field];
        switch (widthOf(field)) {
        case 1:
            u8(quint8(value));
            break;
        case 2:
            u16(quint16(value));
            break;
        case 4:
            u32(quint32(value));
            break;
        default:
            u64(value);
            break;
        }
        return *this;
    }

    HeaderWriter &gap(int bytes)
    {
        filler(bytes);
        return *this;
    }

    HeaderWriter &tissues()
    {
        for (size_t i = 0; i < 16; ++i)
            u16(m_header.tissueN2[i]).u16(m_header.tissueHe[i]);
        return *this;
    }

    HeaderWriter &gases(size_t count)
    {
        for (size_t i = 0; i < count; ++i)
            u8(m_header.gasO2[i]).u8(m_header.gasHe[i]);
        return *this;
    }

private:
    const DiveHeader &m_header;
};

void writeStart(HeaderWriter &w, const DiveHeader &header, int version)
{
    if (version > 0)
        w.u16(quint16(kVersioned | version));
    w.put(DiveNumber).put(HeaderByte5).put(KindByte).put(HeaderByte1).put(HeaderByte2);
    w.put(Density).put(HeaderWord1).tissues();
    if (version >= 5) {
        w.put(GasSlotMask).gases(12);
    } else {
        w.u8(quint8(header[GasSlotMask]));
        w.gases(8);
    }
}

void writeMiddle(HeaderWriter &w, Model model, int version)
{
    w.gap(1).put(HeaderWord5);
    if (model == Model::Tidemar || model == Model::Vskm)
        w.gap(3).put(HeaderWord6).gap(3).put(HeaderWord7).gap(3);
    else
        w.put(HeaderWord6).put(HeaderWord7);
    // The versioned layouts have the real value behind the tail and nothing in this place.
    if (version > 0)
        w.gap(4);
    else
        w.put(Value32a);
    w.put(Value32d);
    if (version > 0 && model == Model::Varda)
        w.put(HeaderWord8);
}

void writeTail(HeaderWriter &w)
{
    w.put(Stamp).put(HeaderWord3).put(Tenths1).put(Tenths2).put(Signed1).put(Signed2);
    w.put(Value32b).put(HeaderWord2).put(Count1).put(Count2).put(HeaderWord4);
    w.put(HeaderWord11).put(HeaderWord12).put(Stamp2).put(Value32c).put(Value32e).put(Value32f);
}

void writeEnd(HeaderWriter &w, Model model, int version)
{
    if (version >= 1)
        w.put(SampleInterval).put(Value32a);
    if (version >= 6 && model == Model::Varda)
        w.put(HeaderByte7).put(HeaderWord13);
    if (version >= 10 && model == Model::Varda)
        w.put(HeaderWord14);
    if (version >= 4 && model == Model::Tidemar)
        w.put(TidemarBit);
}

} // namespace

const char *nameOf(HeaderField field)
{
    return kFields[size_t(field)].name;
}

int widthOf(HeaderField field)
{
    return kFields[size_t(field)].bytes;
}

QByteArray encodeHeader(const DiveHeader &header, Model model, int version)
{
    HeaderWriter w(header);
    writeStart(w, header, version);
    writeMiddle(w, model, version);
    writeTail(w);
    writeEnd(w, model, version);
    return w.data();
}

} // namespace simulator
