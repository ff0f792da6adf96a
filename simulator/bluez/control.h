// SPDX-License-Identifier: MIT
#pragma once

#include "bluez/bluezdaemon.h"

#include <QtCore/qobject.h>
#include <QtDBus/qdbuscontext.h>

namespace simulator {

/** What a test tells the simulator while it runs: org.varda.Simulator1. */
class Control : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.varda.Simulator1")

public:
    explicit Control(BluezDaemon &daemon, QObject *parent = nullptr);

    bool start(QDBusConnection bus, QString *error);

public Q_SLOTS:
    Q_SCRIPTABLE void Load(const QString &json);
    Q_SCRIPTABLE QString Record() const;
    Q_SCRIPTABLE void ClearRecord();
    Q_SCRIPTABLE void Drop(const QString &address);
    Q_SCRIPTABLE void Notify(const QString &address, const QByteArray &data);
    Q_SCRIPTABLE void Advertise(const QString &address, short rssi);
    Q_SCRIPTABLE void SetPowered(bool powered);
    Q_SCRIPTABLE void RemoveAdapter();
    Q_SCRIPTABLE void RemoveDevice(const QString &address);
    Q_SCRIPTABLE void EndDaemon();
    Q_SCRIPTABLE void StartDaemon();
    Q_SCRIPTABLE QString State(const QString &address);
    Q_SCRIPTABLE QByteArray Firmware(const QString &address);
    Q_SCRIPTABLE void Freeze(uint milliseconds);
    Q_SCRIPTABLE void Quit();

Q_SIGNALS:
    Q_SCRIPTABLE void Recorded(const QString &json);

private:
    RemoteDevice *deviceOrError(const QString &address);

    BluezDaemon &m_daemon;
};

} // namespace simulator
