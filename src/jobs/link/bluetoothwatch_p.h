// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtCore/qvariant.h>
#ifdef VARDA_HAS_DBUS
#    include <QtDBus/qdbusextratypes.h>
#    include <QtDBus/qdbusmessage.h>
#endif

#include <functional>

#include <varda/vardajob.h>

#include "transport/devicesearch_p.h"

/**
 * The system's Bluetooth, where the system can be asked. When bluetoothd ends, its clients hear
 * nothing of it, neither of their links nor of their searches: only its name on the bus goes.
 */
class BluetoothWatch : public QObject
{
    Q_OBJECT

public:
    explicit BluetoothWatch(QObject *parent = nullptr);
    ~BluetoothWatch() override;

    /** Asks, and reports what is wrong; None if nothing is, or if it cannot be known. */
    void check(std::function<void(VardaJob::Reason)> answered);
    /** The same after a link or a search has failed: an adapter that is missing now was there. */
    void findOut(std::function<void(VardaJob::Reason)> answered);
    /** Nobody waits for the answer any more. */
    void forget();
    /** Calls back as soon as the service shows that it is alive, or that it is not. */
    void ping(std::function<void(VardaJob::Reason)> answered);

    /** "BlueZ 5.66", as the last check() found it; empty if it cannot be known. */
    [[nodiscard]] QString service() const { return m_service; }

Q_SIGNALS:
    /** It has ended, or its adapter is off or gone; links and searches are dead. */
    void lost(VardaJob::Reason reason);
    /** The service is back; its adapter may still be coming. */
    void back();

#ifdef VARDA_HAS_DBUS
private Q_SLOTS:
    void onInterfacesRemoved(const QDBusObjectPath &path, const QStringList &interfaces);
    void onPropertiesChanged(const QString &interface, const QVariantMap &changed,
                             const QStringList &invalidated);
#endif

private:
#ifdef VARDA_HAS_DBUS
    void call(const QDBusMessage &message, std::function<void(VardaJob::Reason)> answered);
#endif
    void ask(std::function<void(VardaJob::Reason)> answered);

    QString m_service;
    quint64 m_asked = 0; ///< counts what was asked, so that a late answer is known
};

/** Why a search of the system has failed. */
[[nodiscard]] VardaJob::Reason failureReason(DeviceSearch::Failure failure);
