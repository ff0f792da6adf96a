// SPDX-License-Identifier: MIT
#include "radio/adaptername.h"

#include <QtCore/qmap.h>
#include <QtCore/qvariant.h>
#include <QtDBus/qdbusargument.h>
#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbusextratypes.h>
#include <QtDBus/qdbusmessage.h>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

const QString kBluez = u"org.bluez"_s;
const QString kAdapter = u"org.bluez.Adapter1"_s;

using Objects = QMap<QDBusObjectPath, QMap<QString, QVariantMap>>;

Objects bluezObjects()
{
    const QDBusMessage answer = QDBusConnection::systemBus().call(QDBusMessage::createMethodCall(
        kBluez, u"/"_s, u"org.freedesktop.DBus.ObjectManager"_s, u"GetManagedObjects"_s));
    return qdbus_cast<Objects>(answer.arguments().value(0));
}

} // namespace

AdapterName::AdapterName(const QString &address, const QString &name)
{
    const Objects objects = bluezObjects();
    for (auto object = objects.begin(); object != objects.end(); ++object) {
        const QVariantMap adapter = object->value(kAdapter);
        if (adapter.value(u"Address"_s).toString() != address)
            continue;
        m_path = object.key().path();
        const QString alias = adapter.value(u"Alias"_s).toString();
        m_before = alias == adapter.value(u"Name"_s).toString() ? QString() : alias;
        set(name);
    }
}

AdapterName::~AdapterName()
{
    set(m_before);
}

void AdapterName::set(const QString &name) const
{
    if (m_path.isEmpty())
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(
        kBluez, m_path, u"org.freedesktop.DBus.Properties"_s, u"Set"_s);
    call << kAdapter << u"Alias"_s << QVariant::fromValue(QDBusVariant(name));
    QDBusConnection::systemBus().call(call);
}

} // namespace simulator
