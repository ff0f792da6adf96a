// SPDX-License-Identifier: MIT
#include <varda/vardadata.h>

#include <QtCore/qbytearrayview.h>

#include <algorithm>

namespace {

constexpr std::uint8_t kVersionMark = 0x80;
constexpr int kDeepest = 3500; // 350 m; what is deeper is a disturbance
// Longer than any answer: each empty one decodes all again, so a few bytes would make megabytes.
constexpr qsizetype kMostSamples = 400'000;

/** A cursor over the stream; the last sample may be cut short, what is missing reads as zeros. */
class SampleReader
{
public:
    explicit SampleReader(QByteArrayView stream) : m_stream(stream) { }

    [[nodiscard]] bool atEnd() const { return m_pos >= m_stream.size(); }

    std::uint8_t u8()
    {
        const qsizetype at = m_pos++;
        return at < m_stream.size() ? std::uint8_t(m_stream[at]) : std::uint8_t(0);
    }

    std::uint16_t u16()
    {
        const unsigned low = u8();
        return std::uint16_t(low | unsigned(u8()) << 8);
    }

private:
    QByteArrayView m_stream;
    qsizetype m_pos = 0;
};

/** Bits @p count from bit @p first on. */
constexpr unsigned bits(unsigned value, int first, int count)
{
    return (value >> first) & ((1U << count) - 1U);
}

/** Sets value12 from the low 12 bits, a two's-complement number of -2048 to 2047. */
void setValue12(DiveSample &sample, unsigned word)
{
    // GCC warns of a narrowing that the sign extension has ruled out.
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_GCC("-Wconversion")
    sample.value12 = std::int16_t(int((word & 0xFFF) ^ 0x800) - 0x800);
    QT_WARNING_POP
}

/** Where a bit of the older status byte stands in the newer ones. */
struct StatusBit {
    int from;
    std::uint8_t to;
};
constexpr StatusBit kToAux5[] = {{1, 0x03}, {2, 0x0C}, {3, 0x30}, {6, 0xC0}};
constexpr StatusBit kToAux6[] = {{7, 0x03}, {0, 0x04}, {4, 0x08}, {5, 0x10}};

template <std::size_t N> std::uint8_t remap(std::uint8_t status, const StatusBit (&table)[N])
{
    unsigned result = 0;
    for (const StatusBit &bit : table) {
        if (bits(status, bit.from, 1))
            result |= bit.to;
    }
    return std::uint8_t(result);
}

/** Each pair of bits in one: the lower is set when either was. */
std::uint8_t reducePairs(std::uint8_t status)
{
    return std::uint8_t((status | status >> 1) & 0x55);
}

void readLead(SampleReader &reader, DiveSample &sample)
{
    const unsigned lead = reader.u8();
    sample.mode = std::uint8_t(bits(lead, 0, 2)) & 0x3;
    sample.code = std::uint8_t(bits(lead, 2, 4)) & 0xF;
    sample.depth = reader.u16() & 0xFFF;
    setValue12(sample, reader.u16());
    sample.aux1 = reader.u8();
}

void readVarda(SampleReader &reader, DiveSample &sample)
{
    readLead(reader, sample);
    if (sample.version >= 1)
        sample.aux2 = reader.u16();
    if (sample.version >= 2) {
        sample.aux3 = reader.u8();
        sample.aux4 = reader.u8();
    }
    if (sample.version >= 3) {
        sample.aux8 = reader.u16();
        sample.aux9 = reader.u8();
        sample.aux10 = reader.u8();
    }
}

void readOthers(SampleReader &reader, DiveSample &sample)
{
    readLead(reader, sample);
    if (sample.version >= 1) {
        const std::uint8_t status = reader.u8();
        sample.aux5 = remap(status, kToAux5);
        sample.aux6 = remap(status, kToAux6);
        sample.aux7 = reducePairs(reader.u8());
        sample.aux2 = reader.u16();
    }
    if (sample.version >= 2) {
        sample.aux8 = reader.u16();
        sample.aux11 = reader.u8();
        sample.aux12 = reader.u8() != 0;
    }
}

void readTidemar3(SampleReader &reader, DiveSample &sample)
{
    const unsigned depthWord = reader.u16();
    sample.depth = depthWord & 0xFFF;
    sample.code = bits(depthWord, 12, 3) & 0x7;
    sample.flag = bits(depthWord, 15, 1) & 0x1;
    const unsigned valueWord = reader.u16();
    setValue12(sample, valueWord);
    sample.mode = bits(valueWord, 12, 2) & 0x3;
    sample.aux1 = reader.u8();
    sample.aux5 = reader.u8();
    sample.aux6 = reader.u8();
    sample.aux7 = reader.u8();
    sample.aux2 = reader.u16();
    sample.aux8 = reader.u16();
    sample.aux9 = reader.u8();
    sample.aux10 = reader.u8();
}

using SampleLayout = void (*)(SampleReader &, DiveSample &);

SampleLayout layoutOf(ComputerModel::ComputerModelIn model, std::uint8_t version)
{
    if (model == ComputerModel::Varda)
        return readVarda;
    if (model == ComputerModel::Tidemar && version >= 3)
        return readTidemar3;
    return readOthers;
}

/** A sample in which the two fields that some layouts never send keep their last values. */
DiveSample startedFrom(const DiveSample &last, std::uint8_t version)
{
    DiveSample sample;
    sample.version = version;
    sample.flag = last.flag;
    sample.modeFlag = last.modeFlag;
    return sample;
}

} // namespace

void VardaData::processSamples(const Payload &payload, std::uint16_t length)
{
    const auto size = std::min<std::size_t>(length, payload.size());
    if (size > 1) {
        samplesBuffer.append(reinterpret_cast<const char *>(payload.data()) + 1,
                             qsizetype(size - 1));
        return;
    }
    if (samplesBuffer.isEmpty() || diveSamples.size() >= kMostSamples)
        return;

    std::uint8_t version = 0;
    SampleReader reader(samplesBuffer);
    if (std::uint8_t(samplesBuffer.front()) == kVersionMark) {
        reader.u8();
        version = reader.u8();
    }
    const SampleLayout read = layoutOf(computerModel, version);
    DiveSample sample;
    do {
        sample = startedFrom(sample, version);
        read(reader, sample);
        if (sample.depth > kDeepest)
            sample.depth = diveSamples.isEmpty() ? std::uint16_t(0) : diveSamples.constLast().depth;
        diveSamples.append(sample);
    } while (!reader.atEnd());
}
