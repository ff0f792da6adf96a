// SPDX-License-Identifier: MIT
#pragma once

#include <QtBluetooth/qbluetoothdeviceinfo.h>
#include <QtBluetooth/qlowenergycontroller.h>
#include <QtCore/qobject.h>

/**
 * A link on its way down.
 *
 * BlueZ takes two to three seconds to end a link. A new controller for the same computer would
 * meanwhile find the old link, report itself connected, and then be dropped with it; and a
 * controller that is deleted before its link has ended ends the new one too. So the old controller
 * lives until it has disconnected, and the new one waits for that.
 */
class ClosingLink : public QObject
{
    Q_OBJECT

public:
    /** A stack that does not answer must not hold up a new connection for longer. */
    static constexpr int kLongestWaitMs = 5000;

    /** Disconnects @p controller, whose signals are cut already, and deletes it in due time. */
    static void close(QLowEnergyController *controller);
    /** Lets others know that @p controller is disconnecting, while its owner keeps it. */
    static ClosingLink *watch(QLowEnergyController *controller);
    /** The link to the computer of @p controller that is still closing, or null. */
    [[nodiscard]] static ClosingLink *sameComputer(const QLowEnergyController *controller);
    /** The same for a computer whose controller is not made yet. */
    [[nodiscard]] static ClosingLink *toDevice(const QBluetoothDeviceInfo &device);

Q_SIGNALS:
    /** The link has ended, or has taken too long. */
    void closed();

private:
    explicit ClosingLink(QLowEnergyController *controller);
    void finish();

    QLowEnergyController *m_controller;
    ClosingLink *m_older;
};
