// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>

/**
 * Whether the system's Bluetooth service is still there. When bluetoothd ends, its clients hear
 * nothing, neither of their links nor of their scans; only the name on the bus is gone.
 */
class ServiceWatch : public QObject
{
    Q_OBJECT

public:
    ServiceWatch();
    ~ServiceWatch() override;
    Q_DISABLE_COPY_MOVE(ServiceWatch)

    /** The one there is while a command runs, or null. */
    static ServiceWatch *instance();
    /** Also when it has come back: it does not remember what was under way. */
    [[nodiscard]] bool hasEnded() const { return m_hasEnded; }

Q_SIGNALS:
    void ended();

private:
    bool m_hasEnded = false;
};
