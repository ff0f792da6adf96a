// SPDX-License-Identifier: MIT
#include "servicewatch.h"

#ifdef VARDA_HAS_DBUS
#    include <QtDBus/qdbusconnection.h>
#    include <QtDBus/qdbusservicewatcher.h>
#endif

namespace {

ServiceWatch *currentWatch = nullptr;

} // namespace

ServiceWatch::ServiceWatch()
{
    currentWatch = this;
#ifdef VARDA_HAS_DBUS
    const auto *const watcher = new QDBusServiceWatcher(
        QStringLiteral("org.bluez"), QDBusConnection::systemBus(),
        QDBusServiceWatcher::WatchForUnregistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        m_hasEnded = true;
        Q_EMIT ended();
    });
#endif
}

ServiceWatch::~ServiceWatch()
{
    currentWatch = nullptr;
}

ServiceWatch *ServiceWatch::instance()
{
    return currentWatch;
}
