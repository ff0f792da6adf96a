// SPDX-License-Identifier: MIT
#include "jobs/link/bluez_p.h"

#include <QtDBus/qdbusargument.h>
#include <QtDBus/qdbuserror.h>

using namespace Qt::StringLiterals;
using Reason = VardaJob::Reason;

namespace {

/** "usb:v1D6Bp0246d0542" is BlueZ 5.66: its own number among those of USB devices, and its version. */
constexpr auto kModalias = "usb:v1D6Bp0246d"_L1;

/** Of a service that the bus starts, and cannot, there are many errors. */
bool cannotStart(const QString &error)
{
    return error.startsWith("org.freedesktop.systemd1."_L1)
           || error.startsWith("org.freedesktop.DBus.Error.Spawn."_L1);
}

} // namespace

QDBusMessage Bluez::objectsCall()
{
    return QDBusMessage::createMethodCall(kName, u"/"_s, u"org.freedesktop.DBus.ObjectManager"_s,
                                          u"GetManagedObjects"_s);
}

std::optional<Bluez::Objects> Bluez::objectsIn(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != "a{oa{sa{sv}}}"_L1)
        return std::nullopt;
    return qdbus_cast<Objects>(reply.arguments().constFirst());
}

QVersionNumber Bluez::versionIn(const Objects &objects)
{
    for (const auto &interfaces : objects) {
        const QString modalias = interfaces.value(kAdapter).value(u"Modalias"_s).toString();
        bool isNumber = false;
        const uint version = modalias.mid(kModalias.size()).toUInt(&isNumber, 16);
        if (modalias.startsWith(kModalias) && modalias.size() == kModalias.size() + 4 && isNumber)
            return {int(version >> 8), int(version & 0xFF)};
    }
    return {};
}

Reason Bluez::reasonOfError(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ErrorMessage)
        return Reason::None;
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
