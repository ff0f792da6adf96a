// SPDX-License-Identifier: MIT
#include "jobs/doctor/systemlook_p.h"

#include <algorithm>

#ifdef VARDA_HAS_DBUS
#    include <QtCore/qfile.h>
#    include <QtCore/qfileinfo.h>
#    include <QtCore/qprocess.h>
#    include <QtCore/qtimer.h>
#    include <QtDBus/qdbusconnection.h>
#    include <QtDBus/qdbuspendingcall.h>

#    include "jobs/link/bluez_p.h"
#endif

using namespace Qt::StringLiterals;

bool SystemLook::isOn() const
{
    return std::any_of(adapters.cbegin(), adapters.cend(),
                       [](const Adapter &each) { return each.isOn; });
}

const SystemLook::Device *SystemLook::device(const QString &address) const
{
    const auto it = std::find_if(devices.cbegin(), devices.cend(), [&](const Device &each) {
        return each.address.compare(address, Qt::CaseInsensitive) == 0;
    });
    return it == devices.cend() ? nullptr : &*it;
}

void SystemView::post(std::function<void()> function)
{
    QMetaObject::invokeMethod(this, std::move(function), Qt::QueuedConnection);
}

#ifdef VARDA_HAS_DBUS

namespace {

constexpr int kVersionMs = 3000;

const QString kDevice = u"org.bluez.Device1"_s;
const QString kService = u"org.bluez.GattService1"_s;
const QString kCharacteristic = u"org.bluez.GattCharacteristic1"_s;

using Interfaces = QMap<QString, QVariantMap>;

/** What of @p objects belongs to the device at @p path: the bus sorts it behind. */
SystemLook::Device deviceOf(const Bluez::Objects &objects, const QString &path,
                            const QVariantMap &properties)
{
    SystemLook::Device device;
    device.address = properties.value(u"Address"_s).toString();
    device.name = properties.value(u"Alias"_s, properties.value(u"Name"_s)).toString();
    device.isConnected = properties.value(u"Connected"_s).toBool();
    for (auto it = objects.cbegin(); it != objects.cend(); ++it) {
        if (!it.key().path().startsWith(path + u'/'))
            continue;
        if (it->contains(kService))
            ++device.services;
        const QVariantMap characteristic = it->value(kCharacteristic);
        device.mtu = std::max(device.mtu, characteristic.value(u"MTU"_s).toInt());
        if (characteristic.value(u"NotifyAcquired"_s).toBool())
            device.isAcquired = true;
    }
    return device;
}

SystemLook lookAt(const Bluez::Objects &objects)
{
    SystemLook look{.hasBus = true};
    look.version = Bluez::versionIn(objects);
    for (auto it = objects.cbegin(); it != objects.cend(); ++it) {
        const QString path = it.key().path();
        if (const auto adapter = it->constFind(Bluez::kAdapter); adapter != it->cend())
            look.adapters.append({path.section(u'/', -1), adapter->value(u"Powered"_s).toBool()});
        if (const auto device = it->constFind(kDevice); device != it->cend())
            look.devices.append(deviceOf(objects, path, *device));
    }
    return look;
}

QString programOf(uint process)
{
    // Another user's may not be read; its arguments may.
    const QString folder = u"/proc/%1/"_s.arg(process);
    QString target = QFile::symLinkTarget(folder + u"exe"_s);
    if (!target.isEmpty())
        return target;
    QFile arguments(folder + u"cmdline"_s);
    if (!arguments.open(QIODevice::ReadOnly))
        return {};
    const QString first = QString::fromLocal8Bit(arguments.readAll().split('\0').constFirst());
    return QFileInfo(first).isAbsolute() ? first : QString();
}

} // namespace

bool SystemView::exists()
{
    return true;
}

void SystemView::look(std::function<void(const SystemLook &)> answered)
{
    const QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) {
        post([answered = std::move(answered)] { answered({}); });
        return;
    }
    QDBusMessage call = Bluez::objectsCall();
    call.setAutoStartService(false);
    auto *const pending = new QDBusPendingCallWatcher(bus.asyncCall(call, Bluez::kFrozenMs), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [answered = std::move(answered)](QDBusPendingCallWatcher *ended) {
                ended->deleteLater();
                const QDBusMessage reply = ended->reply();
                if (const std::optional<Bluez::Objects> objects = Bluez::objectsIn(reply)) {
                    answered(lookAt(*objects));
                    return;
                }
                const VardaJob::Reason reason = Bluez::reasonOfError(reply);
                // Who answers like that is no Bluetooth service.
                answered({.hasBus = true,
                          .reason = reason == VardaJob::Reason::None ? VardaJob::Reason::ServiceGone
                                                                     : reason});
            });
}

void SystemView::askVersion(std::function<void(const QVersionNumber &)> answered)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s,
        u"GetConnectionUnixProcessID"_s);
    call << Bluez::kName;
    auto *const pending = new QDBusPendingCallWatcher(
        QDBusConnection::systemBus().asyncCall(call, Bluez::kFrozenMs), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [this, answered = std::move(answered)](QDBusPendingCallWatcher *ended) {
                ended->deleteLater();
                const QDBusMessage reply = ended->reply();
                const QString program = reply.type() == QDBusMessage::ReplyMessage
                                            ? programOf(reply.arguments().value(0).toUInt())
                                            : QString();
                if (program.isEmpty())
                    answered({});
                else
                    runForVersion(program, answered);
            });
}

/** As Qt does it. */
void SystemView::runForVersion(const QString &program,
                               std::function<void(const QVersionNumber &)> answered)
{
    auto *const process = new QProcess(this);
    connect(process, &QProcess::errorOccurred, this,
            [process, answered](QProcess::ProcessError error) {
                if (error != QProcess::FailedToStart)
                    return; // it ends as well
                process->deleteLater();
                answered({});
            });
    connect(process, &QProcess::finished, this, [process, answered] {
        process->deleteLater();
        answered(QVersionNumber::fromString(
            QString::fromLatin1(process->readAllStandardOutput()).trimmed()));
    });
    QTimer::singleShot(kVersionMs, process, &QProcess::kill);
    process->setStandardInputFile(QProcess::nullDevice());
    process->start(program, {u"--version"_s}, QIODevice::ReadOnly);
}

#else

bool SystemView::exists()
{
    return false;
}

void SystemView::look(std::function<void(const SystemLook &)> answered)
{
    post([answered = std::move(answered)] { answered({}); });
}

void SystemView::askVersion(std::function<void(const QVersionNumber &)> answered)
{
    post([answered = std::move(answered)] { answered({}); });
}

#endif
