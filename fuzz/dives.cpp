// SPDX-License-Identifier: MIT
// A dive of any layout: header and samples, the generic record, and its pictures.
#include "fuzz.h"
#include "outlets.h"

#include <cmath>

#include <varda/tidemardiveconverter.h>
#include <varda/vardadata.h>
#include <varda/vardasession.h>

#include "output/divetext.h"
#include "output/plot.h"
#include "output/records.h"

namespace {

constexpr qsizetype kBody = 511;

VardaData::Payload payloadOf(const QByteArray &body)
{
    VardaData::Payload payload{};
    std::copy(body.begin(), body.end(), payload.begin() + 1);
    return payload;
}

int sampleSize(ComputerModel::ComputerModelIn model, int version)
{
    constexpr int kVarda[] = {6, 8, 10, 14};
    constexpr int kTidemar[] = {6, 10, 14, 14};
    constexpr int kOthers[] = {6, 10, 14, 14};
    const int known = std::min(version, 3);
    switch (model) {
    case ComputerModel::Varda:
        return kVarda[known];
    case ComputerModel::Tidemar:
        return kTidemar[known];
    default:
        return kOthers[known];
    }
}

/** How many samples a stream has: a cut one counts. */
qsizetype samplesIn(const QByteArray &stream, ComputerModel::ComputerModelIn model)
{
    const bool versioned = stream.startsWith('\x80');
    const int version = versioned && stream.size() > 1 ? std::uint8_t(stream[1]) : 0;
    const qsizetype bytes = stream.size() - (versioned ? 2 : 0);
    const int size = sampleSize(model, version);
    // A stream that is there at all has a sample, made of zeros if need be.
    return stream.isEmpty() ? 0 : std::max<qsizetype>((bytes + size - 1) / size, 1);
}

void checkProfile(const Dive &dive)
{
    double last = 0;
    for (const DiveLine &line : dive.lines) {
        check(line.depth >= 0 && line.depth <= 350, "no sample is deeper than 350 m");
        check(line.time >= last && std::isfinite(line.time), "time goes on");
        check(line.gasIndex >= 0 && line.gasIndex < std::max<qsizetype>(dive.gases.size(), 1),
              "a line names a gas that there is");
        last = line.time;
    }
    check(dive.gases.size() <= 12, "there are 12 gases at most");
    for (const DiveGas &gas : dive.gases) {
        check(gas.oxygen >= 0.05F && gas.oxygen <= 1 && gas.helium >= 0 && gas.helium <= 0.99F
                  && gas.nitrogen >= 0 && gas.oxygen + gas.helium < 1.0011F,
              "a mix is one that can be");
    }
}

void checkPlot(const Dive &dive, const PlotStyle &style)
{
    const QString plot = profilePlot(dive, style);
    checkTerminal(plot);
    const auto lines = plot.split(u'\n');
    for (const QString &line : lines)
        check(line.size() <= std::max(style.width, 24), "a plot is as wide as it may be");
}

} // namespace

/** Model, plot, the size of a notification, the header's size, the header, and the samples. */
int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    static const VardaSession kNoSession;
    Input input(bytes, size);
    VardaData data;
    data.computerModel = ComputerModel::ComputerModelIn(input.byte() % 5);
    const std::uint8_t look = input.byte();
    const PlotStyle style{20 + look % 64, 1 + look / 16, look % 2 == 0};
    const qsizetype piece = 1 + input.byte();
    data.processLogbook(payloadOf(input.bytes(std::min<qsizetype>(input.word(), kBody))));

    QByteArray stream;
    while (!input.atEnd()) {
        const QByteArray part = input.bytes(piece);
        data.processSamples(payloadOf(part), std::uint16_t(part.size() + 1));
        stream += part;
    }
    data.processSamples({}, 1);

    check(data.diveHeaders.size() == 1, "an entry of the logbook is one header");
    check(data.diveSamples.size() == samplesIn(stream, data.computerModel),
          "a stream has as many samples as it has room for");
    const auto &header = data.diveHeaders.front();
    const Dive dive = TidemarDiveConverter::toDive(header, data.diveSamples, kNoSession);
    check(dive.lines.size() == data.diveSamples.size(), "a sample is a line");
    checkProfile(dive);
    checkPlot(dive, style);
    checkTerminal(diveSummary(dive, Units::Imperial) + divesRow(dive, Units::Metric));
    // A line is as any other, and printing all of a long dive takes most of the time.
    constexpr qsizetype kShown = 16;
    if (dive.lines.size() <= kShown) {
        checkTerminal(samplesTable(dive, Units::Imperial));
        checkDocument(fieldsOf(dive));
    }
    return 0;
}
