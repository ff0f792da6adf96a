// SPDX-License-Identifier: MIT
#include "bluez/objecttree.h"

#include <QtCore/qset.h>
#include <QtDBus/qdbusextratypes.h>
#include <QtDBus/qdbusmetatype.h>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

const QString kProperties = u"org.freedesktop.DBus.Properties"_s;
const QString kIntrospectable = u"org.freedesktop.DBus.Introspectable"_s;
const QString kObjectManager = u"org.freedesktop.DBus.ObjectManager"_s;

} // namespace

ObjectTree::ObjectTree(const QDBusConnection &bus) : m_bus(bus)
{
    qDBusRegisterMetaType<Interfaces>();
    qDBusRegisterMetaType<ManagedObjects>();
    qDBusRegisterMetaType<QList<QDBusObjectPath>>();
}

void ObjectTree::send(const QDBusMessage &signal) const
{
    if (!m_silent)
        m_bus.send(signal);
}

void ObjectTree::add(const QString &path, const QString &interface, const QVariantMap &properties)
{
    Interfaces &object = m_objects[path];
    object.insert(kIntrospectable, {});
    object.insert(interface, properties);
    object.insert(kProperties, {});

    QDBusMessage signal = QDBusMessage::createSignal(u"/"_s, kObjectManager, u"InterfacesAdded"_s);
    signal << QVariant::fromValue(QDBusObjectPath(path)) << QVariant::fromValue(object);
    send(signal);
}

void ObjectTree::remove(const QString &path)
{
    const Interfaces object = m_objects.take(path);
    if (object.isEmpty())
        return;
    QDBusMessage signal = QDBusMessage::createSignal(u"/"_s, kObjectManager,
                                                     u"InterfacesRemoved"_s);
    signal << QVariant::fromValue(QDBusObjectPath(path)) << QStringList(object.keys());
    send(signal);
}

void ObjectTree::removeAll(const QString &path)
{
    QStringList paths;
    for (auto object = m_objects.lowerBound(path);
         object != m_objects.end() && object.key().startsWith(path); ++object) {
        if (object.key().size() == path.size() || object.key().at(path.size()) == u'/')
            paths.prepend(object.key());
    }
    for (const QString &each : std::as_const(paths))
        remove(each);
}

QVariant ObjectTree::property(const QString &path, const QString &interface,
                              const QString &name) const
{
    return m_objects.value(path).value(interface).value(name);
}

void ObjectTree::change(const QString &path, const QString &interface, const QVariantMap &changes,
                        const QStringList &invalidated)
{
    const auto object = m_objects.find(path);
    if (object == m_objects.end())
        return;
    QVariantMap &properties = (*object)[interface];
    for (auto each = changes.begin(); each != changes.end(); ++each)
        properties.insert(each.key(), each.value());
    for (const QString &name : invalidated)
        properties.remove(name);

    QDBusMessage signal = QDBusMessage::createSignal(path, kProperties, u"PropertiesChanged"_s);
    signal << interface << changes << invalidated;
    send(signal);
}

ManagedObjects ObjectTree::all() const
{
    ManagedObjects objects;
    for (auto each = m_objects.begin(); each != m_objects.end(); ++each)
        objects.insert(QDBusObjectPath(each.key()), each.value());
    return objects;
}

QDBusMessage ObjectTree::answerProperties(const QDBusMessage &call) const
{
    const QList<QVariant> arguments = call.arguments();
    const QString interface = arguments.value(0).toString();
    const auto object = m_objects.constFind(call.path());
    if (object == m_objects.constEnd() || !object->contains(interface)) {
        return call.createErrorReply(u"org.freedesktop.DBus.Error.InvalidArgs"_s,
                                     u"No such interface '%1'"_s.arg(interface));
    }
    const QVariantMap properties = object->value(interface);
    if (call.member() == "GetAll"_L1)
        return call.createReply(QVariant(properties));

    const QString name = arguments.value(1).toString();
    if (!properties.contains(name)) {
        return call.createErrorReply(u"org.freedesktop.DBus.Error.InvalidArgs"_s,
                                     u"No such property '%1'"_s.arg(name));
    }
    return call.createReply(QVariant::fromValue(QDBusVariant(properties.value(name))));
}

QString ObjectTree::introspect(const QString &path) const
{
    const QString prefix = path == u"/"_s ? path : path + u'/';
    QSet<QString> children;
    for (auto each = m_objects.begin(); each != m_objects.end(); ++each) {
        if (each.key().startsWith(prefix))
            children.insert(each.key().mid(prefix.size()).section(u'/', 0, 0));
    }
    QString xml;
    const QStringList interfaces = m_objects.value(path).keys();
    for (const QString &interface : interfaces)
        xml += u"<interface name=\"%1\"/>\n"_s.arg(interface);
    for (const QString &child : std::as_const(children))
        xml += u"<node name=\"%1\"/>\n"_s.arg(child);
    return xml;
}

} // namespace simulator
