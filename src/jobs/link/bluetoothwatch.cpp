// SPDX-License-Identifier: MIT
#include "jobs/link/bluetoothwatch_p.h"

#ifdef VARDA_HAS_DBUS
#    include <QtDBus/qdbusargument.h>
#    include <QtDBus/qdbusconnection.h>
#    include <QtDBus/qdbuserror.h>
#    include <QtDBus/qdbusmessage.h>
#    include <QtDBus/qdbuspendingcall.h>
#    include <QtDBus/qdbusservicewatcher.h>
#endif

using namespace Qt::StringLiterals;
using Reason = VardaJob::Reason;

#ifdef VARDA_HAS_DBUS

namespace {

// A service that is busy answers in milliseconds; a frozen one never.
constexpr int kFrozenMs = 5000;

const QString kBluez = u"org.bluez"_s;
const QString kAdapter = u"org.bluez.Adapter1"_s;
const QString kObjectManager = u"org.freedesktop.DBus.ObjectManager"_s;

struct Adapters {
    bool any = false;
    bool powered = false;
    QString modalias;
};

/** The adapters among all that the service has: a map of paths to interfaces to properties. */
Adapters adaptersIn(const QDBusArgument &objects)
{
    Adapters found;
    objects.beginMap();
    while (!objects.atEnd()) {
        QDBusObjectPath path;
        objects.beginMapEntry();
        objects >> path;
        objects.beginMap();
        while (!objects.atEnd()) {
            QString interface;
            QVariantMap properties;
            objects.beginMapEntry();
            objects >> interface >> properties;
            objects.endMapEntry();
            if (interface != kAdapter)
                continue;
            found.any = true;
            found.modalias = properties.value(u"Modalias"_s).toString();
            if (properties.value(u"Powered"_s, true).toBool())
                found.powered = true;
        }
        objects.endMap();
        objects.endMapEntry();
    }
    objects.endMap();
    return found;
}

/** Of a service that the bus starts, and cannot, there are many errors. */
bool cannotStart(const QString &error)
{
    return error.startsWith("org.freedesktop.systemd1."_L1)
           || error.startsWith("org.freedesktop.DBus.Error.Spawn."_L1);
}

/** "usb:v1D6Bp0246d0542" is BlueZ 5.66: its own number among those of USB devices, and its version. */
QString serviceIn(const QString &modalias)
{
    constexpr auto kPrefix = "usb:v1D6Bp0246d"_L1;
    constexpr int kDigits = 4;
    bool isNumber = false;
    const uint version = modalias.mid(kPrefix.size()).toUInt(&isNumber, 16);
    if (!modalias.startsWith(kPrefix) || modalias.size() != kPrefix.size() + kDigits || !isNumber)
        return {};
    return u"BlueZ %1.%2"_s.arg(version >> 8).arg(version & 0xFF);
}

Reason reasonOf(const QDBusMessage &reply, QString &service)
{
    if (reply.type() == QDBusMessage::ErrorMessage) {
        switch (QDBusError(reply).type()) {
        case QDBusError::ServiceUnknown:
            return Reason::ServiceGone;
        case QDBusError::AccessDenied:
            return Reason::PermissionDenied;
        case QDBusError::NoReply:
        case QDBusError::Timeout:
        case QDBusError::TimedOut:
            return Reason::ServiceFrozen;
        default:
            return cannotStart(reply.errorName()) ? Reason::ServiceGone : Reason::None;
        }
    }
    if (reply.signature() != "a{oa{sa{sv}}}"_L1) // of another call
        return Reason::None;
    const Adapters adapters = adaptersIn(reply.arguments().constFirst().value<QDBusArgument>());
    service = serviceIn(adapters.modalias);
    if (!adapters.any)
        return Reason::NoAdapter;
    return adapters.powered ? Reason::None : Reason::AdapterOff;
}

} // namespace

BluetoothWatch::BluetoothWatch(QObject *parent) : QObject(parent)
{
    QDBusConnection bus = QDBusConnection::systemBus();
    const auto *const owner = new QDBusServiceWatcher(
        kBluez, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owner, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { Q_EMIT lost(Reason::ServiceGone); });
    connect(owner, &QDBusServiceWatcher::serviceRegistered, this, &BluetoothWatch::back);
    bus.connect(kBluez, u"/"_s, kObjectManager, u"InterfacesRemoved"_s, this,
                SLOT(onInterfacesRemoved(QDBusObjectPath, QStringList)));
    // Only the adapter's: each notification of a computer is such a message too.
    bus.connect(kBluez, QString(), u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s,
                QStringList(kAdapter), u"sa{sv}as"_s, this,
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
        QDBusConnection::systemBus().asyncCall(message, kFrozenMs), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [this, answered = std::move(answered)](QDBusPendingCallWatcher *ended) {
                ended->deleteLater();
                answered(reasonOf(ended->reply(), m_service));
            });
}

void BluetoothWatch::ask(std::function<void(Reason)> answered)
{
    call(QDBusMessage::createMethodCall(kBluez, u"/"_s, kObjectManager, u"GetManagedObjects"_s),
         std::move(answered));
}

void BluetoothWatch::ping(std::function<void(Reason)> answered)
{
    // Any answer will do, and this one is short: an error, since the root has no properties.
    QDBusMessage message = QDBusMessage::createMethodCall(
        kBluez, u"/"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    message << kAdapter << u"Powered"_s;
    call(message, [answered = std::move(answered)](Reason reason) {
        answered(reason == Reason::ServiceFrozen ? reason : Reason::None);
    });
}

void BluetoothWatch::onInterfacesRemoved(const QDBusObjectPath & /*path*/,
                                         const QStringList &interfaces)
{
    if (!interfaces.contains(kAdapter))
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
