// SPDX-License-Identifier: MIT
#include "bluez/control.h"

#include <QtCore/qcoreapplication.h>
#include <QtCore/qjsondocument.h>
#include <QtCore/qthread.h>
#include <QtCore/qtimer.h>
#include <QtDBus/qdbuserror.h>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

const QString kErrorPrefix = u"org.varda.Simulator.Error."_s;

QString compact(const QJsonDocument &document)
{
    return QString::fromUtf8(document.toJson(QJsonDocument::Compact));
}

} // namespace

Control::Control(BluezDaemon &daemon, QObject *parent) : QObject(parent), m_daemon(daemon)
{
    connect(&daemon.recorder(), &Recorder::recorded, this,
            [this](const QJsonObject &event) { Q_EMIT Recorded(compact(QJsonDocument(event))); });
}

bool Control::start(QDBusConnection bus, QString *error)
{
    if (bus.registerObject(u"/org/varda/Simulator"_s, this,
                           QDBusConnection::ExportScriptableSlots
                               | QDBusConnection::ExportScriptableSignals)
        && bus.registerService(u"org.varda.Simulator"_s))
        return true;
    *error = u"cannot offer the control interface: "_s + bus.lastError().message();
    return false;
}

void Control::Load(const QString &json)
{
    QString error;
    const std::optional<Scenario> scenario = Scenario::parse(json.toUtf8(), &error);
    if (scenario)
        m_daemon.load(*scenario);
    else
        sendErrorReply(kErrorPrefix + u"BadScenario"_s, error);
}

QString Control::Record() const
{
    return compact(QJsonDocument(m_daemon.recorder().events()));
}

void Control::ClearRecord()
{
    m_daemon.recorder().clear();
}

void Control::Drop(const QString &address)
{
    RemoteDevice *device = deviceOrError(address);
    if (!device)
        return;
    if (device->isConnected())
        device->linkDown();
    else
        sendErrorReply(kErrorPrefix + u"NotConnected"_s, u"%1 is not connected"_s.arg(address));
}

void Control::Notify(const QString &address, const QByteArray &data)
{
    RemoteDevice *device = deviceOrError(address);
    if (device && !device->notifyNow(data)) {
        sendErrorReply(kErrorPrefix + u"NotSubscribed"_s,
                       u"nobody is subscribed to the data of %1"_s.arg(address));
    }
}

void Control::Advertise(const QString &address, short rssi)
{
    if (RemoteDevice *device = deviceOrError(address))
        device->advertise(rssi);
}

void Control::SetPowered(bool powered)
{
    m_daemon.setPowered(powered);
}

void Control::RemoveAdapter()
{
    m_daemon.removeAdapter();
}

void Control::RemoveDevice(const QString &address)
{
    if (RemoteDevice *device = deviceOrError(address))
        device->removeFromTree();
}

void Control::EndDaemon()
{
    m_daemon.end();
}

void Control::StartDaemon()
{
    m_daemon.startAgain();
}

QString Control::State(const QString &address)
{
    const RemoteDevice *device = deviceOrError(address);
    return device ? compact(QJsonDocument(device->state())) : QString();
}

QByteArray Control::Firmware(const QString &address)
{
    const RemoteDevice *device = deviceOrError(address);
    return device ? device->firmwareImage() : QByteArray();
}

void Control::Freeze(uint milliseconds)
{
    // The answer to this call goes out first.
    QTimer::singleShot(0, this, [milliseconds] { QThread::msleep(milliseconds); });
}

void Control::Quit()
{
    QTimer::singleShot(0, this, [] { QCoreApplication::quit(); });
}

RemoteDevice *Control::deviceOrError(const QString &address)
{
    RemoteDevice *device = m_daemon.device(address);
    if (!device) {
        sendErrorReply(kErrorPrefix + u"UnknownDevice"_s,
                       u"the scenario has no device %1"_s.arg(address));
    }
    return device;
}

} // namespace simulator
