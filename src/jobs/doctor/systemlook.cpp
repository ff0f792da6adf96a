// SPDX-License-Identifier: MIT
#include "jobs/doctor/systemlook_p.h"

#include <algorithm>

#ifdef VARDA_HAS_DBUS
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
        device.isAcquired = device.isAcquired || characteristic.value(u"NotifyAcquired"_s).toBool();
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

#else

bool SystemView::exists()
{
    return false;
}

void SystemView::look(std::function<void(const SystemLook &)> answered)
{
    post([answered = std::move(answered)] { answered({}); });
}

#endif
