// SPDX-License-Identifier: MIT
#pragma once

#include "device/scenario/faults.h"

#include <QtCore/qlist.h>
#include <QtCore/qobject.h>
#include <QtCore/qvariant.h>
#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbusmessage.h>

#include <functional>
#include <optional>

namespace simulator {

/** The calls to one device: their answers, and what goes wrong on the way to them. */
class PendingCalls : public QObject
{
    Q_OBJECT

public:
    using Strike = std::function<void(const Fault &)>;

    /** @param strike  does what happens to more than one device */
    PendingCalls(const QDBusConnection &bus, const Strike &strike);

    void reply(const QDBusMessage &call, const QVariant &value = {});
    void refuse(const QDBusMessage &call, const QString &error, const QString &message);
    [[nodiscard]] bool isWaiting(const QString &member) const;
    /** Refuses all that wait. */
    void failAll(const QString &message,
                 const QString &error = QStringLiteral("org.bluez.Error.Failed"));

    /** Runs the rest of a step as the fault wants it: now, later, or never. */
    void withFault(const std::optional<Fault> &fault, const QDBusMessage &call,
                   const std::function<void()> &rest);
    /** Does the fault if it hits more than this device; whether that was the end of the step. */
    bool strikes(const std::optional<Fault> &fault);
    /** Unless the link has changed by then. */
    void later(int ms, const std::function<void()> &what);
    void dropLater(int ms);

    /** The link has changed: what was planned for the one before is forgotten. */
    void linkChanged() { ++m_generation; }
    [[nodiscard]] quint64 generation() const { return m_generation; }

Q_SIGNALS:
    void linkDropped();

private:
    struct Waiting {
        quint64 id;
        QDBusMessage call;
    };

    quint64 hold(const QDBusMessage &call);
    bool release(quint64 id);

    QDBusConnection m_bus;
    const Strike m_strike;
    QList<Waiting> m_waiting;
    quint64 m_lastWaiting = 0;
    quint64 m_generation = 0;
};

} // namespace simulator
