// SPDX-License-Identifier: MIT
#include "divemaker.h"

#include <QtCore/qmath.h>

#include <varda/tidemardiveconverter.h>
#include <varda/vardasession.h>

namespace {

constexpr std::uint64_t kFirstBegin = 1'136'109'600; // 2006-01-01 10:00
constexpr std::uint64_t kDay = 86'400;

/** Metres, from @p part 0 to 1 of the dive: down fast, up slowly, waves on the way. */
double depthAt(double part, double deepest, int number)
{
    const double shape = qMin(1.0, part * 12) * qMin(1.0, (1.0 - part) * 1.6);
    return qMax(0.0, shape * (deepest + qSin(part * 40 + number)));
}

} // namespace

namespace DiveMaker {

TidemarDiveHeader header(int number)
{
    TidemarDiveHeader header;
    header.diveNumber = std::uint16_t(number);
    header.model = ComputerModel::Varda;
    header.stamp = kFirstBegin + std::uint64_t(number) * kDay * 3 / 2;
    header.gasSlotMask = 0b11;
    header.gasO2 = {21, 50};
    for (std::size_t i = 0; i < header.tissueN2.size(); ++i) {
        header.tissueN2[i] = std::uint16_t(900 + 37 * i + std::size_t(number) % 50);
        header.tissueHe[i] = std::uint16_t(i);
    }
    return header;
}

QList<DiveSample> samples(int number, int count)
{
    const double deepest = 12 + number * 7 % 40;
    QList<DiveSample> samples(count);
    for (int i = 0; i < count; ++i) {
        const double part = double(i) / count;
        DiveSample &sample = samples[i];
        sample.version = 3;
        sample.depth = std::uint16_t(qRound(depthAt(part, deepest, number) * 10)) & 0xFFFU;
        sample.code = part < 0.7 ? 0 : 1;
        sample.value12 = std::int16_t(qRound(90 * part)) & 0x7FF;
        sample.aux1 = std::uint8_t(22 - qRound(10 * qMin(1.0, part * 3)));
        sample.aux2 = std::uint16_t(i);
    }
    return samples;
}

LogbookDive dive(int number, int count)
{
    static const VardaSession kSession;
    LogbookDive made;
    made.header = header(number);
    made.samples = samples(number, count);
    made.dive = TidemarDiveConverter::toDive(made.header, made.samples, kSession);
    made.number = made.header.diveNumber;
    made.begin = made.header.stamp;
    return made;
}

} // namespace DiveMaker
