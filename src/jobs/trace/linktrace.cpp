// SPDX-License-Identifier: MIT
#include "jobs/trace/linktrace_p.h"

#include <QtCore/qjsonarray.h>
#include <QtCore/qmetaobject.h>

#include <array>
#include <utility>

#include <varda/bledeviceinfo.h>

using namespace Qt::StringLiterals;
using Event = VardaTraceEvent;

namespace {

QString textOf(const QBluetoothUuid &uuid)
{
    return uuid.toString(QUuid::WithoutBraces);
}

template <typename Enum> QString nameOf(Enum value)
{
    return QString::fromLatin1(QMetaEnum::fromType<Enum>().valueToKey(int(value)));
}

/** As BlueZ names them. */
QJsonArray flagsOf(QLowEnergyCharacteristic::PropertyTypes properties)
{
    using Flag = std::pair<QLowEnergyCharacteristic::PropertyType, QLatin1StringView>;
    constexpr std::array kFlags = {
        Flag(QLowEnergyCharacteristic::Broadcasting, "broadcast"_L1),
        Flag(QLowEnergyCharacteristic::Read, "read"_L1),
        Flag(QLowEnergyCharacteristic::WriteNoResponse, "write-without-response"_L1),
        Flag(QLowEnergyCharacteristic::Write, "write"_L1),
        Flag(QLowEnergyCharacteristic::Notify, "notify"_L1),
        Flag(QLowEnergyCharacteristic::Indicate, "indicate"_L1),
        Flag(QLowEnergyCharacteristic::WriteSigned, "authenticated-signed-writes"_L1),
        Flag(QLowEnergyCharacteristic::ExtendedProperty, "extended-properties"_L1),
    };
    QJsonArray names;
    for (const auto &[flag, name] : kFlags) {
        if (properties & flag)
            names.append(name);
    }
    return names;
}

} // namespace

void LinkTrace::serviceKnown(const QString &name)
{
    m_writer.add(Event::Service, {{"name"_L1, name}});
}

void LinkTrace::bluetoothFailed(int reason)
{
    m_writer.add(Event::Bluetooth, {{"reason"_L1, nameOf(VardaJob::Reason(reason))}});
}

void LinkTrace::othersSeen(int count)
{
    m_writer.add(Event::Others, {{"count"_L1, count}});
}

void LinkTrace::computerKnown(const VardaIdentity &identity)
{
    m_writer.add(Event::Computer, {{"model"_L1, nameOf(identity.model)},
                                   {"mode"_L1, nameOf(identity.mode)},
                                   {"firmware"_L1, identity.firmwareVersionStr}});
}

void LinkTrace::jobBegins(const QString &name)
{
    m_writer.add(Event::Job, {{"job"_L1, ++m_job}, {"name"_L1, name}});
}

void LinkTrace::jobEnds(VardaJob::Error error, VardaJob::Reason reason)
{
    m_writer.add(Event::JobEnd,
                 {{"job"_L1, m_job}, {"error"_L1, nameOf(error)}, {"reason"_L1, nameOf(reason)}});
}

void LinkTrace::connecting(const BleDeviceInfo &device)
{
    m_writer.add(Event::Connect, {{"address"_L1, device.address()}, {"name"_L1, device.name()}});
    LinkTap::connecting(device);
}

void LinkTrace::linkUp()
{
    m_writer.add(Event::Up);
    LinkTap::linkUp();
}

void LinkTrace::linkDown()
{
    m_writer.add(Event::Down);
    LinkTap::linkDown();
}

void LinkTrace::disconnecting()
{
    m_writer.add(Event::Disconnect);
    LinkTap::disconnecting();
}

void LinkTrace::servicesKnown(const QList<QBluetoothUuid> &services)
{
    QJsonArray uuids;
    for (const QBluetoothUuid &each : services)
        uuids.append(textOf(each));
    m_writer.add(Event::Services, {{"uuids"_L1, uuids}});
    LinkTap::servicesKnown(services);
}

void LinkTrace::noUsableService()
{
    m_writer.add(Event::Failure, {{"what"_L1, "noService"_L1}});
    LinkTap::noUsableService();
}

void LinkTrace::characteristicsKnown(const QBluetoothUuid &service,
                                     const QList<QLowEnergyCharacteristic> &all)
{
    QJsonArray list;
    for (const QLowEnergyCharacteristic &each : all)
        list.append(QJsonObject{{"uuid"_L1, textOf(each.uuid())},
                                {"flags"_L1, flagsOf(each.properties())},
                                {"cccd"_L1, each.clientCharacteristicConfiguration().isValid()}});
    m_writer.add(Event::Characteristics,
                 {{"service"_L1, textOf(service)}, {"characteristics"_L1, list}});
    LinkTap::characteristicsKnown(service, all);
}

void LinkTrace::subscribing(const QBluetoothUuid &characteristic, QByteArrayView value)
{
    m_writer.add(Event::Subscribe,
                 {{"characteristic"_L1, textOf(characteristic)},
                  {"value"_L1, QString::fromLatin1(value.toByteArray().toHex())}});
    LinkTap::subscribing(characteristic, value);
}

void LinkTrace::subscribed(int mtu)
{
    m_writer.add(Event::Subscribed, {{"mtu"_L1, mtu}});
    LinkTap::subscribed(mtu);
}

void LinkTrace::characteristicsMissing()
{
    m_writer.add(Event::Failure, {{"what"_L1, "noCharacteristics"_L1}});
    LinkTap::characteristicsMissing();
}

void LinkTrace::subscriptionTimedOut()
{
    m_writer.add(Event::Failure, {{"what"_L1, "subscription"_L1}});
    LinkTap::subscriptionTimedOut();
}

void LinkTrace::controllerFailed(QLowEnergyController::Error error)
{
    m_writer.add(Event::Failure, {{"what"_L1, "controller"_L1}, {"error"_L1, nameOf(error)}});
    LinkTap::controllerFailed(error);
}

void LinkTrace::serviceFailed(QLowEnergyService::ServiceError error)
{
    m_writer.add(Event::Failure, {{"what"_L1, "service"_L1}, {"error"_L1, nameOf(error)}});
    LinkTap::serviceFailed(error);
}

void LinkTrace::written(QByteArrayView bytes)
{
    m_writer.add(Event::Write, bytes);
    LinkTap::written(bytes);
}

void LinkTrace::writtenBeside(const QBluetoothUuid &characteristic, QByteArrayView bytes)
{
    m_writer.add(Event::Write, bytes, {{"characteristic"_L1, textOf(characteristic)}});
    LinkTap::writtenBeside(characteristic, bytes);
}

void LinkTrace::notified(QByteArrayView bytes)
{
    m_writer.add(Event::Notification, bytes);
    LinkTap::notified(bytes);
}

void LinkTrace::tooManyNotifications()
{
    m_writer.answerOver();
    LinkTap::tooManyNotifications();
}

void LinkTrace::answerProcessed()
{
    m_writer.answerOver();
    LinkTap::answerProcessed();
}

void LinkTrace::receiveTimedOut()
{
    m_writer.add(Event::Silence);
    LinkTap::receiveTimedOut();
}
