// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qobject.h>
#include <QtCore/qstring.h>
#include <QtCore/qversionnumber.h>

#include <functional>

#include <varda/vardajob.h>

/** What the system's Bluetooth service shows of itself, at one moment. */
struct SystemLook {
    struct Adapter {
        QString name; ///< "hci0"
        bool isOn = false;
    };
    struct Device {
        QString address;
        QString name;
        bool isConnected = false;
        int services = 0;
        int mtu = 0;             ///< 0 if it is not shown
        bool isAcquired = false; ///< a program has all notifications for itself
    };

    bool hasBus = false;
    VardaJob::Reason reason = VardaJob::Reason::None; ///< of a service that could not be asked
    // GCC wants the initializers where a list of them leaves the members out
    QList<Adapter> adapters = {}; // NOLINT(readability-redundant-member-init)
    QList<Device> devices = {};   // NOLINT(readability-redundant-member-init)
    QVersionNumber version = {};  ///< NOLINT(readability-redundant-member-init)

    [[nodiscard]] bool isOn() const;
    [[nodiscard]] const Device *device(const QString &address) const;
};

/**
 * Asks the system's Bluetooth service, without starting it. Answers come from the event loop, while
 * this object lives.
 */
class SystemView : public QObject
{
    Q_OBJECT

public:
    /** Whether there is anything to ask on this system. */
    [[nodiscard]] static bool exists();

    using QObject::QObject;

    void look(std::function<void(const SystemLook &)> answered);

private:
    void post(std::function<void()> function);
};
