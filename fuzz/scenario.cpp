// SPDX-License-Identifier: MIT
// Scenarios of the simulator, and the computers they describe.
#include "fuzz.h"

#include <QtCore/qjsonarray.h>
#include <QtCore/qjsondocument.h>
#include <QtCore/qjsonobject.h>

#include "device/computer.h"
#include "device/scenario/scenario.h"

using namespace Qt::StringLiterals;

namespace {

/** Large logbooks and logs are good scenarios, but nothing to spend this time on. */
constexpr double kMost = 64;

bool isLarge(const QJsonValue &value)
{
    return std::max(value.toDouble(), value["count"_L1].toDouble()) > kMost;
}

bool asksForMuch(const QByteArray &json)
{
    const QJsonArray devices = QJsonDocument::fromJson(json)["devices"_L1].toArray();
    for (const auto &device : devices) {
        if (isLarge(device["log"_L1]) || isLarge(device["dives"_L1]))
            return true;
    }
    return false;
}

bool isSmall(const simulator::LogbookScenario &logbook)
{
    return std::ranges::all_of(logbook.dives,
                               [](const auto &dive) { return dive.samples <= kMost; });
}

void askAll(const simulator::DeviceScenario &device)
{
    simulator::Computer computer(device);
    for (int command = 0; command <= 0xFF; ++command) {
        const auto code = quint8(command);
        for (const QByteArray &payload : {QByteArray(), QByteArray("\1\0\0\0", 4)}) {
            const auto frames = computer.answer({code, payload});
            for (const auto &frame : frames)
                check(frame.payload.size() < 0xFFFF, "a frame's length fits in its header");
        }
    }
    static_cast<void>(QJsonDocument(computer.state()).toJson());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const QByteArray json = Input(bytes, size).rest();
    if (asksForMuch(json))
        return 0;
    QString error;
    const auto scenario = simulator::Scenario::parse(json, &error);
    check(scenario.has_value() == error.isEmpty(), "a scenario is read or its mistake is told");
    if (!scenario)
        return 0;
    for (const auto &device : scenario->devices) {
        check(device.mtu >= 23 && device.mtu <= 517, "an MTU is one that can be");
        if (isSmall(device.logbook))
            askAll(device);
    }
    return 0;
}
