// SPDX-License-Identifier: MIT
#include <varda/tidemardiveconverter.h>

#include <span>

#include <varda/vardasession.h>

#include "decoding/text_p.h"

namespace {

constexpr int kSlots = 12;
/** On a closed-circuit dive the first slots hold diluents, the others the bail-out gases. */
constexpr int kDiluentSlots = 3;

/** The four bytes of value32d, least significant first, at the place the model gives them. */
std::array<std::uint8_t, 8> tagBytesOf(const DiveHeaderBlock &header)
{
    const bool tidemar = header.model == ComputerModel::Tidemar;
    const std::size_t first = tidemar ? 5 : 0;
    const std::size_t count = tidemar ? 3 : 4;
    std::array<std::uint8_t, 8> bytes{};
    for (std::size_t i = 0; i < count; ++i)
        bytes[first + i] = std::uint8_t(header.value32d >> (8 * i));
    return bytes;
}

} // namespace

Dive TidemarDiveConverter::toDive(const TidemarDiveHeader &header, const QList<DiveSample> &samples,
                                  const VardaSession &session)
{
    Dive dive;
    static_cast<DiveHeaderBlock &>(dive) = static_cast<const DiveHeaderBlock &>(header);
    dive.numberText = QString::number(header.diveNumber);
    dive.ownerName = textOf(std::span(session.computer().rawBlock));
    dive.serialNumber = session.serialNumber();
    dive.firmwareVersion = session.firmwareVersionStr();
    dive.modeByte = header.headerByte7;
    dive.tagBytes = tagBytesOf(header);

    QList<int> slotToGas;
    dive.gases = buildGases(header, slotToGas);

    double time = 0.0;
    dive.lines.reserve(samples.size());
    for (const DiveSample &sample : samples) {
        DiveLine line = toLine(sample, time);
        line.gasIndex = qMax(0, slotToGas.value(sample.code, -1));
        dive.lines.append(line);
        time += header.sampleInterval;
    }
    return dive;
}

DiveLine TidemarDiveConverter::toLine(const DiveSample &sample, double time)
{
    DiveLine line;
    line.time = time;
    line.depth = sample.depth / 10.0;
    line.aux1Value = std::int8_t(sample.aux1);
    if (sample.value12 >= 0)
        line.valueTenths = sample.value12 / 10.0;
    else
        line.valueNegated = std::int16_t(-sample.value12);
    line.mode = sample.mode;
    line.flag = sample.flag;
    line.aux3 = sample.aux3;
    line.aux4 = sample.aux4;
    line.aux5 = sample.aux5;
    line.aux6 = sample.aux6;
    line.aux7 = sample.aux7;
    line.aux2 = sample.aux2;
    line.aux8 = sample.aux8;
    line.aux11 = sample.aux11;
    line.aux9 = sample.aux9;
    line.aux10 = sample.aux10;
    return line;
}

QList<DiveGas> TidemarDiveConverter::gases(const TidemarDiveHeader &header)
{
    QList<int> slotToGas;
    return buildGases(header, slotToGas);
}

QList<DiveGas> TidemarDiveConverter::buildGases(const TidemarDiveHeader &header,
                                                QList<int> &slotToGas)
{
    slotToGas.resize(qMin<qsizetype>(slotToGas.size(), kSlots));
    while (slotToGas.size() < kSlots)
        slotToGas.append(-1);

    const bool closedCircuit = header.kindByte != 0;
    QList<DiveGas> gases;
    for (int slot = 0; slot < kSlots; ++slot) {
        if (!(header.gasSlotMask >> slot & 1))
            continue;
        DiveGas gas;
        gas.setO2(header.gasO2[std::size_t(slot)] / 100.0);
        gas.setHe(header.gasHe[std::size_t(slot)] / 100.0);
        if (closedCircuit) {
            gas.closedCircuit = slot < kDiluentSlots;
            gas.usage = gas.closedCircuit ? GasUsage::Diluent : GasUsage::Sidemount;
        }
        slotToGas[slot] = int(gases.size());
        gases.append(gas);
    }
    return gases;
}
