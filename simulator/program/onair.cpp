// SPDX-License-Identifier: MIT
#include "program/onair.h"

#include "program/failure.h"
#include "program/printable.h"
#include "program/recording.h"
#include "radio/peripheral.h"

#include <QtCore/qcoreapplication.h>

#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;

namespace simulator {

int broadcast(const Options &options, const Scenario &scenario, const StopSignals &stopSignals)
{
    const QString error = Peripheral::problemWith(scenario);
    if (!error.isEmpty())
        return fail(error);
    Recorder recorder;
    recorder.setWithTraffic(scenario.recordTraffic);
    if (!startRecord(recorder, options.recordFile))
        return kOwnError;

    const DeviceScenario &device = scenario.devices.first();
    Peripheral peripheral(device, recorder);
    QObject::connect(&peripheral, &Peripheral::failed, qApp,
                     [](const QString &text) { QCoreApplication::exit(fail(text)); });
    bool told = false;
    QObject::connect(&peripheral, &Peripheral::onAir, qApp, [&](const QString &address) {
        if (std::exchange(told, true))
            return;
        const QStringList limits = Peripheral::limits(device);
        for (const QString &each : limits)
            std::fprintf(stderr, "varda-simulator: %s\n", qPrintable(printable(each)));
        const QString name = device.name.value_or(u"a computer without a name"_s);
        std::printf("%s is on the air as %s\n", qPrintable(address), qPrintable(printable(name)));
        std::fflush(stdout);
    });

    const QSocketNotifier stop(stopSignals.fd(), QSocketNotifier::Read);
    QObject::connect(&stop, &QSocketNotifier::activated, qApp, [&] {
        stopSignals.take();
        QCoreApplication::exit(0);
    });
    const auto input = options.exitWithStdin ? endWithStdin() : nullptr;
    QMetaObject::invokeMethod(
        &peripheral, [&] { peripheral.start(*options.radio); }, Qt::QueuedConnection);
    return statusWith(recorder, QCoreApplication::exec());
}

} // namespace simulator
