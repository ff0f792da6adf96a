// SPDX-License-Identifier: MIT
// Parts of the library that compute, each beside the least that the same bytes cost: "NAME/value" and
// "NAME/reference".
#include <benchmark/benchmark.h>

#include <QtCore/qendian.h>
#include <QtCore/qmetaobject.h>

#include <cstring>
#include <span>

#include <varda/bledevice.h>
#include <varda/firmwareimage.h>
#include <varda/tidemardiveconverter.h>
#include <varda/vardableprotocol.h>
#include <varda/vardadata.h>
#include <varda/vardasession.h>

#include "divemaker.h"
#include "output/records.h"

#if __has_include(<boost/crc.hpp>)
#    include <boost/crc.hpp>
#endif

namespace {

constexpr qsizetype kSampleBytes = 48'000;
constexpr int kConvertedSamples = 20'000;
constexpr int kPrintedSamples = 1000;
constexpr int kFirmwareSize = 1 << 20;
/** What CRC-16/AUG-CCITT begins with. */
constexpr quint16 kInitialCrc = 0x1D0F;

QByteArray pattern(qsizetype size)
{
    QByteArray bytes(size, '\0');
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = char(7 * i + 3);
    return bytes;
}

quint16 bitwiseCrc(const QByteArray &bytes)
{
    unsigned crc = kInitialCrc;
    for (const char byte : bytes) {
        crc ^= unsigned(quint8(byte)) << 8;
        for (int bit = 0; bit < 8; ++bit)
            crc = ((crc << 1) ^ ((crc & 0x8000) ? 0x1021U : 0U)) & 0xFFFF;
    }
    return quint16(crc);
}

/** An answer of one frame, with a body of so many bytes. */
QByteArray frameOf(qsizetype size)
{
    QByteArray body = pattern(size);
    body[0] = char(TidemarCommand::Identification);
    QByteArray frame(8, '\0');
    frame[0] = frame[1] = char(0xDC);
    qToLittleEndian(quint16(size), frame.data() + 2);
    qToLittleEndian(bitwiseCrc(body), frame.data() + 4);
    return frame + body;
}

void count(benchmark::State &state, qsizetype bytes)
{
    state.SetBytesProcessed(state.iterations() * bytes);
}

// frames

void parseFrames(benchmark::State &state, qsizetype size)
{
    BleDevice device;
    const VardaBleProtocol protocol(&device, BleMode::Gatt);
    qsizetype received = 0;
    QObject::connect(&protocol, &VardaBleProtocol::responseReceived, &protocol,
                     [&](auto, const QByteArray &payload) { received += payload.size(); });
    const QByteArray frame = frameOf(size);
    for ([[maybe_unused]] auto _ : state)
        Q_EMIT device.notificationReceived(frame);
    if (received != state.iterations() * (size - 1))
        state.SkipWithError("frames are missing");
    count(state, size);
}

#if __has_include(<boost/crc.hpp>)
void checkFrames(benchmark::State &state, qsizetype size)
{
    const QByteArray body = frameOf(size).sliced(8);
    for ([[maybe_unused]] auto _ : state) {
        boost::crc_optimal<16, 0x1021, kInitialCrc, 0, false, false> crc;
        crc.process_bytes(body.constData(), std::size_t(body.size()));
        benchmark::DoNotOptimize(crc.checksum());
    }
    count(state, size);
}
#endif

void checksumImage(benchmark::State &state)
{
    const QByteArray image = pattern(kFirmwareSize);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(FirmwareImage::fromData(image, {}).checksum);
    count(state, image.size());
}

void checksumImageBitwise(benchmark::State &state)
{
    const QByteArray image = pattern(kFirmwareSize);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(bitwiseCrc(image));
    count(state, image.size());
}

// decoders

struct SampleLayout {
    const char *name;
    ComputerModel::ComputerModelIn model;
    quint8 version;
    int size;
};

constexpr SampleLayout kSampleLayouts[] = {
    {"Varda 0", ComputerModel::Varda, 0, 6},      {"Varda 1", ComputerModel::Varda, 1, 8},
    {"Varda 2", ComputerModel::Varda, 2, 10},     {"Varda 3", ComputerModel::Varda, 3, 14},
    {"Tidemar 0", ComputerModel::Tidemar, 0, 6},  {"Tidemar 1", ComputerModel::Tidemar, 1, 10},
    {"Tidemar 2", ComputerModel::Tidemar, 2, 14}, {"Tidemar 3", ComputerModel::Tidemar, 3, 14},
    {"VSKM 0", ComputerModel::VSKM, 0, 6},        {"VSKM 1", ComputerModel::VSKM, 1, 10},
    {"VSKM 2", ComputerModel::VSKM, 2, 14},
};

QByteArray streamOf(const SampleLayout &layout)
{
    const QByteArray samples = pattern(kSampleBytes / layout.size * layout.size);
    return layout.version ? QByteArray("\x80").append(char(layout.version)) + samples : samples;
}

void decodeSamples(benchmark::State &state, const SampleLayout &layout)
{
    const QByteArray stream = streamOf(layout);
    const VardaData::Payload end{};
    VardaData data;
    data.computerModel = layout.model;
    for ([[maybe_unused]] auto _ : state) {
        data.samplesBuffer = stream;
        data.diveSamples.clear();
        data.processSamples(end, 1);
        benchmark::DoNotOptimize(data.diveSamples.constData());
    }
    if (data.diveSamples.size() != kSampleBytes / layout.size)
        state.SkipWithError("samples are missing");
    count(state, stream.size());
}

void copySamples(benchmark::State &state, const SampleLayout &layout)
{
    const QByteArray stream = streamOf(layout);
    QList<DiveSample> samples;
    for ([[maybe_unused]] auto _ : state) {
        samples.clear();
        const qsizetype first = layout.version ? 2 : 0;
        for (qsizetype at = first; at + layout.size <= stream.size(); at += layout.size) {
            DiveSample sample;
            std::memcpy(static_cast<void *>(&sample), stream.constData() + at,
                        std::size_t(layout.size));
            samples.append(sample);
        }
        benchmark::DoNotOptimize(samples.constData());
    }
    count(state, stream.size());
}

VardaData::Payload answerWith(std::initializer_list<quint8> first)
{
    VardaData::Payload payload{};
    const QByteArray bytes = pattern(qsizetype(payload.size()));
    std::copy(bytes.cbegin(), bytes.cend(), payload.begin());
    std::copy(first.begin(), first.end(), payload.begin() + 1);
    return payload;
}

struct RecordLayout {
    const char *name;
    ComputerModel::ComputerModelIn model;
    quint8 headerVersion;
    int headerSize;
    quint8 configurationVersion;
    int configurationSize;
};

constexpr RecordLayout kRecordLayouts[] = {
    {"Varda", ComputerModel::Varda, 10, 192, 13, 243},
    {"Tidemar", ComputerModel::Tidemar, 5, 187, 12, 260},
    {"VSKM", ComputerModel::VSKM, 5, 187, 21, 330},
};

void decodeHeader(benchmark::State &state, const RecordLayout &layout)
{
    const VardaData::Payload payload = answerWith({layout.headerVersion, 0x81, 1, 0});
    VardaData data;
    data.computerModel = layout.model;
    for ([[maybe_unused]] auto _ : state) {
        data.diveHeaders.clear();
        data.processLogbook(payload);
        benchmark::DoNotOptimize(data.diveHeaders.constData());
    }
}

/** Copies the bytes into the record from its first field on, one by one as a decoder takes them. */
void copyBytes(void *first, const VardaData::Payload &payload, int size)
{
    auto *to = static_cast<std::uint8_t *>(first);
    for (const std::uint8_t byte : std::span(payload).subspan(1, std::size_t(size))) {
        *to++ = byte;
        benchmark::ClobberMemory(); // else they would be copied at once
    }
}

void copyHeader(benchmark::State &state, const RecordLayout &layout)
{
    const VardaData::Payload payload = answerWith({layout.headerVersion, 0x81, 1, 0});
    QList<TidemarDiveHeader> headers;
    for ([[maybe_unused]] auto _ : state) {
        headers.clear();
        TidemarDiveHeader header;
        copyBytes(&header.diveNumber, payload, layout.headerSize);
        headers.append(header);
        benchmark::DoNotOptimize(headers.constData());
    }
}

void decodeConfiguration(benchmark::State &state, const RecordLayout &layout)
{
    const VardaData::Payload payload = answerWith(
        {layout.configurationVersion, 1, quint8(layout.model)});
    VardaData data;
    data.computerModel = layout.model;
    for ([[maybe_unused]] auto _ : state) {
        data.processComputer(payload, true);
        benchmark::DoNotOptimize(data);
    }
}

void copyConfiguration(benchmark::State &state, const RecordLayout &layout)
{
    const VardaData::Payload payload = answerWith({layout.configurationVersion, 1});
    // As large as the two records; they are no plain bytes.
    QByteArray records(sizeof(BleConfig) + sizeof(BleComputer), '\0');
    const auto size = std::min<qsizetype>(layout.configurationSize, records.size());
    for ([[maybe_unused]] auto _ : state)
        copyBytes(records.data(), payload, int(size));
}

// records

void convert(benchmark::State &state)
{
    const VardaSession session;
    const TidemarDiveHeader header = DiveMaker::header(1);
    const QList<DiveSample> samples = DiveMaker::samples(1, kConvertedSamples);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(TidemarDiveConverter::toDive(header, samples, session));
}

void copyLines(benchmark::State &state)
{
    const VardaSession session;
    const Dive dive = TidemarDiveConverter::toDive(
        DiveMaker::header(1), DiveMaker::samples(1, kConvertedSamples), session);
    for ([[maybe_unused]] auto _ : state) {
        QList<DiveLine> lines;
        lines.reserve(dive.lines.size());
        for (const DiveLine &line : dive.lines)
            lines.append(line);
        benchmark::DoNotOptimize(lines.constData());
    }
}

/** A dive as the command prints it. */
void writeJson(benchmark::State &state)
{
    const VardaSession session;
    const Dive dive = TidemarDiveConverter::toDive(DiveMaker::header(1),
                                                   DiveMaker::samples(1, kPrintedSamples), session);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(Json(fieldsOf(dive)).text());
    state.SetItemsProcessed(state.iterations() * kPrintedSamples);
}

/** Looks up every dive of a logbook of so many. */
void findHeaders(benchmark::State &state, int dives)
{
    VardaSession session;
    for (int number = 1; number <= dives; ++number) {
        QByteArray payload(200, '\0');
        qToLittleEndian(quint16(number), payload.data());
        // What the link calls.
        QMetaObject::invokeMethod(&session, "onResponseReceived",
                                  Q_ARG(TidemarCommand::TidemarCommandIn, TidemarCommand::Logbook),
                                  Q_ARG(QByteArray, payload),
                                  Q_ARG(uint16_t, uint16_t(payload.size() + 1)));
    }
    if (session.diveHeaders().size() != dives)
        state.SkipWithError("headers are missing");
    for ([[maybe_unused]] auto _ : state) {
        for (int number = 1; number <= dives; ++number)
            benchmark::DoNotOptimize(session.diveHeader(uint16_t(number)));
    }
    state.SetItemsProcessed(state.iterations() * dives);
}

void add(const std::string &name, const std::function<void(benchmark::State &)> &value,
         const std::function<void(benchmark::State &)> &reference)
{
    benchmark::RegisterBenchmark((name + "/value").c_str(), value);
    if (reference)
        benchmark::RegisterBenchmark((name + "/reference").c_str(), reference);
}

void addAll()
{
    for (const auto &[name, size] : {std::pair("frames of 64 kB, checked", 65'535),
                                     std::pair("frames of 128 bytes, checked", 128)}) {
        std::function<void(benchmark::State &)> reference;
#if __has_include(<boost/crc.hpp>)
        reference = [size](auto &state) { checkFrames(state, size); };
#endif
        add(name, [size](auto &state) { parseFrames(state, size); }, reference);
    }
    add("CRC of an image of 1 MB", checksumImage, checksumImageBitwise);
    for (const SampleLayout &layout : kSampleLayouts)
        add(
            std::string("decoding samples, ") + layout.name,
            [layout](auto &state) { decodeSamples(state, layout); },
            [layout](auto &state) { copySamples(state, layout); });
    for (const RecordLayout &layout : kRecordLayouts) {
        add(
            std::string("decoding a dive header, ") + layout.name,
            [layout](auto &state) { decodeHeader(state, layout); },
            [layout](auto &state) { copyHeader(state, layout); });
        add(
            std::string("decoding a configuration, ") + layout.name,
            [layout](auto &state) { decodeConfiguration(state, layout); },
            [layout](auto &state) { copyConfiguration(state, layout); });
    }
    add("converting 20000 samples", convert, copyLines);
    add("JSON of a sample", writeJson, {});
    add(
        "diveHeader(number) of 4000, beside 40", [](auto &state) { findHeaders(state, 4000); },
        [](auto &state) { findHeaders(state, 40); });
}

} // namespace

int main(int argc, char *argv[])
{
    addAll();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
