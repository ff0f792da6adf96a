// SPDX-License-Identifier: MIT
// varda-vm-computer SCENARIO: the first computer of a scenario behind somebody else's radio.
// A line is one thing that happens. In: "up", "down", "data HEX", "credits HEX"; "state" and
// "firmware" ask. Out: first what is to be shown, as JSON; then "notify HEX", "drop", and
// "state JSON" or "firmware HEX" as answers.
#include "device/scenario/gatttable.h"
#include "device/scenario/scenario.h"
#include "device/wire/seriallink.h"
#include "orders.h"

#include <QtCore/qcoreapplication.h>
#include <QtCore/qfile.h>
#include <QtCore/qjsonarray.h>
#include <QtCore/qjsondocument.h>
#include <QtCore/qjsonobject.h>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace simulator;

namespace {

QString compact(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QString hex(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

QString description(const DeviceScenario &device)
{
    constexpr const char *kRoles[] = {"none", "data", "credits"};
    QJsonArray services;
    const QList<ServiceSpec> table = gattTable(device);
    for (const ServiceSpec &service : table) {
        QJsonArray characteristics;
        for (const CharacteristicSpec &each : service.characteristics) {
            QJsonArray descriptors;
            for (const DescriptorSpec &descriptor : each.descriptors)
                descriptors.append(descriptor.uuid);
            characteristics.append(
                QJsonObject{{u"uuid"_s, each.uuid},
                            {u"flags"_s, QJsonArray::fromStringList(each.flags)},
                            {u"value"_s, hex(each.value)},
                            {u"descriptors"_s, descriptors},
                            {u"role"_s, QString::fromLatin1(kRoles[int(each.role)])}});
        }
        services.append(
            QJsonObject{{u"uuid"_s, service.uuid}, {u"characteristics"_s, characteristics}});
    }
    return compact({{u"name"_s, device.name.value_or(QString())},
                    {u"mtu"_s, device.mtu},
                    {u"services"_s, services}});
}

void happen(SerialLink &link, const QString &line)
{
    const QByteArray bytes = QByteArray::fromHex(line.section(u' ', 1).toLatin1());
    if (line == "up"_L1 || line == "down"_L1)
        link.reset();
    else if (line.startsWith("data "_L1))
        link.written(bytes);
    else if (line.startsWith("credits "_L1))
        link.creditsGranted(bytes);
    else if (line == "state"_L1)
        say(u"state "_s + compact(link.computer().state()));
    else if (line == "firmware"_L1)
        say(u"firmware "_s + hex(link.computer().firmwareImage()));
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    QFile file(app.arguments().value(1));
    QString error = u"no scenario"_s;
    std::optional<Scenario> scenario;
    if (file.open(QIODevice::ReadOnly))
        scenario = Scenario::parse(file.readAll(), &error);
    if (!scenario || scenario->devices.isEmpty()) {
        std::fprintf(stderr, "varda-vm-computer: %s\n", qPrintable(error));
        return 2;
    }
    const DeviceScenario &device = scenario->devices.first();
    FaultPlan faults(device.faults);
    SerialLink link(device, faults);
    QObject::connect(&link, &SerialLink::notification, qApp,
                     [](const QByteArray &bytes) { say(u"notify "_s + hex(bytes)); });
    QObject::connect(&link, &SerialLink::linkDropped, qApp, [] { say(u"drop"_s); });
    say(description(device));
    return obeyOrders([&link](const QString &line) { happen(link, line); });
}
