// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qmap.h>
#include <QtCore/qstringlist.h>
#include <QtCore/qvariant.h>
#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbusextratypes.h>
#include <QtDBus/qdbusmessage.h>

namespace simulator {

using Interfaces = QMap<QString, QVariantMap>;
using ManagedObjects = QMap<QDBusObjectPath, Interfaces>;

/**
 * The objects that the daemon shows on the bus, with their properties. Every change goes out as
 * the signal that belongs to it.
 */
class ObjectTree
{
public:
    explicit ObjectTree(const QDBusConnection &bus);

    void add(const QString &path, const QString &interface, const QVariantMap &properties);
    void remove(const QString &path);
    /** The object and everything below it, the deepest first. */
    void removeAll(const QString &path);
    bool contains(const QString &path) const { return m_objects.contains(path); }

    QVariant property(const QString &path, const QString &interface, const QString &name) const;
    void change(const QString &path, const QString &interface, const QVariantMap &changes,
                const QStringList &invalidated = {});

    /** A daemon that is gone tells nobody what becomes of its objects. */
    void setSilent(bool silent) { m_silent = silent; }

    ManagedObjects all() const;
    /** Answers org.freedesktop.DBus.Properties.Get and GetAll. */
    QDBusMessage answerProperties(const QDBusMessage &call) const;
    QString introspect(const QString &path) const;

private:
    void send(const QDBusMessage &signal) const;

    QDBusConnection m_bus;
    bool m_silent = false;
    QMap<QString, Interfaces> m_objects;
};

} // namespace simulator

Q_DECLARE_METATYPE(simulator::Interfaces)
Q_DECLARE_METATYPE(simulator::ManagedObjects)
