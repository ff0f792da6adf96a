// SPDX-License-Identifier: MIT
#pragma once

#include "device/dives/logbook.h"
#include "device/memory/firmwarestore.h"
#include "device/memory/layoutstore.h"
#include "device/scenario/scenario.h"
#include "device/wire/frame.h"

#include <QtCore/qelapsedtimer.h>
#include <QtCore/qjsonobject.h>
#include <QtCore/qlist.h>

#include <optional>

namespace simulator {

/** The diving computer: it holds a state and answers requests. */
class Computer
{
public:
    explicit Computer(const DeviceScenario &scenario);

    /** The frames of the answer, in order; none for what the computer does not know. */
    QList<Frame> answer(const Frame &request);

    /** The last firmware or bootloader that was uploaded and accepted. */
    const QByteArray &firmwareImage() const { return m_firmware.image(); }

    /** Everything that a request can change, for a look from outside. */
    QJsonObject state() const;

private:
    QByteArray answerOnce(quint8 command, const QByteArray &payload);
    std::optional<QList<QByteArray>> answerList(quint8 command, const QByteArray &payload) const;
    std::optional<bool> obey(quint8 command, const QByteArray &payload);

    QByteArray identification() const;
    QByteArray bootloaderVersion() const;
    QByteArray owner() const;
    QByteArray clock() const;
    QByteArray sensors() const;
    QByteArray diver() const;
    QByteArray simulationParameters() const;
    bool setOwner(const QByteArray &text);
    bool setSerialNumber(const QByteArray &bytes);
    bool setDiver(const QByteArray &loads);
    bool setMarlo(const QByteArray &settings);
    bool setSuperUser(const QByteArray &flag);
    bool endUpload(FirmwareStore::Family family);
    void resetToFactory();
    QByteArray setTime(const QByteArray &payload);
    QByteArray setSensors(const QByteArray &payload);
    QByteArray deleteNewestDive();
    QByteArray eraseDives();
    QList<QByteArray> samples(const QByteArray &number) const;
    QList<QByteArray> gases(const QByteArray &payload) const;
    QList<QByteArray> batteryInformation() const;

    qint64 now() const;

    DeviceScenario m_device;
    Logbook m_logbook;
    LayoutStore m_layouts;
    FirmwareStore m_firmware;
    QByteArray m_marlo;
    bool m_superUser = false;
    QElapsedTimer m_sinceClockSet;
    int m_resets = 0;
};

} // namespace simulator
