// SPDX-License-Identifier: MIT
#include "jobs/link/bluetoothwatch_p.h"

#ifdef VARDA_HAS_DBUS
#    include <QtDBus/qdbusconnection.h>
#    include <QtDBus/qdbusmessage.h>
#    include <QtDBus/qdbuspendingcall.h>
#    include <QtDBus/qdbusservicewatcher.h>

#    include "jobs/link/bluez_p.h"
#endif

using namespace Qt::StringLiterals;
using Reason = VardaJob::Reason;

#ifdef VARDA_HAS_DBUS

namespace {

const QString kObjectManager = u"org.freedesktop.DBus.ObjectManager"_s;

Reason reasonOf(const QDBusMessage &reply, QString &service)
{
    const std::optional<Bluez::Objects> objects = Bluez::objectsIn(reply);
    if (!objects) // an error, or the answer to another call
        return Bluez::reasonOfError(reply);
    const QVersionNumber version = Bluez::versionIn(*objects);
    service = version.isNull() ? QString() : u"BlueZ "_s + version.toString();
    bool any = false;
    for (const auto &interfaces : *objects) {
        const auto adapter = interfaces.constFind(Bluez::kAdapter);
        if (adapter == interfaces.constEnd())
            continue;
        any = true;
        if (adapter->value(u"Modalias"_s).toString() == "varda:replay"_L1)
            service = u"replay"_s; // a trace of it is not that of a computer
        if (adapter->value(u"Powered"_s, true).toBool())
            return Reason::None;
    }
    return any ? Reason::AdapterOff : Reason::NoAdapter;
}

} // namespace

BluetoothWatch::BluetoothWatch(QObject *parent) : QObject(parent)
{
    QDBusConnection bus = QDBusConnection::systemBus();
    const auto *const owner = new QDBusServiceWatcher(
        Bluez::kName, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owner, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { Q_EMIT lost(Reason::ServiceGone); });
    connect(owner, &QDBusServiceWatcher::serviceRegistered, this, &BluetoothWatch::back);
    bus.connect(Bluez::kName, u"/"_s, kObjectManager, u"InterfacesRemoved"_s, this,
                SLOT(onInterfacesRemoved(QDBusObjectPath, QStringList)));
    // Only the adapter's: each notification of a computer is such a message too.
    bus.connect(Bluez::kName, QString(), u"org.freedesktop.DBus.Properties"_s,
                u"PropertiesChanged"_s, QStringList(Bluez::kAdapter), u"sa{sv}as"_s, this,
                SLOT(onPropertiesChanged(QString, QVariantMap, QStringList)));
}

BluetoothWatch::~BluetoothWatch() = default;

void BluetoothWatch::call(const QDBusMessage &message, std::function<void(Reason)> answered)
{
    // Such a call is never answered; what searches and connects fails by itself.
    if (!QDBusConnection::systemBus().isConnected()) {
        QMetaObject::invokeMethod(
            this, [answered = std::move(answered)] { answered(Reason::None); },
            Qt::QueuedConnection);
        return;
    }
    auto *const pending = new QDBusPendingCallWatcher(
        QDBusConnection::systemBus().asyncCall(message, Bluez::kFrozenMs), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [this, answered = std::move(answered)](QDBusPendingCallWatcher *ended) {
                ended->deleteLater();
                answered(reasonOf(ended->reply(), m_service));
            });
}

void BluetoothWatch::ask(std::function<void(Reason)> answered)
{
    call(Bluez::objectsCall(), std::move(answered));
}

void BluetoothWatch::ping(std::function<void(Reason)> answered)
{
    // Any answer will do, and this one is short: an error, since the root has no properties.
    QDBusMessage message = QDBusMessage::createMethodCall(
        Bluez::kName, u"/"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    message << Bluez::kAdapter << u"Powered"_s;
    call(message, [answered = std::move(answered)](Reason reason) {
        answered(reason == Reason::ServiceFrozen ? reason : Reason::None);
    });
}

void BluetoothWatch::onInterfacesRemoved(const QDBusObjectPath & /*path*/,
                                         const QStringList &interfaces)
{
    if (!interfaces.contains(Bluez::kAdapter))
        return;
    // Another one may still be there.
    ask([this](Reason reason) {
        if (reason != Reason::None)
            Q_EMIT lost(reason == Reason::NoAdapter ? Reason::AdapterRemoved : reason);
    });
}

void BluetoothWatch::onPropertiesChanged(const QString & /*interface*/, const QVariantMap &changed,
                                         const QStringList & /*invalidated*/)
{
    if (changed.value(u"Powered"_s, true).toBool())
        return;
    ask([this](Reason reason) {
        if (reason != Reason::None)
            Q_EMIT lost(reason);
    });
}

#else // elsewhere Qt's own errors have to do

BluetoothWatch::BluetoothWatch(QObject *parent) : QObject(parent) { }

BluetoothWatch::~BluetoothWatch() = default;

void BluetoothWatch::ask(std::function<void(Reason)> answered)
{
    QMetaObject::invokeMethod(
        this, [answered = std::move(answered)] { answered(Reason::None); }, Qt::QueuedConnection);
}

void BluetoothWatch::ping(std::function<void(Reason)> answered)
{
    ask(std::move(answered));
}

#endif

void BluetoothWatch::check(std::function<void(Reason)> answered)
{
    ask([this, asked = ++m_asked, answered = std::move(answered)](Reason reason) {
        if (asked == m_asked)
            answered(reason);
    });
}

void BluetoothWatch::findOut(std::function<void(Reason)> answered)
{
    check([answered = std::move(answered)](Reason reason) {
        answered(reason == Reason::NoAdapter ? Reason::AdapterRemoved : reason);
    });
}

void BluetoothWatch::forget()
{
    ++m_asked;
}

VardaJob::Reason failureReason(DeviceSearch::Failure failure)
{
    switch (failure) {
    case DeviceSearch::Failure::NoAdapter:
        return Reason::NoAdapter;
    case DeviceSearch::Failure::AdapterOff:
        return Reason::AdapterOff;
    case DeviceSearch::Failure::PermissionDenied:
        return Reason::PermissionDenied;
    case DeviceSearch::Failure::NotSupported:
        return Reason::NotSupported;
    case DeviceSearch::Failure::Other:
        break;
    }
    return Reason::ServiceGone;
}
