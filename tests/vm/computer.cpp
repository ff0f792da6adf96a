// SPDX-License-Identifier: MIT
// varda-vm-computer SCENARIO: the first computer of a scenario behind somebody else's radio.
// A line is one thing that happens. In: "up", "down", "data HEX", "credits HEX"; "state" and
// "firmware" ask. Out: first what is to be shown, as JSON; then "notify HEX", "drop", and
// "state JSON" or "firmware HEX" as answers.
#include "device/scenario/gatttable.h"
#include "device/scenario/scenario.h"
#include "device/wire/seriallink.h"

#include <QtCore/qcoreapplication.h>
#include <QtCore/qfile.h>
#include <QtCore/qjsonarray.h>
#include <QtCore/qjsondocument.h>
#include <QtCore/qjsonobject.h>
#include <QtCore/qsocketnotifier.h>

#include <unistd.h>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace simulator;

namespace {

void say(const QByteArray &line)
{
    std::puts(line.constData());
    std::fflush(stdout);
}

QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray description(const DeviceScenario &device)
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
                            {u"value"_s, QString::fromLatin1(each.value.toHex())},
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

void happen(SerialLink &link, const QByteArray &line)
{
    const QByteArray bytes = QByteArray::fromHex(line.mid(line.indexOf(' ') + 1));
    if (line == "up" || line == "down")
        link.reset();
    else if (line.startsWith("data "))
        link.written(bytes);
    else if (line.startsWith("credits "))
        link.creditsGranted(bytes);
    else if (line == "state")
        say("state " + compact(link.computer().state()));
    else if (line == "firmware")
        say("firmware " + link.computer().firmwareImage().toHex());
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
                     [](const QByteArray &bytes) { say("notify " + bytes.toHex()); });
    QObject::connect(&link, &SerialLink::linkDropped, qApp, [] { say("drop"); });
    say(description(device));

    QByteArray input;
    const QSocketNotifier stdIn(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&stdIn, &QSocketNotifier::activated, qApp, [&] {
        char part[4096];
        const ssize_t size = ::read(STDIN_FILENO, part, sizeof part);
        if (size <= 0) {
            QCoreApplication::exit(0);
            return;
        }
        input.append(part, size);
        for (qsizetype end = input.indexOf('\n'); end >= 0; end = input.indexOf('\n')) {
            happen(link, input.left(end));
            input.remove(0, end + 1);
        }
    });
    return QCoreApplication::exec();
}
