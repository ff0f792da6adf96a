// SPDX-License-Identifier: MIT
#pragma once

#include "device/frame.h"
#include "device/logbook.h"
#include "device/scenario.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonObject>
#include <QtCore/QList>

namespace simulator {

// The diving computer: it holds a state and answers requests.
class Computer
{
public:
    explicit Computer(const DeviceScenario &scenario);

    // The frames of the answer, in order; none for what the computer does not know.
    QList<Frame> answer(const Frame &request);

    // Everything that a request can change, for a look from outside.
    QJsonObject state() const;

private:
    QByteArray identification() const;
    QByteArray bootloaderVersion() const;
    QByteArray owner() const;
    QByteArray clock() const;
    QByteArray sensors() const;
    QByteArray diver() const;
    QByteArray simulationParameters() const;
    QByteArray setOwner(const QByteArray &text);
    QByteArray setTime(const QByteArray &payload);
    QByteArray setSensors(const QByteArray &payload);
    QByteArray deleteNewestDive();
    QByteArray eraseDives();
    QList<QByteArray> gases(const QByteArray &payload) const;
    QList<QByteArray> batteryInformation() const;

    qint64 now() const;

    DeviceScenario m_device;
    Logbook m_logbook;
    QElapsedTimer m_sinceClockSet;
    int m_resets = 0;
};

} // namespace simulator
