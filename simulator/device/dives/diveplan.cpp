// SPDX-License-Identifier: MIT
#include "device/dives/diveplan.h"

#include "device/random.h"

#include <algorithm>
#include <cstdlib>

namespace simulator {

namespace {

// Tenths of a metre a minute.
constexpr int kDescent = 180;
constexpr int kAscent = 90;
constexpr int kLastMetres = 30;

constexpr int kMinute = 60;

// Strings legs together, each beginning where the last one ended.
class Diver
{
public:
    explicit Diver(DivePlan &plan) : m_plan(plan) { }

    Diver &go(int depth, int speed)
    {
        m_now.to = depth;
        return add(std::max(1, std::abs(depth - m_now.from) * kMinute / speed));
    }
    Diver &stay(int minutes) { return add(minutes * kMinute); }
    Diver &breathe(int slot)
    {
        m_now.gas = slot;
        return *this;
    }
    Diver &closeCircuit(bool closed)
    {
        m_now.closedCircuit = closed;
        return *this;
    }
    Diver &owe(int ceiling)
    {
        m_now.ceiling = ceiling;
        return *this;
    }
    Diver &stop(int depth, int minutes) { return owe(depth).go(depth, kAscent).stay(minutes); }
    Diver &safetyStop()
    {
        go(50, kAscent);
        m_now.safetyStop = true;
        stay(3);
        m_now.safetyStop = false;
        return *this;
    }
    void surface() { owe(0).go(0, kLastMetres); }

private:
    Diver &add(int seconds)
    {
        m_now.seconds = seconds;
        m_plan.legs.append(m_now);
        m_plan.seconds += seconds;
        m_now.from = m_now.to;
        return *this;
    }

    DivePlan &m_plan;
    Leg m_now;
};

void recreational(DivePlan &plan, Random &random)
{
    plan.gases[0] = {random.chance(50) ? 21 : 32, 0};
    int depth = random.between(140, 300);
    Diver diver(plan);
    diver.go(depth, kDescent).stay(random.between(8, 18));
    for (int levels = random.between(1, 3); levels > 0 && depth > 100; --levels) {
        depth = depth * random.between(55, 75) / 100;
        diver.go(depth, kAscent).stay(random.between(4, 10));
    }
    diver.safetyStop().surface();
}

void decompression(DivePlan &plan, Random &random)
{
    // Slot 1 stays free: slots in use need not stand together.
    plan.gases[0] = {random.between(21, 26), 0};
    plan.gases[2] = {50, 0};
    Diver diver(plan);
    diver.go(random.between(360, 460), kDescent).stay(random.between(8, 12));
    diver.owe(60).stay(random.between(5, 10));
    diver.owe(90).go(210, kAscent).breathe(2).stay(1);
    diver.stop(90, 2).stop(60, random.between(3, 6)).stop(30, random.between(8, 16)).surface();
}

void trimix(DivePlan &plan, Random &random)
{
    plan.gases[0] = {18, 45};
    plan.gases[1] = {50, 0};
    plan.gases[2] = {100, 0};
    Diver diver(plan);
    diver.go(random.between(550, 750), kDescent).stay(random.between(5, 8));
    diver.owe(210).stay(random.between(6, 12));
    diver.stop(240, 1).breathe(1).stop(210, 2);
    for (int depth = 180; depth >= 90; depth -= 30)
        diver.stop(depth, random.between(2, 4));
    diver.owe(60).go(60, kAscent).breathe(2).stop(60, random.between(6, 10));
    diver.stop(30, random.between(10, 20)).surface();
}

void closedCircuit(DivePlan &plan, Random &random)
{
    // Diluents are in the first three slots, what is left for an emergency in those after them.
    plan.gases[0] = {18, 45};
    plan.gases[3] = {21, 35};
    plan.gases[4] = {50, 0};
    const bool bailsOut = random.chance(30);
    Diver diver(plan);
    diver.closeCircuit(true).go(random.between(400, 600), kDescent).stay(random.between(15, 20));
    diver.owe(120).stay(random.between(10, 20));
    if (bailsOut)
        diver.closeCircuit(false).breathe(3);
    diver.go(210, kAscent);
    if (bailsOut)
        diver.breathe(4);
    for (int depth = 120; depth >= 60; depth -= 30)
        diver.stop(depth, random.between(2, 5));
    diver.stop(30, random.between(8, 18)).surface();
}

} // namespace

DivePlan planDive(DiveKind kind, Random &random)
{
    DivePlan plan;
    plan.kind = kind;
    plan.warm = random.between(8, 29);
    plan.cold = random.between(-1, std::min(plan.warm, 22));
    plan.density = random.chance(70) ? 1030 : 1000;
    plan.surfacePressure = random.between(985, 1032);
    switch (kind) {
    case DiveKind::Recreational:
        recreational(plan, random);
        break;
    case DiveKind::Decompression:
        decompression(plan, random);
        break;
    case DiveKind::Trimix:
        trimix(plan, random);
        break;
    case DiveKind::ClosedCircuit:
        closedCircuit(plan, random);
        break;
    }
    return plan;
}

} // namespace simulator
