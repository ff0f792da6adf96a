// SPDX-License-Identifier: MIT
#include "varda/simulatorprocess.h"

#include <QtCore/qcoreapplication.h>
#include <QtCore/qjsondocument.h>
#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbusmessage.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kPrefix("DBUS_SYSTEM_BUS_ADDRESS=");

// A connection of its own, so that what the test does to the system bus does not matter.
QString connectionName(const QString &bus)
{
    return u"varda-simulator "_s + bus;
}

QDBusMessage ask(const QString &bus, const QString &method, const QVariantList &arguments = {})
{
    const QDBusConnection connection = QDBusConnection::connectToBus(bus, connectionName(bus));
    QDBusMessage message = QDBusMessage::createMethodCall(
        u"org.varda.Simulator"_s, u"/org/varda/Simulator"_s, u"org.varda.Simulator1"_s, method);
    message.setArguments(arguments);
    return connection.call(message);
}

} // namespace

SimulatorProcess::SimulatorProcess(const QStringList &arguments, const QString &program)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(program, QStringList{u"--exit-with-stdin"_s} + arguments);
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead()) {
            qWarning("%s: %s", qPrintable(program), qPrintable(m_process.errorString()));
            return;
        }
    }
    const QByteArray line = m_process.readLine().trimmed();
    if (!line.startsWith(kPrefix))
        return;
    const QByteArray address = line.mid(kPrefix.size());
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", address);
    m_address = QString::fromLocal8Bit(address);
}

SimulatorProcess::~SimulatorProcess()
{
    QDBusConnection::disconnectFromBus(connectionName(m_address));
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished())
        m_process.kill();
}

QString SimulatorProcess::call(const QString &method, const QVariantList &arguments)
{
    const QDBusMessage answer = ask(m_address, method, arguments);
    return answer.type() == QDBusMessage::ErrorMessage
               ? answer.errorName() + u": "_s + answer.errorMessage()
               : QString();
}

QString SimulatorProcess::load(const QByteArray &scenario)
{
    const QString error = call(u"Load"_s, {QString::fromUtf8(scenario)});
    // What the end of the old scenario told Qt shall not arrive in the middle of the next step.
    const QDBusMessage ping = QDBusMessage::createMethodCall(
        u"org.bluez"_s, u"/"_s, u"org.freedesktop.DBus.Peer"_s, u"Ping"_s);
    QDBusConnection::systemBus().call(ping);
    QCoreApplication::processEvents();
    return error;
}

QString SimulatorProcess::loadDevice(const QByteArray &device)
{
    return load("{\"devices\":[" + device + "]}");
}

QJsonArray SimulatorProcess::record()
{
    const QString json = ask(m_address, u"Record"_s).arguments().value(0).toString();
    return QJsonDocument::fromJson(json.toUtf8()).array();
}

QJsonObject SimulatorProcess::state(const QString &address)
{
    const QString json = ask(m_address, u"State"_s, {address}).arguments().value(0).toString();
    return QJsonDocument::fromJson(json.toUtf8()).object();
}

QByteArray SimulatorProcess::firmware(const QString &address)
{
    return ask(m_address, u"Firmware"_s, {address}).arguments().value(0).toByteArray();
}

QList<QJsonObject> SimulatorProcess::events(const QString &event)
{
    QList<QJsonObject> found;
    const QJsonArray all = record();
    for (const auto &each : all) {
        if (each[u"event"].toString() == event)
            found.append(each.toObject());
    }
    return found;
}

QStringList SimulatorProcess::values(const QString &event, const QString &key)
{
    QStringList found;
    const QList<QJsonObject> all = events(event);
    for (const QJsonObject &each : all)
        found.append(each.value(key).toString());
    return found;
}
