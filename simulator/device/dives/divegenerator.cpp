// SPDX-License-Identifier: MIT
#include "device/dives/divegenerator.h"

#include "device/random.h"
#include "device/scenario/scenario.h"

#include <algorithm>

namespace simulator {

namespace {

constexpr qint64 kFirstDay = 1'709'251'200; // 2024-03-01
constexpr qint64 kDay = 86'400;
constexpr int kThermocline = 180;
constexpr int kNoStopsShown = 99;
constexpr int kFirstSetpoint = 70; // hundredths of a bar, as long as there is no ceiling
constexpr int kSecondSetpoint = 130;

// Of every six dives three are easy ones.
constexpr DiveKind kKinds[] = {DiveKind::Recreational,  DiveKind::Recreational,
                               DiveKind::Decompression, DiveKind::Recreational,
                               DiveKind::ClosedCircuit, DiveKind::Trimix};

// Follows a plan through time and tells what the computer shows.
class Profile
{
public:
    explicit Profile(const DivePlan &plan, Random random) : m_plan(plan), m_random(random) { }

    // Times may not go back.
    Sample at(int second, int sinceLast)
    {
        while (m_leg + 1 < m_plan.legs.size() && second >= m_legEnd()) {
            m_legStart += m_plan.legs[m_leg].seconds;
            ++m_leg;
        }
        const Leg &leg = m_plan.legs[m_leg];
        const int into = std::min(second - m_legStart, leg.seconds);

        Sample sample;
        sample.depth = leg.from + (leg.to - leg.from) * into / leg.seconds;
        if (leg.from == leg.to)
            sample.depth = std::max(0, sample.depth + m_random.between(-2, 2));
        m_exposure += qint64(sample.depth) * sinceLast;

        sample.code = leg.gas;
        sample.mode = leg.closedCircuit ? 1 : 0;
        sample.flag = m_random.chance(1) ? 1 : 0;
        sample.value12 = leg.ceiling > 0 ? leg.ceiling : -minutesWithoutStops();
        sample.aux1 = temperature(sample.depth);
        sample.aux2 = minutesToSurface(second, sample.depth, leg.ceiling > 0);
        sample.aux3 = int(std::min<qint64>(m_exposure / 20'000, 100));
        sample.aux4 = oxygenPressure(leg, sample.depth);
        sample.aux8 = 200 - 150 * second / m_plan.seconds;
        sample.aux9 = 90 - 5 * second / m_plan.seconds;
        sample.aux10 = leg.to < leg.from ? (leg.from - leg.to) * 6 / leg.seconds : 0;
        sample.aux11 = m_plan.kind == DiveKind::Recreational ? leg.gas : 255;
        sample.aux12 = leg.safetyStop ? 1 : 0;
        setStatus(sample, leg);
        return sample;
    }

private:
    int m_legEnd() const { return m_legStart + m_plan.legs[m_leg].seconds; }

    int minutesWithoutStops() const
    {
        return int(std::max<qint64>(1, kNoStopsShown - m_exposure / 6'000));
    }

    int temperature(int depth) const
    {
        const int cooling = m_plan.warm - m_plan.cold;
        return m_plan.warm - cooling * std::min(depth, kThermocline) / kThermocline;
    }

    int minutesToSurface(int second, int depth, bool withStops) const
    {
        return withStops ? (m_plan.seconds - second + 59) / 60 : (depth + 89) / 90;
    }

    // In hundredths of a bar.
    int oxygenPressure(const Leg &leg, int depth) const
    {
        if (leg.closedCircuit)
            return leg.ceiling > 0 ? kSecondSetpoint : kFirstSetpoint;
        const Mix &mix = m_plan.gases[size_t(leg.gas)];
        return std::min((101 + depth) * mix.oxygen / 100, 255);
    }

    // The same three facts, as the models send them: two bits a warning, or one.
    static void setStatus(Sample &sample, const Leg &leg)
    {
        const bool stopDue = leg.ceiling > 0;
        sample.aux5 = stopDue ? 0x0C : 0;
        sample.aux6 = leg.safetyStop ? 0x04 : 0;
        sample.aux7 = leg.closedCircuit ? 0x01 : 0;
        sample.status = (stopDue ? 0x04 : 0) | (leg.safetyStop ? 0x01 : 0);
        sample.gasStatus = leg.closedCircuit ? 0x02 : 0;
    }

    const DivePlan &m_plan;
    Random m_random;
    qsizetype m_leg = 0;
    int m_legStart = 0;
    qint64 m_exposure = 0;
};

QList<Sample> profileOf(const DivePlan &plan, const DiveRecipe &recipe, Random &random)
{
    // The first sample is at the beginning, the last one at the end; a dive with another number of
    // samples than it takes is stretched or squeezed.
    const int count = recipe.samples > 0 ? recipe.samples : plan.seconds / recipe.interval + 1;
    QList<Sample> samples;
    samples.reserve(count);
    Profile profile(plan, random);
    int last = 0;
    for (int i = 0; i < count; ++i) {
        const int second = count > 1 ? int(qint64(plan.seconds) * i / (count - 1)) : 0;
        samples.append(profile.at(second, second - last));
        last = second;
    }
    return samples;
}

void setTimes(DiveHeader &header, const DiveRecipe &recipe, qsizetype samples, Random &random)
{
    // Two dives a day, in the morning and in the afternoon.
    const qint64 begin = kFirstDay + (recipe.number - 1) / 2 * kDay
                         + (recipe.number % 2 ? 34'200 : 50'400) + random.between(0, 3'600);
    const qint64 duration = std::max<qint64>(samples - 1, 0) * recipe.interval;
    using enum HeaderField;
    header[Stamp] = quint64(begin);
    header[Stamp2] = quint64(begin + duration);
    header[Value32a] = quint64(duration);
    header[Value32b] = quint64(recipe.number % 2 ? random.between(900, 1'200)
                                                 : random.between(90, 240));
    header[SampleInterval] = quint64(recipe.interval);
}

int asSigned(int byte)
{
    const int low = byte & 0xFF;
    return low < 0x80 ? low : low - 0x100;
}

void setStatistics(DiveHeader &header, const QList<Sample> &samples)
{
    int deepest = 0;
    qint64 sum = 0;
    int coldest = 127;
    int warmest = -128;
    for (const Sample &sample : samples) {
        deepest = std::max(deepest, sample.depth);
        sum += sample.depth;
        coldest = std::min(coldest, asSigned(sample.aux1));
        warmest = std::max(warmest, asSigned(sample.aux1));
    }
    using enum HeaderField;
    header[Tenths1] = quint64(deepest);
    header[Tenths2] = samples.isEmpty() ? 0 : quint64(sum / samples.size());
    header[Signed1] = samples.isEmpty() ? 0 : quint64(quint8(coldest));
    header[Signed2] = samples.isEmpty() ? 0 : quint64(quint8(warmest));
    header[Count1] = quint64(samples.size());
    header[Count2] = quint64(sum / 100);
    header[Value32c] = samples.isEmpty() ? 0 : quint64(samples.last().aux3);
    header[HeaderWord11] = samples.isEmpty() ? 0 : quint64(samples.first().aux8);
    header[HeaderWord12] = samples.isEmpty() ? 0 : quint64(samples.last().aux8);
}

void setGases(DiveHeader &header, const DivePlan &plan, Model model)
{
    using enum HeaderField;
    quint64 mask = 0;
    for (size_t i = 0; i < plan.gases.size(); ++i) {
        header.gasO2[i] = quint8(plan.gases[i].oxygen);
        header.gasHe[i] = quint8(plan.gases[i].helium);
        if (plan.gases[i].oxygen > 0)
            mask |= quint64(1) << i;
    }
    header[GasSlotMask] = mask;
    if (plan.kind == DiveKind::ClosedCircuit)
        header[KindByte] = model == Model::Tidemar || model == Model::Vskm ? 3 : 1;
}

void setTissues(DiveHeader &header, const DivePlan &plan)
{
    const int deepest = std::ranges::max_element(plan.legs, {}, &Leg::to)->to;
    const bool withHelium = plan.gases[0].helium > 0;
    for (int i = 0; i < 16; ++i) {
        // Fast tissues, the first ones, follow the dive most.
        header.tissueN2[size_t(i)] = quint16(750 + deepest * 2 / (i + 1));
        header.tissueHe[size_t(i)] = quint16(withHelium ? deepest / (i + 1) : 0);
    }
}

void applyWishes(DiveHeader &header, const DiveRecipe &recipe)
{
    for (const auto &[field, value] : recipe.fields)
        header[field] = value;
    header.tissueN2 = recipe.tissueN2.value_or(header.tissueN2);
    header.tissueHe = recipe.tissueHe.value_or(header.tissueHe);
    header.gasO2 = recipe.gasO2.value_or(header.gasO2);
    header.gasHe = recipe.gasHe.value_or(header.gasHe);
}

DiveHeader headerOf(const DivePlan &plan, const DiveRecipe &recipe, const QList<Sample> &samples,
                    Model model, Random &random)
{
    using enum HeaderField;
    DiveHeader header;
    header[DiveNumber] = recipe.number;
    header[HeaderByte1] = 40; // gradient factors
    header[HeaderByte2] = 85;
    header[HeaderByte5] = 1;
    header[Density] = quint64(plan.density);
    header[HeaderWord1] = quint64(plan.surfacePressure);
    header[HeaderWord2] = 502;
    header[HeaderWord3] = 503;
    header[HeaderWord4] = 504;
    header[HeaderWord5] = kFirstSetpoint;
    header[HeaderWord6] = kSecondSetpoint;
    header[HeaderWord7] = 507;
    header[HeaderWord8] = 508;
    header[HeaderByte7] = plan.kind == DiveKind::ClosedCircuit ? 1 : 0;
    header[HeaderWord13] = recipe.number % 2 ? 1 : 2; // the how manieth dive of the day
    header[HeaderWord14] = 900;
    header[TidemarBit] = 1;
    header[Value32d] = random.next() & 0xFFFF'FFFF;
    header[Value32e] = random.next() & 0xFFFF'FFFF;
    header[Value32f] = random.next() & 0xFFFF'FFFF;
    setTimes(header, recipe, samples.size(), random);
    setStatistics(header, samples);
    setGases(header, plan, model);
    setTissues(header, plan);
    applyWishes(header, recipe);
    return header;
}

} // namespace

GeneratedDive generateDive(const DiveRecipe &recipe, Model model)
{
    Random random(recipe.seed << 16 ^ recipe.number);
    const DiveKind kind = recipe.kind.value_or(
        kKinds[size_t(recipe.number - 1) % std::size(kKinds)]);
    const DivePlan plan = planDive(kind, random);
    GeneratedDive dive;
    dive.samples = recipe.profile ? *recipe.profile : profileOf(plan, recipe, random);
    dive.header = headerOf(plan, recipe, dive.samples, model, random);
    return dive;
}

} // namespace simulator
