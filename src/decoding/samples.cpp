// SPDX-License-Identifier: MIT
#include <varda/vardadata.h>

#include <QtCore/qbytearrayview.h>

#include <algorithm>
#include <array>

namespace {

constexpr std::uint8_t kVersionMark = 0x80;
constexpr int kDeepest = 3500; // 350 m; what is deeper is a disturbance
// Longer than any answer: each empty one decodes all again, so a few bytes would make megabytes.
constexpr qsizetype kMostSamples = 400'000;

constexpr qsizetype kLongestSample = 14;

/** A cursor over one sample; what is missing of the last one, which may be cut short, reads as zeros. */
class SampleReader
{
public:
    explicit SampleReader(QByteArrayView rest)
    {
        if (rest.size() >= kLongestSample) {
            m_next = rest.data();
        } else {
            std::copy(rest.begin(), rest.end(), m_cut.begin());
            m_next = m_cut.data();
        }
        m_begin = m_next;
    }
    Q_DISABLE_COPY_MOVE(SampleReader)
    ~SampleReader() = default;

    /** How many bytes the sample has, or would have if it were not cut. */
    [[nodiscard]] qsizetype size() const { return m_next - m_begin; }

    // No more than the longest sample has
    std::uint8_t u8() { return std::uint8_t(*m_next++); }
    std::uint16_t u16()
    {
        const unsigned low = u8();
        return std::uint16_t(low | unsigned(u8()) << 8);
    }

private:
    std::array<char, kLongestSample> m_cut{};
    const char *m_begin = nullptr;
    const char *m_next = nullptr;
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

/** What each value of the older byte is in a newer one. */
template <std::size_t N>
constexpr std::array<std::uint8_t, 256> remapped(const StatusBit (&bitsOfIt)[N])
{
    std::array<std::uint8_t, 256> table{};
    for (unsigned status = 0; status < table.size(); ++status) {
        for (const StatusBit &bit : bitsOfIt) {
            if (bits(status, bit.from, 1))
                table[status] |= bit.to;
        }
    }
    return table;
}

constexpr auto kToAux5 = remapped({{1, 0x03}, {2, 0x0C}, {3, 0x30}, {6, 0xC0}});
constexpr auto kToAux6 = remapped({{7, 0x03}, {0, 0x04}, {4, 0x08}, {5, 0x10}});

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
        sample.aux5 = kToAux5[status];
        sample.aux6 = kToAux6[status];
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

/** A sample in which the two fields that some layouts never send keep their last values. */
DiveSample startedFrom(const DiveSample &last, std::uint8_t version)
{
    DiveSample sample;
    sample.version = version;
    sample.flag = last.flag;
    sample.modeFlag = last.modeFlag;
    return sample;
}

/** Appends all samples of a stream; of none it is one of zeros. */
template <auto read>
void decode(QByteArrayView rest, std::uint8_t version, QList<DiveSample> &samples)
{
    DiveSample sample;
    do {
        sample = startedFrom(sample, version);
        SampleReader reader(rest);
        read(reader, sample);
        if (sample.depth > kDeepest)
            sample.depth = samples.isEmpty() ? std::uint16_t(0) : samples.constLast().depth;
        samples.append(sample);
        rest = rest.sliced(std::min(rest.size(), reader.size()));
    } while (!rest.isEmpty());
}

template <auto read> qsizetype sizeOf(std::uint8_t version)
{
    SampleReader reader({});
    DiveSample sample;
    sample.version = version;
    read(reader, sample);
    return reader.size();
}

struct SampleLayout {
    void (*decode)(QByteArrayView, std::uint8_t, QList<DiveSample> &);
    qsizetype (*size)(std::uint8_t);
};
template <auto read> constexpr SampleLayout kLayout = {decode<read>, sizeOf<read>};

const SampleLayout &layoutOf(ComputerModel::ComputerModelIn model, std::uint8_t version)
{
    if (model == ComputerModel::Varda)
        return kLayout<readVarda>;
    if (model == ComputerModel::Tidemar && version >= 3)
        return kLayout<readTidemar3>;
    return kLayout<readOthers>;
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

    QByteArrayView rest(samplesBuffer);
    std::uint8_t version = 0;
    if (std::uint8_t(rest.front()) == kVersionMark) {
        version = rest.size() > 1 ? std::uint8_t(rest[1]) : std::uint8_t(0);
        rest = rest.sliced(std::min<qsizetype>(rest.size(), 2));
    }
    const SampleLayout &layout = layoutOf(computerModel, version);
    // Only once, since an answer that is closed again and again adds a little each time.
    if (diveSamples.isEmpty())
        diveSamples.reserve(rest.size() / layout.size(version) + 1);
    layout.decode(rest, version, diveSamples);
}
