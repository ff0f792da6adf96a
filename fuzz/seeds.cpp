// SPDX-License-Identifier: MIT
// Writes what simulated computers answer as inputs of the targets: seeds SCENARIOS FOLDER
#include <QtCore/qdir.h>
#include <QtCore/qfile.h>
#include <QtCore/qsavefile.h>
#include <QtCore/qtextstream.h>

#include "device/commands.h"
#include "device/computer.h"

using namespace Qt::StringLiterals;
using simulator::Computer;
using simulator::DeviceScenario;
using simulator::Frame;

namespace {

class Seeds
{
public:
    explicit Seeds(const QString &folder) : m_folder(folder) { }

    void add(const char *target, const QString &name, const QByteArray &bytes) const
    {
        const QDir folder(m_folder.filePath(QLatin1StringView(target)));
        QSaveFile file(folder.filePath(name));
        if (!folder.mkpath(u"."_s) || !file.open(QIODevice::WriteOnly)
            || file.write(bytes) != bytes.size() || !file.flush() || !file.commit()) {
            qFatal("%s cannot be written: %s", qPrintable(file.fileName()),
                   qPrintable(file.errorString()));
        }
    }

private:
    QDir m_folder;
};

QByteArray byte(int value)
{
    return QByteArray(1, char(value));
}

QByteArray word(qsizetype value)
{
    return byte(int(value & 0xFF)) + byte(int(value >> 8));
}

QByteArray modelByte(const DeviceScenario &device)
{
    switch (device.model) {
    case simulator::Model::Varda:
        return byte(1);
    case simulator::Model::Tidemar:
        return byte(2);
    case simulator::Model::Vskm:
        return byte(3);
    default:
        return byte(0);
    }
}

/** In the order in which the target has its decoders. */
constexpr quint8 kDecoded[] = {
    simulator::Identification,
    simulator::Serialnumber,
    simulator::BootloaderVersion,
    simulator::Owner,
    simulator::Time,
    simulator::Sensors,
    simulator::SimulParams,
    simulator::Diver,
    simulator::DeleteLastDive,
    simulator::EraseDivesFlash,
    simulator::GetGases,
    simulator::BatteryInformation,
    simulator::ComputerSettings,
    simulator::ComputerSettingsNew,
    simulator::ListDives,
    simulator::Fullsamples,
    simulator::Syslog,
    simulator::SyslogBin,
};

QByteArray argumentOf(quint8 command)
{
    switch (command) {
    case simulator::Fullsamples:
        return word(1);
    case simulator::GetGases:
    case simulator::LayoutGet:
        return byte(0);
    default:
        return {};
    }
}

void addDecoders(const Seeds &seeds, const QString &scenario, const DeviceScenario &device)
{
    for (std::size_t i = 0; i < std::size(kDecoded); ++i) {
        Computer computer(device);
        const auto frames = computer.answer({kDecoded[i], argumentOf(kDecoded[i])});
        if (!frames.isEmpty()) {
            seeds.add("decoders", u"%1-%2"_s.arg(scenario).arg(kDecoded[i]),
                      byte(int(i)) + modelByte(device) + byte(device.recordVersion) + word(0)
                          + frames.front().payload);
        }
    }
}

void addDives(const Seeds &seeds, const QString &scenario, const DeviceScenario &device)
{
    Computer computer(device);
    const auto headers = computer.answer({simulator::ListDives, {}});
    for (int number = 1; number < std::min<qsizetype>(headers.size(), 4); ++number) {
        QByteArray samples;
        const auto frames = computer.answer({simulator::Fullsamples, word(number)});
        for (const Frame &frame : frames)
            samples += frame.payload;
        const QByteArray &header = headers[number - 1].payload;
        seeds.add("dives", u"%1-%2"_s.arg(scenario).arg(number),
                  modelByte(device) + byte(number * 16) + byte(234) + word(header.size()) + header
                      + samples.first(std::min<qsizetype>(samples.size(), 600)));
    }
}

/** A job in a session: link, MTU, identification; its start, its answers, and time. */
void addSession(const Seeds &seeds, const QString &scenario, const DeviceScenario &device)
{
    constexpr int kStart = 0;
    constexpr int kAnswer = 3;
    constexpr int kTime = 7;
    constexpr int kLongPayload = 0x80;
    constexpr quint8 kJobs[] = {
        simulator::Syslog,
        simulator::Serialnumber,
        simulator::ComputerSettings,
        simulator::Time,
        simulator::Sensors,
        simulator::Diver,
        simulator::ListDives,
        simulator::Fullsamples,
        simulator::Owner,
        simulator::SimulParams,
        simulator::SyslogBin,
        simulator::BootloaderVersion,
        simulator::GetGases,
        simulator::LayoutList,
        simulator::LayoutGet,
        simulator::LayoutActiveGet,
        simulator::BatteryInformation,
        simulator::ComputerSettingsNew,
        simulator::DeleteLastDive,
        simulator::LayoutRemoveAll,
    };
    const QByteArray model = modelByte(device);
    for (const quint8 job : kJobs) {
        Computer computer(device);
        const QByteArray argument = argumentOf(job);
        QByteArray script = byte(0) + word(247) + byte(model[0] * 10 + 1) + byte(kStart) + byte(job)
                            + (job == simulator::ListDives ? word(2) : argument);
        auto frames = computer.answer({job, argument});
        // Two of many, and the one that closes them.
        while (frames.size() > 3)
            frames.removeAt(2);
        for (const Frame &frame : frames) {
            script += byte(kAnswer) + byte(kLongPayload) + word(frame.payload.size())
                      + frame.payload + byte(243);
        }
        seeds.add("session", u"%1-%2"_s.arg(scenario).arg(job),
                  script + byte(kTime) + byte(kTime) + byte(kTime));
    }
}

/** MTU, bootloader, name, header, size, force; what is not there accepts. */
void addFirmware(const Seeds &seeds)
{
    const QByteArray name = "Varda.1.4.3.b.bin";
    const auto image = [&name](const char *header, int size) {
        const QByteArray bytes = QByteArray::fromHex(header);
        return word(247) + byte(1) + byte(int(name.size())) + name + byte(int(bytes.size())) + bytes
               + word(size) + byte(0);
    };
    seeds.add("firmware", u"headerless"_s, image("", 1000));
    seeds.add("firmware", u"application"_s, image("efbeadde 00000000 62030401", 1000));
    seeds.add("firmware", u"bootloader"_s, image("544f4f42 00000000 62030401", 1000));
    // Accepted from byte 232 on.
    seeds.add("firmware", u"resumed"_s,
              image("efbeadde 00000000 62030401", 1000) + QByteArray::fromHex("000104e8000000"));
    seeds.add("firmware", u"unknown"_s, image("01", 1000));
    seeds.add("firmware", u"short"_s, image("efbe", 514));
}

void addTexts(const Seeds &seeds, const QString &scenario, const DeviceScenario &device)
{
    const auto text = [](const QString &value) {
        const QByteArray bytes = value.toUtf8().left(255);
        return byte(0) + byte(int(bytes.size())) + bytes;
    };
    Computer computer(device);
    const auto log = computer.answer({simulator::Syslog, {}});
    seeds.add("texts", scenario,
              text(device.owner) + text(device.name.value_or(QString()))
                  + (log.isEmpty() ? QByteArray() : log.front().payload));
}

void addRequests(const Seeds &seeds)
{
    const QByteArrayList requests{
        R"({"id": 1, "method": "scan", "params": {"seconds": 3, "all": true}})",
        R"({"id": "a", "method": "connect", "computer": "00:AA:01:01:00:01"})",
        R"({"id": 2, "method": "disconnect", "computer": "00-aa-01-01-00-01"})",
        R"({"id": 3, "method": "cancel", "params": {"request": "a"}})",
        R"({"id": 4, "method": "info"})",
        R"({"id": 5, "method": "config", "params": {"basic": false}})",
        R"({"id": 6, "method": "sync", "params": {"file": "dives.sqlite"}})",
        R"({"id": 7, "method": "logbook", "params": {"known": [1, 2]}})",
        R"({"id": 8, "method": "dive", "params": {"numbers": [3], "collect": true}})",
        R"({"id": 9, "method": "dives", "params": {"known": [65535], "collect": false}})",
        R"({"id": 10, "method": "log", "params": {"binary": true}})",
        R"({"id": 11, "method": "owner set", "params": {"text": "Grace H\u00f6pper"}})",
        R"({"id": 12, "method": "pressure", "params": {"mbar": 950, "force": true, "confirm": true}})",
        R"({"id": 13, "method": "settings", "params": {"byte1": 1, "byte2": 2, "float1": 0.5, "byte3": 3, "float2": 1000.0, "byte4": 4, "byte5": 5, "byte6": 255, "confirm": true}})",
        R"({"id": 14, "method": "layouts get", "params": {"index": 1}})",
        R"({"id": 15, "method": "layouts add", "params": {"layoutBlob": "00ff5A"}})",
        R"({"id": 16, "method": "layouts activate", "params": {"mode": 1, "index": -1}})",
        R"({"id": 17, "method": "layouts clear", "params": {"confirm": true}})",
        R"({"id": 18, "method": "superuser", "params": {"on": true, "confirm": true}})",
        R"({"id": 19, "method": "firmware info", "params": {"file": "/nonexistent"}})",
        R"({"id": 20, "method": "firmware upload", "params": {"file": "x", "force": true, "confirm": true}})",
        R"({"id": 21, "method": "delete"})",
        "{\"id\": \"\\ud800\"}",
        "[1, {\"a\": [null, 1.5e300]}]\n\xff\n\n{",
    };
    for (qsizetype i = 0; i < requests.size(); ++i)
        seeds.add("serve", QString::number(i), byte(250) + requests[i] + '\n');
    seeds.add("serve", u"all"_s, byte(20) + requests.join('\n'));
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 3)
        qFatal("seeds SCENARIOS FOLDER");
    const QDir scenarios(QString::fromLocal8Bit(argv[1]));
    const Seeds seeds(QString::fromLocal8Bit(argv[2]));
    const QStringList names = scenarios.entryList({u"*.json"_s});
    for (const QString &name : names) {
        QFile file(scenarios.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s cannot be read", qPrintable(name));
        const QByteArray json = file.readAll();
        seeds.add("scenario", name, json);
        QString error;
        const auto scenario = simulator::Scenario::parse(json, &error);
        if (!scenario || scenario->devices.isEmpty())
            continue;
        const DeviceScenario &device = scenario->devices.front();
        addDecoders(seeds, name, device);
        addDives(seeds, name, device);
        addSession(seeds, name, device);
        addTexts(seeds, name, device);
    }
    addFirmware(seeds);
    addRequests(seeds);
    return 0;
}
